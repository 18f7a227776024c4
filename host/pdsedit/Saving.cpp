#include "host/core/HostError.h"
#include "host/pdsedit/IdTree.h"
#include "host/pdsedit/ParentTree.h"
#include "host/pdsedit/StructureTree.h"
#include "host/pdsedit/TreeContents.h"

namespace tgx::host {

void StructureTree::PrepareForSaving() {
  if (!isTouched_) return;
  try {
    MakeReady();
  } catch (const HostError& error) {
    if (error.Code() != kASDamagedDocument) throw;
    // A tree that cannot be walked is saved as it is: every operation on it has said so.
    if (nodes_) WriteQueued();
    return;
  }
  if (root_ != kNoNode) {
    SettleParents(*this);
    WriteQueued();
    const TreeContents contents = CollectContents(*this);
    MakeParentTreeTrue(*this, contents);
    MakeIdTreeTrue(*this, contents);
  } else {
    WriteQueued();
  }
  isTouched_ = false;
}

}  // namespace tgx::host
