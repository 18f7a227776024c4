#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Json = nlohmann::ordered_json;

/// Runs of the command on a document that the test builds.
class FixCommand : public testing::Test {
 protected:
  ProcessResult Fix(TestDocument& document, const std::vector<std::string>& options = {}) {
    folder_.Write("in.pdf", document.Write());
    return FixFile("in.pdf", options);
  }
  ProcessResult FixFile(const std::string& input, const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments = {"fix", input, "-o", "out.pdf", "--force"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return Tool(arguments).In(folder_.Path()).Run();
  }
  /// The report of a run that goes well.
  Json ReportOf(TestDocument& document, std::vector<std::string> options = {}) {
    options.emplace_back("--json");
    const ProcessResult result = Fix(document, options);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    return Json::parse(result.out);
  }
  std::string Output() { return ReadFile(folder_ / "out.pdf"); }

  TempFolder folder_;
};

/// A page where an image of one sample follows a container: the rule that removes such images takes the second text of the
/// container with it.
void AddPageWithAnImageBehindAContainer(TestDocument& document, Element& parent) {
  Page& page = document.AddPage();
  const int mcid = page.Mark("P", Text("first"));
  static_cast<void>(mcid);
  Page& other = document.AddPage();
  other.Add(Marked("P", "<</MCID 0>>", {Text("one"), Text("two")}));
  other.Add(Image(1, 1));
  parent({Element("P").Mcid(page, mcid), Element("P").Mcid(other, 0)});
}

std::vector<std::string> SkippedSteps(const Json& report) {
  std::vector<std::string> names;
  for (const Json& step : report["steps"]) {
    if (step.contains("skipped")) names.push_back(step["step"]);
  }
  return names;
}

TEST_F(FixCommand, UndoesAStepThatTakesVisibleContentAwayAndGoesOn) {
  TestDocument document;
  Element top("Document");
  AddPageWithAnImageBehindAContainer(document, top);
  top({Element("P")});  // for a later step
  document.Tree({top});
  const Json report = ReportOf(document);
  EXPECT_THAT(SkippedSteps(report), ElementsAre("reshuffle-frames", "remove-dummy-images"));
  for (const Json& step : report["steps"]) {
    if (!step.contains("skipped")) continue;
    EXPECT_EQ(step["skipped"]["page"], 2);
    EXPECT_THAT(step["skipped"]["reason"].get<std::string>(), StartsWith("it would remove text, "));
    EXPECT_EQ(step["result"], 0);
  }
  ExpectSound(Output());
  ReadBack file(Output());
  EXPECT_THAT(file.Content(2), HasSubstr("(two)"));
  EXPECT_THAT(file.Content(2), HasSubstr(" Do"));
  EXPECT_EQ(report["counts"]["elements"]["after"], 3);
}

TEST_F(FixCommand, RunDoesWhatItIsTold) {
  TestDocument document;
  Element top("Document");
  AddPageWithAnImageBehindAContainer(document, top);
  document.Tree({top});
  folder_.Write("in.pdf", document.Write());
  EXPECT_EQ(Tool({"run", "in.pdf", "-o", "out.pdf", "remove-dummy-images"}).In(folder_.Path()).Run().status, 0);
  ReadBack file(Output());
  EXPECT_THAT(file.Content(2), Not(HasSubstr("(two)")));
}

TEST_F(FixCommand, TellsPeopleWhichStepsItSkippedAndWhy) {
  TestDocument document;
  Element top("Document");
  AddPageWithAnImageBehindAContainer(document, top);
  document.Tree({top});
  const ProcessResult result = Fix(document);
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr("remove-dummy-images: skipped: page 2: it would remove text, "));
  EXPECT_THAT(result.out, HasSubstr("nothing had to be changed\nsaved out.pdf\n"));
}

TEST_F(FixCommand, RemovesImagesOfOneSampleAndCountsThem) {
  TestDocument document;
  Page& page = document.AddPage();
  page.Add(Image(1, 1)).Add(InlineImage(1, 1)).Add(Image(2, 1));
  document.Tree({Element("Document")({Element("P").Text(page, "Words")})});
  const Json report = ReportOf(document);
  EXPECT_THAT(SkippedSteps(report), ElementsAre());
  EXPECT_EQ(report["changes"]["imagesRemoved"], 2);
  EXPECT_EQ(report["changes"]["contentRemoved"], 0);
}

TEST_F(FixCommand, RemovesTheContentOfFrameMarkersWhateverItPaints) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({
      Element("Figure").Alt(u"TEXTFRAME_START").Text(page, "mark"),
      Element("P").Text(page, "Words"),
  })});
  const Json report = ReportOf(document);
  EXPECT_THAT(SkippedSteps(report), ElementsAre());
  EXPECT_EQ(report["changes"]["contentRemoved"], 1);
  EXPECT_EQ(report["changes"]["tagsRemoved"], 1);
  EXPECT_EQ(report["counts"]["textFrameMarks"].dump(), R"({"before":1,"after":0})");
  EXPECT_THAT(ReadBack(Output()).Content(1), Not(HasSubstr("mark")));
}

