#include "host/pdfedit/model/Slabs.h"

#include <array>
#include <cstdlib>
#include <unordered_set>

namespace tgx::host {
namespace {

/// Slabs come from the system in larger pieces, which are kept for later documents.
struct Pool {
  std::unordered_set<std::uintptr_t> live;
  std::vector<void*> free;  // has room for all slabs, so that giving one back cannot fail
  std::size_t slabs = 0;
  std::array<std::uintptr_t, 64> seen = {};  // slabs that were found alive, each at the place that its address gives it

  std::uintptr_t& SeenAt(std::uintptr_t base) { return seen[base / kSlabSize % seen.size()]; }
};

Pool& ThePool() {
  static Pool& pool = *new Pool;  // outlives every owner of slabs
  return pool;
}

void Refill(Pool& pool) {
  constexpr std::size_t kSlabsAtOnce = 32;
  pool.free.reserve(pool.slabs + kSlabsAtOnce);
  char* piece = static_cast<char*>(std::aligned_alloc(kSlabSize, kSlabsAtOnce * kSlabSize));
  if (piece == nullptr) throw std::bad_alloc();
  for (std::size_t i = kSlabsAtOnce; i-- > 0;) pool.free.push_back(piece + i * kSlabSize);
  pool.slabs += kSlabsAtOnce;
}

}  // namespace

SlabHeader* NewSlab(RecordKind kind, std::uint32_t first, void* owner) {
  Pool& pool = ThePool();
  if (pool.free.empty()) Refill(pool);
  void* slab = pool.free.back();
  pool.live.insert(reinterpret_cast<std::uintptr_t>(slab));
  pool.free.pop_back();
  return new (slab) SlabHeader{kind, 0, first, owner};
}

void FreeSlab(SlabHeader* slab) noexcept {
  Pool& pool = ThePool();
  pool.live.erase(reinterpret_cast<std::uintptr_t>(slab));
  pool.SeenAt(reinterpret_cast<std::uintptr_t>(slab)) = 0;
  pool.free.push_back(slab);
}

FoundRecord FindRecord(const void* address) noexcept {
  const auto bits = reinterpret_cast<std::uintptr_t>(address);
  const std::uintptr_t base = bits & ~(kSlabSize - 1);
  Pool& pool = ThePool();
  if (std::uintptr_t& seen = pool.SeenAt(base); seen != base || base == 0) {
    if (pool.live.find(base) == pool.live.end()) return {};
    seen = base;
  }
  const std::size_t offset = bits - base;
  if (offset < kRecordSize || offset % kRecordSize != 0) return {};
  char* record = const_cast<char*>(static_cast<const char*>(address));
  auto* slab = reinterpret_cast<SlabHeader*>(record - offset);
  const auto number = static_cast<std::uint32_t>(offset / kRecordSize - 1);
  if (number >= slab->used) return {};
  return {slab, record, slab->first + number};
}

}  // namespace tgx::host
