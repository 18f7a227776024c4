#pragma once

#include "host/pdsedit/StructureTree.h"
#include "host/pdsedit/TreeContents.h"

namespace tgx::host {

/// Makes "ParentTree" and "ParentTreeNextKey" true, and with them the "StructParents" of pages and other content streams and
/// the "StructParent" of annotations and other objects: each MCID and object that the tree holds leads to its element, and
/// nothing else leads anywhere. Numbers that are right stay, and what is true already is not written.
void MakeParentTreeTrue(StructureTree& tree, const TreeContents& contents);

}  // namespace tgx::host
