#include "host/pdsedit/StructureReader.h"

#include <algorithm>

#include "host/pdsedit/KidKinds.h"

namespace tgx::host {

std::string NameOf(const Node& node) {
  const std::string what = node.isRoot ? "structure tree root" : "structure element";
  QPDFObjectHandle object = node.object;
  return object.isIndirect() ? what + " " + object.getObjGen().unparse(' ') : what;
}

NodeId StructureReader::Read(const QPDFObjectHandle& object, bool isRoot) {
  if (const NodeId known = nodes_.Find(object); known != kNoNode) return known;
  const NodeId id = nodes_.Add(object);
  Node& node = nodes_[id];
  node.isRoot = isRoot;
  node.parentUnread = !isRoot;
  node.page = isRoot ? kNoPage : nodes_.PageOf(node.object.getKey("/Pg"));
  pending_.push_back(id);
  ReadPending();
  return id;
}

void StructureReader::ReadKidsAgain(NodeId id) {
  Node& node = nodes_[id];
  while (node.kids.Size() > 0) nodes_.EraseKid(id, node.kids.Size() - 1);
  if (node.isRoot) nodes_.StraysOf(id).clear();
  node.arrayForm = false;
  ReadKids(id, node.object.getKey("/K"));
  ReadPending();
}

void StructureReader::ReadPending() {
  while (!pending_.empty()) {
    const NodeId id = pending_.back();
    pending_.pop_back();
    QPDFObjectHandle k = nodes_[id].object.getKey("/K");
    if (k.isArray() && k.isIndirect()) nodes_.ReadSharedKids(id, k);
    ReadKids(id, k);
  }
}

void StructureReader::ReadKids(NodeId id, QPDFObjectHandle k) {
  Node& node = nodes_[id];
  if (!k.isArray()) {
    AddKid(id, k);
    return;
  }
  node.arrayForm = true;
  if (k.isIndirect()) withIndirectKids_.push_back(id);
  const int count = k.getArrayNItems();
  constexpr int kMostReserved = 65536;  // an array of nulls may be long and hold no kid
  node.kids.Reserve(static_cast<ASUns32>(std::min(count, kMostReserved)));
  for (int i = 0; i < count; ++i) AddKid(id, k.getArrayItem(i));
}

void StructureReader::AddKid(NodeId id, QPDFObjectHandle item) {
  if (item.isNull()) return;
  Node& node = nodes_[id];
  const KidKind kind = KindOf(item);
  if (kind == KidKind::kElement) {
    const NodeId child = Meet(item, id);
    nodes_.InsertKid(id, node.kids.Size(), {kind, child, -1, kNoPage});
  } else if (node.isRoot) {
    nodes_.StraysOf(id).push_back(std::move(item));
  } else {
    nodes_.InsertKid(id, node.kids.Size(), nodes_.MakeKid(kind, item));
  }
}

/// An element met among the kids of a node. The node becomes its parent when "P" says so, and for lack of a better one.
NodeId StructureReader::Meet(const QPDFObjectHandle& element, NodeId from) {
  NodeId id = nodes_.Find(element);
  const bool isNew = id == kNoNode;
  if (isNew) {
    id = nodes_.Add(element);
    nodes_[id].page = nodes_.PageOf(nodes_[id].object.getKey("/Pg"));
    pending_.push_back(id);
  }
  Node& node = nodes_[id];
  const bool isOpen = isNew || node.parentUnread || node.parent == kNoNode;
  if (!isOpen && !node.parentUnsure) return id;
  const bool isNamed = node.object.getKey("/P").getObjectPtr() == nodes_[from].object.getObjectPtr();
  if (isNamed || isOpen) node.parent = from;
  node.parentUnsure = !isNamed;
  node.parentUnread = false;
  return id;
}

}  // namespace tgx::host
