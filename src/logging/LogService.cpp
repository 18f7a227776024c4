#include "src/logging/LogService.h"

#include <map>
#include <memory>

namespace tgx {

LogService* LogService::Get(const std::string& name) {
  static std::map<std::string, std::unique_ptr<LogService>> registry;
  std::unique_ptr<LogService>& service = registry[name];
  if (service == nullptr) service = std::make_unique<LogService>();
  return service.get();
}

void LogService::Clear() {
  for (ILogger* logger : loggers_) logger->Clear();
}

void LogService::Error(const std::string& text) {
  for (ILogger* logger : loggers_) logger->Error(text);
}

void LogService::Warning(const std::string& text) {
  for (ILogger* logger : loggers_) logger->Warning(text);
}

void LogService::Info(const std::string& text) {
  for (ILogger* logger : loggers_) logger->Info(text);
}

void LogService::Debug(const std::string& text) {
  for (ILogger* logger : loggers_) logger->Debug(text);
}

void LogService::Write(const LogMessage& message) {
  for (ILogger* logger : loggers_) logger->Write(message);
}

void LogService::AddLogger(ILogger* logger) {
  if (logger != nullptr) loggers_.insert(logger);
}

void LogService::RemoveLogger(ILogger* logger) { loggers_.erase(logger); }

void LogService::RemoveAllLoggers() { loggers_.clear(); }

}  // namespace tgx
