#include "host/pdsedit/StructureTree.h"

namespace tgx::host {

void StructureTree::PrepareForSaving() {
  if (nodes_) WriteQueued();
}

}  // namespace tgx::host
