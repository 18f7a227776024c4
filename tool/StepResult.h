#pragma once

#include <string>

namespace tgx::tool {

/// What became of a step: a result code of tgx.h, and the library's text where there is one.
struct StepResult {
  int code = 0;
  std::string error;
};

}  // namespace tgx::tool
