#include <algorithm>
#include <array>
#include <optional>

#include "host/pdmodel/Document.h"
#include "host/pdsedit/KidKinds.h"
#include "host/pdsedit/StructureReader.h"
#include "host/pdsedit/StructureTree.h"

namespace tgx::host {
namespace {

/// Entries on which the parent tree and the ID tree depend, or which belong to them; the empty one stands for arrays.
constexpr std::array<std::string_view, 20> kStructuralKeys = {"",
                                                              "K",
                                                              "P",
                                                              "S",
                                                              "Pg",
                                                              "ID",
                                                              "Type",
                                                              "MCID",
                                                              "Obj",
                                                              "Stm",
                                                              "StmOwn",
                                                              "Nums",
                                                              "Names",
                                                              "Kids",
                                                              "Limits",
                                                              "IDTree",
                                                              "ParentTree",
                                                              "ParentTreeNextKey",
                                                              "StructParent",
                                                              "StructParents"};

std::optional<ElementText> TextAt(std::string_view key) {
  if (key == "Alt") return ElementText::kAlt;
  if (key == "T") return ElementText::kTitle;
  if (key == "Lang") return ElementText::kLanguage;
  return std::nullopt;
}

bool IsStructural(std::string_view key) {
  return key == "StructTreeRoot" || std::find(kStructuralKeys.begin(), kStructuralKeys.end(), key) != kStructuralKeys.end();
}

}  // namespace

void StructureTree::BeforeCosRead(const QPDFObjectHandle& container, std::string_view key) {
  if (!key.empty() && key != "K" && key != "P") return;
  if (!nodes_) {
    QPDFObjectHandle dictionary = container;
    const bool isEnumerated = key.empty() && dictionary.isDictionary() && dictionary.hasKey("/K");
    clientSawKids_ = clientSawKids_ || key == "K" || isEnumerated;
    return;
  }
  if (const NodeId id = nodes_->Find(container); id != kNoNode) {
    Write(id);
    if (key != "P") WatchArray(id);
    return;
  }
  const auto [first, last] = arrays_.equal_range(container.getObjectPtr());
  for (auto owner = first; owner != last; ++owner) {
    if ((*nodes_)[owner->second].kidsChanged) {
      WriteKids(owner->second);  // may change arrays_
      return;
    }
  }
}

/// From here on an edit of the array that holds the node's kids is noticed.
void StructureTree::WatchArray(NodeId id) {
  QPDFObjectHandle k = (*nodes_)[id].object.getKey("/K");
  if (!k.isArray()) return;
  const auto [first, last] = arrays_.equal_range(k.getObjectPtr());
  if (std::none_of(first, last, [id](const auto& entry) { return entry.second == id; })) {
    arrays_.emplace(k.getObjectPtr(), id);
  }
}

void StructureTree::AfterCosEdit(const QPDFObjectHandle& container, std::string_view key) {
  if (const std::optional<ElementText> text = TextAt(key)) {
    const NodeId id = nodes_ ? nodes_->Find(container) : kNoNode;
    if (id != kNoNode) (*nodes_)[id].NoteTextEdited(*text);
    return;
  }
  if (!IsStructural(key)) return;
  isTouched_ = true;
  if (!nodes_) return;
  if (const NodeId id = nodes_->Find(container); id != kNoNode) {
    EntryEdited(id, key);
  } else if (key.empty()) {
    ArrayEdited(container);
  } else if (key == "StructTreeRoot") {
    RootReplaced();
  } else {
    ReferenceEdited(container);
  }
}

void StructureTree::ArrayEdited(const QPDFObjectHandle& array) {
  std::vector<NodeId> owners;
  const auto [first, last] = arrays_.equal_range(array.getObjectPtr());
  for (auto owner = first; owner != last; ++owner) owners.push_back(owner->second);
  for (const NodeId owner : owners) {
    // The address may have been that of an array which the element has no more.
    if ((*nodes_)[owner].object.getKey("/K").getObjectPtr() == array.getObjectPtr()) KidsEdited(owner);
  }
}

void StructureTree::RootReplaced() {
  QPDFObjectHandle root = document_.Pdf().getRoot().getKey("/StructTreeRoot");
  isChecked_ = false;
  root_ = root.isDictionary() ? Read(root, true) : kNoNode;
}

void StructureTree::EntryEdited(NodeId id, std::string_view key) {
  Node& node = (*nodes_)[id];
  if (key == "K") {
    KidsEdited(id);
  } else if (key == "P") {
    node.parent = kNoNode;
    node.parentUnsure = node.parentChanged = false;
    node.parentUnread = true;
  } else if (key == "S") {
    node.type = ASAtomNull;
  } else if (key == "Pg") {
    node.page = nodes_->PageOf(node.object.getKey("/Pg"));
  }
}

void StructureTree::KidsEdited(NodeId id) {
  Node& node = (*nodes_)[id];
  const auto elements = [&node] {
    std::vector<NodeId> result;
    for (ASUns32 i = 0; i < node.kids.Size(); ++i) {
      if (node.kids[i].IsElement()) result.push_back(node.kids[i].place);
    }
    std::sort(result.begin(), result.end());
    return result;
  };
  const std::vector<NodeId> before = elements();
  node.kidsChanged = false;
  StructureReader reader(*nodes_);
  reader.ReadKidsAgain(id);
  for (const NodeId shared : reader.WithIndirectKids()) WatchArray(shared);
  WatchArray(id);
  if (references_) WatchReferences(id);
  // Without new elements below it the node cannot have become part of a cycle.
  const std::vector<NodeId> after = elements();
  if (!std::includes(before.begin(), before.end(), after.begin(), after.end())) isChecked_ = false;
}

/// A marked-content or object reference was edited, or a dictionary that is about to become one: its holders look again.
void StructureTree::ReferenceEdited(const QPDFObjectHandle& dictionary) {
  if (!references_) {
    references_.emplace();
    for (NodeId id = 0; id < nodes_->Count(); ++id) WatchReferences(id);
  }
  std::vector<NodeId> owners;
  const auto [first, last] = references_->equal_range(dictionary.getObjectPtr());
  for (auto owner = first; owner != last; ++owner) owners.push_back(owner->second);
  for (const NodeId owner : owners) {
    Write(owner);
    KidsEdited(owner);
  }
}

void StructureTree::WatchReferences(NodeId id) {
  const KidList& kids = (*nodes_)[id].kids;
  for (ASUns32 i = 0; i < kids.Size(); ++i) {
    if (kids[i].IsElement() || kids[i].Kind() == KidKind::kNumber) continue;
    const QPDFObject* dictionary = nodes_->ItemOf(kids[i]).getObjectPtr();
    const auto [first, last] = references_->equal_range(dictionary);
    if (std::none_of(first, last, [id](const auto& entry) { return entry.second == id; }))
      references_->emplace(dictionary, id);
  }
}

}  // namespace tgx::host
