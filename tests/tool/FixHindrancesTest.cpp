// Steps of the whole repair that can do nothing in a document: what is said of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using Json = nlohmann::ordered_json;

class FixHindrances : public testing::Test {
 protected:
  /// Runs the repair, which goes well, and gives what the report says of a step.
  Json ReportOn(const std::string& step, TestDocument& document) {
    folder_.Write("in.pdf", document.Write());
    const ProcessResult result = Tool({"fix", "in.pdf", "-o", "out.pdf", "--json"}).In(folder_.Path()).Run();
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    const Json report = Json::parse(result.out);
    for (const Json& entry : report["steps"]) {
      if (entry["step"] == step) return entry;
    }
    return {};
  }
  /// Why a step was skipped; the report has nothing else on it.
  std::string ReasonFor(const std::string& step, TestDocument& document) {
    const Json entry = ReportOn(step, document);
    EXPECT_EQ(entry["result"], 0);
    EXPECT_EQ(entry["error"], "");
    EXPECT_EQ(entry["changed"], false);
    return entry.contains("skipped") ? entry["skipped"]["reason"].get<std::string>() : "not skipped";
  }
  std::string TreeOfOutput() { return TreeText(ReadFile(folder_ / "out.pdf")); }

  TempFolder folder_;
};

TEST_F(FixHindrances, ReferencesWithoutNotesAreNotLinked) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({
      Element("P").Text(page, "Words")({Element("Reference").Text(page, "1"), Element("Reference").Text(page, "2")}),
  })});
  EXPECT_EQ(ReasonFor("footnote-links", document), "2 References, but no Note to link with");
}

TEST_F(FixHindrances, NotesWithoutReferencesAreNotLinked) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("Note").Text(page, "Words")})});
  EXPECT_EQ(ReasonFor("footnote-links", document), "1 Note, but no Reference to link with");
}

TEST_F(FixHindrances, UnequalNumbersOfReferencesAndNotesAreTold) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({
      Element("Reference").Text(page, "1"),
      Element("Note").Text(page, "one"),
      Element("Note").Text(page, "two"),
  })});
  EXPECT_EQ(ReasonFor("footnote-links", document), "1 Reference and 2 Notes, which can only be linked in pairs");
}

TEST_F(FixHindrances, WhatIsLinkedAlreadyDoesNotCount) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({
      Element("Link")({Element("Reference").Text(page, "1")}),
      Element("Reference").Text(page, "2"),
  })});
  EXPECT_EQ(ReasonFor("footnote-links", document), "1 Reference, but no Note to link with");
}

TEST_F(FixHindrances, WhatIsLinkedBesideContentThatThePageDoesNotHaveDoesNotCount) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({
      Element("Reference").Mcid(page, 90).Add(Element("Link").Text(page, "1").Object(page.Link("x"))),
      Element("Reference").Text(page, "2"),
  })});
  EXPECT_EQ(ReasonFor("footnote-links", document), "1 Reference, but no Note to link with");
}

TEST_F(FixHindrances, NoteWithoutContentIsTold) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("Reference").Text(page, "1"), Element("Note")})});
  const Json entry = ReportOn("footnote-links", document);
  EXPECT_EQ(entry["skipped"].dump(), R"({"page":1,"reason":"footnote 1 has no content on any page"})");
}

TEST_F(FixHindrances, McidThatIsNoIntegerIsToldWithItsPage) {
  TestDocument document;
  Page& first = document.AddPage();
  Page& second = document.AddPage();
  document.Tree({Element("Document")({Element("Reference").Text(first, "1"), Element("Note").Text(second, "one")})});
  second.Add(Marked("Span", "<</Lang(de)>>", {Marked("Span", "<</MCID(x)>>", {Text("deep")})}));
  const Json entry = ReportOn("footnote-links", document);
  EXPECT_EQ(entry["skipped"].dump(), R"({"page":2,"reason":"marked content has an MCID that is no integer"})");
  EXPECT_EQ(entry["changed"], false);
}

TEST_F(FixHindrances, ContentWithoutAPageIsTold) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({
      Element("P").Text(page, "Words").Lang("de"),
      Element("Quote").RawKid("7"),
  })});
  EXPECT_EQ(ReasonFor("main-language", document),
            "mcid 7 of an element Quote in the structure tree belongs to no page, so how much text each language has cannot "
            "be counted");
}

