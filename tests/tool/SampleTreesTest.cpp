// The structure of the samples before any step, and what each step that works on the structure alone changes in it, as the
// command shows it. The reference files are in tests/golden/trees; UPDATE=1 writes them anew.

#include <algorithm>
#include <ostream>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/Paths.h"
#include "tests/support/TreeText.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

std::string SamplePath(const std::string& file) { return DataPath("samples/" + file); }

/// The outline of a document's tree, and its role map behind it.
std::string TreeOf(const std::string& path) {
  const ProcessResult outline = RunTool({"tree", path});
  EXPECT_EQ(outline.status, 0) << outline.err;
  const auto tree = nlohmann::ordered_json::parse(RunTool({"tree", "--json", path}).out);
  std::string text = outline.out + "role map\n";
  for (const auto& [type, role] : tree["roleMap"].items()) {
    text.append("  ").append(type).append(" -> ").append(role.get<std::string>()).append("\n");
  }
  return text;
}

struct SampleStep {
  const char* sample;
  const char* step;
  const char* file = nullptr;  ///< that the step takes
};

void PrintTo(const SampleStep& tested, std::ostream* out) { *out << tested.sample << ", " << tested.step; }

std::string TestName(std::string name) {
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

class SampleTrees : public testing::TestWithParam<SampleStep> {
 protected:
  TempFolder folder_;
};

TEST_P(SampleTrees, ChangeAsTheReferenceFileSays) {
  const auto& [sample, step, file] = GetParam();
  const std::string input = SamplePath(std::string(sample) + ".pdf");
  const std::string output = folder_ / "out.pdf";
  const std::string call = step + (file == nullptr ? "" : ":" + SamplePath(file));
  const ProcessResult run = RunTool({"run", "--quiet", input, "-o", output, call});
  ASSERT_EQ(run.status, 0) << run.err;
  folder_.Write("before", TreeOf(input));
  folder_.Write("after", TreeOf(output));
  const ProcessResult change =
      Process({"diff", "-U1", "--label", "before", "--label", "after", "before", "after"}).In(folder_.Path()).Run();
  ASSERT_LE(change.status, 1) << change.err;
  ExpectGolden(std::string("trees/") + sample + "." + step, change.out);
}

constexpr SampleStep kSteps[] = {
    {"annual-report", "style-names", "annual-report.styles.xml"},
    {"annual-report", "layout-tables", "annual-report.tables.tsv"},
    {"annual-report", "table-metadata"},
    {"annual-report", "reshuffle-frames"},
    {"annual-report", "end-notes"},
    {"annual-report", "group-tags"},
    {"annual-report", "extra-paragraphs"},
    {"annual-report", "table-headers-footers"},
    {"annual-report", "table-layout"},
    {"annual-report", "role-map"},
    {"travel-guide", "table-metadata"},
    {"travel-guide", "reshuffle-frames"},
    {"travel-guide", "end-notes"},
    {"travel-guide", "group-tags"},
    {"travel-guide", "extra-paragraphs"},
    {"travel-guide", "table-headers-footers"},
    {"travel-guide", "role-map"},
    {"handbook", "style-names", "handbook.styles.xml"},
    {"handbook", "table-metadata"},
    {"handbook", "reshuffle-frames"},
    {"handbook", "end-notes"},
    {"handbook", "group-tags"},
    {"handbook", "extra-paragraphs"},
    {"handbook", "table-headers-footers"},
    {"handbook", "table-layout"},
    {"handbook", "role-map"},
};

INSTANTIATE_TEST_SUITE_P(Steps, SampleTrees, testing::ValuesIn(kSteps), [](const auto& tested) {
  return TestName(std::string(tested.param.sample) + "_" + tested.param.step);
});

class SampleTree : public testing::TestWithParam<std::string> {};

TEST_P(SampleTree, IsThatOfTheReferenceFile) {
  ExpectGolden("trees/" + GetParam(), TreeOf(SamplePath(GetParam() + ".pdf")));
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleTree, testing::Values("annual-report", "travel-guide", "handbook"),
                         [](const auto& tested) { return TestName(tested.param); });

}  // namespace
}  // namespace tgx::test
