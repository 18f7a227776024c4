#pragma once

#include "tool/StructureTree.h"

namespace tgx::tool {

/// The tree in the form of `tgx tree --json`, version 1. Keys without a value are left out; keys are added, never changed.
Json TreeAsJson(const StructureTree& tree);

/// Prints the tree for people: a line an element, indented by its level, with the marked content of a page gathered in one
/// line.
void PrintOutline(const StructureTree& tree);

}  // namespace tgx::tool
