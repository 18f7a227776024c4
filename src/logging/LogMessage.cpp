#include "src/logging/LogMessage.h"

#include <ctime>
#include <sstream>
#include <utility>

#include "src/logging/LocalTime.h"

namespace tgx {
namespace {

const char* LevelWord(int level) {
  switch (level) {
    case LogMessage::kError:
      return "ERROR";
    case LogMessage::kWarning:
      return "WARNING";
    case LogMessage::kInfo:
      return "INFO";
    case LogMessage::kDebug:
      return "DEBUG";
    default:
      return "";
  }
}

}  // namespace

LogMessage::LogMessage(std::string text, int level) : time_(std::time(nullptr)), level_(level), text_(std::move(text)) {}

std::string LogMessage::Format() const {
  std::ostringstream line;
  line << FormatLocalTime(time_, "%Y-%m-%d %H:%M:%S") << " " << LevelWord(level_) << ": " << text_;
  return line.str();
}

}  // namespace tgx
