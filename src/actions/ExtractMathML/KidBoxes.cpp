#include "src/actions/ExtractMathML/KidBoxes.h"

#include <algorithm>

namespace tgx {
namespace {

bool IsZero(const ASFixedRect& rect) { return rect.left == 0 && rect.top == 0 && rect.right == 0 && rect.bottom == 0; }

ASFixedRect Merged(ASFixedRect box, const ASFixedRect& other) {
  box.left = std::min(box.left, other.left);
  box.right = std::max(box.right, other.right);
  box.top = std::min(box.top, other.top);
  box.bottom = std::min(box.bottom, other.bottom);
  return box;
}

/// Whether a box can become all zero again by others merged into it, which makes the next one the first.
bool CanBecomeZero(const ASFixedRect& box) { return !IsZero(box) && box.left >= 0 && box.right <= 0; }

}  // namespace

KidBoxes::KidBoxes(const std::vector<Kid>& kids) {
  while (leaves_ < kids.size()) leaves_ *= 2;
  spans_.resize(leaves_ * 2);
  places_.reserve(kids.size());
  for (std::size_t i = 0; i < kids.size(); ++i) {
    spans_[leaves_ + i] = {false, kids[i].box, kids[i].box, kids[i].box};
    places_.emplace(kids[i].content, leaves_ + i);
  }
  for (std::size_t i = leaves_ - 1; i > 0; --i) spans_[i] = Joined(spans_[2 * i], spans_[2 * i + 1]);
}

void KidBoxes::Remove(const void* content) {
  const auto [begin, end] = places_.equal_range(content);
  if (begin == end) return;
  const auto first = std::min_element(begin, end, [](const auto& a, const auto& b) { return a.second < b.second; });
  std::size_t place = first->second;
  places_.erase(first);
  spans_[place] = {};
  while ((place /= 2) > 0) spans_[place] = Joined(spans_[2 * place], spans_[2 * place + 1]);
}

ASFixedRect KidBoxes::Box() const {
  if (!CanBecomeZero(spans_[1].first)) return spans_[1].own;
  ASFixedRect box = {};
  for (std::size_t i = leaves_; i < spans_.size(); ++i) {
    if (!spans_[i].isEmpty) box = IsZero(box) ? spans_[i].own : Merged(box, spans_[i].own);
  }
  return box;
}

KidBoxes::Span KidBoxes::Joined(const Span& before, const Span& after) {
  if (before.isEmpty) return after;
  if (after.isEmpty) return before;
  return {false, IsZero(before.first) ? after.first : before.first,
          IsZero(before.own) ? after.own : Merged(before.own, after.all), Merged(before.all, after.all)};
}

}  // namespace tgx
