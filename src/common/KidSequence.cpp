#include "src/common/KidSequence.h"

#include <algorithm>
#include <iterator>

namespace tgx {
namespace {

constexpr std::size_t kLargestBlock = 512;

}  // namespace

bool KidSequence::Block::Holds(std::uint64_t kid) const { return std::find(kids.begin(), kids.end(), kid) != kids.end(); }

std::vector<std::uint64_t> KidSequence::Block::DistinctKids() const {
  std::vector<std::uint64_t> distinct = kids;
  std::sort(distinct.begin(), distinct.end());
  distinct.erase(std::unique(distinct.begin(), distinct.end()), distinct.end());
  return distinct;
}

KidSequence::KidSequence(const std::vector<std::uint64_t>& kids) : size_(kids.size()) {
  // Half full, to leave room for insertions.
  constexpr std::size_t kHalf = kLargestBlock / 2;
  blocksOf_.reserve(kids.size());
  for (std::size_t from = 0; from == 0 || from < kids.size(); from += kHalf) {
    auto& block = blocks_.emplace_back(std::make_unique<Block>());
    const std::size_t to = std::min(from + kHalf, kids.size());
    block->kids.assign(kids.begin() + static_cast<std::ptrdiff_t>(from), kids.begin() + static_cast<std::ptrdiff_t>(to));
    Register(block.get());
  }
  Number(0);
}

int KidSequence::FirstPlaceOf(std::uint64_t kid) const {
  const Block* block = nullptr;
  const auto [begin, end] = blocksOf_.equal_range(kid);
  for (auto holder = begin; holder != end; ++holder) {
    if (block == nullptr || holder->second->order < block->order) block = holder->second;
  }
  if (block == nullptr) return -1;
  std::size_t place = 0;
  for (std::size_t before = 0; before < block->order; ++before) place += blocks_[before]->kids.size();
  return static_cast<int>(place) +
         static_cast<int>(std::find(block->kids.begin(), block->kids.end(), kid) - block->kids.begin());
}

bool KidSequence::HasOnce(std::uint64_t kid) const {
  const auto [begin, end] = blocksOf_.equal_range(kid);
  if (begin == end || std::next(begin) != end) return false;
  const std::vector<std::uint64_t>& kids = begin->second->kids;
  return std::count(kids.begin(), kids.end(), kid) == 1;
}

void KidSequence::Insert(std::size_t place, std::uint64_t kid) {
  const auto [block, index] = PositionOf(place);
  if (!block->Holds(kid)) blocksOf_.emplace(kid, block);
  block->kids.insert(block->kids.begin() + static_cast<std::ptrdiff_t>(index), kid);
  ++size_;
  if (block->kids.size() > kLargestBlock) Split(*block);
}

void KidSequence::Erase(std::size_t place) {
  const auto [block, index] = PositionOf(place);
  const std::uint64_t kid = block->kids[index];
  block->kids.erase(block->kids.begin() + static_cast<std::ptrdiff_t>(index));
  if (!block->Holds(kid)) Unregister(kid, block);
  --size_;
}

void KidSequence::Register(Block* block) {
  for (const std::uint64_t kid : block->DistinctKids()) blocksOf_.emplace(kid, block);
}

void KidSequence::Unregister(std::uint64_t kid, const Block* block) {
  const auto [begin, end] = blocksOf_.equal_range(kid);
  blocksOf_.erase(std::find_if(begin, end, [&](const auto& holder) { return holder.second == block; }));
}

KidSequence::Position KidSequence::PositionOf(std::size_t place) const {
  std::size_t at = 0;
  while (place >= blocks_[at]->kids.size() && at + 1 < blocks_.size()) place -= blocks_[at++]->kids.size();
  return {blocks_[at].get(), place};
}

void KidSequence::Split(const Block& block) {
  const std::size_t order = block.order;
  auto second = std::make_unique<Block>();
  auto& first = *blocks_[order];
  second->kids.assign(first.kids.begin() + static_cast<std::ptrdiff_t>(first.kids.size() / 2), first.kids.end());
  first.kids.resize(first.kids.size() / 2);
  for (const std::uint64_t kid : second->DistinctKids()) {
    if (!first.Holds(kid)) Unregister(kid, &first);
  }
  Register(second.get());
  blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(order) + 1, std::move(second));
  Number(order + 1);
}

void KidSequence::Number(std::size_t from) {
  for (; from < blocks_.size(); ++from) blocks_[from]->order = from;
}

}  // namespace tgx
