#include "host/pdsedit/KidList.h"

#include <algorithm>

namespace tgx::host {

void KidList::MoveGap(ASUns32 index) noexcept {
  const ASUns32 width = capacity_ - size_;
  Kid* const kids = kids_.get();
  if (index < gap_) {
    std::copy_backward(kids + index, kids + gap_, kids + gap_ + width);
  } else if (index > gap_) {
    std::copy(kids + gap_ + width, kids + index + width, kids + gap_);
  }
  gap_ = index;
}

void KidList::Reserve(ASUns32 count) {
  if (count <= capacity_) return;
  auto larger = std::make_unique<Kid[]>(count);
  for (ASUns32 i = 0; i < size_; ++i) larger[i] = (*this)[i];
  kids_ = std::move(larger);
  capacity_ = count;
  gap_ = size_;
}

void KidList::Insert(ASUns32 index, Kid kid) {
  if (size_ == capacity_) Reserve(size_ < 4 ? size_ + 1 : size_ + size_ / 2);
  MoveGap(index);
  kids_[gap_++] = kid;
  ++size_;
}

void KidList::Erase(ASUns32 index) {
  // Taken out on the side of the gap that is nearer, so that both directions of going through the kids are cheap.
  if (index + 1 == gap_) {
    --gap_;
  } else {
    MoveGap(index);
  }
  --size_;
}

void KidList::Clear() noexcept {
  kids_.reset();
  size_ = capacity_ = gap_ = 0;
}

}  // namespace tgx::host
