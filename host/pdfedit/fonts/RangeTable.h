#pragma once

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <queue>
#include <vector>

namespace tgx::host {

/// A map from 32-bit codes to values that is filled with ranges and then asked often: ranges stay ranges, a lookup is a
/// binary search. Where ranges overlap the one added later holds. A value must mean the same for every part of its range.
template <typename Value>
class RangeTable {
 public:
  void Add(std::uint32_t first, std::uint32_t last, const Value& value) {
    if (first <= last) ranges_.push_back({first, last, value});
  }

  std::size_t Count() const { return ranges_.size(); }
  bool IsEmpty() const { return ranges_.empty(); }

  /// Makes the table ready for lookups, until something is added again.
  void Seal() {
    if (!IsOrdered()) ranges_ = Resolved();
    ranges_.shrink_to_fit();
  }

  /// The value for a code, null if there is none.
  const Value* Find(std::uint32_t code) const {
    auto next = std::upper_bound(ranges_.begin(), ranges_.end(), code,
                                 [](std::uint32_t key, const Range& range) { return key < range.first; });
    if (next == ranges_.begin() || std::prev(next)->last < code) return nullptr;
    return &std::prev(next)->value;
  }

 private:
  struct Range {
    std::uint32_t first;
    std::uint32_t last;
    Value value;
  };

  bool IsOrdered() const {
    auto overlaps = [](const Range& a, const Range& b) { return a.last >= b.first; };
    return std::adjacent_find(ranges_.begin(), ranges_.end(), overlaps) == ranges_.end();
  }

  /// Sweeps over the ranges by first code; among those that are open the one added last is in force.
  std::vector<Range> Resolved() const {
    std::vector<std::size_t> order(ranges_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [this](std::size_t a, std::size_t b) { return ranges_[a].first < ranges_[b].first; });

    std::vector<Range> resolved;
    std::priority_queue<std::size_t> open;
    std::uint64_t code = 0;
    std::size_t next = 0;
    while (next < order.size() || !open.empty()) {
      if (open.empty()) code = std::max<std::uint64_t>(code, ranges_[order[next]].first);
      while (next < order.size() && ranges_[order[next]].first <= code) open.push(order[next++]);
      while (!open.empty() && ranges_[open.top()].last < code) open.pop();
      if (open.empty()) continue;
      const Range& range = ranges_[open.top()];
      std::uint64_t end = range.last;
      if (next < order.size()) end = std::min<std::uint64_t>(end, ranges_[order[next]].first - 1);
      resolved.push_back({static_cast<std::uint32_t>(code), static_cast<std::uint32_t>(end), range.value});
      code = end + 1;
    }
    return resolved;
  }

  std::vector<Range> ranges_;
};

}  // namespace tgx::host
