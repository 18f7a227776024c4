#include "tests/tool/RunTool.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tests/support/StateFolder.h"

namespace tgx::test {
namespace {

constexpr unsigned kLongestRun = 200;  // seconds; the sanitizers slow everything down

int OpenForWriting(const std::string& path) { return open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600); }

int BrokenPipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  close(ends[0]);
  return ends[1];
}

int StatusOf(pid_t process) {
  int status = 0;
  if (waitpid(process, &status, 0) != process) throw std::runtime_error("the process is lost");
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

TempFolder::TempFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "tgx-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = name;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::Write(const std::string& name, const std::string& bytes) const {
  const std::string path = *this / name;
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

std::vector<std::string> TempFolder::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path_)) names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

bool Exists(const std::string& path) { return std::filesystem::exists(std::filesystem::symlink_status(path)); }

ProcessResult Process::Run() const {
  UseOwnStateFolder();
  const TempFolder folder;
  const int out = breakOutput_ ? BrokenPipe() : OpenForWriting(outputTo_.empty() ? folder / "out" : outputTo_);
  const int err = OpenForWriting(folder / "err");
  const pid_t process = fork();
  if (process == 0) Become(out, err);
  close(out);
  close(err);
  if (process < 0) throw std::runtime_error("no process");
  ProcessResult result;
  result.status = StatusOf(process);
  if (Exists(folder / "out")) result.out = ReadFile(folder / "out");
  result.err = ReadFile(folder / "err");
  return result;
}

void Process::Become(int out, int err) const {
  if (!folder_.empty() && chdir(folder_.c_str()) != 0) _exit(127);
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  if (closeOutput_) close(STDOUT_FILENO);
  if (largestFile_ != 0) {
    const rlimit limit = {largestFile_, largestFile_};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  alarm(kLongestRun);
  std::vector<char*> arguments;
  for (const std::string& argument : command_) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

Process Tool(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), TGX_TOOL);
  return Process(std::move(arguments));
}

ProcessResult RunTool(std::vector<std::string> arguments) { return Tool(std::move(arguments)).Run(); }

std::string Message(const std::string& text) { return "tgx: " + text + "\n"; }

}  // namespace tgx::test
