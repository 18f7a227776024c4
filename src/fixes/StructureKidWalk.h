#pragma once

#include "src/api/HostBinding.h"
#include "src/api/StructureError.h"

namespace tgx {

/// Runs `walk` on each top-level element of the document's structure tree. False for a document without one, which is
/// reported from `file` and `line`.
template <typename Walk>
bool ForEachTopLevelElement(PDDoc document, const char* file, int line, Walk&& walk) {
  PDSTreeRoot root;
  if (PDDocGetStructTreeRoot(document, &root) == 0) {
    ReportStructureError("No document structure object found", file, line);
    return false;
  }
  const ASInt32 count = PDSTreeRootGetNumKids(root);
  for (ASInt32 i = 0; i < count; ++i) {
    PDSElement element;
    PDSTreeRootGetKid(root, i, &element);
    walk(element);
  }
  return true;
}

}  // namespace tgx
