#pragma once

#include <string>

namespace tgx::test {

// Kept out of the compiler's command line, so that a build of another folder can share compiled tests.

/// A path below tests/data, such as DataPath("corpus").
std::string DataPath(const std::string& below);
/// A path below the root of the sources.
std::string SourcePath(const std::string& below);
/// A path below the folder of this build.
std::string BinaryPath(const std::string& below);

}  // namespace tgx::test
