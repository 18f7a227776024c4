#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <unordered_map>
#include <vector>

namespace tgx {

/// Kids of an element, by their numbers, in their order. Finding one, putting one in and taking one out at any place costs
/// about the root of their count, where a search through all of them costs the count.
class KidSequence {
 public:
  explicit KidSequence(const std::vector<std::uint64_t>& kids);

  std::size_t Size() const { return size_; }
  /// -1 for what is none of the kids.
  int FirstPlaceOf(std::uint64_t kid) const;
  /// `place` is at most the size.
  void Insert(std::size_t place, std::uint64_t kid);
  void Erase(std::size_t place);

 private:
  struct Block;
  struct Entry {
    std::uint64_t kid;
    Block* block;
  };
  /// Some of the kids, side by side.
  struct Block {
    std::vector<Entry*> entries;
    std::size_t order = 0;  ///< among the blocks
  };
  struct Position {
    Block* block;
    std::size_t index;
  };

  Entry* NewEntry(std::uint64_t kid);
  Position PositionOf(std::size_t place) const;
  void Split(const Block& block);
  void Number(std::size_t from);

  std::deque<Entry> entries_;  ///< those of erased kids too
  std::unordered_multimap<std::uint64_t, Entry*> byKid_;
  std::vector<std::unique_ptr<Block>> blocks_;  ///< at least one
  std::size_t size_ = 0;
};

}  // namespace tgx
