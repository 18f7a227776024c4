#include "src/common/KidSequence.h"

#include <algorithm>

namespace tgx {
namespace {

constexpr std::size_t kLargestBlock = 512;

}  // namespace

KidSequence::KidSequence(const std::vector<std::uint64_t>& kids) : size_(kids.size()) {
  byKid_.reserve(kids.size());
  for (const std::uint64_t kid : kids) {
    // Half full, to leave room for insertions.
    if (blocks_.empty() || blocks_.back()->entries.size() == kLargestBlock / 2) blocks_.push_back(std::make_unique<Block>());
    Entry* const entry = NewEntry(kid);
    entry->block = blocks_.back().get();
    entry->block->entries.push_back(entry);
  }
  if (blocks_.empty()) blocks_.push_back(std::make_unique<Block>());
  Number(0);
}

int KidSequence::FirstPlaceOf(std::uint64_t kid) const {
  const Block* block = nullptr;
  const auto [begin, end] = byKid_.equal_range(kid);
  for (auto entry = begin; entry != end; ++entry) {
    const Block* const candidate = entry->second->block;
    if (block == nullptr || candidate->order < block->order) block = candidate;
  }
  if (block == nullptr) return -1;
  std::size_t place = 0;
  for (std::size_t before = 0; before < block->order; ++before) place += blocks_[before]->entries.size();
  const auto at = std::find_if(block->entries.begin(), block->entries.end(), [&](auto* entry) { return entry->kid == kid; });
  return static_cast<int>(place) + static_cast<int>(at - block->entries.begin());
}

void KidSequence::Insert(std::size_t place, std::uint64_t kid) {
  const auto [block, index] = PositionOf(place);
  Entry* const entry = NewEntry(kid);
  entry->block = block;
  block->entries.insert(block->entries.begin() + static_cast<std::ptrdiff_t>(index), entry);
  ++size_;
  if (block->entries.size() > kLargestBlock) Split(*block);
}

void KidSequence::Erase(std::size_t place) {
  const auto [block, index] = PositionOf(place);
  const Entry* const entry = block->entries[index];
  const auto [begin, end] = byKid_.equal_range(entry->kid);
  byKid_.erase(std::find_if(begin, end, [&](const auto& known) { return known.second == entry; }));
  block->entries.erase(block->entries.begin() + static_cast<std::ptrdiff_t>(index));
  --size_;
}

KidSequence::Entry* KidSequence::NewEntry(std::uint64_t kid) {
  Entry* const entry = &entries_.emplace_back(Entry{kid, nullptr});
  byKid_.emplace(kid, entry);
  return entry;
}

KidSequence::Position KidSequence::PositionOf(std::size_t place) const {
  std::size_t at = 0;
  while (place >= blocks_[at]->entries.size() && at + 1 < blocks_.size()) place -= blocks_[at++]->entries.size();
  return {blocks_[at].get(), place};
}

void KidSequence::Split(const Block& block) {
  const std::size_t order = block.order;
  auto second = std::make_unique<Block>();
  auto& first = blocks_[order]->entries;
  second->entries.assign(first.begin() + static_cast<std::ptrdiff_t>(first.size() / 2), first.end());
  first.resize(first.size() / 2);
  for (Entry* const entry : second->entries) entry->block = second.get();
  blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(order) + 1, std::move(second));
  Number(order + 1);
}

void KidSequence::Number(std::size_t from) {
  for (; from < blocks_.size(); ++from) blocks_[from]->order = from;
}

}  // namespace tgx
