#pragma once

#include "src/api/HostBinding.h"

namespace tgx {

/// Hands every structure element below `element` to the handler, parents before kids. The handler may not change the
/// structure.
template <typename Handler>
void ForEachElementBelow(PDSElement element, Handler& handler) {  // NOLINT(misc-no-recursion): the host bounds the depth
  const ASInt32 count = PDSElementGetNumKids(element);
  for (ASInt32 index = 0; index < count; ++index) {
    CosObj kid = CosNewNull();
    if (PDSElementGetKidWithMCInfo(element, index, &kid, nullptr, nullptr, nullptr) != ASAtomFromString("StructElem"))
      continue;
    handler(kid);
    ForEachElementBelow(kid, handler);
  }
}

/// The same for every element of the tree.
template <typename Handler>
void ForEachElement(PDSTreeRoot root, Handler handler) {
  const ASInt32 count = PDSTreeRootGetNumKids(root);
  for (ASInt32 index = 0; index < count; ++index) {
    PDSElement element = CosNewNull();
    PDSTreeRootGetKid(root, index, &element);
    handler(element);
    ForEachElementBelow(element, handler);
  }
}

}  // namespace tgx