TEST_F(FixHindrances, EmptyAlternateTextDoesNoHarmWhereNoTableHasADescription) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("Figure").Alt("").Image(page, 9, 9)})});
  EXPECT_EQ(ReasonFor("table-metadata", document), "no table has a description");
}

TEST_F(FixHindrances, ShortAlternateTextsDoNotKeepDescriptionsOfTablesFromBeingRead) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({
      Element("Figure").Alt("").Image(page, 9, 9),
      Element("Figure").Alt("\x80").Image(page, 9, 9),
      Element("Table")({
          Element("TR")({Element("TH").Text(page, "a")}),
          Element("Figure").Alt(u"[ATT]<Tables><Table type=\"1\"/></Tables>").Image(page, 1, 1),
      }),
  })});
  const Json entry = ReportOn("table-metadata", document);
  EXPECT_EQ(entry["changed"], true);
  EXPECT_FALSE(entry.contains("skipped"));
  EXPECT_THAT(TreeOfOutput(), HasSubstr("Figure\n"));
  EXPECT_THAT(TreeOfOutput(), HasSubstr("Figure alt=u\"\\u{2022}\"\n"));
}

TEST_F(FixHindrances, DescriptionOfMoreTablesThanThereAreIsNotUsed) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("Table")({Element("TR")({Element("TD").Text(page, "a")})})})});
  folder_.Write("in.pdf", document.Write());
  folder_.Write("fits.tsv", "Table\t1\nLayout\n");
  folder_.Write("other.tsv", "Table\t1\nLayout\nTable\t2\nRow\n");
  const auto fix = [this](const char* tables) {
    const ProcessResult result =
        Tool({"fix", "in.pdf", "-o", "out.pdf", "--force", "--tables", tables}).In(folder_.Path()).Run();
    EXPECT_EQ(result.status, 0) << result.err;
    return result.out;
  };
  EXPECT_THAT(fix("other.tsv"), HasSubstr("layout-tables: skipped: other.tsv tells of table 2, but there are 1: "));
  EXPECT_THAT(TreeOfOutput(), HasSubstr("Table\n"));
  EXPECT_THAT(fix("fits.tsv"), HasSubstr("layout-tables: done\n"));
  EXPECT_THAT(TreeOfOutput(), Not(HasSubstr("Table\n")));
}

TEST_F(FixHindrances, StepsThatFoundNothingSaySo) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("P").Text(page, "Words"), Element("P")})});
  EXPECT_EQ(ReportOn("mathml", document)["changed"], false);
  const ProcessResult result = Tool({"fix", "in.pdf", "-o", "out.pdf", "--force"}).In(folder_.Path()).Run();
  EXPECT_THAT(result.out, HasSubstr("mathml: nothing to do\n"));
  EXPECT_THAT(result.out, HasSubstr("remove-empty-tags: done\n"));
}

TEST_F(FixHindrances, StepsWithoutFootnotesHaveNothingToDo) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("P").Text(page, "Words")})});
  const Json entry = ReportOn("footnote-links", document);
  EXPECT_EQ(entry["changed"], false);
  EXPECT_FALSE(entry.contains("skipped"));
}

Element FormulaMark(std::u16string_view alt) { return Element("Span").Alt(alt); }

TEST_F(FixHindrances, FormulasStayWhereOneHasAPartThatCannotBeMoved) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")(
      {Element("P").Add(FormulaMark(u"MATHML_3_START")).Text(page, "x").RawKid("77").Add(FormulaMark(u"MATHML_3_END"))})});
  EXPECT_EQ(ReasonFor("mathml", document),
            "formula 3 has a part that is no content of its page's own, and cannot be moved: the other parts would be lost");
  EXPECT_THAT(TreeOfOutput(), HasSubstr("mcid 0 page 1"));
}

TEST_F(FixHindrances, FormulasAreMadeBesideAPartThatCannotBeMoved) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("P")
                                          .RawKid("76")
                                          .Add(FormulaMark(u"MATHML_3_START"))
                                          .Text(page, "x")
                                          .Add(FormulaMark(u"MATHML_3_END"))
                                          .RawKid("77")
                                          .Add(FormulaMark(u"MATHML_4_START"))
                                          .RawKid("78")})});
  EXPECT_EQ(ReportOn("mathml", document)["changed"], true);
  EXPECT_THAT(TreeOfOutput(), HasSubstr("Formula"));
}

}  // namespace
}  // namespace tgx::test
