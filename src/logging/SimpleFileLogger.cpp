#include "src/logging/SimpleFileLogger.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <system_error>
#include <utility>

#include "src/logging/LocalTime.h"

namespace tgx {
namespace {

#ifndef _WIN32
std::filesystem::path StateFolder() {
  const auto absolute = [](const char* variable) -> std::filesystem::path {
    const char* value = std::getenv(variable);
    return value != nullptr && *value == '/' ? value : std::filesystem::path();
  };
  if (auto state = absolute("XDG_STATE_HOME"); !state.empty()) return state;
  const auto home = absolute("HOME");
  return home.empty() ? home : home / ".local" / "state";
}
#endif

}  // namespace

SimpleFileLogger::SimpleFileLogger(std::string path) : path_(std::move(path)) {}

SimpleFileLogger* SimpleFileLogger::Instance() {
  static auto* const instance = new SimpleFileLogger(DefaultPath());
  return instance;
}

std::string SimpleFileLogger::DefaultPath() {
#ifdef _WIN32
  return "C:\\temp\\tgxlib_common.log";
#else
  const auto state = StateFolder();
  return state.empty() ? std::string() : (state / "tgx" / "tgxlib_common.log").string();
#endif
}

void SimpleFileLogger::Info(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  Write("INFO", format, arguments);
  va_end(arguments);
}

void SimpleFileLogger::Exception(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  Write("EXCEPTION", format, arguments);
  va_end(arguments);
}

SimpleFileLogger::File SimpleFileLogger::Open() const {
#ifndef _WIN32
  // The folder is the library's own, so the first entry makes it.
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(path_).parent_path(), ignored);
#endif
  return File(std::fopen(path_.c_str(), "a+"));
}

void SimpleFileLogger::Write(const char* kind, const char* format, std::va_list arguments) const {
  const File opened = inBurst_ ? nullptr : Open();
  std::FILE* const file = inBurst_ ? held_.get() : opened.get();
  if (file == nullptr) return;
  std::fprintf(file, "%s %s: ", FormatLocalTime(std::time(nullptr), "%Y-%m-%d %I:%M:%S").c_str(), kind);
  // The analyzer does not see that the callers started the list.
  std::vfprintf(file, format, arguments);  // NOLINT(clang-analyzer-valist.Uninitialized)
  std::fflush(file);                       // a file that a burst holds open is to lack nothing either
}

SimpleFileLogger::Burst::Burst(SimpleFileLogger& logger) : logger_(logger) {
  logger_.held_ = logger_.Open();
  logger_.inBurst_ = true;
}

SimpleFileLogger::Burst::~Burst() {
  logger_.inBurst_ = false;
  logger_.held_.reset();
}

}  // namespace tgx
