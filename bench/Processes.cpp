#include "bench/Processes.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace tgx::bench {
namespace {

[[noreturn]] void Become(const std::vector<std::string>& command) {
  const int nothing = open("/dev/null", O_WRONLY);
  dup2(nothing, STDOUT_FILENO);
  std::vector<char*> arguments;
  for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

double SecondsOf(const timeval& time) { return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6; }

}  // namespace

Cost Run(const std::vector<std::string>& command) {
  const auto start = std::chrono::steady_clock::now();
  const pid_t process = fork();
  if (process == 0) Become(command);
  int status = 0;
  rusage usage = {};
  if (process < 0 || wait4(process, &status, 0, &usage) != process || status != 0) {
    throw std::runtime_error(command.front() + " failed");
  }
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  return {elapsed.count(), SecondsOf(usage.ru_utime) + SecondsOf(usage.ru_stime),
          static_cast<double>(usage.ru_maxrss) / 1024};
}

std::size_t Apart(const std::function<std::size_t()>& work) {
  int ends[2] = {};
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t process = fork();
  if (process == 0) {
    try {
      const std::size_t answer = work();
      _exit(write(ends[1], &answer, sizeof answer) == sizeof answer ? 0 : 1);
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
      _exit(1);
    }
  }
  close(ends[1]);
  std::size_t answer = 0;
  const bool isRead = read(ends[0], &answer, sizeof answer) == sizeof answer;
  close(ends[0]);
  int status = 0;
  if (process < 0 || waitpid(process, &status, 0) != process || status != 0 || !isRead) {
    throw std::runtime_error("a document cannot be prepared");
  }
  return answer;
}

Cost Median(std::vector<Cost> costs) {
  const auto middle = [&](auto value) {
    std::sort(costs.begin(), costs.end(), [&](const Cost& a, const Cost& b) { return a.*value < b.*value; });
    return costs[costs.size() / 2].*value;
  };
  return {middle(&Cost::seconds), middle(&Cost::processor), middle(&Cost::megabytes)};
}

Cost Together(const Cost& first, const Cost& second) {
  return {first.seconds + second.seconds, first.processor + second.processor, std::max(first.megabytes, second.megabytes)};
}

void PrintLine(const char* what, const Cost& cost) {
  std::printf("  %-20s %6.2f s   %6.2f s of processor   %5.0f MB\n", what, cost.seconds, cost.processor, cost.megabytes);
}

void PrintRatio(const char* what, const Cost& cost, const Cost& base) {
  std::printf("  %-20s x %4.2f   x %4.2f                  x %4.2f\n", what, cost.seconds / base.seconds,
              cost.processor / base.processor, cost.megabytes / base.megabytes);
}

int InTemporaryFolder(const std::function<void(const std::string& folder)>& work) {
  std::string folder = (std::filesystem::temp_directory_path() / "tgx-bench-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) return 1;
  int status = 0;
  try {
    work(folder);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    status = 1;
  }
  std::filesystem::remove_all(folder);
  return status;
}

}  // namespace tgx::bench
