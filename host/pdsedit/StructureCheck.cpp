#include <algorithm>
#include <cstdint>

#include "host/core/HostError.h"
#include "host/pdsedit/StructureReader.h"

namespace tgx::host {
namespace {

/// Goes through the graph of nodes depth first, each node once, and computes what a walk without memory would meet.
class StructureCheck {
 public:
  explicit StructureCheck(const NodeStore& nodes) : nodes_(nodes), marks_(nodes.Count()) {}

  void Start(NodeId id) {
    if (marks_[id].height == 0) Enter(id);
    while (!path_.empty()) Step();
  }

  /// Whether a reader that knows only what was met would refuse what lies below.
  void RequireReadable(NodeId id) const {
    if (marks_[id].visits > MostWithSharing(met_)) FailSharing(id);
  }

 private:
  struct Mark {
    ASUns32 height = 0;  ///< levels from here down; 0 as long as it is not known
    bool onPath = false;
    std::uint64_t visits = 0;  ///< nodes and other kids that a walk from here meets, with repetitions
  };
  struct Frame {
    NodeId id;
    ASUns32 nextKid;
  };

  void Enter(NodeId id) {
    marks_[id].onPath = true;
    marks_[id].visits = 1;
    ++met_;
    path_.push_back({id, 0});
    if (path_.size() > kDeepestLevel + (nodes_[path_.front().id].isRoot ? 1 : 0)) FailTooDeep(id);
  }

  void Step() {
    Frame& frame = path_.back();
    const KidList& kids = nodes_[frame.id].kids;
    while (frame.nextKid < kids.Size()) {
      const Kid& kid = kids[frame.nextKid];
      if (kid.IsElement()) {
        Mark& mark = marks_[kid.place];
        if (mark.onPath) {
          throw HostError(kASDamagedDocument, NameOf(nodes_[kid.place]) + " is its own ancestor");
        }
        if (mark.height == 0) return Enter(kid.place);
        Add(frame.id, mark);
      } else {
        ++marks_[frame.id].visits;
        ++met_;
      }
      ++frame.nextKid;
    }
    Leave(frame.id);
  }

  void Add(NodeId parent, const Mark& kid) {
    Mark& mark = marks_[parent];
    mark.height = std::max(mark.height, kid.height);
    mark.visits += kid.visits;
    if (mark.visits > MostWithSharing(std::uint64_t{nodes_.Count()} + nodes_.ItemCount())) FailSharing(parent);
  }

  [[noreturn]] void FailSharing(NodeId id) const {
    throw HostError(kASDamagedDocument, NameOf(nodes_[id]) + " holds elements in so many places that it cannot be walked");
  }

  void Leave(NodeId id) {
    Mark& mark = marks_[id];
    mark.onPath = false;
    ++mark.height;
    path_.pop_back();
    if (mark.height > kDeepestLevel + (nodes_[id].isRoot ? 1 : 0)) FailTooDeep(id);
  }

  [[noreturn]] void FailTooDeep(NodeId id) {
    throw HostError(kASDamagedDocument,
                    NameOf(nodes_[id]) + " lies on a path of more than " + std::to_string(kDeepestLevel) + " levels");
  }

  const NodeStore& nodes_;
  std::vector<Mark> marks_;
  std::vector<Frame> path_;
  std::uint64_t met_ = 0;  ///< nodes and other kids, each once
};

}  // namespace

void CheckBelow(const NodeStore& nodes, NodeId start) { StructureCheck(nodes).Start(start); }

void CheckForSaving(const NodeStore& nodes, NodeId root) {
  StructureCheck check(nodes);
  check.Start(root);
  check.RequireReadable(root);
}

void CheckAll(const NodeStore& nodes) {
  StructureCheck check(nodes);
  for (NodeId id = 0; id < nodes.Count(); ++id) check.Start(id);
}

}  // namespace tgx::host
