#pragma once

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string>

#if defined(__GNUC__)
#define TGX_PRINTF_LIKE __attribute__((format(printf, 2, 3)))
#else
#define TGX_PRINTF_LIKE
#endif

namespace tgx {

/// A log in the manner of printf, in a file of fixed name. Each entry starts with the local time on a 12-hour clock without
/// a mark of its half; no line end is added, so what the caller does not end runs on into the next entry.
class SimpleFileLogger {
 public:
  explicit SimpleFileLogger(std::string path);
  SimpleFileLogger(const SimpleFileLogger&) = delete;
  SimpleFileLogger& operator=(const SimpleFileLogger&) = delete;
  virtual ~SimpleFileLogger() = default;

  /// The one logger of the library, writing to DefaultPath. Never freed.
  static SimpleFileLogger* Instance();
  /// "C:\temp\tgxlib_common.log". Elsewhere than on Windows a file of that name in the folder "tgx" of the user's state
  /// folder, which is $XDG_STATE_HOME or else $HOME/.local/state; empty where neither is an absolute path.
  static std::string DefaultPath();

  /// Keeps the file open between entries for as long as it lives, for workers that write thousands of them: what is written
  /// is the same.
  class Burst {
   public:
    explicit Burst(SimpleFileLogger& logger);
    ~Burst();
    Burst(const Burst&) = delete;
    Burst& operator=(const Burst&) = delete;

   private:
    SimpleFileLogger& logger_;
  };

  /// An entry of the kind INFO. A file that cannot be opened loses it.
  void Info(const char* format, ...) TGX_PRINTF_LIKE;
  /// An entry of the kind EXCEPTION, likewise.
  void Exception(const char* format, ...) TGX_PRINTF_LIKE;

 private:
  struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  using File = std::unique_ptr<std::FILE, FileCloser>;

  File Open() const;
  void Write(const char* kind, const char* format, std::va_list arguments) const;

  std::string path_;
  bool inBurst_ = false;
  File held_;  // in a burst; null when the file cannot be opened
};

}  // namespace tgx
