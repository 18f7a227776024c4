#pragma once

#include <string>
#include <vector>

#include "tool/Work.h"

namespace tgx::tool {

struct RunOptions : WorkOptions {
  std::vector<std::string> steps;  ///< as the command line has them
};

/// Opens, runs the steps, saves and reports; gives the exit status. Throws Failure.
int RunRunCommand(const RunOptions& options);

}  // namespace tgx::tool
