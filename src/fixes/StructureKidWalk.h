#pragma once

#include "src/api/HostBinding.h"
#include "src/api/StructureError.h"

namespace tgx {

/// Runs `walk` on each top-level element of the document's structure tree. False for a document without one, which is
/// reported from `file` and `line`.
template <typename Walk>
bool ForEachTopLevelElement(PDDoc document, const char* file, int line, Walk&& walk) {
  PDSTreeRoot root = CosNewNull();
  if (PDDocGetStructTreeRoot(document, &root) == 0) {
    ReportStructureError("No document structure object found", file, line);
    return false;
  }
  const ASInt32 count = PDSTreeRootGetNumKids(root);
  for (ASInt32 i = 0; i < count; ++i) {
    PDSElement element = CosNewNull();
    PDSTreeRootGetKid(root, i, &element);
    walk(element);
  }
  return true;
}

/// Runs `onElement(kid)` for each kid of `element` that is an element, and `onOther(kid, kind, mcInfo)` for each other one,
/// in order. The number of kids is read once, at the start.
template <typename OnElement, typename OnOther>
void ForEachKid(const PDSElement& element, OnElement&& onElement, OnOther&& onOther) {
  const ASInt32 count = PDSElementGetNumKids(element);
  for (ASInt32 i = 0; i < count; ++i) {
    CosObj kid = CosNewNull();
    PDSMCInfo mcInfo = {};
    const ASAtom kind = PDSElementGetKidWithMCInfo(element, i, &kid, &mcInfo, nullptr, nullptr);
    if (kind == ASAtomFromString("StructElem")) {
      onElement(kid);
    } else {
      onOther(kid, kind, mcInfo);
    }
  }
}

}  // namespace tgx
