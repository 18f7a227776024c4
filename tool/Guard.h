#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <tgx/host.h>

#include "tool/Census.h"

namespace tgx::tool {

/// What a step took off the pages that it is not there to take off.
struct Loss {
  std::int32_t page;   ///< counted from 1
  std::string reason;  ///< "it would remove text, 120 by 12 points at 72, 700"
};

/// Watches what steps take off the pages of one open document.
class Guard {
 public:
  /// `before` tells which marked content belongs to marks; it must outlive the guard.
  Guard(PDDoc document, const Census& before);

  /// Looks at what has gone since the last call, or since the beginning. Gives the first thing that the step, by its name,
  /// may not remove. Throws HostFailure.
  std::optional<Loss> Check(const std::string& step);

  /// Images of one sample, and other things, that have been removed so far.
  std::size_t RemovedDummyImages() const { return dummyImages_; }
  std::size_t RemovedOthers() const { return seen_ - dummyImages_; }

 private:
  PDDoc document_;
  const Census& before_;
  std::size_t seen_ = 0;
  std::size_t dummyImages_ = 0;
};

}  // namespace tgx::tool
