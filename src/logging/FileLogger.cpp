#include "src/logging/FileLogger.h"

#include <cstdlib>
#include <fstream>

namespace tgx {

FileLogger::FileLogger(const std::string& fileName) {
  if (const char* folder = std::getenv("TMP")) fullPath_ = std::string(folder) + "/" + fileName;
}

void FileLogger::Clear() {
  if (!fullPath_.empty()) std::ofstream(fullPath_, std::ios::trunc);
}

void FileLogger::Write(const LogMessage& message) {
  if (fullPath_.empty()) return;
  std::ofstream file(fullPath_, std::ios::app);
  if (file) file << message.Format() << '\n' << std::flush;
}

}  // namespace tgx
