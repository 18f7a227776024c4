#pragma once

#include <string>

namespace tgx::tool {

/// The list of `tgx actions`: number or bit, name, file and help of every step.
std::string StepList();

}  // namespace tgx::tool
