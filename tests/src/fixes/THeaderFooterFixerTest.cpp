#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::OpenDocument;
using test::TestDocument;

constexpr std::uint32_t kHeadersFooters = 0x40;

/// A head or foot with a text in a cell.
Element Part(const std::string& type, test::Page& page, const std::string& text) {
  return Element(type)({Element("TR")({Element("TD").Text(page, text)})}).Title(text);
}

class THeaderFooter : public testing::Test {
 protected:
  void Repair(const std::vector<Element>& elements) {
    document_.Tree({Element("Document")(elements)});
    OpenDocument open(document_.Write());
    EXPECT_EQ(open.Fixups(kHeadersFooters), test::kSuccess);
    saved_ = open.Save();
    test::ExpectSound(saved_);
  }

  /// Titles of the elements of a type that are left, in tree order.
  std::string Left(const std::string& type) const {
    std::string titles;
    std::istringstream lines(test::TreeText(saved_));
    for (std::string line; std::getline(lines, line);) {
      const std::string start = type + " title=\"";
      const auto at = line.find(start);
      if (at == std::string::npos) continue;
      titles += line.substr(at + start.size(), line.rfind('"') - at - start.size()) + " ";
    }
    return titles;
  }

  /// The tag of the marked content around a text, with its property dictionary.
  std::string TagOf(const std::string& text) const {
    test::ReadBack file(saved_);
    const std::string content = file.Content(1);
    const auto shown = content.find("(" + text + ")");
    EXPECT_NE(shown, std::string::npos) << text << " has left the page";
    const auto end = content.rfind(" BDC", shown);
    return content.substr(content.rfind('\n', end) + 1, end - content.rfind('\n', end) - 1);
  }

  TestDocument document_;
  test::Page& page_ = document_.AddPage();
  std::string saved_;
};

TEST_F(THeaderFooter, LeavesATableWithOneHeadAndOneFootAlone) {
  Repair({Element("Table")({Part("THead", page_, "h"), Part("TFoot", page_, "f")})});
  EXPECT_EQ(Left("THead"), "h ");
  EXPECT_EQ(Left("TFoot"), "f ");
  EXPECT_THAT(TagOf("h"), testing::HasSubstr("MCID"));
  EXPECT_THAT(TagOf("f"), testing::HasSubstr("MCID"));
}

TEST_F(THeaderFooter, KeepsTheFirstOfThreeHeadsAndMakesTheContentOfTheOthersArtifacts) {
  Repair({Element("Table")({Part("THead", page_, "h1"), Part("THead", page_, "h2"), Part("THead", page_, "h3")})});
  EXPECT_EQ(Left("THead"), "h1 ");
  EXPECT_THAT(TagOf("h1"), testing::HasSubstr("MCID"));
  for (const char* text : {"h2", "h3"}) {
    EXPECT_THAT(TagOf(text), testing::StartsWith("/Artifact"));
    EXPECT_THAT(TagOf(text), testing::Not(testing::HasSubstr("MCID")));
  }
}

TEST_F(THeaderFooter, KeepsTheLastOfThreeFeet) {
  Repair({Element("Table")({Part("TFoot", page_, "f1"), Part("TFoot", page_, "f2"), Part("TFoot", page_, "f3")})});
  EXPECT_EQ(Left("TFoot"), "f3 ");
  EXPECT_THAT(TagOf("f1"), testing::StartsWith("/Artifact"));
}

TEST_F(THeaderFooter, LeavesATableWithoutHeadsAndFeetAlone) {
  Repair({Element("Table")({Part("TBody", page_, "b")})});
  EXPECT_EQ(Left("TBody"), "b ");
  EXPECT_THAT(TagOf("b"), testing::HasSubstr("MCID"));
}

TEST_F(THeaderFooter, TreatsEachTableByItself) {
  Repair({Element("Table")({Part("THead", page_, "a1"), Part("THead", page_, "a2")}),
          Element("Table")({Part("THead", page_, "b1"), Part("THead", page_, "b2")})});
  EXPECT_EQ(Left("THead"), "a1 b1 ");
}

TEST_F(THeaderFooter, GoesByTheRoleOfCustomTypes) {
  document_.RoleMap({{"Head", "THead"}});
  Repair({Element("Table")({Part("Head", page_, "h1"), Part("Head", page_, "h2")})});
  EXPECT_EQ(Left("Head"), "h1 ");
}

TEST_F(THeaderFooter, ClosesTheOuterTableWhenItMeetsANestedOne) {
  Repair({Element("Table")(
      {Part("THead", page_, "o1"), Part("THead", page_, "o2"),
       Element("TR")({Element("TD")({Element("Table")({Part("THead", page_, "i1"), Part("THead", page_, "i2")})})})})});
  EXPECT_EQ(Left("THead"), "o1 i1 ");
}

