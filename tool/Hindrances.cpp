#include "tool/Hindrances.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/Marks.h"
#include "tool/PageContent.h"
#include "tool/PageNumbers.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

std::int32_t PageOfKid(PDSElement parent, ASInt32 index, PageNumbers& pages) {
  CosObj page = {};
  PDSElementGetKid(parent, index, nullptr, nullptr, &page);
  return pages.NumberOf(page);
}

/// Calls `enter(element, context of its parent)` and `content(element, index, mcid, context)` for its marked content.
template <typename Context, typename Enter, typename Content>
void WalkContent(PDDoc document, const Context& top, Enter enter, Content content) {
  const KidTypes types;
  const auto other = [&](PDSElement element, ASInt32 index, ASAtom type, ASInt32 mcid, const Context& own) {
    if (type == types.markedContent) content(element, index, mcid, own);
  };
  ElementWalk<Context, Enter, decltype(other)>(enter, other).Walk(document, top);
}

/// References to footnotes, or footnotes, that are not linked yet.
class FootnoteParts {
 public:
  explicit FootnoteParts(PDDoc document) {
    WalkContent(
        document, Around(), [this](PDSElement element, const Around& around) { return Enter(element, around); },
        [this](PDSElement element, ASInt32 index, ASInt32, const Around& around) {
          if (around.reference != kNone) AddPage(references_[around.reference], element, index);
          if (around.note != kNone) AddPage(notes_[around.note], element, index);
        });
  }

  std::optional<Hindrance> Find() const {
    if (references_.size() != notes_.size()) return Hindrance{0, Numbers()};
    for (std::size_t i = 0; i < references_.size(); ++i) {
      if (!references_[i].hasContent || (notes_[i].page != 0 && references_[i].page != 0)) continue;
      const char* part = references_[i].page == 0 ? "the reference to footnote " : "footnote ";
      return Hindrance{references_[i].page, part + std::to_string(i + 1) + " has no content on any page"};
    }
    return std::nullopt;
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  struct Around {
    std::size_t reference = kNone, note = kNone;
    bool isLinked = false;
  };
  /// Where the first of the content lies; 0 for no page.
  struct Part {
    bool hasContent = false;
    std::int32_t page = 0;
  };

  Around Enter(PDSElement element, const Around& around) {
    const ASAtom type = PDSElementGetType(element);
    Around own = around;
    own.isLinked = around.isLinked || type == link_;
    if (around.isLinked || (type != reference_ && type != note_) || EndsWithItsLink(element)) return own;
    std::vector<Part>& parts = type == reference_ ? references_ : notes_;
    (type == reference_ ? own.reference : own.note) = parts.size();
    parts.emplace_back();
    return own;
  }

  /// What the step leaves of an element whose kids it has linked. A kid that it cannot move, and all behind it, stay before
  /// the link.
  bool EndsWithItsLink(PDSElement element) const {
    const ASInt32 last = PDSElementGetNumKids(element) - 1;
    if (last < 0 || PDSElementGetKid(element, last, nullptr, nullptr, nullptr) != types_.element) return false;
    const PDSElement link = KidOf(element, last);
    if (PDSElementGetType(link) != link_ || (last > 0 && !MustStay(element, 0))) return false;
    const ASInt32 count = PDSElementGetNumKids(link);
    for (ASInt32 i = 0; i < count; ++i) {
      if (PDSElementGetKid(link, i, nullptr, nullptr, nullptr) == types_.object) return true;
    }
    return false;
  }

  bool MustStay(PDSElement element, ASInt32 index) const {
    void* content = nullptr;
    const ASAtom type = PDSElementGetKid(element, index, nullptr, &content, nullptr);
    return type == types_.markedContent ? content == nullptr : type != types_.object && type != types_.element;
  }

  void AddPage(Part& part, PDSElement element, ASInt32 index) {
    if (!part.hasContent) part.page = PageOfKid(element, index, pages_);
    part.hasContent = true;
  }

  std::string Numbers() const {
    const std::string references = Number(references_.size(), "Reference");
    const std::string notes = Number(notes_.size(), "Note");
    if (notes_.empty()) return references + ", but no Note to link with";
    if (references_.empty()) return notes + ", but no Reference to link with";
    return references + " and " + notes + ", which can only be linked in pairs";
  }

  static std::string Number(std::size_t number, const std::string& what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
  }

  std::vector<Part> references_, notes_;
  PageNumbers pages_;
  KidTypes types_;
  ASAtom reference_ = ASAtomFromString("Reference"), note_ = ASAtomFromString("Note"), link_ = ASAtomFromString("Link");
};

/// Whether the properties of marked content have an MCID that is no integer, at any depth. As deep as the host lets marked
/// content nest.
bool HoldsMcidThatIsNoNumber(PDEContent content) {  // NOLINT(misc-no-recursion)
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 i = 0; i < count; ++i) {
    const PDEElement element = PDEContentGetElem(content, i);
    if (PDEObjectGetType(element) != kPDEContainer) continue;
    CosObj properties = {};
    if (PDEContainerGetDict(element, &properties, nullptr) != 0 && CosDictKnownKeyString(properties, "MCID") != 0 &&
        CosObjGetType(CosDictGetKeyString(properties, "MCID")) != CosInteger) {
      return true;
    }
    if (HoldsMcidThatIsNoNumber(PDEContainerGetContent(element))) return true;
  }
  return false;
}

