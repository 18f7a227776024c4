#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tgx::test {

/// A folder of its own for one test, removed with everything in it.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& Path() const { return path_; }
  /// The path of a name in the folder.
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  /// Writes a file and gives its path.
  std::string Write(const std::string& name, const std::string& bytes) const;
  /// The names of all files, sorted.
  std::vector<std::string> Names() const;

 private:
  std::string path_;
};

std::string ReadFile(const std::string& path);
bool Exists(const std::string& path);

/// What a process left: its exit status (128 and the signal's number when a signal ended it) and what it wrote.
struct ProcessResult {
  int status = -1;
  std::string out;
  std::string err;
};

/// Runs a program, found on the PATH when its name has no slash, and waits for it; it is killed when it takes minutes.
class Process {
 public:
  explicit Process(std::vector<std::string> command) : command_(std::move(command)) {}
  Process& OutputTo(std::string path) { return outputTo_ = std::move(path), *this; }
  Process& CloseOutput() { return closeOutput_ = true, *this; }
  /// Standard output goes into a pipe that nobody reads and whose reading end is closed.
  Process& BreakOutput() { return breakOutput_ = true, *this; }
  Process& LargestFile(unsigned long bytes) { return largestFile_ = bytes, *this; }
  Process& In(std::string folder) { return folder_ = std::move(folder), *this; }
  ProcessResult Run() const;

 private:
  [[noreturn]] void Become(int out, int err) const;

  std::vector<std::string> command_;
  std::string outputTo_, folder_;
  bool closeOutput_ = false, breakOutput_ = false;
  unsigned long largestFile_ = 0;
};

/// The command of this build with these arguments.
Process Tool(std::vector<std::string> arguments);
ProcessResult RunTool(std::vector<std::string> arguments);

/// What the command says on standard error, for comparisons: "tgx: " + text + "\n".
std::string Message(const std::string& text);

}  // namespace tgx::test
