#pragma once

#include <cstdint>
#include <string>

namespace tgx {

/// `time`, in seconds since the epoch, in local time and in the form of strftime; empty where that takes 80 bytes or more.
std::string FormatLocalTime(std::int64_t time, const char* format);

}  // namespace tgx