/// The step reads the MCID of all content before it does anything.
std::optional<Hindrance> FindMcidThatIsNoNumber(PDDoc document) {
  const ASInt32 count = PDDocGetNumPages(document);
  for (ASInt32 i = 0; i < count; ++i) {
    if (HoldsMcidThatIsNoNumber(PageContent(document, i).Get())) {
      return Hindrance{i + 1, "marked content has an MCID that is no integer"};
    }
  }
  return std::nullopt;
}

std::optional<Hindrance> FindWhatKeepsFootnotes(PDDoc document) {
  std::optional<Hindrance> found = FootnoteParts(document).Find();
  return found ? found : FindMcidThatIsNoNumber(document);
}

/// The step asks every piece of marked content for its page.
std::optional<Hindrance> FindContentWithoutAPage(PDDoc document) {
  struct Nothing {};
  std::optional<Hindrance> found;
  std::size_t count = 0;
  PageNumbers pages;
  WalkContent(
      document, Nothing(), [](PDSElement, const Nothing&) { return Nothing(); },
      [&](PDSElement element, ASInt32 index, ASInt32 mcid, const Nothing&) {
        if (PageOfKid(element, index, pages) != 0) return;
        if (++count > 1) return;
        const std::string type = DecodeName(ASAtomGetString(PDSElementGetType(element)));
        found = Hindrance{0, "mcid " + std::to_string(mcid) + " of an element " + type};
      });
  if (!found) return std::nullopt;
  if (count > 1) found->reason += " and " + std::to_string(count - 1) + " more";
  found->reason += " in the structure tree " + std::string(count > 1 ? "belong" : "belongs") +
                   " to no page, so how much text each language has cannot be counted";
  return found;
}

std::optional<Hindrance> FindMissingDescriptions(PDDoc document) {
  bool found = false;
  ForEachElement(document, [&found](PDSElement element) {
    if (!found && PDSElementHasAlt(element) != 0)
      found = MarkOfAlt(DecodeTextString(TextOf(element, PDSElementGetAlt))) == kTableData;
  });
  if (found) return std::nullopt;
  return Hindrance{0, "no table has a description"};
}

/// The highest number of a table that a description of tables names. A line that names one begins with the word and has the
/// number behind any white space.
std::int64_t LastTableOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::int64_t last = 0;
  for (std::string line; std::getline(file, line);) {
    int number = 0;
    if (std::sscanf(line.c_str(), "Table %d", &number) == 1) last = std::max<std::int64_t>(last, number);
  }
  return last;
}

