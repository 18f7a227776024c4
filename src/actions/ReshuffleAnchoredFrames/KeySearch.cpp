#include "src/actions/ReshuffleAnchoredFrames/KeySearch.h"

namespace tgx {

KeySearch::KeySearch(const std::vector<std::string_view>& keys, std::size_t longestText) : nodes_(1) {
  for (std::size_t index = 0; index < keys.size(); ++index) {
    if (keys[index].size() <= longestText) Add(keys[index], index);
  }
  Link();
}

std::vector<std::size_t> KeySearch::KeysIn(std::string_view text) {
  ++searches_;
  std::vector<std::size_t> found = At(0).keys;
  int node = 0;
  for (const char byte : text) {
    node = Step(node, byte);
    // Where this search has been before, it has been at all shorter ends behind it.
    for (int end = node; end != 0 && At(end).lastSearch != searches_; end = At(end).shorter) {
      At(end).lastSearch = searches_;
      found.insert(found.end(), At(end).keys.begin(), At(end).keys.end());
    }
  }
  return found;
}

void KeySearch::Add(std::string_view key, std::size_t index) {
  int node = 0;
  for (const char byte : key) {
    const auto fresh = static_cast<int>(nodes_.size());
    const auto [next, isNew] = At(node).next.emplace(byte, fresh);
    node = next->second;
    if (isNew) nodes_.emplace_back();
  }
  At(node).keys.push_back(index);
}

void KeySearch::Link() {
  // Shorter prefixes first: a link leads to a node that has its own links.
  std::vector<int> order = {0};
  for (std::size_t done = 0; done < order.size(); ++done) {
    const int parent = order[done];
    for (const auto& [byte, node] : At(parent).next) {
      order.push_back(node);
      if (parent == 0) continue;
      const int suffix = Step(At(parent).suffix, byte);
      At(node).suffix = suffix;
      At(node).shorter = At(suffix).keys.empty() ? At(suffix).shorter : suffix;
    }
  }
}

int KeySearch::Step(int node, char byte) const {
  while (true) {
    const auto next = At(node).next.find(byte);
    if (next != At(node).next.end()) return next->second;
    if (node == 0) return 0;
    node = At(node).suffix;
  }
}

}  // namespace tgx
