#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

#include <tgx/host.h>

namespace tgx::tool {

/// Elements without content that say something all the same: cells of a row that holds content, which keep the columns of
/// their table, and elements with a text or a file of their own ("Alt", "ActualText", "E", "AF"). remove-empty-tags takes
/// them away with all other elements that hold nothing; a whole repair puts them back.
class EmptyElements {
 public:
  /// What there is before the step. Throws HostFailure.
  explicit EmptyElements(PDDoc document);

  /// Puts the elements back that are gone, each in its place and without the elements in it that say nothing, as far as the
  /// element around it is in the tree. Throws HostFailure.
  void PutBack() const;

 private:
  class Search;
  struct Parent {
    PDSElement element;
    std::vector<CosObj> kids;  ///< the null object in the place of what is no element
  };
  void PutBackKids(const Parent& parent) const;
  void Prune(PDSElement element) const;

  std::vector<Parent> parents_;             ///< hold content, so they stay
  std::unordered_set<std::uint64_t> kept_;  ///< and the empty elements around them
};

}  // namespace tgx::tool
