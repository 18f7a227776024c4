#include "host/core/HostError.h"
#include "host/pdsedit/IdTree.h"
#include "host/pdsedit/ParentTree.h"
#include "host/pdsedit/StructureReader.h"
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
    // Edits can put elements into so many places, or so deep, that the saved tree could not be walked again.
    CheckForSaving(*nodes_, root_);
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
