#pragma once

#include <cstdint>
#include <unordered_map>

#include "src/api/HostBinding.h"

namespace tgx {

/// Finds pages by their dictionaries. The pages of a document are gone through once; they must not change meanwhile.
class PageFinder {
 public:
  /// The page with that dictionary, for the caller to release. Throws std::runtime_error when it is none of its document.
  PDPage Acquire(CosObj page);

 private:
  void GoThrough(PDDoc document);

  PDDoc document_ = nullptr;
  std::unordered_map<std::uint64_t, ASInt32> numbers_;  ///< by the pages' dictionaries
};

/// A single search.
PDPage AcquirePageByCos(CosObj page);

}  // namespace tgx
