#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

namespace tgx::test {

/// Sets an environment variable, or takes it away, for as long as it lives.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    Set(value);
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable() { Set(old_ ? old_->c_str() : nullptr); }

 private:
  void Set(const char* value) const {
    if (value == nullptr) {
      unsetenv(name_.c_str());
    } else {
      setenv(name_.c_str(), value, 1);
    }
    tzset();
  }

  std::string name_;
  std::optional<std::string> old_;
};

/// A time zone in which it is now three o'clock something in the afternoon.
inline std::string AfternoonZone() {
  const std::time_t now = std::time(nullptr);
  std::tm utc = {};
  gmtime_r(&now, &utc);
  // The sign of a POSIX time zone counts westward.
  return "TST" + std::to_string(utc.tm_hour - 15);
}

/// A folder of the test's own, gone with it.
class LogFolder {
 public:
  LogFolder() {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    path_ = std::filesystem::path(testing::TempDir()) /
            (std::string("tgx-") + info->test_suite_name() + "-" + info->name() + "-" + std::to_string(getpid()));
    std::filesystem::create_directories(path_);
  }
  LogFolder(const LogFolder&) = delete;
  LogFolder& operator=(const LogFolder&) = delete;
  ~LogFolder() { std::filesystem::remove_all(path_); }

  std::string Path() const { return path_.string(); }
  std::string Read(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(path_ / name).rdbuf();
    return text.str();
  }

 private:
  std::filesystem::path path_;
};

}  // namespace tgx::test
