#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tgx::tool {

/// Exit status of everything that no step is to blame for: wrong use, files that cannot be read or written.
constexpr int kUsageOrFileError = 1;

/// Ends the run with a message of one line, which names the file where there is one.
class Failure : public std::runtime_error {
 public:
  explicit Failure(const std::string& message, int status = kUsageOrFileError)
      : std::runtime_error(message), status_(status) {}
  /// "FILE: reason"
  Failure(std::string_view file, std::string_view reason);
  int Status() const noexcept { return status_; }

 private:
  int status_;
};

/// The message of an errno value as a reason: "permission denied".
std::string Reason(int error);

/// Writes "tgx: message" to standard error.
void Warn(std::string_view message);

/// Writes to standard output. What goes wrong there is told by FinishOutput.
void Print(std::string_view text);

/// Flushes standard output and gives the exit status: `status` if everything printed got there. Throws Failure if not,
/// unless the reader went away, which is told by the status only.
int FinishOutput(int status);

}  // namespace tgx::tool
