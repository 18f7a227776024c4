#include "tests/support/StateFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tgx::test {
namespace {

class StateFolder {
 public:
  StateFolder() : path_((std::filesystem::path(testing::TempDir()) / "tgx-state-XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error(path_ + " cannot be made");
    setenv("XDG_STATE_HOME", path_.c_str(), 1);
  }
  StateFolder(const StateFolder&) = delete;
  StateFolder& operator=(const StateFolder&) = delete;
  ~StateFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

 private:
  std::string path_;
};

}  // namespace

void UseOwnStateFolder() { static const StateFolder folder; }

}  // namespace tgx::test