TEST_F(FixCommand, KeepsTextThatStandsInsideAMarkerWithAnMcidOfItsOwn) {
  TestDocument document;
  Page& page = document.AddPage();
  page.Add(Marked("Figure", "<</MCID 0>>", {Image(1, 1), Marked("P", "<</MCID 1>>", {Text("Words")})}));
  document.Tree({Element("Document")({
      Element("Figure").Alt(u"TEXTFRAME_START").Mcid(page, 0),
      Element("P").Mcid(page, 1),
  })});
  EXPECT_THAT(SkippedSteps(ReportOf(document)), ElementsAre("remove-frame-markers"));
  EXPECT_THAT(ReadBack(Output()).Content(1), HasSubstr("(Words)"));
}

TEST_F(FixCommand, JsonHasThePublishedKeys) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("P").Text(page, "Words")})});
  const Json report = ReportOf(document);
  const auto keysOf = [](const Json& object) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : object.items()) keys.push_back(key);
    return keys;
  };
  EXPECT_THAT(keysOf(report),
              ElementsAre("version", "input", "output", "steps", "saved", "changes", "counts", "language", "notes"));
  EXPECT_THAT(keysOf(report["changes"]),
              ElementsAre("tagsRemoved", "tagsAdded", "tagsRenamed", "imagesRemoved", "contentRemoved", "textsRewritten"));
  EXPECT_THAT(keysOf(report["counts"]),
              ElementsAre("elements", "anchors", "textFrameMarks", "tableDescriptions", "formulaMarks", "bracketLanguages",
                          "tables", "tablesWithHeaders", "headerCells", "contentsEntries", "formulas", "captions", "figures",
                          "describedFigures", "links", "describedLinks", "roles", "filledFields"));
  EXPECT_EQ(report["counts"]["elements"].dump(), R"({"before":2,"after":2})");
}

TEST_F(FixCommand, CountsTagsByWhatBecameOfEachOfThem) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({
      Element("GT_BlockQuote").Text(page, "quoted"),
      Element("P"),
      Element("P").Text(page, "Words"),
  })});
  const Json changes = ReportOf(document)["changes"];
  EXPECT_EQ(changes["tagsRemoved"], 1);  // the empty one
  EXPECT_EQ(changes["tagsAdded"], 1);    // BlockQuote
  EXPECT_EQ(changes["tagsRenamed"], 1);  // its paragraph
}

TEST_F(FixCommand, CountsTablesThatSayWhatTheirHeaderCellsHead) {
  TestDocument document;
  Page& page = document.AddPage();
  const auto row = [&](const char* type) {
    return Element("TR")({Element(type).Text(page, "a"), Element(type).Text(page, "b")});
  };
  document.Tree({Element("Document")({
      Element("Table")(
          {row("TH"), row("TD"), Element("Figure").Alt(u"[ATT]<Tables><Table type=\"1\"/></Tables>").Image(page, 1, 1)}),
      Element("Table")({row("TD")}),
  })});
  const Json counts = ReportOf(document)["counts"];
  EXPECT_EQ(counts["tables"].dump(), R"({"before":2,"after":2})");
  EXPECT_EQ(counts["headerCells"].dump(), R"({"before":2,"after":2})");
  EXPECT_EQ(counts["tablesWithHeaders"].dump(), R"({"before":0,"after":1})");
  EXPECT_EQ(counts["tableDescriptions"].dump(), R"({"before":1,"after":0})");
}

TEST_F(FixCommand, RefusesADocumentThatIsNotTagged) {
  TestDocument document;
  document.AddPage();
  const ProcessResult result = Fix(document);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, Message("in.pdf: has no structure tree: only tagged documents can be repaired"));
  EXPECT_FALSE(Exists(folder_ / "out.pdf"));
}

/// A table whose description has more cells than the table.
void AddTableWithTooLongADescription(TestDocument& document) {
  Page& page = document.AddPage();
  document.Tree({Element("Document")({
      Element("Table")({
          Element("TR")({Element("TD").Text(page, "a")}),
          Element("Figure")
              .Alt(u"[ATT]<Tables><Table type=\"3\"><Row index=\"0\"><Cell type=\"0\" row=\"0\" index=\"0\"/>"
                   u"<Cell type=\"0\" row=\"0\" index=\"1\"/></Row></Table></Tables>")
              .Image(page, 1, 1),
      }),
      Element("P"),
  })});
}

