#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/Document.h"

namespace tgx::tool {

struct RunOptions {
  std::string input;
  std::string output;
  std::vector<std::string> steps;  ///< as the command line has them
  std::optional<std::string> password;
  SaveChoices save;
  bool keepGoing = false;
  bool json = false;
  bool quiet = false;
  bool force = false;
};

/// Opens, runs the steps, saves and reports; gives the exit status. Throws Failure.
int RunRunCommand(const RunOptions& options);

}  // namespace tgx::tool
