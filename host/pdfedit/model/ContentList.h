#pragma once

#include <cstdint>

#include "host/pdfedit/model/Slabs.h"

namespace tgx::host {

/// The elements at one level of marked content. Short lists stand in the record itself. Long ones have a gap in their array
/// where the last edit was: edits that follow one another through the list move each item once, not all items each time.
struct ContentList {
  static constexpr std::uint32_t kFew = 4;
  static constexpr std::uint32_t kAdded = 0x80000000U;  ///< marks an item that is a created text, not an element

  struct Many {
    std::uint32_t* items;
    std::uint32_t gap;  ///< index of the first item behind the gap, which is as long as there is room
  };

  std::uint32_t owner;  ///< the container, kNone for the page
  std::uint32_t size;
  std::uint32_t capacity;
  bool isTouched;  ///< texts were added or taken out since the last commit
  union {
    std::uint32_t few[kFew];
    Many many;
  };

  /// An empty list with room for so many items. The array is the list's own until Free; a copy of the record shares it.
  static ContentList WithRoomFor(std::uint32_t items, std::uint32_t owner);
  void Free() noexcept;

  /// The item at an index below `size`.
  std::uint32_t Item(std::uint32_t index) const noexcept {
    if (capacity <= kFew) return few[index];
    return many.items[index < many.gap ? index : index + (capacity - size)];
  }
  /// Puts an item in front of the one at an index up to `size`. Throws std::bad_alloc, with the list as it was.
  void Insert(std::uint32_t index, std::uint32_t item);
  void Remove(std::uint32_t index) noexcept;

 private:
  void MoveGap(std::uint32_t index) noexcept;
  void Grow();
};
static_assert(sizeof(ContentList) == kRecordSize);

}  // namespace tgx::host
