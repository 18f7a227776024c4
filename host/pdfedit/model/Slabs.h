#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

#include <tgx/host.h>

namespace tgx::host {

/// What a slab holds; a page content handle is the address of one of these records.
enum class RecordKind : std::uint8_t { kElement, kList, kText, kFont, kColorSpace };

/// The start of every slab: how a bare address finds its way back to its owner.
struct SlabHeader {
  RecordKind kind;
  std::uint32_t used;   ///< records in use, from the first one
  std::uint32_t first;  ///< number of the first record
  void* owner;
};

constexpr std::size_t kSlabSize = 4096;  ///< and its alignment
constexpr std::size_t kRecordSize = 32;
constexpr std::size_t kRecordsInSlab = (kSlabSize - kRecordSize) / kRecordSize;
static_assert(sizeof(SlabHeader) <= kRecordSize);

/// Gives out and takes back slabs. Those given out are known by address, so that a handle can be checked before it is
/// touched.
SlabHeader* NewSlab(RecordKind kind, std::uint32_t first, void* owner);
void FreeSlab(SlabHeader* slab) noexcept;

/// The record behind a handle, with everything needed to trust it; `slab` is null for an address that is no record.
struct FoundRecord {
  SlabHeader* slab = nullptr;
  void* record = nullptr;
  std::uint32_t number = 0;
};
FoundRecord FindRecord(const void* address) noexcept;

/// Records numbered from 0 that never move. A record costs its 32 bytes and nothing beside them.
template <typename Record>
class Slabs {
 public:
  Slabs(RecordKind kind, void* owner) : kind_(kind), owner_(owner) {}
  Slabs(const Slabs&) = delete;
  Slabs& operator=(const Slabs&) = delete;
  ~Slabs() {
    for (SlabHeader* slab : slabs_) FreeSlab(slab);
  }

  std::uint32_t Size() const noexcept { return size_; }

  Record& operator[](std::uint32_t number) noexcept { return *At(number); }
  const Record& operator[](std::uint32_t number) const noexcept { return *At(number); }

  /// Appends a record; its number is the former size.
  Record& Add(const Record& record) {
    static_assert(sizeof(Record) == kRecordSize && std::is_trivially_destructible_v<Record>);
    if (size_ == slabs_.size() * kRecordsInSlab) {
      if (slabs_.size() == slabs_.capacity()) slabs_.reserve(slabs_.size() * 2 + 1);  // a slab is never lost
      slabs_.push_back(NewSlab(kind_, size_, owner_));
    }
    ++slabs_.back()->used;
    return *new (At(size_++)) Record(record);
  }

  PDEObject Handle(std::uint32_t number) const noexcept { return reinterpret_cast<PDEObject>(At(number)); }

 private:
  Record* At(std::uint32_t number) const noexcept {
    char* slab = reinterpret_cast<char*>(slabs_[number / kRecordsInSlab]);
    return std::launder(reinterpret_cast<Record*>(slab + kRecordSize * (1 + number % kRecordsInSlab)));
  }

  RecordKind kind_;
  void* owner_;
  std::uint32_t size_ = 0;
  std::vector<SlabHeader*> slabs_;
};

}  // namespace tgx::host
