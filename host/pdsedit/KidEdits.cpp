#include "host/pdsedit/KidEdits.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/core/HostError.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/Document.h"
#include "host/pdsedit/KidAnswers.h"
#include "host/pdsedit/KidKinds.h"
#include "host/pdsedit/StructureReader.h"

namespace tgx::host {
namespace {

constexpr ASUns32 kNoIndex = 0xFFFFFFFF;

ASUns32 IndexAfter(const Node& parent, ASInt32 insertAfter) {
  if (insertAfter < kPDSBeforeFirst) {
    throw HostError(kASOutOfRange, NameOf(parent) + ": no kid can stand after kid " + std::to_string(insertAfter));
  }
  return static_cast<ASUns32>(std::min<std::int64_t>(std::int64_t{insertAfter} + 1, parent.kids.Size()));
}

template <typename Wanted>
ASUns32 FirstKid(const KidList& kids, Wanted wanted) {
  for (ASUns32 i = 0; i < kids.Size(); ++i) {
    if (wanted(kids[i])) return i;
  }
  return kNoIndex;
}

/// From a place to both sides, for what stands in one place only.
template <typename Wanted>
ASUns32 NearestKid(const KidList& kids, ASUns32 start, Wanted wanted) {
  ASUns32 behind = std::min(start, kids.Size());
  ASUns32 before = behind;
  while (before > 0 || behind < kids.Size()) {
    if (behind < kids.Size() && wanted(kids[behind])) return behind;
    if (before > 0 && wanted(kids[--before])) return before;
    if (behind < kids.Size()) ++behind;
  }
  return kNoIndex;
}

/// Where an element first stands among the kids of a node.
ASUns32 IndexOfElement(StructureTree& tree, NodeId parent, NodeId element) {
  const NodeStore& nodes = tree.Nodes();
  const KidList& kids = nodes[parent].kids;
  const auto isIt = [element](const Kid& kid) { return kid.IsElement() && kid.place == element; };
  if (nodes[element].holders == 0) return kNoIndex;
  if (nodes[element].holders > 1) return FirstKid(kids, isIt);
  if (kids.LastRead() < kids.Size() && isIt(kids[kids.LastRead()])) return kids.LastRead();
  if (kids.Size() > 0 && isIt(kids[kids.Size() - 1])) return kids.Size() - 1;
  return NearestKid(kids, kids.LastEdit(), isIt);
}

bool StandsBelow(const NodeStore& nodes, NodeId top, NodeId wanted) {
  std::vector<bool> isMet(nodes.Count());
  std::vector<NodeId> pending = {top};
  while (!pending.empty()) {
    const KidList& kids = nodes[pending.back()].kids;
    pending.pop_back();
    for (ASUns32 i = 0; i < kids.Size(); ++i) {
      if (!kids[i].IsElement() || isMet[kids[i].place]) continue;
      if (kids[i].place == wanted) return true;
      isMet[kids[i].place] = true;
      pending.push_back(kids[i].place);
    }
  }
  return false;
}

bool IsAncestorOrSelf(const NodeStore& nodes, NodeId ancestor, NodeId id) {
  if (ancestor == id) return true;
  const auto isElement = [](const Kid& kid) { return kid.IsElement(); };
  if (FirstKid(nodes[ancestor].kids, isElement) == kNoIndex) return false;
  // Upwards as long as each node stands in one known place; an element that stands in several makes the way down necessary.
  for (NodeId at = id; at != ancestor; at = nodes[at].holder) {
    if (nodes[at].holders == 0) return false;
    if (nodes[at].holder == kNoNode) return StandsBelow(nodes, ancestor, id);
  }
  return true;
}

void RefuseCycle(const NodeStore& nodes, NodeId parent, NodeId element) {
  if (!IsAncestorOrSelf(nodes, element, parent)) return;
  throw HostError(kASBadParameter,
                  NameOf(nodes[element]) + " cannot become a kid of " + NameOf(nodes[parent]) + ", which stands below it");
}

/// Elements from here upwards. The way ends below an element that stands in several places: the next reading tells then.
std::size_t LevelsAbove(const NodeStore& nodes, NodeId id) {
  std::size_t levels = 0;
  for (NodeId at = id; at != kNoNode && !nodes[at].isRoot; at = nodes[at].holder) ++levels;
  return levels;
}

/// Elements from here downwards, on the longest way; counts no further than `most`.
std::size_t LevelsBelow(const NodeStore& nodes, NodeId id, std::size_t most) {
  std::vector<NodeId> level = {id};
  std::size_t levels = 0;
  for (; !level.empty() && levels < most; ++levels) {
    std::vector<NodeId> below;
    for (const NodeId node : level) {
      const KidList& kids = nodes[node].kids;
      for (ASUns32 i = 0; i < kids.Size(); ++i) {
        if (kids[i].IsElement()) below.push_back(kids[i].place);
      }
    }
    std::sort(below.begin(), below.end());
    below.erase(std::unique(below.begin(), below.end()), below.end());
    level = std::move(below);
  }
  return levels;
}

void RefuseDepth(const NodeStore& nodes, NodeId parent, NodeId element) {
  const std::size_t above = LevelsAbove(nodes, parent);
  if (above + LevelsBelow(nodes, element, kDeepestLevel + 1) <= kDeepestLevel) return;
  throw HostError(kASBadParameter, NameOf(nodes[element]) + " cannot become a kid of " + NameOf(nodes[parent]) +
                                       ": elements would lie on a path of more than " + std::to_string(kDeepestLevel) +
                                       " levels");
}

[[noreturn]] void FailNotFound(const Node& parent, const std::string& what) {
  throw HostError(kASNotFound, NameOf(parent) + ": " + what + " is not among its kids");
}

/// The page that a handle names; kNoPage for the null object.
PageRef PageOfHandle(StructureTree& tree, CosObj page) {
  if (IsNull(page)) return kNoPage;
  const QPDFObjectHandle& object = ObjectOf(page);
  const PageRef found = page.b == tree.Owner().Serial() ? tree.Nodes().PageOf(object) : kNoPage;
  if (found == kNoPage) throw HostError(kASNotFound, "the object given for a page is no page of the document");
  return found;
}

PageRef RealPageOfHandle(StructureTree& tree, CosObj page) {
  ObjectOf(page);  // not the null object
  const PageRef found = PageOfHandle(tree, page);
  if (found < 0) throw HostError(kASNotFound, "the object given for a page is no page of the document");
  return found;
}

bool IsContentOfPage(StructureTree& tree, NodeId parent, const Kid& kid, PageRef page, ASInt32 mcid) {
  if (kid.Kind() != KidKind::kNumber && kid.Kind() != KidKind::kReference) return false;
  return kid.mcid == mcid && PageOfKid(tree, parent, kid) == page;
}

bool HoldsContent(StructureTree& tree, NodeId element, PageRef page, ASInt32 mcid) {
  const KidList& kids = tree.Nodes()[element].kids;
  ContentIndex& content = tree.Nodes().Content();
  if (!content.IsReadyFor(element, kids)) {
    const auto isIt = [&](const Kid& kid) { return IsContentOfPage(tree, element, kid, page, mcid); };
    return FirstKid(kids, isIt) != kNoIndex;
  }
  if (content.Holds(page, mcid)) return true;
  const Kid withoutPage(KidKind::kNumber, 0, mcid, kNoPage);
  return content.Holds(kNoPage, mcid) && PageOfKid(tree, element, withoutPage) == page;
}

}  // namespace

void InsertElement(StructureTree& tree, NodeId parent, NodeId element, ASInt32 insertAfter) {
  NodeStore& nodes = tree.Nodes();
  const ASUns32 index = IndexAfter(nodes[parent], insertAfter);
  RefuseCycle(nodes, parent, element);
  RefuseDepth(nodes, parent, element);
  tree.InsertKid(parent, index, {KidKind::kElement, element, -1, kNoPage});
  tree.SetParent(element, parent);
}

void InsertMarkedContent(StructureTree& tree, NodeId element, CosObj page, PDEContainer container, ASInt32 insertAfter) {
  if (container == nullptr) throw HostError(kASBadParameter, "no container whose content could become a kid");
  const ASInt32 mcid = tree.Owner().Contents().McidOf(container);
  if (mcid < 0) throw HostError(kASBadParameter, "the container has no MCID");
  const PageRef pageRef = RealPageOfHandle(tree, page);
  Node& node = tree.Nodes()[element];
  const ASUns32 index = IndexAfter(node, insertAfter);
  if (HoldsContent(tree, element, pageRef, mcid)) return;

  const QPDFObjectHandle& pageObject = ObjectOf(page);
  if (node.page == kNoPage && node.kids.Size() == 0) {
    node.object.replaceKey("/Pg", pageObject);
    node.page = pageRef;
  }
  QPDFObjectHandle item = QPDFObjectHandle::newInteger(mcid);
  KidKind kind = KidKind::kNumber;
  if (node.page != pageRef) {
    kind = KidKind::kReference;
    QPDFObjectHandle reference = QPDFObjectHandle::newDictionary();
    reference.replaceKey("/Type", QPDFObjectHandle::newName("/MCR"));
    reference.replaceKey("/Pg", pageObject);
    reference.replaceKey("/MCID", item);
    item = reference;
  }
  tree.InsertKid(element, index, tree.Nodes().MakeKid(kind, item));
}

void InsertObject(StructureTree& tree, NodeId element, CosObj page, CosObj object, ASInt32 insertAfter) {
  QPDFObjectHandle& target = ObjectOf(object);
  if (object.b != tree.Owner().Serial()) throw HostError(kASBadParameter, "the object belongs to another document");
  if (!target.isDictionary() && !target.isStream()) {
    throw HostError(kASWrongType, "only a dictionary or a stream can be referred to from a structure element");
  }
  const ASUns32 index = IndexAfter(tree.Nodes()[element], insertAfter);
  QPDFObjectHandle reference = QPDFObjectHandle::newDictionary();
  reference.replaceKey("/Type", QPDFObjectHandle::newName("/OBJR"));
  if (!IsNull(page)) {
    RealPageOfHandle(tree, page);
    reference.replaceKey("/Pg", ObjectOf(page));
  }
  if (!target.isIndirect()) tree.Owner().Pdf().makeIndirectObject(target);
  reference.replaceKey("/Obj", target);
  tree.InsertKid(element, index, tree.Nodes().MakeKid(KidKind::kObject, reference));
}

void RemoveKid(StructureTree& tree, NodeId parent, CosObj kid) {
  NodeStore& nodes = tree.Nodes();
  const QPDFObjectHandle& object = ObjectOf(kid);
  const NodeId element = nodes.Find(object);
  ASUns32 index = element == kNoNode ? kNoIndex : IndexOfElement(tree, parent, element);
  if (index != kNoIndex) {
    tree.EraseKid(parent, index);
    tree.SetParent(element, kNoNode);
    return;
  }
  index = FirstKid(nodes[parent].kids, [&](const Kid& other) {
    if (other.IsElement()) return false;
    QPDFObjectHandle& item = nodes.ItemOf(other);
    const QPDFObject* seen = other.Kind() == KidKind::kObject ? item.getKey("/Obj").getObjectPtr() : item.getObjectPtr();
    return seen == object.getObjectPtr();
  });
  if (index == kNoIndex) FailNotFound(nodes[parent], "the object");
  tree.EraseKid(parent, index);
}

void RemoveMarkedContent(StructureTree& tree, NodeId element, CosObj page, PDEContainer container) {
  const KidList& kids = tree.Nodes()[element].kids;
  const PageRef pageRef = PageOfHandle(tree, page);
  ASUns32 index = kNoIndex;
  if (container != nullptr) {
    const ASInt32 mcid = tree.Owner().Contents().McidOf(container);
    if (mcid < 0) return;
    index = FirstKid(kids, [&](const Kid& kid) { return IsContentOfPage(tree, element, kid, pageRef, mcid); });
    if (index == kNoIndex) return;
  } else {
    index = FirstKid(kids, [&](const Kid& kid) {
      return kid.IsMarkedContent() && PageOfKid(tree, element, kid) == pageRef &&
             ContainerOfKid(tree, kid, pageRef) == nullptr;
    });
    if (index == kNoIndex) FailNotFound(tree.Nodes()[element], "marked content without a container on that page");
  }
  tree.EraseKid(element, index);
}

void RemoveObject(StructureTree& tree, NodeId element, CosObj object) {
  NodeStore& nodes = tree.Nodes();
  if (!IsNull(object)) ObjectOf(object);
  const ASUns32 index = FirstKid(nodes[element].kids, [&](const Kid& kid) {
    return kid.Kind() == KidKind::kObject && Same(ObjectOfKid(tree, kid), object);
  });
  if (index == kNoIndex) FailNotFound(nodes[element], "a reference to the object");
  tree.EraseKid(element, index);
}

void ReplaceElement(StructureTree& tree, NodeId parent, NodeId oldElement, NodeId newElement) {
  NodeStore& nodes = tree.Nodes();
  const ASUns32 index = IndexOfElement(tree, parent, oldElement);
  if (index == kNoIndex) FailNotFound(nodes[parent], NameOf(nodes[oldElement]));
  RefuseCycle(nodes, parent, newElement);
  RefuseDepth(nodes, parent, newElement);
  tree.EraseKid(parent, index);
  tree.SetParent(oldElement, kNoNode);
  tree.InsertKid(parent, index, {KidKind::kElement, newElement, -1, kNoPage});
  tree.SetParent(newElement, parent);
}

}  // namespace tgx::host
