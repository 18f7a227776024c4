#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::OpenDocument;
using test::Outcome;
using test::TestDocument;

constexpr int kAttFix = 12;

std::u16string Widened(const std::string& text) { return {text.begin(), text.end()}; }

Element Figure(const std::string& alt) { return Element("Figure").Alt(std::u16string_view(Widened(alt))); }

Element Placeholder(const std::string& tables) { return Figure("[ATT]<Tables>" + tables + "</Tables>"); }

Element Row(const std::vector<std::string>& cells) {
  Element row("TR");
  for (const std::string& cell : cells) row.Add(Element(cell));
  return row;
}

/// The structure tree after the action on a document of these elements.
std::string Repaired(const std::vector<Element>& elements, Outcome expected = test::kSuccess) {
  TestDocument document;
  document.AddPage();
  document.Tree(elements);
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Action(kAttFix), expected);
  const std::string saved = open.Save();
  test::ExpectSound(saved);
  return test::TreeText(saved);
}

TEST(AttFix, KeepsAFigureWhoseTextIsTheMarkerAlone) {
  EXPECT_EQ(Repaired({Element("Table")({Figure("[ATT]")})}), "Table\n  Figure alt=u\"[ATT]\"\n");
}

TEST(AttFix, KeepsAFigureWhoseMarkerIsInLowerCase) {
  EXPECT_EQ(Repaired({Element("Table")({Figure("[att]x")})}), "Table\n  Figure alt=u\"[att]x\"\n");
}

TEST(AttFix, KeepsAFigureWhoseMarkerDoesNotStandFirst) {
  EXPECT_EQ(Repaired({Figure(" [ATT]x")}), "Figure alt=u\" [ATT]x\"\n");
}

TEST(AttFix, KeepsAnElementOfAnotherTypeThatHasTheMarker) {
  EXPECT_EQ(Repaired({Element("P").Alt(u"[ATT]x")}), "P alt=u\"[ATT]x\"\n");
}

TEST(AttFix, OnlyRemovesAPlaceholderOutsideAnyTable) {
  EXPECT_EQ(Repaired({Element("Sect")({Placeholder("<Table type='4'/>"), Element("TD")})}), "Sect\n  TD\n");
}

TEST(AttFix, RemovesAPlaceholderWhoseMetadataCannotBeRead) {
  EXPECT_EQ(Repaired({Element("Table")({Figure("[ATT]no xml"), Row({"TH"})})}), "Table\n  TR\n    TH\n");
}

TEST(AttFix, RemovesAPlaceholderWhoseMetadataIsMoreThanTheMemoryIsWorth) {
  std::string tags;
  for (int i = 0; i < 1'000'000; ++i) tags += "<a/>";
  EXPECT_EQ(Repaired({Element("Table")({Placeholder("<Table type='4'/>" + tags), Row({"TH"})})}), "Table\n  TR\n    TH\n");
}

TEST(AttFix, RemovesAPlaceholderThatDescribesSeveralTables) {
  EXPECT_EQ(Repaired({Element("Table")({Placeholder("<Table type='4'/><Table type='1'/>"), Row({"TH"})})}),
            "Table\n  TR\n    TH\n");
}

TEST(AttFix, RemovesAPlaceholderAtTheTopOfTheTree) {
  EXPECT_EQ(Repaired({Placeholder("<Table type='1'/>"), Element("P")}), "P\n");
}

TEST(AttFix, FailsOnAFigureWhoseTextIsShorterThanAMark) {
  EXPECT_EQ(Repaired({Element("Figure").Alt("x")}, test::HardFailure("wrong vector range")), "Figure alt=\"x\"\n");
}

TEST(AttFix, TakesATextOfAnOddNumberOfBytesForEmpty) {
  EXPECT_EQ(Repaired({Element("Figure").Alt("\xFE\xFF[ATT]")}), "Figure alt=u\"\\u{5B41}\\u{5454}\"\n");
}

TEST(AttFix, AppliesTheFirstOfTwoPlaceholdersInATable) {
  EXPECT_EQ(Repaired({Element("Table")({Placeholder("<Table type='1'/>"), Placeholder("<Table type='4'/>"), Row({"TH"})})}),
            "Table\n  TR\n    TH attributes=<< /O /Table /Scope /Column >>\n");
}

