// What single steps cost over opening and saving alone, each in a process of its own, in parts of what `qpdf IN OUT` takes:
//
//     tgx_step_benchmark [ROUNDS]            the steps on the structure, on documents of 1,000 and 2,000 pages
//     tgx_step_benchmark tables [ROUNDS]     the steps on tables, on documents of 2,500 and 5,000 tables of 20 by 10 cells
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/MarkedDocument.h"
#include "bench/Processes.h"
#include "bench/TableDocument.h"

namespace {

using tgx::bench::Cost;

/// The step with the side file that it takes.
std::string CallOf(const std::string& step, const std::string& input) {
  const std::string stem = input.substr(0, input.rfind(".pdf"));
  if (step == "style-names") return step + ":" + stem + ".styles.xml";
  if (step == "layout-tables") return step + ":" + stem + ".tables.tsv";
  return step;
}

/// All steps round by round, so that each meets the machine in the same state. `reserved` does nothing between opening and
/// saving.
void Compare(const std::string& input, const std::vector<std::string>& steps, int rounds) {
  const std::string output = input + ".out";
  const auto run = [&](const std::string& step) {
    return tgx::bench::Run({TGX_TOOL, "run", "--quiet", "--force", input, "-o", output, CallOf(step, input)});
  };
  std::vector<Cost> qpdf;
  std::vector<Cost> base;
  std::vector<std::vector<Cost>> costs(steps.size());
  for (int round = 0; round < rounds; ++round) {
    qpdf.push_back(tgx::bench::Run({"qpdf", input, output}));
    base.push_back(run("reserved"));
    for (std::size_t step = 0; step < steps.size(); ++step) costs[step].push_back(run(steps[step]));
  }
  const double whole = Median(qpdf).processor;
  const double alone = Median(base).processor;
  PrintLine("qpdf", Median(qpdf));
  PrintLine("no step", Median(base));
  for (std::size_t step = 0; step < steps.size(); ++step) {
    const Cost cost = Median(costs[step]);
    std::printf("  %-24s %6.2f s of processor more   x %4.2f   %5.0f MB\n", steps[step].c_str(), cost.processor - alone,
                (cost.processor - alone) / whole, cost.megabytes);
    std::fflush(stdout);
  }
}

void OnPages(const std::string& folder, int rounds) {
  for (const std::size_t pages : {1000U, 2000U}) {
    const std::string input = folder + "/" + std::to_string(pages) + ".pdf";
    const std::size_t elements =
        tgx::bench::Apart([&] { return tgx::bench::MakeMarkedDocument(pages, TGX_FONT_DOCUMENT, input).elements; });
    std::printf("%zu pages, %zu elements\n", pages, elements);
    Compare(input,
            {"style-names", "end-notes", "group-tags", "reshuffle-frames", "extra-paragraphs", "role-map", "table-metadata",
             "layout-tables", "table-headers-footers"},
            rounds);
  }
}

void OnTables(const std::string& folder, int rounds) {
  for (const std::size_t tables : {2500U, 5000U}) {
    const std::string input = folder + "/" + std::to_string(tables) + ".pdf";
    const std::size_t elements = tgx::bench::Apart([&] { return tgx::bench::MakeTableDocument(tables, input); });
    std::printf("%zu tables, %zu elements\n", tables, elements);
    Compare(input, {"table-metadata", "layout-tables", "table-headers-footers", "table-layout"}, rounds);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const bool onTables = !arguments.empty() && arguments.front() == "tables";
  const std::size_t at = onTables ? 1 : 0;
  const int rounds = arguments.size() > at ? std::max(1, std::atoi(arguments[at].c_str())) : 5;
  return tgx::bench::InTemporaryFolder(
      [&](const std::string& folder) { onTables ? OnTables(folder, rounds) : OnPages(folder, rounds); });
}
