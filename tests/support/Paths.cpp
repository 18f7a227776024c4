#include "tests/support/Paths.h"

namespace tgx::test {

std::string DataPath(const std::string& below) { return SourcePath("tests/data/" + below); }
std::string SourcePath(const std::string& below) { return TGX_SOURCE_DIR "/" + below; }
std::string BinaryPath(const std::string& below) { return TGX_BINARY_DIR "/" + below; }

}  // namespace tgx::test