TEST(AttFix, BindsAPlaceholderInACellToTheNearestTable) {
  EXPECT_EQ(Repaired({Element("Table")({Element("TR")({Element("TH")(
                {Element("Table")({Element("TR")({Element("TH")({Placeholder("<Table type='1'/>")})})})})})})}),
            "Table\n  TR\n    TH\n      Table\n        TR\n          TH attributes=<< /O /Table /Scope /Column >>\n");
}

TEST(AttFix, GivesTheHeaderCellsOfAnIdentifiedTableColumnScope) {
  EXPECT_EQ(Repaired({Element("Table")({Placeholder("<Table type='1'/>"), Row({"TH", "TD"})})}),
            "Table\n  TR\n    TH attributes=<< /O /Table /Scope /Column >>\n    TD\n");
}

TEST(AttFix, GivesTheHeaderCellsOfNestedTablesColumnScopeToo) {
  EXPECT_EQ(Repaired({Element("Table")(
                {Placeholder("<Table type='1'/>"), Element("TR")({Element("TD")({Element("Table")({Row({"TH"})})})})})}),
            "Table\n  TR\n    TD\n      Table\n        TR\n          TH attributes=<< /O /Table /Scope /Column >>\n");
}

TEST(AttFix, DescribesNestedTablesBeforeItTurnsTheOuterOneIntoDivs) {
  EXPECT_EQ(
      Repaired({Element("Table")(
          {Placeholder("<Table type='4'/>"),
           Element("TR")({Element("TD")({Element("Table")({Placeholder("<Table type='2' rows='1'/>"), Row({"TD"})})})})})}),
      "Div\n  Div\n    Div\n      Div\n        Div\n          Div attributes=<< /O /Table /Scope /Column >>\n");
}

TEST(AttFix, TakesOverTheAttributesThatAHeaderCellHas) {
  EXPECT_EQ(
      Repaired({Element("Table")({Placeholder("<Table type='1'/>"),
                                  Element("TR")({Element("TH").Attributes("<</O /Layout /Scope /Row /ColSpan 2>>")})})}),
      "Table\n  TR\n    TH attributes=<< /ColSpan 2 /O /Table /Scope /Column >>\n");
}

TEST(AttFix, HeadsLeadingRowsAndColumnsOfACountedTable) {
  EXPECT_EQ(Repaired({Element("Table")(
                {Placeholder("<Table type='2' rows='1' cols='1'/>"), Row({"TD", "TD"}), Row({"TD", "TD"})})}),
            "Table\n"
            "  TR\n"
            "    TH attributes=<< /O /Table /Scope /Column >>\n"
            "    TH attributes=<< /O /Table /Scope /Column >>\n"
            "  TR\n"
            "    TH attributes=<< /O /Table /Scope /Row >>\n"
            "    TD\n");
}

TEST(AttFix, GivesARowThatIsOneCellShortOneHeaderCellLess) {
  EXPECT_EQ(Repaired({Element("Table")(
                {Placeholder("<Table type='2' cols='2'/>"), Row({"TD", "TD", "TD"}), Row({"TD", "TD"}), Row({"TD"})})}),
            "Table\n"
            "  TR\n"
            "    TH attributes=<< /O /Table /Scope /Row >>\n"
            "    TH attributes=<< /O /Table /Scope /Row >>\n"
            "    TD\n"
            "  TR\n"
            "    TH attributes=<< /O /Table /Scope /Row >>\n"
            "    TD\n"
            "  TR\n"
            "    TD\n");
}

TEST(AttFix, CountsThePlaceholderAmongTheKidsOfItsRow) {
  EXPECT_EQ(Repaired({Element("Table")(
                {Element("TR")({Placeholder("<Table type='2' cols='1'/>"), Element("TD")}), Row({"TD", "TD"})})}),
            "Table\n"
            "  TR\n"
            "    TD\n"
            "  TR\n"
            "    TH attributes=<< /O /Table /Scope /Row >>\n"
            "    TD\n");
}

TEST(AttFix, TakesTheRowsOfANestedTableForRowsOfTheOuterOne) {
  EXPECT_EQ(Repaired({Element("Table")({Placeholder("<Table type='2' rows='2'/>"),
                                        Element("TR")({Element("TD")({Element("Table")({Row({"TD"})})})}), Row({"TD"})})}),
            "Table\n"
            "  TR\n"
            "    TH attributes=<< /O /Table /Scope /Column >>\n"
            "      Table\n"
            "        TR\n"
            "          TH attributes=<< /O /Table /Scope /Column >>\n"
            "  TR\n"
            "    TD\n");
}

