#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace tgx::tool {

/// Reads the command line and does what it says. Gives the exit status; throws Failure.
int RunCommandLine(int argc, char** argv);

/// Shows all commands with their options, for what is generated from them.
void DescribeCommandLine(const std::function<void(const CLI::App&)>& describe);

}  // namespace tgx::tool
