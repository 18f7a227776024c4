// Runs the command and `qpdf IN OUT` on the same documents, in turn, as processes of their own, and compares time and peak
// memory:  tgx_process_benchmark [ROUNDS]
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
#include <string>
#include <vector>

#include "bench/MarkedDocument.h"

namespace {

struct Cost {
  double seconds = 0;    // from start to end
  double processor = 0;  // seconds of the processor, which a busy machine changes less
  double megabytes = 0;  // peak resident set
};

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

Cost Median(std::vector<Cost> costs) {
  const auto middle = [&](auto value) {
    std::sort(costs.begin(), costs.end(), [&](const Cost& a, const Cost& b) { return a.*value < b.*value; });
    return costs[costs.size() / 2].*value;
  };
  return {middle(&Cost::seconds), middle(&Cost::processor), middle(&Cost::megabytes)};
}

void PrintLine(const char* what, const Cost& cost) {
  std::printf("  %-12s %6.2f s   %6.2f s of processor   %5.0f MB\n", what, cost.seconds, cost.processor, cost.megabytes);
}

void PrintRatio(const char* what, const Cost& cost, const Cost& base) {
  std::printf("  %-12s x %4.2f   x %4.2f                  x %4.2f\n", what, cost.seconds / base.seconds,
              cost.processor / base.processor, cost.megabytes / base.megabytes);
}

struct Pair {
  Cost qpdf, tgx;
};

/// Both programs on a document of that many pages, round by round, so that both meet the machine in the same state.
Pair Compare(const std::string& folder, std::size_t pages, int rounds) {
  const std::string input = folder + "/" + std::to_string(pages) + ".pdf";
  const std::string output = folder + "/out.pdf";
  const auto size = tgx::bench::MakeMarkedDocument(pages, TGX_FONT_DOCUMENT, input);
  std::vector<Cost> qpdf, tgx;
  for (int round = 0; round < rounds; ++round) {
    qpdf.push_back(Run({"qpdf", input, output}));
    tgx.push_back(Run({TGX_TOOL, "run", "--quiet", "--force", input, "-o", output, "remove-empty-tags"}));
  }
  const Pair pair = {Median(qpdf), Median(tgx)};
  std::printf("%5zu pages, %6zu elements\n", pages, size.elements);
  PrintLine("qpdf", pair.qpdf);
  PrintLine("tgx", pair.tgx);
  PrintRatio("tgx to qpdf", pair.tgx, pair.qpdf);
  return pair;
}

void Benchmark(const std::string& folder, int rounds) {
  std::printf("remove-empty-tags against qpdf IN OUT, whole processes, medians of %d rounds\n", rounds);
  const Pair single = Compare(folder, 1000, rounds);
  const Pair twice = Compare(folder, 2000, rounds);
  std::printf("twice the pages\n");
  PrintRatio("tgx", twice.tgx, single.tgx);
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 7;
  std::string folder = (std::filesystem::temp_directory_path() / "tgx-bench-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) return 1;
  int status = 0;
  try {
    Benchmark(folder, rounds);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    status = 1;
  }
  std::filesystem::remove_all(folder);
  return status;
}
