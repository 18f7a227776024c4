#include "src/fixes/RemoveExtraParaTag/CExtraPTagRemover.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::kSoftFailure;
using test::kSuccess;
using test::OpenDocument;
using test::Page;
using test::TestDocument;

constexpr std::uint32_t kExtraParagraphs = 0x2;

std::string TreeAfter(TestDocument& doc) {
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Fixups(kExtraParagraphs), kSuccess);
  const std::string saved = open.Save();
  test::ExpectSound(saved);
  return test::TreeText(saved);
}

TEST(CExtraPTagRemover, PutsTheTableInThePlaceOfItsParagraph) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Sect")({Element("H1").Text(page, "head"), Element("P")({Element("Table")({Element("TR")})}),
                             Element("P").Text(page, "text")})});
  EXPECT_EQ(TreeAfter(doc),
            "Sect\n"
            "  H1\n"
            "    mcid 0 page 1\n"
            "  Table\n"
            "    TR\n"
            "  P\n"
            "    mcid 1 page 1\n");
}

TEST(CExtraPTagRemover, KeepsAParagraphWithASecondElement) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Sect")({Element("P")({Element("Table"), Element("Span")})})});
  EXPECT_EQ(TreeAfter(doc), "Sect\n  P\n    Table\n    Span\n");
}

TEST(CExtraPTagRemover, KeepsAParagraphWithContentOfItsOwn) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Sect")({Element("P").Text(page, "text").Add(Element("Table"))})});
  EXPECT_EQ(TreeAfter(doc), "Sect\n  P\n    mcid 0 page 1\n    Table\n");
}

TEST(CExtraPTagRemover, EndsWithTheHostsRaiseAtAParagraphThatStandsTwice) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Sect").Add(Element("P")({Element("Table")}).Named("twice")).RawKid("$twice")});
  OpenDocument open(doc.Write());
  const test::Outcome outcome = open.Fixups(kExtraParagraphs);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
  test::ExpectSound(open.Save());
}

TEST(CExtraPTagRemover, LeavesATableOnTopAlone) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Table")({Element("TR")})});
  EXPECT_EQ(TreeAfter(doc), "Table\n  TR\n");
}

TEST(CExtraPTagRemover, ReplacesAParagraphOnTop) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("P")({Element("Table")}), Element("Part")});
  EXPECT_EQ(TreeAfter(doc), "Table\nPart\n");
}

TEST(CExtraPTagRemover, GoesByTheRoleMap) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Sect")({Element("Body")({Element("Grid")})})}).RoleMap({{"Body", "P"}, {"Grid", "Table"}});
  EXPECT_EQ(TreeAfter(doc), "Sect\n  Grid\n");
}

TEST(CExtraPTagRemover, FollowsTheRoleMapOneStepOnly) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Sect")({Element("Body")({Element("Grid")})})})
      .RoleMap({{"Body", "Text"}, {"Text", "P"}, {"Grid", "Table"}});
  EXPECT_EQ(TreeAfter(doc), "Sect\n  Body\n    Grid\n");
}

TEST(CExtraPTagRemover, GoesByTheMappingAlsoOfStandardTypes) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Sect")({Element("P")({Element("Table")})})}).RoleMap({{"Table", "Div"}});
  EXPECT_EQ(TreeAfter(doc), "Sect\n  P\n    Table\n");
}

TEST(CExtraPTagRemover, FindsATableInTheCellOfAnother) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Sect")(
      {Element("P")({Element("Table")({Element("TR")({Element("TD")({Element("P")({Element("Table")})})})})})})});
  EXPECT_EQ(TreeAfter(doc), "Sect\n  Table\n    TR\n      TD\n        Table\n");
}

TEST(CExtraPTagRemover, TakesTheInnermostOfNestedParagraphsOnly) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Sect")({Element("P")({Element("P")({Element("P")({Element("Table")})})})})});
  EXPECT_EQ(TreeAfter(doc), "Sect\n  P\n    P\n      Table\n");
}

TEST(CExtraPTagRemover, LeavesOtherElementsAroundATableAlone) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Sect")({Element("Div")({Element("Table")}), Element("P")({Element("L")})})});
  EXPECT_EQ(TreeAfter(doc), "Sect\n  Div\n    Table\n  P\n    L\n");
}

TEST(CExtraPTagRemover, FailsWithoutATree) {
  TestDocument doc;
  doc.AddPage();
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Fixups(kExtraParagraphs), kSoftFailure);
}

TEST(CExtraPTagRemover, FailsWithoutADocument) { EXPECT_FALSE(CExtraPTagRemover().Run(nullptr)); }

}  // namespace
}  // namespace tgx
