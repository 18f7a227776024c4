#pragma once

#include <string>
#include <vector>

#include "host/pdsedit/NodeStore.h"

namespace tgx::host {

/// Reads structure elements from the document into the store: each dictionary once, without recursion, whatever it holds.
class StructureReader {
 public:
  explicit StructureReader(NodeStore& nodes) : nodes_(nodes) {}

  /// The node of a root or an element. One that is not known yet is read with everything below it.
  NodeId Read(const QPDFObjectHandle& object, bool isRoot);

  /// Takes the kids of a known node anew from its "K", and reads those that are not known yet.
  void ReadKidsAgain(NodeId id);

  /// The nodes that were read so far and whose "K" is an array with an object number, which others may share.
  const std::vector<NodeId>& WithIndirectKids() const noexcept { return withIndirectKids_; }

 private:
  void ReadPending();
  void ReadKids(NodeId id, QPDFObjectHandle k);
  void AddKid(NodeId id, QPDFObjectHandle item);
  NodeId Meet(const QPDFObjectHandle& element, NodeId from);

  NodeStore& nodes_;
  std::vector<NodeId> pending_;  ///< known, but not their kids
  std::vector<NodeId> withIndirectKids_;
};

/// How messages call a node: "structure element 57 0".
std::string NameOf(const Node& node);

/// The deepest nesting of elements that is worked on.
constexpr ASUns32 kDeepestLevel = 512;

/// Throws kASDamagedDocument when below `start` an element is its own ancestor, stands deeper than kDeepestLevel, or when
/// elements that stand in several places make a walk out of all proportion to the number of elements and other kids.
void CheckBelow(const NodeStore& nodes, NodeId start);

/// The same for a tree that is to be read again, by a reader that does not know what has left it.
void CheckForSaving(const NodeStore& nodes, NodeId root);

/// The same as CheckBelow for everything that the store knows.
void CheckAll(const NodeStore& nodes);

}  // namespace tgx::host
