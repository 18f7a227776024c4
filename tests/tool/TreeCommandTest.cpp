#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/TestDocument.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

using Json = nlohmann::ordered_json;

class TreeCommand : public testing::Test {
 protected:
  ProcessResult Run(TestDocument& document, std::vector<std::string> options = {}) {
    folder_.Write("in.pdf", document.Write());
    options.insert(options.begin(), {"tree", "in.pdf"});
    return Tool(options).In(folder_.Path()).Run();
  }
  std::string Outline(TestDocument& document) {
    const ProcessResult result = Run(document);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    return result.out;
  }
  Json Tree(TestDocument& document) {
    const ProcessResult result = Run(document, {"--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    return Json::parse(result.out);
  }

  TempFolder folder_;
};

TEST_F(TreeCommand, JsonHasEveryPropertyOfAnElementInItsOrder) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Lang("en").RoleMap({{"Lead", "P"}});
  document.Tree({Element("Lead")
                     .Title("First")
                     .Alt(u"\u2264a1")
                     .ActualText("caf\xE9")
                     .Lang("de")
                     .Id("c1")
                     .Attributes("<</O /Table /Scope /Column>>")
                     .Text(page, "Words")});
  EXPECT_EQ(Tree(document).dump(),
            R"({"version":1,"lang":"en","roleMap":{"Lead":"P"},"kids":[{"type":"Lead","role":"P",)"
            "\"title\":\"First\",\"alt\":\"\u2264a1\",\"actualText\":\"caf\u00E9\",\"lang\":\"de\",\"id\":\"c1\","
            R"("attributes":[{"O":"Table","Scope":"Column"}],"kids":[{"mcid":0,"page":1}]}]})");
}

TEST_F(TreeCommand, ContentOfAFormHasItsNumberWithinThat) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Stream("form", "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]>>", "/P <</MCID 4>> BDC EMC");
  document.Tree({Element("P").Text(page, "x").RawKid("<</Type/MCR/Pg $page1/Stm $form/MCID 4>>")});
  EXPECT_EQ(Tree(document)["kids"][0]["kids"].dump(), R"([{"mcid":0,"page":1},{"mcid":4,"page":1,"stream":true}])");
  EXPECT_EQ(Outline(document), "P\n  page 1: mcid 0\n  page 1, in a form: mcid 4\n");
}

TEST_F(TreeCommand, JsonLeavesOutKeysWithoutAValue) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("P")});
  EXPECT_EQ(Tree(document).dump(), R"({"version":1,"lang":null,"roleMap":{},"kids":[{"type":"P","role":"P"}]})");
}

TEST_F(TreeCommand, JsonKeepsEmptyTexts) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("Figure").Alt("")});
  EXPECT_EQ(Tree(document)["kids"][0]["alt"], "");
}

TEST_F(TreeCommand, PagesCountFromOne) {
  TestDocument document;
  document.AddPage();
  Page& second = document.AddPage();
  document.Tree({Element("P").Text(second, "Words")});
  EXPECT_EQ(Tree(document)["kids"][0]["kids"].dump(), R"([{"mcid":0,"page":2}])");
}

TEST_F(TreeCommand, ObjectReferencesGoByTheSubtypeOfTheirObject) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Link").Object(page.Link("https://example.org/"))});
  EXPECT_EQ(Tree(document)["kids"][0]["kids"].dump(), R"([{"objr":"Link","page":1}])");
}

TEST_F(TreeCommand, KidsOfUnknownKindAreListedByTheTypeThatTheyClaim) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("P").RawKid("<</Type /Riddle>>").RawKid("(text)").RawKid("[1 2]")});
  EXPECT_EQ(Tree(document)["kids"][0]["kids"].dump(),
            R"([{"unknown":"Riddle"},{"unknown":"Unknown"},{"unknown":"Unknown"}])");
}

TEST_F(TreeCommand, ContentWithoutAPageHasNoPage) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("P").RawKid("7")});
  EXPECT_EQ(Tree(document)["kids"][0]["kids"].dump(), R"([{"mcid":7}])");
}

TEST_F(TreeCommand, ContentOfAPageThatIsNotInTheDocumentHasNoPage) {
  TestDocument document;
  document.AddPage();
  document.Object("stray", "<</Type /Page>>");
  document.Tree({Element("P").Set("Pg", "$stray").RawKid("7")});
  EXPECT_EQ(Tree(document)["kids"][0]["kids"].dump(), R"([{"mcid":7}])");
}

TEST_F(TreeCommand, RolesFollowTheRoleMapToItsEnd) {
  TestDocument document;
  document.AddPage();
  document.RoleMap({{"Lead", "Body"}, {"Body", "P"}});
  document.Tree({Element("Lead")});
  EXPECT_EQ(Tree(document)["kids"][0]["role"], "P");
}

TEST_F(TreeCommand, RoleMapThatRunsInACircleEndsWhereItCloses) {
  TestDocument document;
  document.AddPage();
  document.RoleMap({{"A", "B"}, {"B", "A"}, {"P", "P"}});
  document.Tree({Element("A"), Element("P")});
  const Json kids = Tree(document)["kids"];
  EXPECT_EQ(kids[0]["role"], "A");
  EXPECT_EQ(kids[1]["role"], "P");
}

