#include "host/pdfedit/model/ContentList.h"

#include <algorithm>

namespace tgx::host {

ContentList ContentList::WithRoomFor(std::uint32_t items, std::uint32_t owner) {
  ContentList list{};
  list.owner = owner;
  list.capacity = std::max(items, kFew);
  if (items > kFew) list.many = {new std::uint32_t[items], 0};
  return list;
}

void ContentList::Free() noexcept {
  if (capacity > kFew) delete[] many.items;
}

void ContentList::MoveGap(std::uint32_t index) noexcept {
  const std::uint32_t room = capacity - size;
  std::uint32_t* items = many.items;
  if (room == 0) {
    // A gap of no length is anywhere.
  } else if (index < many.gap) {
    std::copy_backward(items + index, items + many.gap, items + many.gap + room);
  } else {
    std::copy(items + many.gap + room, items + index + room, items + many.gap);
  }
  many.gap = index;
}

void ContentList::Grow() {
  const std::uint32_t roomier = capacity * 2;
  auto* items = new std::uint32_t[roomier];
  for (std::uint32_t i = 0; i < size; ++i) items[i] = Item(i);
  Free();
  many = {items, size};
  capacity = roomier;
}

void ContentList::Insert(std::uint32_t index, std::uint32_t item) {
  if (size == capacity) Grow();
  if (capacity <= kFew) {
    std::copy_backward(few + index, few + size, few + size + 1);
    few[index] = item;
  } else {
    MoveGap(index);
    many.items[many.gap++] = item;
  }
  ++size;
}

void ContentList::Remove(std::uint32_t index) noexcept {
  if (capacity <= kFew) {
    std::copy(few + index + 1, few + size, few + index);
  } else {
    MoveGap(index);
  }
  --size;
}

}  // namespace tgx::host
