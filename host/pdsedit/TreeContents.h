#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/pdsedit/StructureTree.h"

namespace tgx::host {

/// Marked content that an element holds: `place` is the index of a page, or behind the pages that of a stream.
struct HeldContent {
  ASUns32 place;
  ASInt32 mcid;
  NodeId holder;
};

/// An annotation or another object that an element refers to.
struct HeldObject {
  QPDFObjectHandle object;
  NodeId holder;
};

/// What a walk through the tree meets, for the tables that lead back from content to elements. Where several elements hold
/// the same thing the first of the walk has it.
struct TreeContents {
  std::vector<bool> isInTree;             ///< by NodeId
  std::vector<HeldContent> contents;      ///< by place, then MCID; each pair once
  std::vector<QPDFObjectHandle> streams;  ///< content streams other than those of pages
  std::vector<HeldObject> objects;        ///< in the order of the walk; each once
  std::map<std::string, NodeId> ids;      ///< "ID" of the elements that have one
};

/// Gives every element in the tree a parent that holds it, the first of the walk where its own does not, and makes elements
/// that stand directly in a "K" objects of their own, so that other tables can refer to them.
void SettleParents(StructureTree& tree);

TreeContents CollectContents(StructureTree& tree);

}  // namespace tgx::host
