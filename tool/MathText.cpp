#include "tool/MathText.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include <tinyxml2.h>

namespace tgx::tool {
namespace {

using tinyxml2::XMLElement;

/// More than any formula has; texts of marks come from files.
constexpr std::size_t kLongest = std::size_t{64} << 10U;

/// Without the prefix of a namespace.
std::string_view NameOf(const XMLElement& element) {
  const std::string_view name = element.Name();
  return name.substr(name.find(':') + 1);
}

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool IsToken(const XMLElement& element) { return IsOneOf(NameOf(element), {"mi", "mn", "mo", "mtext", "ms"}); }

/// Runs of white space as one blank, none at the ends.
std::string Tidy(std::string_view text) {
  std::string tidy;
  for (const char c : text) {
    const bool isBlank = std::isspace(static_cast<unsigned char>(c)) != 0;
    if (!isBlank) {
      tidy += c;
    } else if (!tidy.empty() && tidy.back() != ' ') {
      tidy += ' ';
    }
  }
  if (!tidy.empty() && tidy.back() == ' ') tidy.pop_back();
  return tidy;
}

std::size_t Characters(std::string_view utf8) {
  return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

// The parser bounds how deep elements nest.
// NOLINTBEGIN(misc-no-recursion)
class Line {
 public:
  static std::string Of(const XMLElement& element) {
    const std::string_view name = NameOf(element);
    if (IsToken(element)) return OfToken(element);
    if (IsOneOf(name, {"mphantom", "annotation", "annotation-xml"})) return "";
    if (name == "mspace") return " ";
    if (IsOneOf(name, {"semantics", "maction"})) return Kid(element, 0);
    if (name == "mfrac") return Grouped(element, 0) + "/" + Grouped(element, 1);
    if (IsOneOf(name, {"msup", "mover"})) return Grouped(element, 0) + "^" + Grouped(element, 1);
    if (IsOneOf(name, {"msub", "munder"})) return Grouped(element, 0) + "_" + Grouped(element, 1);
    if (IsOneOf(name, {"msubsup", "munderover"}))
      return Grouped(element, 0) + "_" + Grouped(element, 1) + "^" + Grouped(element, 2);
    if (name == "msqrt") return "\u221A(" + Tidy(Kids(element, "")) + ")";
    if (name == "mroot") return "\u221A[" + Tidy(Kid(element, 1)) + "]" + Grouped(element, 0);
    if (name == "mfenced") return OfFence(element);
    if (name == "mtable") return "[" + Kids(element, "; ") + "]";
    if (IsOneOf(name, {"mtr", "mlabeledtr"})) return Kids(element, ", ");
    return Kids(element, "");
  }

 private:
  static std::string OfToken(const XMLElement& element) {
    std::string text = Tidy(element.GetText() == nullptr ? "" : element.GetText());
    const std::string_view name = NameOf(element);
    if (name == "mi") return Characters(text) > 1 ? " " + text + " " : text;
    if (name != "mo") return name == "mn" ? text : " " + text + " ";
    if (IsOneOf(text, {"\u2061", "\u2062", "\u2063", "\u2064"})) return "";  // invisible operators
    if (IsOneOf(text, {"(", ")", "[", "]", "{", "}", "|", "!", "\u2032", "\u2033"})) return text;
    if (IsOneOf(text, {",", ";"})) return text + " ";
    return " " + text + " ";
  }

  static std::string OfFence(const XMLElement& element) {
    const auto attribute = [&element](const char* name, const char* otherwise) {
      const char* value = element.Attribute(name);
      return std::string(value == nullptr ? otherwise : value);
    };
    return attribute("open", "(") + Kids(element, ", ") + attribute("close", ")");
  }

  static std::string Kids(const XMLElement& element, std::string_view between) {
    std::string text;
    for (const XMLElement* kid = element.FirstChildElement(); kid != nullptr; kid = kid->NextSiblingElement()) {
      if (kid != element.FirstChildElement()) text += between;
      text += between.empty() ? Of(*kid) : Tidy(Of(*kid));
    }
    return text;
  }

  static const XMLElement* KidAt(const XMLElement& element, int index) {
    const XMLElement* kid = element.FirstChildElement();
    for (; kid != nullptr && index > 0; --index) kid = kid->NextSiblingElement();
    return kid;
  }

  static std::string Kid(const XMLElement& element, int index) {
    const XMLElement* kid = KidAt(element, index);
    return kid == nullptr ? "" : Of(*kid);
  }

  /// In parentheses unless it is a single token.
  static std::string Grouped(const XMLElement& element, int index) {
    const XMLElement* kid = KidAt(element, index);
    if (kid == nullptr) return "";
    const std::string text = Tidy(Of(*kid));
    while (kid != nullptr && !IsToken(*kid) && kid->FirstChildElement() == kid->LastChildElement() &&
           IsOneOf(NameOf(*kid), {"mrow", "mstyle", "mpadded"})) {
      kid = kid->FirstChildElement();
    }
    return kid == nullptr || IsToken(*kid) ? text : "(" + text + ")";
  }
};
// NOLINTEND(misc-no-recursion)

}  // namespace

std::string LineOfMathML(const std::string& mathml) {
  if (mathml.size() > kLongest) return "";
  tinyxml2::XMLDocument document;
  if (document.Parse(mathml.data(), mathml.size()) != tinyxml2::XML_SUCCESS) return "";
  const XMLElement* root = document.RootElement();
  if (root == nullptr || NameOf(*root) != "math") return "";
  const char* own = root->Attribute("alttext");
  return Tidy(own != nullptr && *own != '\0' ? std::string(own) : Line::Of(*root));
}

}  // namespace tgx::tool
