#pragma once

#include <optional>
#include <string>

namespace tgx::tool {

struct TreeOptions {
  std::string input;
  std::optional<std::string> password;
  bool json = false;
  bool text = false;
  bool quiet = false;
};

/// Prints the structure tree of a document; gives the exit status. Throws Failure.
int RunTreeCommand(const TreeOptions& options);

}  // namespace tgx::tool
