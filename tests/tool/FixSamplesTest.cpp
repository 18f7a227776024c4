// The whole repair of documents that real programs wrote, with the marks of an exporter and without.
#include <algorithm>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

#include "tests/support/DataFiles.h"
#include "tests/support/Paths.h"
#include "tests/support/Rendering.h"
#include "tests/support/TreeText.h"
#include "tests/tool/RunTool.h"
#include "tool/Marks.h"

namespace tgx::test {
namespace {

using Json = nlohmann::ordered_json;

std::string TextOf(const std::string& pdf) {
  const ProcessResult result = Process({"pdftotext", pdf, "-"}).Run();
  EXPECT_EQ(result.status, 0) << result.err;
  return result.out;
}

void ExpectNothingChanged(const std::string& json) {
  const Json report = Json::parse(json);
  for (const auto& [key, number] : report["changes"].items()) EXPECT_EQ(number, 0) << key;
  for (const auto& [key, count] : report["counts"].items()) EXPECT_EQ(count["before"], count["after"]) << key;
  EXPECT_EQ(report["language"]["before"], report["language"]["after"]);
}

Json TreeOf(const std::string& pdf) { return Json::parse(RunTool({"tree", "--json", "--quiet", pdf}).out); }

/// Texts and languages of the tree that are marks still, and types that are.
void CollectMarks(const Json& parent, std::vector<std::string>& marks) {
  if (!parent.contains("kids")) return;
  for (const Json& kid : parent["kids"]) {
    for (const char* key : {"alt", "title", "lang"}) {
      if (!kid.contains(key)) continue;
      const auto text = kid[key].get<std::string>();
      if (tool::HoldsMark(text) || text.find("[Lang=") != std::string::npos) marks.push_back(text);
    }
    if (kid.contains("type")) {
      const auto type = kid["type"].get<std::string>();
      if (type.starts_with("GT_")) marks.push_back(type);
    }
    CollectMarks(kid, marks);
  }
}

/// Texts and names in an object that are marks.
class MarkSearch {
 public:
  // As deep as direct objects nest in these files.
  void LookAt(QPDFObjectHandle object) {
    if (object.isString()) LookAtText(object.getUTF8Value());
    if (object.isName() && object.getName().starts_with("/GT_")) found_.push_back(object.getName());
    if (object.isArray()) {
      for (const QPDFObjectHandle& item : object.getArrayAsVector()) LookAtDirect(item);
    } else if (object.isDictionary()) {
      for (const auto& [key, value] : object.getDictAsMap()) {
        if (key.starts_with("/GT_")) found_.push_back(key);
        LookAtDirect(value);
      }
    }
  }
  const std::vector<std::string>& Found() const { return found_; }

 private:
  void LookAtDirect(QPDFObjectHandle object) {
    if (!object.isIndirect()) LookAt(object);
  }
  void LookAtText(const std::string& text) {
    const bool isMark = tool::HoldsMark(text) || text.find("[Lang=") != std::string::npos ||
                        text.find("[ATT]") != std::string::npos || text.find("MATHML_") != std::string::npos ||
                        text.find("id_useralttext") != std::string::npos;
    if (isMark) found_.push_back(text);
  }

  std::vector<std::string> found_;
};

/// Marks in the properties of marked content, and images of one sample.
class PageSearch : public QPDFObjectHandle::ParserCallbacks {
 public:
  explicit PageSearch(QPDFObjectHandle resources) : images_(resources.getKeyIfDict("/XObject")) {}
  void handleObject(QPDFObjectHandle object) override {
    if (object.isDictionary()) marks_.LookAt(object);
    if (object.isOperator() && object.getOperatorValue() == "Do" && last_.isName()) LookAtImage(last_.getName());
    last_ = object;
  }
  void handleEOF() override {}
  std::vector<std::string> Found() const {
    std::vector<std::string> found = marks_.Found();
    found.insert(found.end(), dots_.begin(), dots_.end());
    return found;
  }

 private:
  void LookAtImage(const std::string& name) {
    QPDFObjectHandle image = images_.getKeyIfDict(name);
    if (!image.isStream()) return;
    QPDFObjectHandle size = image.getDict();
    const auto isOne = [&size](const char* key) {
      return size.getKey(key).isInteger() && size.getKey(key).getIntValue() == 1;
    };
    if (isOne("/Width") && isOne("/Height")) dots_.push_back(name);
  }