TEST_F(THeaderFooter, FollowsContentBelowCells) {
  Repair({Element("Table")({Part("THead", page_, "h1"),
                            Element("THead")({Element("TR")({Element("TH")({Element("P").Text(page_, "deep")})})})})});
  EXPECT_THAT(TagOf("deep"), testing::StartsWith("/Artifact"));
}

TEST_F(THeaderFooter, PassesOverContentThatIsNotOnThePage) {
  Repair({Element("Table")({Part("THead", page_, "h1"), Element("THead").Mcid(page_, 77)})});
  EXPECT_EQ(Left("THead"), "h1 ");
}

TEST_F(THeaderFooter, MissesTheHeadThatMovesUpWhereANestedTableMadeOneBeforeItLeave) {
  Repair({Element("Table")({Part("THead", page_, "1"), Part("THead", page_, "2"),
                            Element("TR")({Element("TD")({Element("Table")})}), Part("THead", page_, "3"),
                            Part("THead", page_, "4")})});
  EXPECT_EQ(Left("THead"), "1 3 4 ") << "the walk goes on at the index behind the row, where 4 stands now";
  EXPECT_THAT(TagOf("2"), testing::StartsWith("/Artifact"));
  for (const char* text : {"1", "3", "4"}) EXPECT_THAT(TagOf(text), testing::HasSubstr("MCID"));
}

TEST_F(THeaderFooter, LeavesTheAnnotationOfARepeatedHeadOnThePage) {
  Element cell("TH");
  cell.Text(page_, "h2").Object(page_.Link("https://example.org/"));
  Repair({Element("Table")({Part("THead", page_, "h1"), Element("THead")({Element("TR")({cell})})})});
  EXPECT_THAT(TagOf("h2"), testing::StartsWith("/Artifact"));
  EXPECT_THAT(test::TreeText(saved_), testing::Not(testing::HasSubstr("objr")));
  test::ReadBack file(saved_);
  ASSERT_EQ(file.Page(1).getKey("/Annots").getArrayNItems(), 1);
  EXPECT_FALSE(file.Page(1).getKey("/Annots").getArrayItem(0).hasKey("/StructParent")) << "it leads to no element any more";
}

TEST(THeaderFooterOfDamagedTables, CountsAHeadBeforeTheFirstTableAsItsFirst) {
  TestDocument document;
  test::Page& page = document.AddPage();
  document.Tree({Element("Document")({Part("THead", page, "outside"), Element("Table")({Part("THead", page, "inside")})})});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kHeadersFooters), test::kSuccess);
  EXPECT_EQ(SavedTree(open), "Document\n  THead title=\"outside\"\n    TR\n      TD\n        mcid 0 page 1\n  Table\n");
}

TEST(THeaderFooterOfDamagedTables, EndsWithTheHostsRaiseForAHeadThatIsNoKidOfTheTable) {
  TestDocument document;
  test::Page& page = document.AddPage();
  document.Tree(
      {Element("Document")({Element("Table")({Part("THead", page, "h1"), Element("Div")({Part("THead", page, "h2")})})})});
  OpenDocument open(document.Write());
  const test::Outcome outcome = open.Fixups(kHeadersFooters);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
}

TEST(THeaderFooterOfDamagedTables, CountsAFootBehindATableAsItsLast) {
  TestDocument document;
  test::Page& page = document.AddPage();
  document.Tree({Element("Document")({Element("Table")({Part("TFoot", page, "inside")}), Part("TFoot", page, "outside")})});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kHeadersFooters), test::kSuccess);
  EXPECT_EQ(SavedTree(open), "Document\n  Table\n  TFoot title=\"outside\"\n    TR\n      TD\n        mcid 1 page 1\n");
}

TEST(THeaderFooterOfDamagedTables, CountsAHeadBehindANestedTableForTheNestedOne) {
  TestDocument document;
  test::Page& page = document.AddPage();
  document.Tree({Element("Document")(
      {Element("Table")({Element("TR")({Element("Table")({Part("THead", page, "i1")})}), Part("THead", page, "o1")})})});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kHeadersFooters).result, TGX_FAILED) << "the nested table does not hold it";
}

TEST(THeaderFooterOfDamagedTables, FailsWithoutATextForADocumentWithoutAStructureTree) {
  TestDocument document;
  document.AddPage();
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kHeadersFooters), test::kSoftFailure);
}

}  // namespace
}  // namespace tgx
