#include <gtest/gtest.h>

#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::OpenDocument;
using test::TestDocument;

constexpr std::uint32_t kTableLayout = 0x80;

/// The structure tree after the fix on a document of these elements.
std::string Repaired(const std::vector<Element>& elements, std::vector<std::pair<std::string, std::string>> roles = {}) {
  TestDocument document;
  document.AddPage();
  if (!roles.empty()) document.RoleMap(std::move(roles));
  document.Tree(elements);
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kTableLayout), test::kSuccess);
  return SavedTree(open);
}

Element Doc(const std::vector<Element>& kids) { return Element("Document")(kids); }
Element Cell(const std::vector<Element>& kids) { return Element("Table")({Element("TR")({Element("TD")(kids)})}); }

TEST(TableLayout, LeavesADocumentWithoutTablesAlone) {
  EXPECT_EQ(Repaired({Doc({Element("P"), Element("Figure")})}), "Document\n  P\n  Figure\n");
}

TEST(TableLayout, KeepsALastTableOfTableElementsOnly) {
  EXPECT_EQ(Repaired({Doc(
                {Element("P"), Element("Table")({Element("THead")({Element("TR")({Element("TH")})}),
                                                 Element("TBody")({Element("TR")({Element("TD")})}), Element("TFoot")})})}),
            "Document\n  P\n  Table\n    THead\n      TR\n        TH\n    TBody\n      TR\n        TD\n    TFoot\n");
}

TEST(TableLayout, PutsTheContentOfATableInItsPlace) {
  EXPECT_EQ(Repaired({Doc({Element("H1"), Cell({Element("P").Title("1"), Element("P").Title("2")})})}),
            "Document\n  H1\n  P title=\"1\"\n  P title=\"2\"\n");
}

TEST(TableLayout, PutsTheContentOfATableInItsPlaceAmongOtherKids) {
  EXPECT_EQ(Repaired({Doc({Element("H1"), Cell({Element("P").Title("1"), Element("P").Title("2")}), Cell({})})}),
            "Document\n  H1\n  P title=\"1\"\n  P title=\"2\"\n  Table\n    TR\n      TD\n");
}

TEST(TableLayout, PutsTheContentOfATableThatIsTheFirstKidFirst) {
  EXPECT_EQ(Repaired({Doc({Cell({Element("P").Title("1"), Element("P").Title("2")}), Cell({})})}),
            "Document\n  P title=\"1\"\n  P title=\"2\"\n  Table\n    TR\n      TD\n");
}

TEST(TableLayout, TakesElementsBehindTheTableToo) {
  EXPECT_EQ(Repaired({Doc({Element("Table"), Element("P")})}), "Document\n  P\n  P\n")
      << "the former parent keeps the element";
}

TEST(TableLayout, IgnoresElementsBeforeTheFirstTable) {
  EXPECT_EQ(Repaired({Doc({Element("P"), Element("Table")})}), "Document\n  P\n  Table\n");
}

TEST(TableLayout, HandlesTheOuterTableWhenItMeetsANestedOne) {
  EXPECT_EQ(Repaired({Doc({Element("Table")({Element("TR")({Element("TD")({Element("P"), Element("Table")})})})})}),
            "Document\n  P\n");
}

TEST(TableLayout, GoesByTheRoleOfCustomTypes) {
  EXPECT_EQ(Repaired({Doc({Element("Grid")({Element("TR")({Element("Field")})})})}, {{"Grid", "Table"}, {"Field", "TD"}}),
            "Document\n  Grid\n    TR\n      Field\n");
}

TEST(TableLayout, CountsNothingForContentAndObjectReferences) {
  TestDocument document;
  test::Page& page = document.AddPage();
  document.Tree(
      {Doc({Element("Table")({Element("TR")({Element("TD").Text(page, "x").Object(page.Link("https://example.org/"))})})})});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kTableLayout), test::kSuccess);
  EXPECT_EQ(SavedTree(open), "Document\n  Table\n    TR\n      TD\n        mcid 0 page 1\n        objr Link page 1\n");
}

TEST(TableLayout, LeavesATableAtTheTopOfTheTreeAlone) {
  // The walk begins below the top-level elements: they are never met themselves.
  EXPECT_EQ(Repaired({Cell({Element("P")})}), "Table\n  TR\n    TD\n      P\n");
}

TEST(TableLayout, EndsWithTheHostsRaiseWhereAnElementWouldBecomeItsOwnAncestor) {
  TestDocument document;
  document.AddPage();
  document.Tree(
      {Doc({Element("Table"), Element("Sect")({Element("Div")({Element("Table"), Element("P")})}), Element("H1")})});
  OpenDocument open(document.Write());
  // The first table gives way to Sect and Div, so that the walk meets Sect a second time; then the table in Div is to give
  // way to Div itself.
  const test::Outcome outcome = open.Fixups(kTableLayout);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
  test::ExpectSound(open.Save());
}

TEST(TableLayout, KeepsWhatItCollectedForTheNextTableWhereTheLastOneIsNotFound) {
  TestDocument document;
  document.AddPage();
  document.Object("twice", "<</S/Table/T(twice)>>");
  document.Tree({Doc({})
                     .RawKid("$twice")
                     .Add(Element("P").Title("1"))
                     .RawKid("$twice")
                     .Add(Element("P").Title("2"))
                     .Add(Element("Table").Title("last"))});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kTableLayout), test::kSuccess);
  // When it is met the second time the table that stands twice gives way to the first paragraph and loses its parent, so
  // that it cannot give way to the second one too. That one takes the place of the last table.
  EXPECT_EQ(SavedTree(open),
            "Document\n  P title=\"1\"\n  P title=\"1\"\n  Table title=\"twice\"\n  P title=\"2\"\n  P title=\"2\"\n");
}

// Tables beside one another, the first with sections in sections in it: each next table gives way to all of these, which
// then stand among the kids that are still to be walked, with all below them.
TEST(TableLayout, FailsWhereTheSameElementsWouldBeWalkedTooOften) {
  Element sections("Sect");
  for (int depth = 1; depth < 100; ++depth) sections = Element("Sect")({sections});
  std::vector<Element> kids = {Cell({sections}), Element("Table"), Element("Table"), Element("Table")};
  for (int i = 0; i < 4000; ++i) kids.push_back(Element("Span"));
  TestDocument document;
  document.AddPage();
  document.Tree({Doc({Element("Sect")(kids)})});
  OpenDocument open(document.Write());
  const test::Outcome outcome = open.Fixups(kTableLayout);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_EQ(outcome.text, "the same elements would have to take the places of too many tables");
}

std::size_t CallsFor(int tables) {
  TestDocument document;
  document.AddPage();
  std::vector<Element> kids;
  for (int i = 0; i < tables; ++i) kids.push_back(Cell({Element("P")}));
  document.Tree({Doc(kids)});
  OpenDocument open(document.Write());
  const test::RaisingHost host(test::EmbeddedTables(), 0);
  const test::HostSession session(host.Tables());
  EXPECT_EQ(open.Fixups(kTableLayout), test::kSuccess);
  return host.Calls();
}

TEST(TableLayout, AsksTheHostInProportionToTheTables) { EXPECT_LT(CallsFor(400), 5 * CallsFor(100)); }

TEST(TableLayout, FailsWithoutATextForADocumentWithoutAStructureTree) {
  TestDocument document;
  document.AddPage();
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kTableLayout), test::kSoftFailure);
}

}  // namespace
}  // namespace tgx
