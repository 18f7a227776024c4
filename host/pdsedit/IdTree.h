#pragma once

#include "host/pdsedit/StructureTree.h"
#include "host/pdsedit/TreeContents.h"

namespace tgx::host {

/// Makes "IDTree" list the "ID" of every element in the tree, and removes it when there are none. A tree that is true
/// already is not written.
void MakeIdTreeTrue(StructureTree& tree, const TreeContents& contents);

}  // namespace tgx::host
