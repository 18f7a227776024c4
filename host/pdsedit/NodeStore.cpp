#include "host/pdsedit/NodeStore.h"

#include <algorithm>

#include "host/core/HostError.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/PageList.h"
#include "host/pdsedit/KidKinds.h"
#include "host/pdsedit/StructureReader.h"

namespace tgx::host {

NodeId NodeStore::Find(CosObj handle, const QPDFObjectHandle& object) {
  if (handle.a < nodeOfSlot_.size()) {
    const NodeId known = nodeOfSlot_[handle.a];
    // The object of a slot can be exchanged.
    if (known != kNoNode && nodes_[known].object.getObjectPtr() == object.getObjectPtr()) return known;
  }
  const NodeId id = Find(object);
  if (id != kNoNode) NoteSlot(handle, id);
  return id;
}

NodeId NodeStore::Add(const QPDFObjectHandle& object) {
  const NodeId id = Count();
  nodes_.emplace_back().object = object;
  nodeOf_.Enter(object, id);
  return id;
}

void NodeStore::NoteSlot(CosObj handle, NodeId id) {
  if (handle.a >= nodeOfSlot_.size())
    nodeOfSlot_.resize(std::max<std::size_t>(handle.a + 1, 2 * nodeOfSlot_.size()), kNoNode);
  nodeOfSlot_[handle.a] = id;
}

CosObj NodeStore::HandleOf(NodeId id) {
  Node& node = nodes_[id];
  if (IsNull(node.handle)) NoteSlot(node.handle = document_.HandleOf(node.object), id);
  return node.handle;
}

CosObj NodeStore::Kept(const QPDFObjectHandle& object, CosObj& handle) {
  if (IsNull(handle)) handle = document_.HandleOf(object);
  return handle;
}

CosObj NodeStore::HandleOfItem(const Kid& kid) {
  if (kid.IsElement()) return HandleOf(kid.place);
  return Kept(items_[kid.place].object, items_[kid.place].handle);
}

CosObj NodeStore::HandleOfPage(PageRef page) {
  if (page < 0) return document_.HandleOf(PageObject(page));
  const auto index = static_cast<std::size_t>(page);
  if (index >= pages_.size()) pages_.resize(index + 1);
  Item& known = pages_[index];
  const QPDFObjectHandle& dictionary = document_.Pages().At(page).dictionary;
  // The pages of a document can change.
  if (!known.object.isInitialized() || known.object.getObjectPtr() != dictionary.getObjectPtr()) known = {dictionary};
  return Kept(known.object, known.handle);
}

Kid NodeStore::MakeKid(KidKind kind, QPDFObjectHandle item) {
  ASInt32 mcid = -1;
  PageRef page = kNoPage;
  if (kind == KidKind::kNumber) {
    mcid = IntegerOr(item, -1);
  } else if (kind == KidKind::kReference) {
    mcid = IntegerOr(item.getKey("/MCID"), -1);
    page = PageOf(item.getKey("/Pg"));
  } else if (kind == KidKind::kStreamReference || kind == KidKind::kObject) {
    page = PageOf(item.getKey("/Pg"));
  }
  ASUns32 place = 0;
  if (freeItems_.empty()) {
    place = static_cast<ASUns32>(items_.size());
    items_.push_back({item});
  } else {
    place = freeItems_.back();
    freeItems_.pop_back();
    items_[place] = {item};
  }
  return {kind, place, mcid, page};
}

void NodeStore::DropItem(const Kid& kid) {
  if (kid.IsElement()) return;
  items_[kid.place] = {};
  freeItems_.push_back(kid.place);
}

void NodeStore::InsertKid(NodeId parent, ASUns32 index, Kid kid) {
  Node& node = nodes_[parent];
  node.kids.Insert(index, kid);
  content_.NoteInserted(parent, kid);
  if (node.kids.Size() > 1) node.arrayForm = true;
  if (!kid.IsElement()) return;
  Node& child = nodes_[kid.place];
  child.holder = ++child.holders == 1 ? parent : kNoNode;
}

void NodeStore::EraseKid(NodeId parent, ASUns32 index) {
  KidList& kids = nodes_[parent].kids;
  const Kid kid = kids[index];
  kids.Erase(index);
  content_.NoteErased(parent, kid);
  if (kid.IsElement()) {
    Node& child = nodes_[kid.place];
    --child.holders;
    child.holder = kNoNode;
  } else {
    DropItem(kid);
  }
}

void NodeStore::ReadSharedKids(NodeId id, QPDFObjectHandle& array) {
  if (readArrays_.insert(array.getObjectPtr()).second) return;
  kidsReadAgain_ += static_cast<std::uint64_t>(array.getArrayNItems());
  if (kidsReadAgain_ <= MostWithSharing(Count())) return;
  throw HostError(kASDamagedDocument, NameOf(nodes_[id]) + " shares its kids with so many that they cannot be walked");
}

PageRef NodeStore::PageOf(QPDFObjectHandle dictionary) {
  if (!dictionary.isDictionary()) return kNoPage;
  const ASInt32 index = document_.Pages().IndexOf(dictionary);
  if (index >= 0) return index;
  const auto next = static_cast<PageRef>(-2 - static_cast<PageRef>(strangePages_.size()));
  const auto [known, isNew] = strangePageOf_.try_emplace(dictionary.getObjectPtr(), next);
  if (isNew) strangePages_.push_back(dictionary);
  return known->second;
}

QPDFObjectHandle NodeStore::PageObject(PageRef page) const {
  if (page == kNoPage) return QPDFObjectHandle::newNull();
  if (page < 0) return strangePages_[static_cast<std::size_t>(-2 - page)];
  return document_.Pages().At(page).dictionary;
}

}  // namespace tgx::host
