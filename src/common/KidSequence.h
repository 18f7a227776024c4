#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace tgx {

/// Kids of an element, by their numbers, in their order. Finding one, putting one in and taking one out at any place costs
/// about the root of their count, where a search through all of them costs the count; also where one kid stands in many
/// places.
class KidSequence {
 public:
  explicit KidSequence(const std::vector<std::uint64_t>& kids);

  std::size_t Size() const { return size_; }
  /// Whether the kid stands in one place.
  bool HasOnce(std::uint64_t kid) const;
  /// -1 for what is none of the kids.
  int FirstPlaceOf(std::uint64_t kid) const;
  /// `place` is at most the size.
  void Insert(std::size_t place, std::uint64_t kid);
  void Erase(std::size_t place);

 private:
  /// Some of the kids, side by side.
  struct Block {
    std::vector<std::uint64_t> kids;
    std::size_t order = 0;  ///< among the blocks
    bool Holds(std::uint64_t kid) const;
    /// Each once.
    std::vector<std::uint64_t> DistinctKids() const;
  };
  struct Position {
    Block* block;
    std::size_t index;
  };

  Position PositionOf(std::size_t place) const;
  void Register(Block* block);
  void Unregister(std::uint64_t kid, const Block* block);
  void Split(const Block& block);
  void Number(std::size_t from);

  std::unordered_multimap<std::uint64_t, Block*> blocksOf_;  ///< of each kid those that hold it, each once
  std::vector<std::unique_ptr<Block>> blocks_;               ///< at least one
  std::size_t size_ = 0;
};

}  // namespace tgx
