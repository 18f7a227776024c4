#pragma once

#include <string>

namespace CLI {
class App;
}

namespace tgx::tool {

/// A script that completes the command's arguments in bash.
std::string BashCompletion(const CLI::App& app);

}  // namespace tgx::tool
