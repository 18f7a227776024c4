// Runs the command and `qpdf IN OUT` on the same documents, in turn, as processes of their own, and compares time and peak
// memory:  tgx_process_benchmark [ROUNDS]
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/MarkedDocument.h"
#include "bench/Processes.h"

namespace {

using tgx::bench::Cost;

struct Pair {
  Cost qpdf, tgx;
};

/// A document that both programs work on, and what tgx does with it.
struct Work {
  std::size_t pages;
  bool withLongContents;
  std::string step;  // with "$" for the document's path without ".pdf"; empty for the whole repair
};

std::vector<std::string> CommandOf(const std::string& step, const std::string& input, const std::string& output) {
  std::vector<std::string> command = {TGX_TOOL, step.empty() ? "fix" : "run", "--quiet", "--force", input, "-o", output};
  if (!step.empty()) command.push_back(step);
  return command;
}

/// Both programs round by round, so that both meet the machine in the same state.
Pair Compare(const std::string& folder, const Work& work, int rounds) {
  const std::string base = folder + "/" + std::to_string(work.pages);
  const std::string input = base + ".pdf";
  const std::string output = folder + "/out.pdf";
  const std::size_t elements = tgx::bench::Apart(
      [&] { return tgx::bench::MakeMarkedDocument(work.pages, TGX_FONT_DOCUMENT, input, work.withLongContents).elements; });
  std::string step = work.step;
  if (const auto mark = step.find('$'); mark != std::string::npos) step.replace(mark, 1, base);
  std::vector<Cost> qpdf, tgx;
  for (int round = 0; round < rounds; ++round) {
    qpdf.push_back(tgx::bench::Run({"qpdf", input, output}));
    tgx.push_back(tgx::bench::Run(CommandOf(step, input, output)));
  }
  const Pair pair = {Median(qpdf), Median(tgx)};
  const char* const what = work.step.empty() ? "the whole repair" : work.step.c_str();
  std::printf("%s: %5zu pages, %6zu elements\n", what, work.pages, elements);
  PrintLine("qpdf", pair.qpdf);
  PrintLine("tgx", pair.tgx);
  PrintRatio("tgx to qpdf", pair.tgx, pair.qpdf);
  return pair;
}

void Benchmark(const std::string& folder, int rounds) {
  std::printf("steps against qpdf IN OUT, whole processes, medians of %d rounds\n", rounds);
  const Pair single = Compare(folder, {1000, false, "remove-empty-tags"}, rounds);
  const Pair twice = Compare(folder, {2000, false, "remove-empty-tags"}, rounds);
  std::printf("twice the pages\n");
  PrintRatio("tgx", twice.tgx, single.tgx);
  Compare(folder, {1000, true, "toc:$.toc.xml"}, rounds);
  Compare(folder, {1000, false, ""}, rounds);
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 7;
  return tgx::bench::InTemporaryFolder([rounds](const std::string& folder) {
    setenv("XDG_STATE_HOME", folder.c_str(), 1);  // the log that a step writes
    Benchmark(folder, rounds);
  });
}
