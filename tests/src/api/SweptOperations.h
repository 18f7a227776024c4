#pragma once

#include <cstdint>
#include <ostream>
#include <span>
#include <string>

#include "tests/support/HostFailureSweep.h"

namespace tgx::test {

/// An action, or fixes of one mask, on a document on which they make every kind of change that they know.
struct SweptOperation {
  const char* name;
  std::int32_t action;  ///< -1 for fixes
  std::uint32_t fixes;
  std::string (*document)();
  std::string (*file)() = nullptr;  ///< what stands in the file that the action takes
  SweepOptions options = {};
};

std::ostream& operator<<(std::ostream& out, const SweptOperation& operation);

/// All of them. A new worker joins with a line here.
std::span<const SweptOperation> SweptOperations();

}  // namespace tgx::test
