#include "host/pdsedit/StructureTree.h"

#include "host/core/HostError.h"
#include "host/pdmodel/Document.h"
#include "host/pdsedit/KidKinds.h"
#include "host/pdsedit/StructureReader.h"

namespace tgx::host {

void StructureTree::ReadAndCheck() {
  if (!nodes_) {
    QPDFObjectHandle root = document_.Pdf().getRoot().getKey("/StructTreeRoot");
    try {
      nodes_.emplace(document_);
      if (root.isDictionary()) root_ = Read(root, true);
    } catch (...) {
      nodes_.reset();
      throw;
    }
    for (NodeId id = 0; clientSawKids_ && id < nodes_->Count(); ++id) WatchArray(id);
  }
  CheckAll(*nodes_);
  isChecked_ = true;
}

NodeId StructureTree::Read(const QPDFObjectHandle& object, bool isRoot) {
  StructureReader reader(*nodes_);
  const NodeId id = reader.Read(object, isRoot);
  for (const NodeId node : reader.WithIndirectKids()) WatchArray(node);
  return id;
}

NodeId StructureTree::Root() {
  MakeReady();
  return root_;
}

NodeId StructureTree::MakeRoot() {
  MakeReady();
  if (root_ != kNoNode) return root_;
  QPDF& pdf = document_.Pdf();
  QPDFObjectHandle dictionary = pdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
  dictionary.replaceKey("/Type", QPDFObjectHandle::newName("/StructTreeRoot"));
  pdf.getRoot().replaceKey("/StructTreeRoot", dictionary);
  root_ = Read(dictionary, true);
  MarkChanged();
  return root_;
}

NodeId StructureTree::RootOf(PDSTreeRoot handle) {
  const QPDFObjectHandle& object = ObjectOf(handle);
  MakeReady();
  const NodeId id = nodes_->Find(object);
  if (id == kNoNode || !(*nodes_)[id].isRoot) throw HostError(kASWrongType, "the object is no structure tree root");
  return id;
}

NodeId StructureTree::ElementOrRootOf(PDSElement handle) { return ElementOrRootOf(handle, ObjectOf(handle)); }

NodeId StructureTree::ElementOrRootOf(PDSElement handle, const QPDFObjectHandle& object) {
  MakeReady();
  const NodeId id = nodes_->Find(handle, object);
  return id != kNoNode ? id : ReadElement(object);
}

NodeId StructureTree::ElementOf(PDSElement handle) { return ElementOf(handle, ObjectOf(handle)); }

NodeId StructureTree::ElementOf(PDSElement handle, const QPDFObjectHandle& object) {
  const NodeId id = ElementOrRootOf(handle, object);
  if ((*nodes_)[id].isRoot) throw HostError(kASWrongType, "the structure tree root where a structure element is needed");
  return id;
}

/// An element that does not stand in the tree, which a client found by another way.
NodeId StructureTree::ReadElement(const QPDFObjectHandle& object) {
  QPDFObjectHandle item = object;
  if (KindOf(item) != KidKind::kElement) throw HostError(kASWrongType, "the object is no structure element");
  isChecked_ = false;
  const NodeId id = Read(item, false);
  CheckBelow(*nodes_, id);
  isChecked_ = true;
  return id;
}

NodeId StructureTree::NewElement() {
  MakeReady();
  QPDFObjectHandle dictionary = document_.Pdf().makeIndirectObject(QPDFObjectHandle::newDictionary());
  dictionary.replaceKey("/Type", QPDFObjectHandle::newName("/StructElem"));
  return nodes_->Add(dictionary);
}

CosObj StructureTree::HandleOf(NodeId id) { return id == kNoNode ? kNullObject : nodes_->HandleOf(id); }

NodeId StructureTree::ParentOf(NodeId id) {
  Node& node = (*nodes_)[id];
  if (node.parentUnread) {
    node.parentUnread = false;
    QPDFObjectHandle p = node.object.getKey("/P");
    NodeId parent = nodes_->Find(p);
    if (parent == kNoNode && KindOf(p) == KidKind::kElement) parent = ReadElement(p);
    (*nodes_)[id].parent = parent;
  }
  return (*nodes_)[id].parent;
}

void StructureTree::SetParent(NodeId id, NodeId parent) {
  Node& node = (*nodes_)[id];
  node.parent = parent;
  node.parentUnsure = node.parentUnread = false;
  node.parentChanged = true;
  Queue(id);
}

void StructureTree::InsertKid(NodeId parent, ASUns32 index, Kid kid) {
  nodes_->InsertKid(parent, index, kid);
  if (references_ && !kid.IsElement()) references_->emplace(nodes_->ItemOf(kid).getObjectPtr(), parent);
  MarkKidsChanged(parent);
}

void StructureTree::EraseKid(NodeId parent, ASUns32 index) {
  nodes_->EraseKid(parent, index);
  MarkKidsChanged(parent);
}

void StructureTree::MarkKidsChanged(NodeId id) {
  (*nodes_)[id].kidsChanged = true;
  Queue(id);
}

void StructureTree::MarkChanged() {
  isTouched_ = true;
  document_.MarkChanged();
}

void StructureTree::Queue(NodeId id) {
  MarkChanged();
  Node& node = (*nodes_)[id];
  if (node.queued) return;
  node.queued = true;
  queue_.push_back(id);
}

}  // namespace tgx::host
