#pragma once

#include <string>

#include <tgx/host.h>

#include "host/pdsedit/StructureTree.h"

namespace tgx::host {

/// The type of an element: its "S" without the role map, the empty atom for an element without one.
ASAtom TypeOfElement(StructureTree& tree, NodeId element);
void SetTypeOfElement(StructureTree& tree, NodeId element, ASAtom type);

/// Whether the entry is a string, also an empty one. `key` is qpdf's, with the slash.
bool HasText(StructureTree& tree, NodeId element, const std::string& key);
/// The length of the string's stored bytes, which are copied to `buffer` unless that is null; 0 without a string.
ASInt32 CopyText(StructureTree& tree, NodeId element, const std::string& key, ASUns8* buffer);
void SetText(StructureTree& tree, NodeId element, const std::string& key, const std::string& bytes);
void RemoveText(StructureTree& tree, NodeId element, const std::string& key);

}  // namespace tgx::host
