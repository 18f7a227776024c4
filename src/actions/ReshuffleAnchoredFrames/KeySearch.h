#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

namespace tgx {

/// Tells which of many keys stand somewhere in a text, in one pass over the text however many keys there are (the automaton
/// of Aho and Corasick).
class KeySearch {
 public:
  /// No text that is looked into may be longer than `longestText`; longer keys then take no room.
  KeySearch(const std::vector<std::string_view>& keys, std::size_t longestText);

  /// What the keys take.
  std::size_t NodeCount() const { return nodes_.size(); }

  /// The indices of the keys that stand in the text, in no order. The empty key stands in every text.
  std::vector<std::size_t> KeysIn(std::string_view text);

 private:
  struct Node {
    std::map<char, int> next;
    std::vector<std::size_t> keys;  // that end here
    int suffix = 0;                 // the node of the longest proper suffix that a key begins with
    int shorter = 0;                // the nearest node along `suffix` where a key ends, the root if there is none
    std::uint64_t lastSearch = 0;   // that has come to this end of keys
  };

  void Add(std::string_view key, std::size_t index);
  void Link();
  int Step(int node, char byte) const;
  Node& At(int node) { return nodes_[static_cast<std::size_t>(node)]; }
  const Node& At(int node) const { return nodes_[static_cast<std::size_t>(node)]; }

  std::vector<Node> nodes_;  // the root is the first
  std::uint64_t searches_ = 0;
};

}  // namespace tgx