  QPDFObjectHandle images_, last_;
  MarkSearch marks_;
  std::vector<std::string> dots_;
};

/// A sample, the files beside it, and what the report notes of marks that are incomplete.
struct Sample {
  const char* name;
  std::vector<std::pair<const char*, const char*>> sideFiles;  ///< option and file
  std::vector<std::string> notes;
  /// By page: where it is not painted as it was before the marks. Of two bullets one over the other the exporter's own goes,
  /// as far as the step looks; behind that both stay.
  std::map<std::size_t, Difference> differences;
};

void PrintTo(const Sample& sample, std::ostream* out) { *out << sample.name; }

class FixSamples : public testing::TestWithParam<Sample> {
 protected:
  std::vector<std::string> Command(const std::string& input, const std::string& output) {
    std::vector<std::string> command = {"fix", input, "-o", output, "--json"};
    for (const auto& [option, file] : GetParam().sideFiles) {
      command.emplace_back(option);
      command.push_back(DataPath(std::string("samples/") + file));
    }
    return command;
  }
  /// Runs the repair and gives the report.
  Json Fix() {
    const ProcessResult result = RunTool(Command(Input(), Output()));
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    return Json::parse(result.out);
  }
  std::string Input() const { return DataPath(std::string("samples/") + GetParam().name + ".pdf"); }
  std::string Output() const { return folder_ / "out.pdf"; }

  TempFolder folder_;
};

TEST_P(FixSamples, GivesASoundDocument) {
  const Json report = Fix();
  EXPECT_EQ(report["saved"], true);
  for (const Json& step : report["steps"]) EXPECT_FALSE(step.contains("skipped")) << step;
  ExpectSound(ReadFile(Output()));
  const ProcessResult check = Process({"qpdf", "--check", Output()}).Run();
  EXPECT_EQ(check.status, 0) << check.out << check.err;
}

TEST_P(FixSamples, LeavesNoMarkInTheTree) {
  Fix();
  std::vector<std::string> marks;
  CollectMarks(TreeOf(Output()), marks);
  EXPECT_THAT(marks, testing::IsEmpty());
}

TEST_P(FixSamples, TellsOfIncompleteMarks) {
  std::vector<std::string> notes;
  const Json report = Fix();
  for (const Json& note : report["notes"]) {
    notes.push_back(std::to_string(note.value("page", 0)) + ": " + note["text"].get<std::string>());
  }
  EXPECT_EQ(notes, GetParam().notes);
}

TEST_P(FixSamples, LeavesNoMarkInAnyObject) {
  Fix();
  ReadBack file(ReadFile(Output()));
  MarkSearch search;
  for (QPDFObjectHandle object : file->getAllObjects()) search.LookAt(object.isStream() ? object.getDict() : object);
  EXPECT_THAT(search.Found(), testing::IsEmpty());
}

TEST_P(FixSamples, LeavesNoMarkAndNoImageOfOneSampleOnThePages) {
  Fix();
  ReadBack file(ReadFile(Output()));
  for (QPDFPageObjectHelper page : QPDFPageDocumentHelper(file.Pdf()).getAllPages()) {
    PageSearch search(page.getAttribute("/Resources", false));
    page.parseContents(&search);
    EXPECT_THAT(search.Found(), testing::IsEmpty());
  }
}

TEST_P(FixSamples, HasMarksBeforeInObjectsAndOnPages) {
  ReadBack file(ReadFile(Input()));
  MarkSearch objects;
  for (QPDFObjectHandle object : file->getAllObjects()) objects.LookAt(object.isStream() ? object.getDict() : object);
  EXPECT_GT(objects.Found().size(), 10U);
  std::size_t images = 0;
  for (QPDFPageObjectHelper page : QPDFPageDocumentHelper(file.Pdf()).getAllPages()) {
    PageSearch search(page.getAttribute("/Resources", false));
    page.parseContents(&search);
    images += search.Found().size();
  }
  EXPECT_GT(images, 10U);
}

// The exporter's own documents are what the marks were put into.
TEST_P(FixSamples, PaintsThePagesAsTheyWereBeforeTheMarks) {
  Fix();
  const std::string exported = DataPath(std::string("samples/exported/") + GetParam().name + ".pdf");
  const std::vector<Bitmap> repaired = RenderContent(ReadFile(Output()), 60, 99);
  const std::vector<Bitmap> original = RenderContent(ReadFile(exported), 60, 99);
  ASSERT_EQ(repaired.size(), original.size());
  std::map<std::size_t, Difference> differences;
  for (std::size_t i = 0; i < repaired.size(); ++i) {
    const Difference difference = Compare(repaired[i], original[i]);
    if (!difference.IsEmpty()) differences[i + 1] = difference;
  }
  EXPECT_EQ(differences, GetParam().differences);
}

TEST_P(FixSamples, GivesTheTreeOfTheReferenceFile) {
  Fix();
  const ProcessResult outline = RunTool({"tree", "--text", Output()});
  EXPECT_EQ(outline.status, 0);
  ExpectGolden(std::string("fix/") + GetParam().name, outline.out);
}

TEST_P(FixSamples, SecondRepairChangesNothingMore) {
  Fix();
  const std::string again = folder_ / "again.pdf";
  const ProcessResult result = RunTool(Command(Output(), again));
  EXPECT_EQ(result.status, 0) << result.err;
  ExpectNothingChanged(result.out);
  EXPECT_EQ(TreeOf(Output()), TreeOf(again));
}

const Sample kSamples[] = {
    {"annual-report",
     {{"--styles", "annual-report.styles.xml"},
      {"--toc", "annual-report.toc.xml"},
      {"--tables", "annual-report.tables.tsv"},
      {"--forms", "annual-report-filled-form.pdf"}},
     {"0: 3 mentions of header cells that do not exist were taken out of table cells"},
     {}},
    // A formula without its end, and a table whose head spans columns that its cells name.
    {"handbook",
     {{"--styles", "handbook.styles.xml"}},
     {"0: 6 mentions of header cells that do not exist were taken out of table cells",
      "1: the mark \"MATHML_5_START\" was taken out of the structure tree: its formula is not complete"},
     {{1, {50, 77, 53, 104}}}},
    // An anchor whose frame has no end.
    {"travel-guide",
     {{"--toc", "travel-guide.toc.xml"}},
     {"5: no anchor asks for a frame; what it holds stays where the exporter has put it",
      "5: the mark \"\u222E"
      "f19\" was taken out of the structure tree: no whole frame belongs to it"},
     {{8, {88, 398, 91, 413}}}},
};

std::string NameOfSample(const testing::TestParamInfo<Sample>& info) {
  std::string name = info.param.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Samples, FixSamples, testing::ValuesIn(kSamples), NameOfSample);

class FixDocument : public testing::TestWithParam<DataFile> {
 protected:
  /// Repairs a file: no step fails; one that can do nothing in it is skipped and says why.
  std::string Fix(const std::string& input, const std::string& output) {
    const ProcessResult result = RunTool({"fix", input, "-o", output, "--json"});
    EXPECT_EQ(result.status, 0) << result.err;
    return result.out;
  }
  std::string Fix() { return Fix(GetParam().path, Output()); }
  std::string Output() const { return folder_ / "out.pdf"; }