/// Tables have numbers by their places: where some are missing, as after a repair before this one, the others would be taken
/// for them.
std::optional<Hindrance> FindMissingTables(PDDoc document, const std::string& path) {
  std::int64_t tables = 0;
  const ASAtom table = ASAtomFromString("Table");
  ForEachElement(document, [&](PDSElement element) { tables += PDSElementGetType(element) == table ? 1 : 0; });
  const std::int64_t last = LastTableOf(path);
  if (last <= tables) return std::nullopt;
  return Hindrance{0, path + " tells of table " + std::to_string(last) + ", but there are " + std::to_string(tables) +
                          ": the numbers would mean other tables"};
}

/// One of the two marks around a formula.
struct FormulaMark {
  std::string number;
  bool isStart;
};

std::optional<FormulaMark> FormulaMarkOf(PDSElement element) {
  constexpr std::string_view kBegin = "MATHML_";
  if (PDSElementHasAlt(element) == 0) return std::nullopt;
  const std::string alt = DecodeTextString(TextOf(element, PDSElementGetAlt));
  if (!alt.starts_with(kBegin)) return std::nullopt;
  const std::string text = alt.substr(kBegin.size());
  const std::size_t end = text.find('_');
  if (end == std::string::npos) return std::nullopt;
  const std::string kind = text.substr(end + 1, text.find_first_of("_:", end + 1) - end - 1);
  if (kind != "START" && kind != "END") return std::nullopt;
  return FormulaMark{text.substr(0, end), kind == "START"};
}

/// The kids of a formula leave their places before the new ones are given: one that cannot be moved would take those before
/// it out of the tree.
std::optional<Hindrance> FindLostPartOfFormula(PDSElement parent, const KidTypes& types) {
  std::unordered_map<std::string, ASInt32> starts;
  ASInt32 lastLost = -1;
  const ASInt32 count = PDSElementGetNumKids(parent);
  for (ASInt32 i = 0; i < count; ++i) {
    CosObj kid = {};
    void* content = nullptr;
    const ASAtom type = PDSElementGetKid(parent, i, &kid, starts.empty() ? nullptr : &content, nullptr);
    if (type != types.element) {
      if (type != types.object && content == nullptr) lastLost = i;
      continue;
    }
    const std::optional<FormulaMark> mark = FormulaMarkOf(kid);
    if (!mark) continue;
    if (mark->isStart) {
      starts.emplace(mark->number, i);
    } else if (const auto start = starts.find(mark->number); start != starts.end() && start->second < lastLost) {
      return Hindrance{
          0, "formula " + mark->number +
                 " has a part that is no content of its page's own, and cannot be moved: the other parts would be lost"};
    }
  }
  return std::nullopt;
}

std::optional<Hindrance> FindLostPartsOfFormulas(PDDoc document) {
  // Each element once, though it may have many formulas.
  std::unordered_set<std::uint64_t> seen;
  std::vector<PDSElement> parents;
  ForEachElement(document, [&](PDSElement element) {
    const std::optional<FormulaMark> mark = FormulaMarkOf(element);
    if (!mark || !mark->isStart) return;
    PDSElement parent = {};
    ASBool isRoot = 0;
    PDSElementGetParent(element, &parent, &isRoot);
    if (isRoot == 0 && seen.insert(KeyOf(parent)).second) parents.push_back(parent);
  });
  const KidTypes types;
  for (const PDSElement& parent : parents) {
    if (auto found = FindLostPartOfFormula(parent, types)) return found;
  }
  return std::nullopt;
}

}  // namespace

std::optional<Hindrance> FindHarm(PDDoc document, const StepCall& step) {
  if (step.name != "layout-tables" && step.name != "mathml") return std::nullopt;
  const HostFrame frame;
  if (step.name == "mathml") return FindLostPartsOfFormulas(document);
  return FindMissingTables(document, step.path);
}

std::optional<Hindrance> FindHindrance(PDDoc document, const std::string& step) {
  const HostFrame frame;
  if (step == "footnote-links") return FindWhatKeepsFootnotes(document);
  if (step == "main-language") return FindContentWithoutAPage(document);
  if (step == "table-metadata") return FindMissingDescriptions(document);
  return std::nullopt;
}

}  // namespace tgx::tool