TEST(AttFix, TreatsAKidOfARowThatIsNoElementAsACellAndEndsWithTheHostsRaise) {
  TestDocument document;
  test::Page& page = document.AddPage();
  document.Tree({Element("Table")({Placeholder("<Table type='2' rows='1'/>"), Element("TR").Text(page, "loose")})});
  OpenDocument open(document.Write());
  const Outcome outcome = open.Action(kAttFix);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
}

constexpr char kDescribed[] =
    "<Table type='3'>"
    "<Row index='1'><Cell type='0' row='1' index='1'/><Cell type='0' row='1' index='2'/></Row>"
    "<Row index='2'><Cell type='0' row='2' index='1'/>"
    "<Cell type='1' row='2' index='2'><Cell row='1' index='2'/><Cell row='2' index='1'/></Cell></Row>"
    "</Table>";

TEST(AttFix, IdentifiesTheCellsOfADescribedTable) {
  EXPECT_EQ(Repaired({Element("Table")({Placeholder(kDescribed), Row({"TD", "TD"}), Row({"TD", "TH"})})}),
            "Table\n"
            "  TR\n"
            "    TH id=\"1_1_1\"\n"
            "    TH id=\"1_1_2\"\n"
            "  TR\n"
            "    TH id=\"1_2_1\"\n"
            "    TD id=\"1_2_2\" attributes=<< /Headers [ (1_1_2) (1_2_1) ] /O /Table >>\n");
}

TEST(AttFix, NumbersTheDescribedTablesAlone) {
  const std::string cell = "<Table type='3'><Row><Cell type='1' row='5' index='6'/></Row></Table>";
  EXPECT_EQ(
      Repaired({Element("Table")({Placeholder("<Table type='1'/>"), Row({"TD"})}),
                Element("Table")({Placeholder(cell), Row({"TD"})}), Element("Table")({Placeholder(cell), Row({"TD"})})}),
      "Table\n  TR\n    TD\n"
      "Table\n  TR\n    TD id=\"1_5_6\"\n"
      "Table\n  TR\n    TD id=\"2_5_6\"\n");
}

TEST(AttFix, LeavesTheTypeOfACellOfUnknownTypeAlone) {
  EXPECT_EQ(Repaired({Element("Table")(
                {Placeholder("<Table type='3'><Row><Cell type='7' row='1' index='1'/></Row></Table>"), Row({"Custom"})})}),
            "Table\n  TR\n    Custom id=\"1_1_1\"\n");
}

TEST(AttFix, AddsHeadersToTheAttributesThatADataCellHas) {
  EXPECT_EQ(Repaired({Element("Table")({Placeholder("<Table type='3'><Row><Cell type='1' row='1' index='1'>"
                                                    "<Cell row='9' index='9'/></Cell></Row></Table>"),
                                        Element("TR")({Element("TD").Attributes("<</O /List /RowSpan 2>>")})})}),
            "Table\n  TR\n    TD id=\"1_1_1\" attributes=<< /Headers [ (1_9_9) ] /O /Table /RowSpan 2 >>\n");
}

TEST(AttFix, MatchesCellsByTheirPlaceWhateverTheMetadataSaysOfRows) {
  EXPECT_EQ(
      Repaired({Element("Table")(
          {Placeholder("<Table type='3'><Row index='9'><Cell type='0' row='4' index='4'/></Row></Table>"), Row({"TD"})})}),
      "Table\n  TR\n    TH id=\"1_4_4\"\n");
}

TEST(AttFix, ListsTheIdentifiersInTheIdTree) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("Table")({Placeholder(kDescribed), Row({"TD", "TD"}), Row({"TD", "TH"})})});
  OpenDocument open(document.Write());
  ASSERT_EQ(open.Action(kAttFix), test::kSuccess);
  test::ReadBack file(open.Save());
  QPDFObjectHandle ids = file.TreeRoot().getKey("/IDTree");
  ASSERT_TRUE(ids.isDictionary());
  EXPECT_NE(ids.unparseResolved().find("1_2_2"), std::string::npos);
}