  TempFolder folder_;
};

TEST_P(FixDocument, GivesAValidDocumentWithTheSameText) {
  EXPECT_EQ(Json::parse(Fix())["saved"], true);
  const ProcessResult check = Process({"qpdf", "--check", Output()}).Run();
  EXPECT_EQ(check.status, 0) << check.out << check.err;
  EXPECT_EQ(TextOf(Output()), TextOf(GetParam().path));
}

TEST_P(FixDocument, PaintsTheSamePages) {
  Fix();
  const std::vector<Bitmap> repaired = RenderPages(ReadFile(Output()));
  const std::vector<Bitmap> original = RenderPages(ReadFile(GetParam().path));
  ASSERT_EQ(repaired.size(), original.size());
  for (std::size_t i = 0; i < repaired.size(); ++i) EXPECT_TRUE(Compare(repaired[i], original[i]).IsEmpty()) << i + 1;
}

TEST_P(FixDocument, SecondRepairChangesNothingMore) {
  Fix();
  const std::string again = folder_ / "again.pdf";
  ExpectNothingChanged(Fix(Output(), again));
  EXPECT_EQ(TreeOf(Output()), TreeOf(again));
}

std::vector<DataFile> DocumentsWithoutMarks() {
  std::vector<DataFile> files;
  for (const DataFile& file : DataFiles()) {
    if (!file.name.starts_with("samples/")) files.push_back(file);
  }
  return files;
}

std::string NameOfDocument(const testing::TestParamInfo<DataFile>& info) { return TestName(info.param); }

INSTANTIATE_TEST_SUITE_P(Corpus, FixDocument, testing::ValuesIn(DocumentsWithoutMarks()), NameOfDocument);

}  // namespace
}  // namespace tgx::test
