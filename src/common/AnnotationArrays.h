#pragma once

#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "src/api/HostBinding.h"

namespace tgx {

/// Goes over the annotations of pages of which several can have one array. What is done to annotations depends on them alone
/// in the fixes, so an array that was gone over once need not be gone over again for each page that has it.
class AnnotationArrays {
 public:
  /// Whether the array of the page is new, and the page has to be gone over.
  bool IsNew(PDPage page);

  /// After annotations were taken off the pages that were new: gives the other pages the arrays that are left of theirs.
  void ShareWhatIsLeft();

 private:
  struct Page {
    CosObj dictionary;
    std::uint64_t array;  ///< that it had at first
  };

  std::unordered_map<std::uint64_t, CosObj> firstPages_;  ///< by the arrays that they had at first
  std::vector<Page> others_;
};

}  // namespace tgx
