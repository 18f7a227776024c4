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

/// Both programs on a document of that many pages, round by round, so that both meet the machine in the same state.
Pair Compare(const std::string& folder, std::size_t pages, int rounds) {
  const std::string input = folder + "/" + std::to_string(pages) + ".pdf";
  const std::string output = folder + "/out.pdf";
  const std::size_t elements =
      tgx::bench::Apart([&] { return tgx::bench::MakeMarkedDocument(pages, TGX_FONT_DOCUMENT, input).elements; });
  std::vector<Cost> qpdf, tgx;
  for (int round = 0; round < rounds; ++round) {
    qpdf.push_back(tgx::bench::Run({"qpdf", input, output}));
    tgx.push_back(tgx::bench::Run({TGX_TOOL, "run", "--quiet", "--force", input, "-o", output, "remove-empty-tags"}));
  }
  const Pair pair = {Median(qpdf), Median(tgx)};
  std::printf("%5zu pages, %6zu elements\n", pages, elements);
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
  return tgx::bench::InTemporaryFolder([rounds](const std::string& folder) { Benchmark(folder, rounds); });
}
