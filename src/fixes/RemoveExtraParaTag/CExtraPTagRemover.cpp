#include "src/fixes/RemoveExtraParaTag/CExtraPTagRemover.h"

#include "src/api/HostException.h"
#include "src/common/ElementWalk.h"
#include "src/common/StructureUtils.h"
#include "src/fixes/StructureKidWalk.h"

namespace tgx {

bool CExtraPTagRemover::Run(PDDoc document) {
  replacements_.clear();
  if (document == nullptr) return false;
  document_ = document;
  roles_ = RoleCache(document);
  return InExceptionFrame([this] { return ReplaceParagraphs(); });
}

bool CExtraPTagRemover::ReplaceParagraphs() {
  const auto handle = [this](PDSElement element) { HandleElement(element); };
  const bool hasTree = ForEachTopLevelElement(document_, "ExtraPTagRemover", 30, [&](PDSElement element) {
    handle(element);
    ForEachElementBelow(element, handle);
  });
  if (!hasTree) return false;
  for (const Replacement& replacement : replacements_) {
    PDSElementRemoveKid(replacement.parent, replacement.table);
    PDSElementReplaceKid(replacement.grandparent, replacement.parent, replacement.table);
  }
  return true;
}

void CExtraPTagRemover::HandleElement(PDSElement element) {
  if (roles_.RoleOf(element) != "Table") return;
  PDSElement parent = CosNewNull();
  ASBool isRoot = 0;
  PDSElementGetParent(element, &parent, &isRoot);
  if (CosObjGetType(parent) == CosNull || isRoot != 0) return;
  if (roles_.RoleOf(parent) != "P" || PDSElementGetNumKids(parent) != 1) return;
  PDSElement grandparent = GetParent(parent);
  if (CosObjGetType(grandparent) == CosNull || PDSElementGetNumKids(grandparent) <= 0) return;
  replacements_.push_back({grandparent, parent, element});
}

}  // namespace tgx
