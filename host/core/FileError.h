#pragma once

#include <string>

#include "host/core/HostError.h"

namespace tgx::host {

/// "NAME: WHAT: what the operating system says", with code kASFileError (kASNoMemory if that is what it says).
HostError FileError(const std::string& path, const char* what, int systemError);

/// "NAME: WHAT".
HostError FileError(const std::string& path, const char* what);

}  // namespace tgx::host
