#pragma once

#include <cstdint>
#include <string>

namespace tgx {

/// One line of a log.
class LogMessage {
 public:
  enum Level { kError = 0, kWarning = 1, kInfo = 2, kDebug = 3 };

  /// Takes the time from the system clock. A level outside the four above has no word in the line.
  LogMessage(std::string text, int level);
  LogMessage(const LogMessage&) = default;
  LogMessage& operator=(const LogMessage&) = default;
  virtual ~LogMessage() = default;

  /// The line without its end, in local time: "2024-03-05 14:07:31 DEBUG: ApplyFix".
  virtual std::string Format() const;

 private:
  std::int64_t time_;  // seconds since the epoch
  int level_;
  std::string text_;
};

}  // namespace tgx
