#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::kSuccess;
using test::OpenDocument;
using test::Page;
using test::ReadBack;
using test::TestDocument;

constexpr int kGroupTags = 16;

class FixGroupTagsActionTest : public testing::Test {
 protected:
  std::string TreeAfter() {
    OpenDocument open(doc.Write());
    EXPECT_EQ(open.Action(kGroupTags), kSuccess);
    const std::string saved = open.Save();
    test::ExpectSound(saved);
    return test::TreeText(saved);
  }
  std::string RoleMapAfter() {
    OpenDocument open(doc.Write());
    EXPECT_EQ(open.Action(kGroupTags), kSuccess);
    ReadBack saved(open.Save());
    return test::RoleMapText(saved.Pdf());
  }
  // An element with a title to be known by.
  static Element Named(const std::string& type, const std::string& title) { return Element(type).Title(title); }

  TestDocument doc;
  Page& page = doc.AddPage();
};

TEST_F(FixGroupTagsActionTest, MakesOneIndexOfParagraphsSideBySide) {
  doc.Tree({Element("Document")({Element("H1").Text(page, "head"), Element("GT_Index").Text(page, "a"),
                                 Element("GT_Index").Text(page, "b"), Element("GT_Index").Text(page, "c"),
                                 Element("P").Text(page, "tail")})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  H1\n"
            "    mcid 0 page 1\n"
            "  Index\n"
            "    P\n"
            "      mcid 1 page 1\n"
            "    P\n"
            "      mcid 2 page 1\n"
            "    P\n"
            "      mcid 3 page 1\n"
            "  P\n"
            "    mcid 4 page 1\n");
}

TEST_F(FixGroupTagsActionTest, PutsAGroupInTheFirstPlaceWhereItsParagraphsStoodThere) {
  doc.Tree({Element("Document")({Element("GT_Caption"), Element("H1")})});
  EXPECT_EQ(TreeAfter(), "Document\n  Caption\n    P\n  H1\n");
}

TEST_F(FixGroupTagsActionTest, MakesGroupsOfTopLevelElements) {
  doc.Tree({Element("H1"), Element("GT_BlockQuote"), Element("GT_BlockQuote"), Element("Part")});
  EXPECT_EQ(TreeAfter(), "H1\nBlockQuote\n  P\n  P\nPart\n");
}

TEST_F(FixGroupTagsActionTest, NamesEachPlainGroup) {
  doc.Tree({Element("Document")(
      {Element("GT_Caption"), Element("GT_Index"), Element("GT_BlockQuote"), Element("GT_Figure"), Element("GT_Formula")})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  Caption\n    P\n"
            "  Index\n    P\n"
            "  BlockQuote\n    P\n"
            "  Caption\n    P\n"
            "  Caption\n    P\n");
}

TEST_F(FixGroupTagsActionTest, MakesTwoGroupsOfRunsThatAreApart) {
  doc.Tree({Element("Document")({Element("GT_Index"), Element("P"), Element("GT_Index")})});
  EXPECT_EQ(TreeAfter(), "Document\n  Index\n    P\n  P\n  Index\n    P\n");
}

TEST_F(FixGroupTagsActionTest, EndsARunAtMarkedContent) {
  doc.Tree({Element("Document").Add(Element("GT_Index")).Text(page, "text").Add(Element("GT_Index"))});
  EXPECT_EQ(TreeAfter(), "Document\n  Index\n    P\n  mcid 0 page 1\n  Index\n    P\n");
}

TEST_F(FixGroupTagsActionTest, ComparesTypesWithoutTheRoleMap) {
  doc.Tree({Element("Document")({Element("GT_Index"), Element("Entry")})}).RoleMap({{"Entry", "GT_Index"}});
  EXPECT_EQ(TreeAfter(), "Document\n  Index\n    P\n  Entry\n");
}

TEST_F(FixGroupTagsActionTest, KeepsWhatIsBelowTheParagraphs) {
  doc.Tree({Element("Document")({Element("GT_Index")({Element("Span").Text(page, "a"), Element("Lbl")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  Index\n    P\n      Span\n        mcid 0 page 1\n      Lbl\n");
}

TEST_F(FixGroupTagsActionTest, MakesGroupsInsideTheParagraphsOfOthers) {
  doc.Tree({Element("Document")({Element("GT_BlockQuote")({Element("GT_Index"), Element("GT_Index")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  BlockQuote\n    P\n      Index\n        P\n        P\n");
}

TEST_F(FixGroupTagsActionTest, MovesTheCaptionOfAListToItsTop) {
  doc.Tree({Element("Document")({Element("P"), Element("GT_CaptionListAtTop"), Element("GT_CaptionListAtTop"),
                                 Element("L")({Element("LI"), Element("LI")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n  L\n    Caption\n      P\n      P\n    LI\n    LI\n");
}

TEST_F(FixGroupTagsActionTest, MovesTheCaptionOfATableToItsTop) {
  doc.Tree({Element("Document")({Element("GT_CaptionTableAtTop"), Element("Table")({Element("TR")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  Table\n    Caption\n      P\n    TR\n");
}

TEST_F(FixGroupTagsActionTest, MovesACaptionBelowToTheEndOfTheTableBeforeIt) {
  doc.Tree({Element("Document")({Element("Table")({Element("TR"), Element("TR")}), Element("GT_CaptionTableAtBottom"),
                                 Element("Table")({Element("TR")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  Table\n    TR\n    TR\n    Caption\n      P\n  Table\n    TR\n");
}

TEST_F(FixGroupTagsActionTest, PullsAListOutOfItsCaptionFirst) {
  Element caption("GT_CaptionListAtTop");
  caption.Text(page, "a").Add(Element("Div")({Element("L")({Element("LI")})}));
  doc.Tree({Element("Document")({Element("H1"), caption, Element("P")})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  H1\n"
            "  L\n"
            "    Caption\n"
            "      P\n"
            "        mcid 0 page 1\n"
            "        Div\n"
            "    LI\n"
            "  P\n");
}

TEST_F(FixGroupTagsActionTest, PullsATableOutOfACaptionBelowItAsWell) {
  const Element caption = Element("GT_CaptionTableAtBottom")({Named("Table", "own")({Element("TR")})});
  doc.Tree({Element("Document")({Named("Table", "other"), caption})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  Table title=\"other\"\n"
            "  Table title=\"own\"\n"
            "    TR\n"
            "    Caption\n"
            "      P\n");
}

TEST_F(FixGroupTagsActionTest, PullsAListOutToTheTopLevel) {
  doc.Tree({Element("Part"), Element("GT_CaptionListAtTop")({Element("L")})});
  EXPECT_EQ(TreeAfter(), "Part\nL\n  Caption\n    P\n");
}

TEST_F(FixGroupTagsActionTest, LeavesACaptionWithoutAListAsItIs) {
  doc.Tree({Element("Document")({Element("L"), Element("GT_CaptionListAtTop"), Element("P")})})
      .RoleMap({{"GT_CaptionListAtTop", "P"}});
  EXPECT_EQ(TreeAfter(), "Document\n  L\n  GT_CaptionListAtTop\n  P\n");
}

TEST_F(FixGroupTagsActionTest, UnmapsThePrivateTypesAlsoWhereOneStays) {
  doc.Tree({Element("Document")({Element("GT_CaptionListAtTop")})})
      .RoleMap({{"GT_CaptionListAtTop", "P"}, {"GT_Index", "P"}, {"Lead", "P"}});
  EXPECT_EQ(RoleMapAfter(), "Lead -> P\n");
}

TEST_F(FixGroupTagsActionTest, UnmapsAllPrivateTypes) {
  std::vector<std::pair<std::string, std::string>> map;
  for (const char* name : {"Caption", "CaptionListAtTop", "CaptionTableAtTop", "CaptionTableAtBottom", "Index", "BlockQuote",
                           "Figure", "Formula", "Other"}) {
    map.emplace_back(std::string("GT_") + name, "P");
  }
  doc.Tree({Element("Document")({Element("GT_Index")})}).RoleMap(map);
  EXPECT_EQ(RoleMapAfter(), "GT_Other -> P\n");
}

TEST_F(FixGroupTagsActionTest, LeavesTheRoleMapAloneWithoutSuchTypes) {
  doc.Tree({Element("Document")({Element("GT_Other")})}).RoleMap({{"GT_Index", "P"}});
  EXPECT_EQ(RoleMapAfter(), "GT_Index -> P\n");
}

TEST_F(FixGroupTagsActionTest, MakesNoRoleMapWithoutSuchTypes) {
  doc.Tree({Element("Document")});
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kGroupTags), kSuccess);
  ReadBack saved(open.Save());
  EXPECT_FALSE(saved.TreeRoot().hasKey("/RoleMap"));
}

TEST_F(FixGroupTagsActionTest, SearchesBesideTheFirstAncestorThatHasSiblings) {
  doc.Tree({Element("Document")({Element("Sect")({Element("Div")({Element("GT_CaptionTableAtTop")})}),
                                 Element("Sect")({Element("P"), Element("Div")({Element("Table")({Element("TR")})})})})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  Sect\n"
            "    Div\n"
            "  Sect\n"
            "    P\n"
            "    Div\n"
            "      Table\n"
            "        Caption\n"
            "          P\n"
            "        TR\n");
}

TEST_F(FixGroupTagsActionTest, SearchesOnBehindKidsWithoutTheTarget) {
  doc.Tree({Element("Document")({Element("GT_CaptionTableAtTop"), Element("P"), Element("Sect")({Element("P")}),
                                 Element("Table"), Element("Table")})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n  Sect\n    P\n  Table\n    Caption\n      P\n  Table\n");
}

TEST_F(FixGroupTagsActionTest, TakesTheFirstTargetInsideAKidAlsoWhenItSearchesBackward) {
  doc.Tree({Element("Document")(
      {Element("Sect")({Named("Table", "first"), Named("Table", "last")}), Element("GT_CaptionTableAtBottom")})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  Sect\n"
            "    Table title=\"first\"\n"
            "      Caption\n"
            "        P\n"
            "    Table title=\"last\"\n");
}

TEST_F(FixGroupTagsActionTest, EndsTheSearchAtAKidThatIsNoElement) {
  doc.Tree({Element("Document").Add(Element("GT_CaptionTableAtTop")).Text(page, "text").Add(Element("Table"))});
  EXPECT_EQ(TreeAfter(), "Document\n  GT_CaptionTableAtTop\n  mcid 0 page 1\n  Table\n");
}

TEST_F(FixGroupTagsActionTest, DoesNotSearchAboveAParentWithOtherKids) {
  doc.Tree({Element("Document")({Element("Sect")({Element("P"), Element("GT_CaptionTableAtTop")}), Element("Table")})});
  EXPECT_EQ(TreeAfter(), "Document\n  Sect\n    P\n    GT_CaptionTableAtTop\n  Table\n");
}

TEST_F(FixGroupTagsActionTest, DoesNotSearchAmongTopLevelElements) {
  doc.Tree(
      {Element("GT_CaptionTableAtTop"), Element("Table"), Element("Div")({Element("GT_CaptionListAtTop")}), Element("L")});
  EXPECT_EQ(TreeAfter(), "GT_CaptionTableAtTop\nTable\nDiv\n  GT_CaptionListAtTop\nL\n");
}

TEST_F(FixGroupTagsActionTest, GivesADocumentWithoutATreeAnEmptyOne) {
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kGroupTags), kSuccess);
  ReadBack saved(open.Save());
  EXPECT_TRUE(saved.TreeRoot().isDictionary());
  EXPECT_EQ(test::TreeText(saved.Pdf()), "");
}

TEST_F(FixGroupTagsActionTest, FailsForACaptionWhoseListStandsInItsSecondParagraph) {
  doc.Tree({Element("Document")({Element("GT_CaptionListAtTop"), Element("GT_CaptionListAtTop")({Element("L")})})});
  OpenDocument open(doc.Write());
  const test::Outcome outcome = open.Action(kGroupTags);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
}

// Searches remember what earlier ones passed over; the following tell cases in which that must not show.

TEST_F(FixGroupTagsActionTest, GivesAllCaptionsBeforeATableToIt) {
  doc.Tree({Element("Document")({Named("GT_CaptionTableAtTop", "1"), Element("H2"), Named("GT_CaptionTableAtTop", "2"),
                                 Element("H3"), Element("Table")({Element("TR")})})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  H2\n"
            "  H3\n"
            "  Table\n"
            "    Caption\n"
            "      P title=\"2\"\n"
            "    Caption\n"
            "      P title=\"1\"\n"
            "    TR\n");
}

TEST_F(FixGroupTagsActionTest, GivesAllCaptionsBehindATableToIt) {
  doc.Tree(
      {Element("Document")({Element("Table")({Element("TR")}), Named("GT_CaptionTableAtBottom", "1"), Element("H2"),
                            Named("GT_CaptionTableAtBottom", "2"), Element("H3"), Named("GT_CaptionTableAtBottom", "3")})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  Table\n"
            "    TR\n"
            "    Caption\n"
            "      P title=\"1\"\n"
            "    Caption\n"
            "      P title=\"2\"\n"
            "    Caption\n"
            "      P title=\"3\"\n"
            "  H2\n"
            "  H3\n");
}

TEST_F(FixGroupTagsActionTest, FindsTheNearestOfSeveralTargetsForEachCaption) {
  doc.Tree({Element("Document")({Named("GT_CaptionListAtTop", "1"), Element("P"), Named("L", "1"), Element("P"),
                                 Named("GT_CaptionListAtTop", "2"), Element("P"), Element("Sect")({Named("L", "2")}),
                                 Named("GT_CaptionListAtTop", "3")})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  P\n"
            "  L title=\"1\"\n"
            "    Caption\n"
            "      P title=\"1\"\n"
            "  P\n"
            "  P\n"
            "  Sect\n"
            "    L title=\"2\"\n"
            "      Caption\n"
            "        P title=\"2\"\n"
            "  GT_CaptionListAtTop title=\"3\"\n");
}

TEST_F(FixGroupTagsActionTest, SearchesBehindContentForWhatStandsBehindIt) {
  doc.Tree({Element("Document")
                .Add(Named("GT_CaptionListAtTop", "1"))
                .Text(page, "text")
                .Add(Named("GT_CaptionListAtTop", "2"))
                .Add(Element("L"))});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  GT_CaptionListAtTop title=\"1\"\n"
            "  mcid 0 page 1\n"
            "  L\n"
            "    Caption\n"
            "      P title=\"2\"\n");
}

TEST_F(FixGroupTagsActionTest, FindsATableThatCameInWithACaption) {
  doc.Tree({Element("Document")({Named("GT_CaptionTableAtTop", "1"), Element("P"),
                                 Named("GT_CaptionListAtTop", "2")({Named("Table", "moved")}), Element("P"),
                                 Named("GT_CaptionTableAtTop", "3"), Element("P"), Element("Sect")({Element("L")})})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  P\n"
            "  P\n"
            "  P\n"
            "  Sect\n"
            "    L\n"
            "      Caption\n"
            "        P title=\"2\"\n"
            "          Table title=\"moved\"\n"
            "            Caption\n"
            "              P title=\"3\"\n"
            "            Caption\n"
            "              P title=\"1\"\n");
}

TEST_F(FixGroupTagsActionTest, FindsAListForACaptionThatCameToStandBeforeEarlierSearches) {
  doc.Tree({Element("Document")(
      {Element("Sect")({Element("Table"), Element("Div")({Element("L")}), Named("GT_CaptionListAtTop", "1"),
                        Element("GT_Index"), Element("GT_Index"), Element("GT_Index"),
                        Named("GT_CaptionTableAtBottom", "2")({Named("GT_CaptionListAtTop", "3")}), Element("P")})})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  Sect\n"
            "    Table\n"
            "      Caption\n"
            "        P title=\"2\"\n"
            "    Div\n"
            "      L\n"
            "        Caption\n"
            "          P title=\"3\"\n"
            "    GT_CaptionListAtTop title=\"1\"\n"
            "    Index\n"
            "      P\n"
            "      P\n"
            "      P\n"
            "    P\n");
}

// Of a document in which `part` comes that often below one parent, between two paragraphs each time.
std::size_t CallsFor(int count, const std::function<Element()>& part, const Element& last) {
  TestDocument doc;
  doc.AddPage();
  Element document("Document");
  for (int i = 0; i < count; ++i) document.Add(part()).Add(Element("P"));
  doc.Tree({document.Add(last)});
  OpenDocument open(doc.Write());
  const test::RaisingHost host(test::EmbeddedTables(), 0);
  const test::HostSession session(host.Tables());
  EXPECT_EQ(open.Action(kGroupTags), kSuccess);
  return host.Calls();
}

void ExpectCallsInProportion(const std::function<Element()>& part, const Element& last = Element("P")) {
  EXPECT_LT(CallsFor(400, part, last), 5 * CallsFor(100, part, last));
}

TEST_F(FixGroupTagsActionTest, AsksTheHostInProportionToTheGroups) {
  ExpectCallsInProportion([] { return Element("GT_Index"); });
}

TEST_F(FixGroupTagsActionTest, AsksTheHostInProportionToTheCaptionsWithoutATarget) {
  for (const char* type : {"GT_CaptionListAtTop", "GT_CaptionTableAtTop", "GT_CaptionTableAtBottom"}) {
    ExpectCallsInProportion([type] { return Element(type); });
  }
}

TEST_F(FixGroupTagsActionTest, AsksTheHostInProportionToTheCaptionsOfOneTarget) {
  Element sect("Sect");
  for (int i = 0; i < 100; ++i) sect.Add(Element("P"));
  ExpectCallsInProportion([] { return Element("GT_CaptionTableAtTop"); }, sect.Add(Element("Table")));
}

TEST_F(FixGroupTagsActionTest, AsksTheHostInProportionToTheCaptionsThatHoldTargetsOfTheOtherKind) {
  ExpectCallsInProportion([] { return Element("GT_CaptionListAtTop")({Element("Table")}); }, Element("L"));
  ExpectCallsInProportion([] { return Element("GT_CaptionTableAtTop")({Element("L")}); }, Element("Table"));
  ExpectCallsInProportion([] { return Element("GT_CaptionTableAtBottom")({Element("L")}); });
}

TEST_F(FixGroupTagsActionTest, AsksTheHostInProportionToCaptionsOfTwoKindsThatHoldTargets) {
  bool isList = false;
  ExpectCallsInProportion(
      [&] {
        isList = !isList;
        return isList ? Element("GT_CaptionListAtTop")({Element("Table")}) : Element("GT_CaptionTableAtBottom");
      },
      Element("L"));
}

TEST_F(FixGroupTagsActionTest, AsksTheHostInProportionToTheCaptionsThatStandAlone) {
  ExpectCallsInProportion([] { return Element("Div")({Element("GT_CaptionTableAtBottom")}); });
}

}  // namespace
}  // namespace tgx