TEST(AttFix, GivesAnIdentifierAlsoWhereAnotherElementHasItAndLeavesTheIdTreeToTheFirst) {
  TestDocument document;
  document.AddPage();
  const char* const metadata = "<Table type='3'><Row><Cell type='1' row='1' index='1'/></Row></Table>";
  document.Tree({Element("P").Id("1_1_1"), Element("Table")({Placeholder(metadata), Row({"TD"})})});
  OpenDocument open(document.Write());
  ASSERT_EQ(open.Action(kAttFix), test::kSuccess);
  test::ReadBack file(open.Save());
  EXPECT_EQ(test::TreeText(file.Pdf()), "P id=\"1_1_1\"\nTable\n  TR\n    TD id=\"1_1_1\"\n");
  QPDFObjectHandle names = file.TreeRoot().getKey("/IDTree").getKey("/Names");
  ASSERT_EQ(names.getArrayNItems(), 2);
  EXPECT_EQ(names.getArrayItem(1).getKey("/S").getName(), "/P");
}

TEST(AttFix, EndsWithTheHostsRaiseAfterAllTablesWhereAPlaceholderStandsTwice) {
  const std::string metadata = "[ATT]<Tables><Table type='1'/></Tables>";
  std::string alt = "FEFF";
  for (const char character : metadata) {
    char unit[8];
    std::snprintf(unit, sizeof unit, "%04X", static_cast<unsigned>(character));
    alt += unit;
  }
  TestDocument document;
  document.AddPage();
  document.Object("twice", "<</S/Figure/Alt<" + alt + ">>>");
  document.Tree({Element("Table").RawKid("$twice").RawKid("$twice").Add(Row({"TH"})),
                 Element("Table")({Placeholder("<Table type='4'/>"), Row({"TD"})})});
  OpenDocument open(document.Write());
  const Outcome outcome = open.Action(kAttFix);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
  const std::string tree = SavedTree(open);
  EXPECT_THAT(tree, testing::HasSubstr("TH attributes=<< /O /Table /Scope /Column >>"));
  EXPECT_THAT(tree, testing::HasSubstr("Div\n  Figure")) << "placeholders behind it stay";
}

TEST(AttFix, EndsWithTheHostsRaiseWhenTheMetadataHasMoreCellsThanARow) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("Table")({Placeholder(kDescribed), Row({"TD", "TD"}), Row({"TD"})})});
  OpenDocument open(document.Write());
  const Outcome outcome = open.Action(kAttFix);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_THAT(outcome.text, testing::HasSubstr("no kid 1"));
  const std::string tree = SavedTree(open);
  EXPECT_THAT(tree, testing::HasSubstr("TH id=\"1_2_1\"")) << "what was changed before the failure stays";
  EXPECT_THAT(tree, testing::HasSubstr("Figure")) << "the placeholders go last";
}

TEST(AttFix, EndsWithTheHostsRaiseWhenTheMetadataHasMoreRowsThanTheTable) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("Table")({Placeholder(kDescribed), Row({"TD", "TD"})})});
  OpenDocument open(document.Write());
  const Outcome outcome = open.Action(kAttFix);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
}

TEST(AttFix, CountsTheRowsOfANestedTableAmongThoseOfADescribedOne) {
  const std::string cell = "<Row><Cell type='1' row='1' index='1'/></Row>";
  EXPECT_EQ(
      Repaired({Element("Table")({Placeholder("<Table type='3'>" + cell + "<Row><Cell type='0' row='2' index='1'/></Row>" +
                                              "<Row><Cell type='0' row='3' index='1'/></Row></Table>"),
                                  Element("TR")({Element("TD")({Element("Table")({Row({"TD"})})})}), Row({"TD"})})}),
      "Table\n"
      "  TR\n"
      "    TD id=\"1_1_1\"\n"
      "      Table\n"
      "        TR\n"
      "          TH id=\"1_2_1\"\n"
      "  TR\n"
      "    TH id=\"1_3_1\"\n");
}

TEST(AttFix, LeavesRowsAndCellsThatTheMetadataLacksAlone) {
  EXPECT_EQ(Repaired({Element("Table")({Placeholder("<Table type='3'><Row><Cell type='0' row='1' index='1'/></Row></Table>"),
                                        Row({"TD", "TD"}), Row({"TD"})})}),
            "Table\n  TR\n    TH id=\"1_1_1\"\n    TD\n  TR\n    TD\n");
}

TEST(AttFix, WritesTheNumbersOfTheMetadataWhateverTheyAre) {
  EXPECT_EQ(
      Repaired({Element("Table")({Placeholder("<Table type='3'><Row><Cell type='1' row='-2147483648' index='2147483647'>"
                                              "<Cell row='-1' index='x'/></Cell></Row></Table>"),
                                  Row({"TD"})})}),
      "Table\n  TR\n    TD id=\"1_-2147483648_2147483647\" attributes=<< /Headers [ (1_-1_0) ] /O /Table >>\n");
}

