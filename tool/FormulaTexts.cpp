#include "tool/FormulaTexts.h"

#include <algorithm>
#include <string_view>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/MathText.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

/// What the step makes of a mark's text in UTF-16: without its mark, its zero bytes, and all up to the colon.
std::string ContentsFrom(std::string alt) {
  if (alt.starts_with("\xFE\xFF")) alt.erase(0, 2);
  alt.erase(std::remove(alt.begin(), alt.end(), '\0'), alt.end());
  return alt.substr(alt.find(':') + 1);
}

}  // namespace

FormulaTexts::FormulaTexts(PDDoc document) : document_(document) {
  const HostFrame frame;
  ForEachElement(document, [this](PDSElement element) {
    if (PDSElementHasAlt(element) == 0) return;
    const std::string alt = TextOf(element, PDSElementGetAlt);
    const std::string text = DecodeTextString(alt);
    constexpr std::string_view kSource = "_CONTENT_MathML:";
    const std::size_t source = text.starts_with("MATHML_") ? text.find(kSource) : std::string::npos;
    if (source == std::string::npos) return;
    const std::string line = LineOfMathML(text.substr(source + kSource.size()));
    if (!line.empty()) lines_.emplace(ContentsFrom(alt), line);
  });
}

void FormulaTexts::Write() const {
  if (lines_.empty()) return;
  const HostFrame frame;
  const KidTypes types;
  const ASAtom annotation = ASAtomFromString("Annot");
  const ASAtom formula = ASAtomFromString("Formula");
  ForEachElement(document_, [&](PDSElement element) {
    if (PDSElementGetType(element) != annotation || PDSElementGetNumKids(element) != 2) return;
    if (PDSElementGetKid(element, 0, nullptr, nullptr, nullptr) != types.object ||
        PDSElementGetKid(element, 1, nullptr, nullptr, nullptr) != types.element) {
      return;
    }
    const PDSElement kid = KidOf(element, 1);
    const CosObj dictionary = PDSElementGetCosObj(kid);
    if (PDSElementGetType(kid) != formula || PDSElementHasAlt(kid) != 0 ||
        CosDictKnownKeyString(dictionary, "ActualText") != 0) {
      return;
    }
    const CosObj contents = CosDictGetKeyString(KidOf(element, 0), "Contents");
    if (CosObjGetType(contents) != CosString) return;
    const auto line = lines_.find(BytesOf(contents));
    if (line != lines_.end()) PutString(PDDocGetCosDoc(document_), dictionary, "Alt", EncodeUtf16(line->second));
  });
}

}  // namespace tgx::tool
