#include "host/core/FileError.h"

#include <cerrno>
#include <system_error>

#include "host/core/Paths.h"

namespace tgx::host {

HostError FileError(const std::string& path, const char* what, int systemError) {
  return {systemError == ENOMEM ? kASNoMemory : kASFileError,
          DisplayName(path) + ": " + what + ": " + std::generic_category().message(systemError)};
}

HostError FileError(const std::string& path, const char* what) { return {kASFileError, DisplayName(path) + ": " + what}; }

}  // namespace tgx::host
