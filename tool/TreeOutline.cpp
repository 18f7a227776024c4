#include <string_view>

#include "tool/Messages.h"
#include "tool/TextString.h"
#include "tool/TreeText.h"

namespace tgx::tool {
namespace {

/// Characters of a text that a line of the outline shows.
constexpr std::size_t kShownCharacters = 60;

std::string Indent(std::size_t level) { return std::string(2 * level, ' '); }

void AddText(std::string& line, const char* key, const std::optional<std::string>& text) {
  if (text) line.append(" ").append(key).append("=\"").append(ForTerminal(*text, kShownCharacters)).append("\"");
}

/// Attributes as Table.Scope="Column"; the owner stands in front.
void AddAttributes(std::string& line, const Json& attributes) {
  for (const Json& dictionary : attributes) {
    std::string owner;
    if (const auto entry = dictionary.find("O"); entry != dictionary.end() && entry->is_string()) {
      owner = entry->get<std::string>() + ".";
    }
    for (const auto& [key, value] : dictionary.items()) {
      if (key == "O") continue;
      const std::string text = value.dump(-1, ' ', false, Json::error_handler_t::replace);
      line.append(" ").append(ForTerminal(owner + key, kShownCharacters)).append("=");
      line.append(ForTerminal(text, kShownCharacters));
    }
  }
}

std::string LineOf(const Element& element) {
  std::string line = ForTerminal(element.type.empty() ? "(no type)" : element.type, kShownCharacters);
  if (element.role != element.type) line.append(" (").append(ForTerminal(element.role, kShownCharacters)).append(")");
  AddText(line, "title", element.title);
  AddText(line, "alt", element.alt);
  AddText(line, "actualText", element.actualText);
  AddText(line, "lang", element.lang);
  AddText(line, "id", element.id);
  AddAttributes(line, element.attributes);
  if (element.repeated) line.append(" (stands here again)");
  return line;
}

std::string PageOf(std::int32_t page) { return page > 0 ? "page " + std::to_string(page) : "no page"; }

/// Walks the tree and prints it line by line.
class Outline {
 public:
  void PrintKids(const std::vector<Kid>& kids, std::size_t level) {
    for (std::size_t i = 0; i < kids.size();) {
      if (std::holds_alternative<MarkedContent>(kids[i])) {
        i = PrintMarkedContent(kids, i, level);
      } else {
        PrintKid(kids[i++], level);
      }
    }
  }

 private:
  /// One line for the marked content that follows from `first` in the same place, or for one alone whose text is shown;
  /// gives the index behind it.
  static std::size_t PrintMarkedContent(const std::vector<Kid>& kids, std::size_t first, std::size_t level) {
    const MarkedContent& head = std::get<MarkedContent>(kids[first]);
    std::string line = Indent(level) + PageOf(head.page) + (head.ofStream ? ", in a form: mcid" : ": mcid");
    std::size_t i = first;
    for (; i < kids.size(); ++i) {
      const MarkedContent* content = std::get_if<MarkedContent>(&kids[i]);
      if (content == nullptr || content->page != head.page || content->ofStream != head.ofStream ||
          (i > first && content->text)) {
        break;
      }
      line.append(" ").append(std::to_string(content->mcid));
      if (content->text) {
        line.append(" \"").append(ForTerminal(*content->text, kShownCharacters)).append("\"");
        ++i;
        break;
      }
    }
    Print(line + "\n");
    return i;
  }

  void PrintKid(const Kid& kid, std::size_t level) {
    if (const auto* element = std::get_if<std::unique_ptr<Element>>(&kid)) {
      Print(Indent(level) + LineOf(**element) + "\n");
      PrintKids((*element)->kids, level + 1);
    } else if (const auto* reference = std::get_if<ObjectReference>(&kid)) {
      const std::string type = reference->type.empty() ? "no type" : ForTerminal(reference->type, kShownCharacters);
      Print(Indent(level) + PageOf(reference->page) + ": object " + type + "\n");
    } else if (const auto* unknown = std::get_if<UnknownKid>(&kid)) {
      Print(Indent(level) + "unknown kid " + ForTerminal(unknown->type, kShownCharacters) + "\n");
    }
  }
};

}  // namespace

void PrintOutline(const StructureTree& tree) { Outline().PrintKids(tree.kids, 0); }

}  // namespace tgx::tool