TEST(AttFix, HeadsNothingWithCountsBelowOne) {
  EXPECT_EQ(Repaired({Element("Table")({Placeholder("<Table type='2' rows='-1' cols='-2147483648'/>"), Row({"TD", "TD"})})}),
            "Table\n  TR\n    TD\n    TD\n");
}

TEST(AttFix, HeadsEveryCellWithCountsBeyondTheTable) {
  EXPECT_EQ(
      Repaired({Element("Table")({Placeholder("<Table type='2' rows='2147483647' cols='2147483647'/>"), Row({"TD"})})}),
      "Table\n  TR\n    TH attributes=<< /O /Table /Scope /Column >>\n");
}

TEST(AttFix, EndsWithTheHostsRaiseWhereACellHasAListOfAttributes) {
  TestDocument document;
  document.AddPage();
  document.Tree(
      {Element("Table")({Placeholder("<Table type='1'/>"),
                         Element("TR")({Element("TH"), Element("TH").Attributes("[<</O/Layout>><</O/Table>>]")})})});
  OpenDocument open(document.Write());
  const Outcome outcome = open.Action(kAttFix);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
  EXPECT_THAT(SavedTree(open), testing::HasSubstr("TH attributes=<< /O /Table /Scope /Column >>\n"));
}

TEST(AttFix, WritesTheScopeOfTheLastOfTwoCellsThatShareTheirAttributesForBoth) {
  TestDocument document;
  document.AddPage();
  document.Object("shared", "<</O/Layout/ColSpan 2>>");
  document.Tree({Element("Table")({Placeholder("<Table type='2' rows='1' cols='1'/>"),
                                   Element("TR")({Element("TD").Attributes("$shared"), Element("TD")}),
                                   Element("TR")({Element("TD").Attributes("$shared"), Element("TD")})})});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Action(kAttFix), test::kSuccess);
  EXPECT_EQ(SavedTree(open),
            "Table\n"
            "  TR\n"
            "    TH attributes=<< /ColSpan 2 /O /Table /Scope /Row >>\n"
            "    TH attributes=<< /O /Table /Scope /Column >>\n"
            "  TR\n"
            "    TH attributes=<< /ColSpan 2 /O /Table /Scope /Row >>\n"
            "    TD\n");
}

TEST(AttFix, WritesTheHeadersOfTheLastOfTwoCellsThatShareTheirAttributesForBoth) {
  TestDocument document;
  document.AddPage();
  document.Object("shared", "<</O/Layout/ColSpan 2>>");
  document.Tree(
      {Element("Table")({Placeholder("<Table type='3'><Row><Cell type='1' row='1' index='1'><Cell row='8' index='1'/></Cell>"
                                     "<Cell type='1' row='1' index='2'><Cell row='8' index='2'/></Cell></Row></Table>"),
                         Element("TR")({Element("TD").Attributes("$shared"), Element("TD").Attributes("$shared")})})});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Action(kAttFix), test::kSuccess);
  EXPECT_EQ(SavedTree(open),
            "Table\n"
            "  TR\n"
            "    TD id=\"1_1_1\" attributes=<< /ColSpan 2 /Headers [ (1_8_2) ] /O /Table >>\n"
            "    TD id=\"1_1_2\" attributes=<< /ColSpan 2 /Headers [ (1_8_2) ] /O /Table >>\n");
}

TEST(AttFix, TurnsALayoutTableWithAllTablesInItIntoDivs) {
  EXPECT_EQ(Repaired({Element("Table")(
                {Placeholder("<Table type='4'/>"), Element("THead")({Row({"TH"})}),
                 Element("TBody")({Element("TR")({Element("TD")({Element("Table")({Row({"TD"})}), Element("P")})})}),
                 Element("TFoot")})}),
            "Div\n"
            "  Div\n"
            "    Div\n"
            "      Div\n"
            "  Div\n"
            "    Div\n"
            "      Div\n"
            "        Div\n"
            "          Div\n"
            "            Div\n"
            "        P\n"
            "  Div\n");
}

TEST(AttFix, GivesADocumentWithoutAStructureTreeAnEmptyOne) {
  TestDocument document;
  document.AddPage();
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Action(kAttFix), test::kSuccess);
  test::ReadBack file(open.Save());
  EXPECT_TRUE(file.TreeRoot().isDictionary());
}

}  // namespace
}  // namespace tgx
