#pragma once

namespace tgx::tool {

/// Reads the command line and does what it says. Gives the exit status; throws Failure.
int RunCommandLine(int argc, char** argv);

}  // namespace tgx::tool
