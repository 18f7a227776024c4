#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/Paths.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

using Json = nlohmann::ordered_json;

std::vector<std::string> RealDocuments() {
  std::vector<std::string> paths;
  for (const char* folder : {"samples", "corpus"}) {
    for (const auto& entry : std::filesystem::directory_iterator(test::DataPath(folder))) {
      if (entry.path().extension() == ".pdf") paths.push_back(entry.path().string());
    }
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

std::string TestName(const testing::TestParamInfo<std::string>& info) {
  std::string name = std::filesystem::path(info.param).stem().string();
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

/// What the command makes of documents that real programs wrote.
class RealDocument : public testing::TestWithParam<std::string> {
 protected:
  Json TreeOf(const std::string& path) {
    const ProcessResult result = RunTool({"tree", "--json", "--quiet", path});
    EXPECT_EQ(result.status, 0) << result.err;
    return Json::parse(result.out);
  }
  /// Runs a step, checks the output with qpdf and gives its tree.
  Json TreeAfter(const std::string& step) {
    const std::string output = folder_ / "out.pdf";
    const ProcessResult result = RunTool({"run", GetParam(), "-o", output, step});
    EXPECT_EQ(result.status, 0) << result.err;
    const ProcessResult check = Process({"qpdf", "--check", output}).Run();
    EXPECT_EQ(check.status, 0) << check.out << check.err;
    return TreeOf(output);
  }

  TempFolder folder_;
};

bool IsElement(const Json& kid) { return kid.contains("type"); }

bool HasContent(const Json& kid) {
  if (!IsElement(kid) || kid.contains("repeated")) return true;
  return kid.contains("kids") && std::any_of(kid["kids"].begin(), kid["kids"].end(), HasContent);
}

/// The kids of an element or of the tree as they should be once the empty elements are removed.
void RemoveEmpty(Json& parent) {
  if (!parent.contains("kids")) return;
  Json kept = Json::array();
  for (Json& kid : parent["kids"]) {
    if (!HasContent(kid)) continue;
    RemoveEmpty(kid);
    kept.push_back(kid);
  }
  parent["kids"] = kept;
}

/// The same once the topmost empty elements are marked.
void MarkEmpty(Json& parent) {
  if (!parent.contains("kids")) return;
  for (Json& kid : parent["kids"]) {
    if (HasContent(kid)) {
      MarkEmpty(kid);
    } else {
      const std::string type = kid["type"].get<std::string>() + " [EMPTY]";
      kid["type"] = type;
      kid["role"] = type;
    }
  }
}

TEST_P(RealDocument, RemovingEmptyTagsTakesTheEmptyElementsAndNothingElse) {
  Json expected = TreeOf(GetParam());
  RemoveEmpty(expected);
  EXPECT_EQ(TreeAfter("remove-empty-tags"), expected);
}

TEST_P(RealDocument, MarkingEmptyTagsRenamesTheTopmostEmptyElementsAndNothingElse) {
  Json expected = TreeOf(GetParam());
  MarkEmpty(expected);
  EXPECT_EQ(TreeAfter("mark-empty-tags"), expected);
}

/// The types that pdfinfo knows; it leaves out elements of all others, with what is below them.
const std::set<std::string> kTypesOfPdfinfo = {
    "Document",  "Part",    "Art",   "Sect",    "Div",       "BlockQuote", "Caption", "TOC",     "TOCI",  "Index",
    "NonStruct", "Private", "P",     "H",       "H1",        "H2",         "H3",      "H4",      "H5",    "H6",
    "L",         "LI",      "Lbl",   "LBody",   "Table",     "TR",         "TH",      "TD",      "THead", "TBody",
    "TFoot",     "Span",    "Quote", "Note",    "Reference", "BibEntry",   "Code",    "Link",    "Annot", "Ruby",
    "RB",        "RT",      "RP",    "Warichu", "WT",        "WP",         "Figure",  "Formula", "Form"};

void AddLines(const Json& parent, const std::string& indent, std::string& lines) {
  if (!parent.contains("kids")) return;
  for (const Json& kid : parent["kids"]) {
    if (!IsElement(kid) || !kTypesOfPdfinfo.contains(kid["role"].get<std::string>())) continue;
    lines += indent + kid["role"].get<std::string>() + "\n";
    AddLines(kid, indent + "  ", lines);
  }
}

/// The lines of `pdfinfo -struct` that name elements, without what it adds to them.
std::string ElementsOfPdfinfo(const std::string& path) {
  std::istringstream output(Process({"pdfinfo", "-struct", path}).Run().out);
  std::string lines;
  for (std::string line; std::getline(output, line);) {
    const std::size_t start = line.find_first_not_of(' ');
    if (start == std::string::npos || start % 2 != 0) continue;
    const std::size_t end = line.find_first_of(" :", start);
    const std::string type = line.substr(start, end == std::string::npos ? end : end - start);
    if (kTypesOfPdfinfo.contains(type)) lines += line.substr(0, start) + type + "\n";
  }
  return lines;
}

TEST_P(RealDocument, SavingAloneLeavesTheTree) { EXPECT_EQ(TreeAfter("reserved"), TreeOf(GetParam())); }

// Looks at the saved document: where an input is malformed, each reader repairs it in its own way.
TEST_P(RealDocument, TreeOfTheOutputAgreesWithPdfinfo) {
  std::string lines;
  AddLines(TreeAfter("reserved"), "", lines);
  EXPECT_EQ(lines, ElementsOfPdfinfo(folder_ / "out.pdf"));
}

INSTANTIATE_TEST_SUITE_P(Files, RealDocument, testing::ValuesIn(RealDocuments()), TestName);

}  // namespace
}  // namespace tgx::test
