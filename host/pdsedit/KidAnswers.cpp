#include "host/pdsedit/KidAnswers.h"

#include <string>

#include "host/core/HostError.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/Document.h"
#include "host/pdsedit/KidKinds.h"
#include "host/pdsedit/StructureReader.h"

namespace tgx::host {
namespace {

PageRef NearestPageUpward(StructureTree& tree, NodeId start) {
  NodeStore& nodes = tree.Nodes();
  // A "P" that a client made may lead in a circle.
  constexpr ASUns32 kMostSteps = 4 * kDeepestLevel;
  NodeId id = start;
  for (ASUns32 steps = 0; id != kNoNode && steps < kMostSteps; ++steps) {
    if (nodes[id].page != kNoPage) return nodes[id].page;
    id = tree.ParentOf(id);
  }
  return kNoPage;
}

PageRef PageOfReferredObject(StructureTree& tree, QPDFObjectHandle reference) {
  QPDFObjectHandle object = reference.getKey("/Obj");
  if (!object.isDictionary()) return kNoPage;
  const PageRef page = tree.Nodes().PageOf(object.getKey("/P"));
  return page >= 0 ? page : kNoPage;
}

PageRef FirstPageBelow(StructureTree& tree, NodeId start) {
  NodeStore& nodes = tree.Nodes();
  struct Place {
    NodeId id;
    ASUns32 nextKid;
  };
  std::vector<Place> path = {{start, 0}};
  while (!path.empty()) {
    Place& place = path.back();
    if (place.nextKid == nodes[place.id].kids.Size()) {
      path.pop_back();
      continue;
    }
    const Kid kid = nodes[place.id].kids[place.nextKid++];
    PageRef page = kid.page;
    if (kid.IsElement()) {
      page = nodes[kid.place].page;
      if (page == kNoPage) path.push_back({kid.place, 0});
    } else if (kid.Kind() == KidKind::kObject && page == kNoPage) {
      page = PageOfReferredObject(tree, nodes.ItemOf(kid));
    }
    if (page != kNoPage) return page;
  }
  return kNoPage;
}

PageRef PageOfElement(StructureTree& tree, NodeId parent, NodeId element) {
  if (const PageRef own = tree.Nodes()[element].page; own != kNoPage) return own;
  if (const PageRef below = FirstPageBelow(tree, element); below != kNoPage) return below;
  return NearestPageUpward(tree, parent);
}

}  // namespace

const Kid& KidAt(StructureTree& tree, NodeId parent, ASInt32 index) {
  const Node& node = tree.Nodes()[parent];
  if (index < 0 || static_cast<ASUns32>(index) >= node.kids.Size()) {
    throw HostError(kASOutOfRange, NameOf(node) + " has no kid " + std::to_string(index));
  }
  return node.kids[static_cast<ASUns32>(index)];
}

CosObj ObjectOfKid(StructureTree& tree, const Kid& kid) {
  if (kid.Kind() != KidKind::kObject) return tree.Nodes().HandleOfItem(kid);
  return tree.Owner().HandleOf(tree.Nodes().ItemOf(kid).getKey("/Obj"));
}

PageRef PageOfKid(StructureTree& tree, NodeId parent, const Kid& kid) {
  switch (kid.Kind()) {
    case KidKind::kOther:
      return kNoPage;
    case KidKind::kElement:
      return PageOfElement(tree, parent, kid.place);
    default:
      break;
  }
  if (kid.page != kNoPage) return kid.page;
  const PageRef above = NearestPageUpward(tree, parent);
  if (above != kNoPage || kid.Kind() != KidKind::kObject) return above;
  return PageOfReferredObject(tree, tree.Nodes().ItemOf(kid));
}

PDEContainer ContainerOfKid(StructureTree& tree, const Kid& kid, PageRef page) {
  const bool isPageContent = kid.Kind() == KidKind::kNumber || kid.Kind() == KidKind::kReference;
  if (!isPageContent || kid.mcid < 0 || page < 0) return nullptr;
  return tree.Owner().Contents().ContainerOf(page, kid.mcid);
}

CosObj HandleOfPage(StructureTree& tree, PageRef page) {
  return page == kNoPage ? kNullObject : tree.Nodes().HandleOfPage(page);
}

ASAtom AnswerAboutKid(StructureTree& tree, NodeId parent, ASInt32 index, const KidQuestion& question) {
  const Kid kid = KidAt(tree, parent, index);
  tree.Nodes()[parent].kids.NoteRead(static_cast<ASUns32>(index));
  QPDFObjectHandle& item = tree.Nodes().ItemOf(kid);
  PageRef pageRef = kNoPage;
  CosObj page = kNullObject;
  if (question.page != nullptr || question.mcInfo != nullptr || question.pointer != nullptr) {
    pageRef = PageOfKid(tree, parent, kid);
    page = HandleOfPage(tree, pageRef);
  }
  // First what can fail: outputs are written only when all of them are known.
  void* const container = question.pointer != nullptr ? ContainerOfKid(tree, kid, pageRef) : nullptr;
  if (question.pointer != nullptr) *question.pointer = container;
  if (question.kid != nullptr) *question.kid = ObjectOfKid(tree, kid);
  if (question.mcid != nullptr) *question.mcid = kid.mcid;
  if (question.page != nullptr) *question.page = page;
  if (question.mcInfo != nullptr) {
    *question.mcInfo = {sizeof(PDSMCInfo), 0, kid.mcid, 0, kNullObject, kNullObject, page};
    if (kid.Kind() == KidKind::kStreamReference) {
      question.mcInfo->stream = tree.Owner().HandleOf(item.getKey("/Stm"));
      question.mcInfo->streamOwner = tree.Owner().HandleOf(item.getKey("/StmOwn"));
    }
  }
  return TypeNameOf(kid.Kind(), item);
}

}  // namespace tgx::host