TEST_F(FixCommand, FailedStepEndsTheRunAndTheMessageTellsTheWaysOut) {
  TestDocument document;
  AddTableWithTooLongADescription(document);
  const ProcessResult result = Fix(document);
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, StartsWith("tgx: in.pdf: step table-metadata failed with 2: "));
  EXPECT_THAT(result.err, EndsWith("; --skip table-metadata leaves it out, --keep-going goes on after it\n"));
  EXPECT_THAT(result.out, HasSubstr("table-metadata: failed with 2: "));
  EXPECT_THAT(result.out, HasSubstr("nothing was written\n"));
  EXPECT_FALSE(Exists(folder_ / "out.pdf"));
}

TEST_F(FixCommand, KeepGoingRunsTheRestAndSaves) {
  TestDocument document;
  AddTableWithTooLongADescription(document);
  const ProcessResult result = Fix(document, {"--keep-going"});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, StartsWith("tgx: in.pdf: step table-metadata failed with 2: "));
  EXPECT_THAT(result.err, Not(HasSubstr("--skip")));
  EXPECT_THAT(result.out, HasSubstr("remove-empty-tags: done\n"));
  EXPECT_THAT(TreeText(Output()), Not(HasSubstr("  P\n")));
}

TEST_F(FixCommand, SkippingTheFailingStepGoesWell) {
  TestDocument document;
  AddTableWithTooLongADescription(document);
  EXPECT_EQ(Fix(document, {"--skip", "table-metadata"}).status, 0);
}

TEST_F(FixCommand, TakesListsOfStepsInOneOrSeveralOptions) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("P").Text(page, "Words")})});
  const ProcessResult result =
      Fix(document, {"--skip", "mathml,footnote-links", "--skip", "end-notes", "--with", "table-layout"});
  EXPECT_THAT(result.out, Not(HasSubstr("mathml")));
  EXPECT_THAT(result.out, Not(HasSubstr("footnote-links")));
  EXPECT_THAT(result.out, Not(HasSubstr("end-notes")));
  EXPECT_THAT(result.out, HasSubstr("table-layout: nothing to do\n"));
}

TEST_F(FixCommand, NamesAStepThatItDoesNotKnow) {
  TestDocument document;
  document.AddPage();
  const ProcessResult result = Fix(document, {"--with", "polish"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, Message("--with polish: fix has no such step; see tgx fix --help"));
}

TEST_F(FixCommand, NamesASideFileThatIsNotThere) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("P").Text(page, "Words")})});
  for (const char* option : {"--styles", "--tables", "--forms"}) {
    const ProcessResult result = Fix(document, {option, "none"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, Message("none: no such file"));
  }
}

TEST_F(FixCommand, SecondRunChangesNothingMore) {
  TestDocument document;
  Page& page = document.AddPage();
  page.Add(Image(1, 1));
  document.Tree({Element("Document")({
      Element("Figure").Alt(u"TEXTFRAME_START").Image(page, 1, 1),
      Element("P").Text(page, "Words").Lang("[Lang=de]"),
      Element("P"),
  })});
  EXPECT_EQ(Fix(document).status, 0);
  folder_.Write("again.pdf", Output());
  const ProcessResult again = FixFile("again.pdf");
  EXPECT_THAT(again.out, HasSubstr("nothing had to be changed\n"));
}

TEST_F(FixCommand, WarnsOfADamagedFileInAFewLinesThatNameIt) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("P").Text(page, "Words")})});
  std::string bytes = document.Write();
  const std::size_t table = bytes.rfind("startxref");
  bytes.replace(table, std::string("startxref").size(), "startxxxx");
  folder_.Write("in.pdf", bytes);
  for (const std::vector<std::string>& command : {std::vector<std::string>{"fix", "in.pdf", "-o", "out.pdf", "--force"},
                                                  {"tree", "in.pdf"},
                                                  {"run", "in.pdf", "-o", "out.pdf", "--force", "reserved"}}) {
    const ProcessResult result = Tool(command).In(folder_.Path()).Run();
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.err, StartsWith("tgx: warning: in.pdf")) << command.front();
    EXPECT_EQ(result.err.find("in.pdf: in.pdf"), std::string::npos) << result.err;
    EXPECT_LE(std::count(result.err.begin(), result.err.end(), '\n'), 11);
  }
}

TEST_F(FixCommand, RefusesFilesWithoutAName) {
  for (const char* option : {"--styles", "--toc", "--tables", "--forms", "--password-file"}) {
    const ProcessResult result = Tool({"fix", "in.pdf", "-o", "out.pdf", option, ""}).In(folder_.Path()).Run();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, Message(std::string(option) + ": the name of the file is empty; see tgx fix --help"));
  }
}

TEST_F(FixCommand, QuietDoesNotWarnOfDamage) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("P").Text(page, "Words")})});
  std::string bytes = document.Write();
  bytes.replace(bytes.rfind("startxref"), std::string("startxref").size(), "startxxxx");
  folder_.Write("in.pdf", bytes);
  const ProcessResult result = FixFile("in.pdf", {"--quiet"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "");
}

}  // namespace
}  // namespace tgx::test
