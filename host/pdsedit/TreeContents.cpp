#include "host/pdsedit/TreeContents.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "host/pdmodel/Document.h"
#include "host/pdmodel/PageList.h"
#include "host/pdsedit/KidAnswers.h"
#include "host/pdsedit/KidKinds.h"

namespace tgx::host {
namespace {

/// Goes through the tree in document order, each node once. `meet(kid, holder)` is called for each place of an element and
/// each other kid.
template <typename Meet>
std::vector<bool> Walk(StructureTree& tree, Meet meet) {
  struct Place {
    NodeId id;
    ASUns32 nextKid;
  };
  NodeStore& nodes = tree.Nodes();
  std::vector<bool> isMet(nodes.Count());
  std::vector<Place> path = {{tree.Root(), 0}};
  isMet[tree.Root()] = true;
  while (!path.empty()) {
    Place& place = path.back();
    const KidList& kids = nodes[place.id].kids;
    if (place.nextKid == kids.Size()) {
      path.pop_back();
      continue;
    }
    const Kid kid = kids[place.nextKid++];
    meet(kid, place.id);
    if (!kid.IsElement() || isMet[kid.place]) continue;
    isMet[kid.place] = true;
    path.push_back({kid.place, 0});
  }
  return isMet;
}

class Collector {
 public:
  explicit Collector(StructureTree& tree)
      : tree_(tree), nodes_(tree.Nodes()), pageCount_(static_cast<ASUns32>(tree.Owner().Pages().Count())) {}

  TreeContents Collect() {
    result_.isInTree = Walk(tree_, [this](const Kid& kid, NodeId holder) { Meet(kid, holder); });
    SortContents();
    return std::move(result_);
  }

 private:
  void Meet(const Kid& kid, NodeId holder) {
    switch (kid.Kind()) {
      case KidKind::kElement:
        return MeetElement(kid.place);
      case KidKind::kNumber:
      case KidKind::kReference:
        return MeetPageContent(kid, holder);
      case KidKind::kStreamReference:
        return MeetStreamContent(nodes_.ItemOf(kid), holder);
      case KidKind::kObject:
        return MeetObject(nodes_.ItemOf(kid).getKey("/Obj"), holder);
      case KidKind::kOther:
        return;
    }
  }

  void MeetElement(NodeId element) {
    std::string id;
    if (nodes_[element].object.getKey("/ID").getValueAsString(id)) result_.ids.emplace(std::move(id), element);
  }

  void MeetPageContent(const Kid& kid, NodeId holder) {
    PageRef page = kid.page;
    if (page == kNoPage) {
      if (holder != lastHolder_) {
        lastHolder_ = holder;
        lastPage_ = PageOfKid(tree_, holder, kid);
      }
      page = lastPage_;
    }
    if (page >= 0 && kid.mcid >= 0) result_.contents.push_back({static_cast<ASUns32>(page), kid.mcid, holder});
  }

  void MeetStreamContent(QPDFObjectHandle& reference, NodeId holder) {
    QPDFObjectHandle stream = reference.getKey("/Stm");
    const ASInt32 mcid = IntegerOr(reference.getKey("/MCID"), -1);
    if (!stream.isStream() || mcid < 0) return;
    const auto next = static_cast<ASUns32>(result_.streams.size());
    const auto [known, isNew] = streams_.try_emplace(stream.getObjectPtr(), next);
    if (isNew) result_.streams.push_back(stream);
    result_.contents.push_back({pageCount_ + known->second, mcid, holder});
  }

  void MeetObject(const QPDFObjectHandle& object, NodeId holder) {
    if (objects_.insert(object.getObjectPtr()).second) result_.objects.push_back({object, holder});
  }

  void SortContents() {
    auto& contents = result_.contents;
    const auto key = [](const HeldContent& held) { return std::tie(held.place, held.mcid); };
    std::stable_sort(contents.begin(), contents.end(), [&](const auto& a, const auto& b) { return key(a) < key(b); });
    const auto same = [&](const auto& a, const auto& b) { return key(a) == key(b); };
    contents.erase(std::unique(contents.begin(), contents.end(), same), contents.end());
  }

  StructureTree& tree_;
  NodeStore& nodes_;
  ASUns32 pageCount_;
  TreeContents result_;
  std::unordered_map<const QPDFObject*, ASUns32> streams_;
  std::unordered_set<const QPDFObject*> objects_;
  NodeId lastHolder_ = kNoNode;  ///< whose nearest page upward was looked for last
  PageRef lastPage_ = kNoPage;
};

/// The parent that "P" names, without reading elements for it that nobody has come upon yet.
NodeId KnownParentOf(NodeStore& nodes, NodeId id) {
  Node& node = nodes[id];
  if (node.parentUnread) {
    node.parent = nodes.Find(node.object.getKey("/P"));
    node.parentUnread = false;
  }
  return node.parent;
}

}  // namespace

void SettleParents(StructureTree& tree) {
  NodeStore& nodes = tree.Nodes();
  std::vector<NodeId> firstHolder(nodes.Count(), kNoNode);
  std::vector<bool> isHeldByParent(nodes.Count());
  Walk(tree, [&](const Kid& kid, NodeId holder) {
    if (!kid.IsElement()) return;
    if (firstHolder[kid.place] == kNoNode) firstHolder[kid.place] = holder;
    if (KnownParentOf(nodes, kid.place) == holder) isHeldByParent[kid.place] = true;
  });
  for (NodeId id = 0; id < static_cast<NodeId>(firstHolder.size()); ++id) {
    if (firstHolder[id] == kNoNode) continue;
    Node& node = nodes[id];
    if (!node.object.isIndirect()) tree.Owner().Pdf().makeIndirectObject(node.object);
    if (!isHeldByParent[id]) {
      tree.SetParent(id, firstHolder[id]);
    } else if (node.parentUnsure) {
      tree.SetParent(id, node.parent);
    }
  }
}

TreeContents CollectContents(StructureTree& tree) { return Collector(tree).Collect(); }

}  // namespace tgx::host
