#pragma once

#include <string>

#include "src/logging/LogMessage.h"

namespace tgx {

/// Takes messages. Nothing that a logger does fails visibly.
class ILogger {
 public:
  /// Starts the log afresh.
  virtual void Clear() = 0;
  virtual void Error(const std::string& text) = 0;
  virtual void Warning(const std::string& text) = 0;
  virtual void Info(const std::string& text) = 0;
  virtual void Debug(const std::string& text) = 0;
  virtual void Write(const LogMessage& message) = 0;
  virtual ~ILogger() = default;
};

/// Makes messages of texts; what becomes of a message is left to the derived class.
class LoggerBase : public ILogger {
 public:
  void Clear() override {}
  void Error(const std::string& text) override { Write(LogMessage(text, LogMessage::kError)); }
  void Warning(const std::string& text) override { Write(LogMessage(text, LogMessage::kWarning)); }
  void Info(const std::string& text) override { Write(LogMessage(text, LogMessage::kInfo)); }
  void Debug(const std::string& text) override { Write(LogMessage(text, LogMessage::kDebug)); }
  void Write(const LogMessage& /*message*/) override {}
};

}  // namespace tgx