TEST_F(TreeCommand, AttributesKeepTheirTypes) {
  TestDocument document;
  document.AddPage();
  document.Tree(
      {Element("TD").Attributes("[<</O /Table /RowSpan 2 /Headers [(a) (b)]>> 0 "
                                "<</O /Layout /SpaceAfter 0.113 /BBox [0 -1.5 2 3] /X true /Y null>>]")});
  EXPECT_EQ(
      Tree(document)["kids"][0]["attributes"].dump(),
      R"([{"Headers":["a","b"],"O":"Table","RowSpan":2},{"BBox":[0,-1.5,2,3],"O":"Layout","SpaceAfter":0.113,"X":true}])");
}

TEST_F(TreeCommand, AttributesThatReferToThemselvesAreCutOff) {
  TestDocument document;
  document.AddPage();
  document.Object("ring", "<</O /Table /Again [$ring $ring $ring $ring $ring $ring $ring $ring]>>");
  document.Tree({Element("TD").Attributes("$ring")});
  EXPECT_EQ(Tree(document)["kids"][0]["attributes"][0]["Again"].size(), 8U);
}

TEST_F(TreeCommand, ElementMetAgainIsNotEnteredAgain) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("P").Named("twin").Text(page, "Words")}).RawKid("$twin")});
  EXPECT_EQ(Tree(document)["kids"][0]["kids"].dump(),
            R"([{"type":"P","role":"P","kids":[{"mcid":0,"page":1}]},{"type":"P","role":"P","repeated":true}])");
}

TEST_F(TreeCommand, OutlineShowsTheTreeWithAContentLineForEachPage) {
  TestDocument document;
  Page& first = document.AddPage();
  Page& second = document.AddPage();
  document.RoleMap({{"Lead", "P"}});
  document.Tree(
      {Element("Document")({Element("Lead").Lang("de").Text(first, "One").Text(first, "two").Text(second, "three"),
                            Element("Link").Text(first, "here").Object(first.Link("https://example.org/")),
                            Element("TH").Attributes("<</O /Table /Scope /Column>>").RawKid("<</Type /Riddle>>")})});
  EXPECT_EQ(Outline(document),
            "Document\n"
            "  Lead (P) lang=\"de\"\n"
            "    page 1: mcid 0 1\n"
            "    page 2: mcid 0\n"
            "  Link\n"
            "    page 1: mcid 2\n"
            "    page 1: object Link\n"
            "  TH Table.Scope=\"Column\"\n"
            "    unknown kid Riddle\n");
}

TEST_F(TreeCommand, OutlineCutsLongTextsAndEscapesControlCharacters) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("Figure").Alt(std::u16string_view(u"\x1B[2J" + std::u16string(100, u'x')))});
  EXPECT_EQ(Outline(document), "Figure alt=\"\\u001b[2J" + std::string(56, 'x') + "\u2026\"\n");
}

TEST_F(TreeCommand, TextAddsWhatMarkedContentShows) {
  TestDocument document;
  Page& page = document.AddPage();
  Element paragraph("P");
  paragraph.Mcid(page, page.Mark("P", Marked("Span", "", {Text("one "), Text("two"), Image(2, 2)})));
  document.Tree({paragraph, Element("Figure").Mark(page, Image(2, 2)), Element("P").Mcid(page, 99)});
  const Json kids = Json::parse(Run(document, {"--json", "--text"}).out)["kids"];
  EXPECT_EQ(kids[0]["kids"].dump(), R"([{"mcid":0,"page":1,"text":"one two"}])");
  EXPECT_EQ(kids[1]["kids"][0]["text"], "");
  EXPECT_FALSE(kids[2]["kids"][0].contains("text"));
}

TEST_F(TreeCommand, OutlineWithTextHasALineForEachMarkedContent) {
  TestDocument document;
  Page& page = document.AddPage();
  document.Tree({Element("P").Text(page, "one").Text(page, "two")});
  EXPECT_EQ(Run(document, {"--text"}).out, "P\n  page 1: mcid 0 \"one\"\n  page 1: mcid 1 \"two\"\n");
}

TEST_F(TreeCommand, DocumentWithoutATreeIsNoFailure) {
  TestDocument document;
  document.AddPage();
  const ProcessResult outline = Run(document);
  EXPECT_EQ(outline.status, 0);
  EXPECT_EQ(outline.out, "");
  EXPECT_EQ(outline.err, Message("in.pdf: has no structure tree"));
  const ProcessResult json = Run(document, {"--json"});
  EXPECT_EQ(json.status, 0);
  EXPECT_EQ(json.out, "{\"version\":1,\"lang\":null,\"roleMap\":{},\"kids\":[]}\n");
}

TEST_F(TreeCommand, WarnsAboveThirtyTwoLevels) {
  for (const int levels : {32, 33}) {
    TestDocument document;
    document.AddPage();
    Element top("Document");
    Element element = top;
    for (int i = 1; i < levels; ++i) element = element.AddNew("Sect");
    document.Tree({top});
    const ProcessResult result = Run(document);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, levels == 32 ? "" : Message("in.pdf: the structure tree has 33 levels; many readers stop at 32"));
  }
}

TEST_F(TreeCommand, QuietDoesNotWarn) {
  TestDocument document;
  document.AddPage();
  EXPECT_EQ(Run(document, {"--quiet"}).err, "");
}

TEST_F(TreeCommand, NamesKeepTheirBytes) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("A#20B#23#5Bx#5D#C3#A9")});
  EXPECT_EQ(Tree(document)["kids"][0]["type"], "A B#[x]\u00E9");
}

}  // namespace
}  // namespace tgx::test
