#include "src/fixes/RemoveExtraParaTag/CExtraPTagRemover.h"

#include "src/api/HostException.h"
#include "src/api/StructureError.h"
#include "src/common/ElementWalk.h"
#include "src/common/StructureUtils.h"

namespace tgx {

bool CExtraPTagRemover::Run(PDDoc document) {
  replacements_.clear();
  if (document == nullptr) return false;
  document_ = document;
  return InExceptionFrame([this] { return ReplaceParagraphs(); });
}

bool CExtraPTagRemover::ReplaceParagraphs() {
  PDSTreeRoot root = CosNewNull();
  if (PDDocGetStructTreeRoot(document_, &root) == 0) {
    ReportStructureError("No document structure object found", "ExtraPTagRemover", 30);
    return false;
  }
  ForEachElement(root, [this](PDSElement element) { HandleElement(element); });
  for (const Replacement& replacement : replacements_) {
    PDSElementRemoveKid(replacement.parent, replacement.table);
    PDSElementReplaceKid(replacement.grandparent, replacement.parent, replacement.table);
  }
  return true;
}

void CExtraPTagRemover::HandleElement(PDSElement element) {
  if (!IsOfRole(element, "Table")) return;
  PDSElement parent = CosNewNull();
  ASBool isRoot = 0;
  PDSElementGetParent(element, &parent, &isRoot);
  if (CosObjGetType(parent) == CosNull || isRoot != 0) return;
  if (!IsOfRole(parent, "P") || PDSElementGetNumKids(parent) != 1) return;
  PDSElement grandparent = GetParent(parent);
  if (CosObjGetType(grandparent) == CosNull || PDSElementGetNumKids(grandparent) <= 0) return;
  replacements_.push_back({grandparent, parent, element});
}

bool CExtraPTagRemover::IsOfRole(PDSElement element, const char* role) const {
  return ResolveRole(document_, ASAtomGetString(PDSElementGetType(element))) == role;
}

}  // namespace tgx
