#pragma once

#include <string>

#include <tgx/host.h>

#include "host/pdsedit/StructureTree.h"

namespace tgx::host {

/// The type of an element: its "S" without the role map, the empty atom for an element without one.
ASAtom TypeOfElement(StructureTree& tree, NodeId element);
void SetTypeOfElement(StructureTree& tree, NodeId element, ASAtom type);

/// Whether the entry is a string, also an empty one.
bool HasText(StructureTree& tree, NodeId element, ElementText text);
/// The length of the string's stored bytes, which are copied to `buffer` unless that is null; 0 without a string.
ASInt32 CopyText(StructureTree& tree, NodeId element, ElementText text, ASUns8* buffer);
void SetText(StructureTree& tree, NodeId element, ElementText text, const std::string& bytes);
void RemoveText(StructureTree& tree, NodeId element, ElementText text);

}  // namespace tgx::host
