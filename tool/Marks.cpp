#include "tool/Marks.h"

#include <algorithm>

namespace tgx::tool {
namespace {

constexpr std::string_view kHolderOfFormulas = "\u0CF1\u2318\u2328";
constexpr std::string_view kHolderOfFrames = "\u2230";

struct Sign {
  std::string_view text;
  unsigned mark;
};

constexpr Sign kFirstOfAlt[] = {
    {"\u222E", kAnchor}, {"\u2264", kFrameStart}, {"\u2265", kFrameEnd}, {"[ATT]", kTableData}, {"MATHML_", kFormula}};
constexpr Sign kAnywhereInAlt[] = {
    {"TEXTFRAME_START", kTextFrame}, {"TEXTFRAME_END", kTextFrame}, {"TOC_FRAME", kContentsFrame}};

bool Contains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

}  // namespace

unsigned MarkOfAlt(std::string_view alt) {
  for (const Sign& sign : kFirstOfAlt) {
    if (alt.starts_with(sign.text)) return sign.mark;
  }
  for (const Sign& sign : kAnywhereInAlt) {
    if (Contains(alt, sign.text)) return sign.mark;
  }
  return 0;
}

unsigned MarkOfTitle(std::string_view title) {
  if (title.starts_with(kHolderOfFrames)) return kFrameHolder;
  if (title.starts_with(kHolderOfFormulas)) return kFormulaHolder;
  return 0;
}

bool HoldsMark(std::string_view text) {
  const auto isIn = [text](const Sign& sign) { return Contains(text, sign.text); };
  return Contains(text, kHolderOfFrames) || Contains(text, kHolderOfFormulas) ||
         std::any_of(std::begin(kFirstOfAlt), std::end(kFirstOfAlt), isIn) ||
         std::any_of(std::begin(kAnywhereInAlt), std::end(kAnywhereInAlt), isIn);
}

}  // namespace tgx::tool
