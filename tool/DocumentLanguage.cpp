#include "tool/DocumentLanguage.h"

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/Roles.h"
#include "tool/TextString.h"
#include "tool/ToolSteps.h"

namespace tgx::tool {
namespace {

std::optional<PDSElement> TopOf(PDDoc document) {
  PDSTreeRoot root = {};
  if (PDDocGetStructTreeRoot(document, &root) == 0) return std::nullopt;
  Roles roles(document);
  const ASAtom type = ASAtomFromString("Document");
  const ASInt32 count = PDSTreeRootGetNumKids(root);
  for (ASInt32 i = 0; i < count; ++i) {
    PDSElement element = {};
    PDSTreeRootGetKid(root, i, &element);
    if (roles.Resolve(PDSElementGetType(element)) == type) return element;
  }
  return std::nullopt;
}

std::string LanguageOf(PDSElement element) {
  return PDSElementHasLanguage(element) != 0 ? TextOf(element, PDSElementGetLanguage) : std::string();
}

std::string LanguageOfCatalog(PDDoc document) {
  const CosObj language = CosDictGetKeyString(CosDocGetRoot(PDDocGetCosDoc(document)), "Lang");
  return CosObjGetType(language) == CosString ? BytesOf(language) : std::string();
}

}  // namespace

DocumentLanguage::DocumentLanguage(PDDoc document) {
  const HostFrame frame;
  top_ = TopOf(document);
  if (!top_) return;
  language_ = LanguageOf(*top_);
  if (!language_.empty()) return;
  const std::string own = LanguageOfCatalog(document);
  const std::string code = DecodeTextString(own);
  if (!IsLanguageCode(code) && LanguageInBrackets(own).empty()) return;
  language_ = IsLanguageCode(code) ? code : own;
  SetLanguage(*top_, language_);
}

void DocumentLanguage::KeepForKids() const {
  const HostFrame frame;
  if (!top_ || language_.empty() || LanguageOf(*top_) == language_) return;
  const KidTypes types;
  const ASInt32 count = PDSElementGetNumKids(*top_);
  for (ASInt32 i = 0; i < count; ++i) {
    if (PDSElementGetKid(*top_, i, nullptr, nullptr, nullptr) != types.element) continue;
    const PDSElement kid = KidOf(*top_, i);
    if (LanguageOf(kid).empty()) SetLanguage(kid, language_);
  }
}

std::string DocumentLanguage::Of(PDDoc document) {
  const HostFrame frame;
  const std::optional<PDSElement> top = TopOf(document);
  const std::string own = top ? LanguageOf(*top) : std::string();
  return DecodeTextString(own.empty() ? LanguageOfCatalog(document) : own);
}

}  // namespace tgx::tool
