#include "src/logging/LocalTime.h"

#include <array>
#include <ctime>

namespace tgx {

std::string FormatLocalTime(std::int64_t time, const char* format) {
  const auto seconds = static_cast<std::time_t>(time);
  std::tm local = {};
#ifdef _WIN32
  localtime_s(&local, &seconds);
#else
  localtime_r(&seconds, &local);
#endif
  std::array<char, 80> buffer = {};
  return {buffer.data(), std::strftime(buffer.data(), buffer.size(), format, &local)};
}

}  // namespace tgx
