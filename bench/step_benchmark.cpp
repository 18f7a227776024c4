// What single steps cost over opening and saving alone, each in a process of its own, in parts of what `qpdf IN OUT` takes:
//
//     tgx_step_benchmark [ROUNDS]            the steps on structure and pages, on documents of 1,000 and 2,000 pages
//     tgx_step_benchmark tables [ROUNDS]     the steps on tables, on documents of 2,500 and 5,000 tables of 20 by 10 cells
//     tgx_step_benchmark texts [ROUNDS]      the steps on texts and formulas, on 1,000 pages and on one of 20,000 sequences
//     tgx_step_benchmark forms [ROUNDS]      forms of 10,000 to 40,000 fields; `qpdf IN OUT` of both documents
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "bench/MarkedDocument.h"
#include "bench/Processes.h"
#include "bench/StepDocuments.h"
#include "bench/TableDocument.h"

namespace {

using tgx::bench::Cost;

std::string FilledForm(const std::string& form) { return form + ".filled"; }

/// The step with the side file that it takes.
std::string CallOf(const std::string& step, const std::string& input) {
  const std::string stem = input.substr(0, input.rfind(".pdf"));
  if (step == "style-names") return step + ":" + stem + ".styles.xml";
  if (step == "sync-forms") return step + ":" + FilledForm(input);
  if (step == "layout-tables") return step + ":" + stem + ".tables.tsv";
  return step;
}

/// On the document, and on the second one of steps that take one.
Cost RunQpdf(const std::string& input) {
  const Cost cost = tgx::bench::Run({"qpdf", input, input + ".out"});
  if (!std::filesystem::exists(FilledForm(input))) return cost;
  return tgx::bench::Together(cost, tgx::bench::Run({"qpdf", FilledForm(input), input + ".out"}));
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
    qpdf.push_back(RunQpdf(input));
    base.push_back(run("reserved"));
    for (std::size_t step = 0; step < steps.size(); ++step) costs[step].push_back(run(steps[step]));
  }
  const double whole = Median(qpdf).processor;
  const double alone = Median(base).processor;
  PrintLine("qpdf", Median(qpdf));
  PrintLine("no step", Median(base));
  for (std::size_t step = 0; step < steps.size(); ++step) {
    const Cost cost = Median(costs[step]);
    std::printf("  %-26s %6.2f s of processor more   x %4.2f   %5.0f MB\n", steps[step].c_str(), cost.processor - alone,
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
             "layout-tables", "table-headers-footers", "reshuffle-frames-by-holder", "link-contents", "cut-text"},
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

/// Makes a document in a process of its own, since makers need much memory, and times steps on it.
void CompareOn(const std::string& title, const std::string& input, const std::function<void()>& make,
               const std::vector<std::string>& steps, int rounds) {
  tgx::bench::Apart([&] {
    make();
    return std::size_t{0};
  });
  std::printf("%s\n", title.c_str());
  Compare(input, steps, rounds);
}

void OnTexts(const std::string& folder, int rounds) {
  using namespace tgx::bench;
  const std::vector<std::string> steps = {"double-bullets", "main-language", "language-tags", "language-brackets",
                                          "footnote-links"};
  const std::string marked = folder + "/marked.pdf";
  CompareOn(
      "1,000 pages, 60,000 marked-content sequences", marked, [&] { MakeMarkedDocument(1000, TGX_FONT_DOCUMENT, marked); },
      steps, rounds);
  const std::string crowded = folder + "/crowded.pdf";
  CompareOn(
      "one page, 20,000 marked-content sequences", crowded, [&] { MakeCrowdedPage(20000, TGX_FONT_DOCUMENT, crowded); },
      steps, rounds);
  const std::string formulas = folder + "/formulas.pdf";
  CompareOn(
      "1,000 pages, 2,000 formulas", formulas, [&] { MakeFormulaDocument(1000, 2, TGX_FONT_DOCUMENT, formulas); },
      {"mathml"}, rounds);
}

void OnForms(const std::string& folder, int rounds) {
  for (const int fields : {10000, 20000, 40000}) {
    const std::string input = folder + "/" + std::to_string(fields) + ".pdf";
    const auto make = [&] {
      tgx::bench::MakeForm(fields, false, input);
      tgx::bench::MakeForm(fields, true, FilledForm(input));
    };
    CompareOn("two forms of " + std::to_string(fields) + " fields", input, make, {"sync-forms"}, rounds);
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  const std::map<std::string, void (*)(const std::string&, int)> groups = {
      {"pages", OnPages}, {"tables", OnTables}, {"texts", OnTexts}, {"forms", OnForms}};
  auto group = groups.find("pages");
  if (!arguments.empty() && groups.count(arguments.front()) != 0) {
    group = groups.find(arguments.front());
    arguments.erase(arguments.begin());
  }
  const int rounds = arguments.empty() ? 5 : std::max(1, std::atoi(arguments.front().c_str()));
  return tgx::bench::InTemporaryFolder([&](const std::string& folder) { group->second(folder, rounds); });
}
