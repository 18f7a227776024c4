#include "host/pdmodel/Document.h"
#include "host/pdsedit/StructureTree.h"

namespace tgx::host {

void StructureTree::WriteQueued() {
  for (const NodeId id : queue_) {
    Write(id);
    (*nodes_)[id].queued = false;
  }
  queue_.clear();
}

void StructureTree::Write(NodeId id) {
  if ((*nodes_)[id].kidsChanged) WriteKids(id);
  if ((*nodes_)[id].parentChanged) WriteParent(id);
}

void StructureTree::WriteKids(NodeId id) {
  Node& node = (*nodes_)[id];
  node.kidsChanged = false;
  std::vector<QPDFObjectHandle> items;
  items.reserve(node.kids.Size());
  for (ASUns32 i = 0; i < node.kids.Size(); ++i) items.push_back(nodes_->ItemOf(node.kids[i]));
  if (node.isRoot) {
    const auto& strays = nodes_->StraysOf(id);
    items.insert(items.end(), strays.begin(), strays.end());
  }
  QPDFObjectHandle k = node.object.getKey("/K");
  if (k.isArray() && arrays_.count(k.getObjectPtr()) <= 1) {
    k.setArrayFromVector(items);
  } else if (node.arrayForm || items.size() > 1) {
    // Also in the place of an array that other elements share, which keeps what they have in it.
    node.object.replaceKey("/K", QPDFObjectHandle::newArray(items));
  } else if (items.size() == 1) {
    node.object.replaceKey("/K", items.front());
  } else {
    node.object.removeKey("/K");
  }
}

void StructureTree::WriteParent(NodeId id) {
  Node& node = (*nodes_)[id];
  node.parentChanged = false;
  if (node.parent == kNoNode) {
    node.object.removeKey("/P");
    return;
  }
  // A dictionary that is part of its parent's "K" must become an object of its own before something can point back at it.
  QPDFObjectHandle parent = (*nodes_)[node.parent].object;
  if (!parent.isIndirect()) document_.Pdf().makeIndirectObject(parent);
  node.object.replaceKey("/P", parent);
}

}  // namespace tgx::host
