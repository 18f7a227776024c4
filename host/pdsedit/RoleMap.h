#pragma once

#include <tgx/host.h>

#include "host/pdsedit/StructureTree.h"

namespace tgx::host {

/// The handle of the tree's role map, which is its dictionary; the null object when there is none.
CosObj RoleMapOf(StructureTree& tree, NodeId root);
/// The same, made when there is none.
CosObj MakeRoleMap(StructureTree& tree, NodeId root);

/// One step through a role map: what stands there for the source, ASAtomNull when nothing does. These throw kASWrongType for
/// a handle of another object than a dictionary.
ASAtom MappedRole(PDSRoleMap map, ASAtom source);
void MapRole(PDSRoleMap map, ASAtom source, ASAtom target);
void UnmapRole(PDSRoleMap map, ASAtom source);

}  // namespace tgx::host
