#pragma once

#include <set>
#include <string>

#include "src/logging/Logger.h"

namespace tgx {

/// Hands everything on to its loggers, which are not owned.
class ILogService {
 public:
  virtual void Clear() = 0;
  virtual void Error(const std::string& text) = 0;
  virtual void Warning(const std::string& text) = 0;
  virtual void Info(const std::string& text) = 0;
  virtual void Debug(const std::string& text) = 0;
  virtual void Write(const LogMessage& message) = 0;
  /// A null logger is ignored; one that is there already is not added again.
  virtual void AddLogger(ILogger* logger) = 0;
  virtual void RemoveLogger(ILogger* logger) = 0;
  virtual void RemoveAllLoggers() = 0;
  virtual ~ILogService() = default;
};

class LogService : public ILogService, public ILogger {
 public:
  /// The service of that name, made at its first use and kept until the library is unloaded.
  static LogService* Get(const std::string& name);

  void Clear() override;
  void Error(const std::string& text) override;
  void Warning(const std::string& text) override;
  void Info(const std::string& text) override;
  void Debug(const std::string& text) override;
  void Write(const LogMessage& message) override;
  void AddLogger(ILogger* logger) override;
  void RemoveLogger(ILogger* logger) override;
  void RemoveAllLoggers() override;

 private:
  std::set<ILogger*> loggers_;
};

}  // namespace tgx
