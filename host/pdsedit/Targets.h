#pragma once

#include <tgx/host.h>

#include "host/pdmodel/Document.h"
#include "host/pdsedit/StructureTree.h"

namespace tgx::host {

/// For outputs that a client may not want.
template <typename Value>
void Store(Value* place, Value value) {
  if (place != nullptr) *place = value;
}

inline StructureTree& TreeOf(CosObj handle) { return Document::Of(handle).Structure(); }

/// An element with the tree that it belongs to.
struct Target {
  explicit Target(PDSElement handle) : Target(handle, Document::ObjectOf(handle)) {}
  Target(PDSElement handle, const LivingObject& living)
      : tree(living.document.Structure()), element(tree.ElementOf(handle, living.slot.object)) {}
  StructureTree& tree;
  NodeId element;
};

}  // namespace tgx::host
