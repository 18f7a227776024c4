#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "src/api/HostBinding.h"

namespace tgx {

/// The boxes of the marked content of an element, in its order, and the box over those that are left of them. Taking one out
/// costs the logarithm of their number.
class KidBoxes {
 public:
  struct Kid {
    const void* content;
    ASFixedRect box;
  };

  explicit KidBoxes(const std::vector<Kid>& kids);

  std::size_t CountOf(const void* content) const { return places_.count(content); }

  /// Takes out the first box of that content, if there is one.
  void Remove(const void* content);

  /// The first box that is not all zero, grown by those behind it: the top shrinks to the lowest of the tops, as the bottom
  /// does, and content that paints nothing counts with its box at the origin once a box has been met. Readers of the
  /// annotation rely on the area as it is.
  ASFixedRect Box() const;

 private:
  /// What some of the boxes, side by side, come to.
  struct Span {
    bool isEmpty = true;
    ASFixedRect first = {};  ///< that is not all zero
    ASFixedRect own = {};    ///< with no box met before
    ASFixedRect all = {};    ///< what they add to a box that was met before
  };

  static Span Joined(const Span& before, const Span& after);

  std::size_t leaves_ = 1;
  std::vector<Span> spans_;  ///< a tree in an array: the spans below i are 2i and 2i + 1, single boxes stand from leaves_ on
  std::unordered_multimap<const void*, std::size_t> places_;
};

}  // namespace tgx
