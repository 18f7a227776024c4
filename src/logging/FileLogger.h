#pragma once

#include <string>

#include "src/logging/Logger.h"

namespace tgx {

/// Appends each message as a line to a file in the folder that the environment variable "TMP" names. The file is open only
/// while a line is written; where it cannot be opened, or where the variable was not set, the line is lost.
class FileLogger : public LoggerBase {
 public:
  explicit FileLogger(const std::string& fileName);

  /// Empties the file, making it if need be.
  void Clear() override;
  void Write(const LogMessage& message) override;

 private:
  std::string fullPath_;  // empty: no folder to write to
};

}  // namespace tgx
