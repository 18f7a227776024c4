#pragma once

#include <cstdint>
#include <unordered_map>

#include "src/api/HostBinding.h"

namespace tgx {

/// GetKidIndex for workers that go through many kids of one parent and change them on the way: searches to both sides of the
/// place where the last kid of that parent was found, so that kids asked for in their order, or against it, take no time to
/// find. Of a kid that its parent holds twice it may give either place.
class KidFinder {
 public:
  /// The place of `kid` among the kids of `parent`; -1 if it is none of them or `parent` is null.
  int IndexOf(PDSElement parent, CosObj kid);

 private:
  std::unordered_map<std::uint64_t, int> lastPlaces_;  // by parent
};

}  // namespace tgx
