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

/// Walks the elements from `element` down: `onElement(element, walkKids)`, which is to call `walkKids()` for what is below
/// it, and `onOther(element, kid, kind, mcInfo)` for each kid that is no element, in order. The number of kids is read once.
/// As deep as the structure, which the host bounds.
template <typename OnElement, typename OnOther>
void WalkElement(PDSElement element, OnElement& onElement, OnOther& onOther) {  // NOLINT(misc-no-recursion)
  const auto walkKids = [&] {                                                   // NOLINT(misc-no-recursion)
    const ASInt32 count = PDSElementGetNumKids(element);
    for (ASInt32 i = 0; i < count; ++i) {
      CosObj kid = CosNewNull();
      PDSMCInfo mcInfo = {};
      const ASAtom kind = PDSElementGetKidWithMCInfo(element, i, &kid, &mcInfo, nullptr, nullptr);
      if (kind == ASAtomFromString("StructElem")) {
        WalkElement(kid, onElement, onOther);
      } else {
        onOther(element, kid, kind, mcInfo);
      }
    }
  };
  onElement(element, walkKids);
}

/// WalkElement from each top-level element of the document's structure tree. False for a document without one, which is
/// reported from `file` and `line`.
template <typename OnElement, typename OnOther>
bool WalkStructure(PDDoc document, const char* file, int line, OnElement&& onElement, OnOther&& onOther) {
  return ForEachTopLevelElement(document, file, line,
                                [&](const PDSElement& element) { WalkElement(element, onElement, onOther); });
}

}  // namespace tgx
