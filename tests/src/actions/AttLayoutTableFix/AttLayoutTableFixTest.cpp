#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::OpenDocument;
using test::TestDocument;

constexpr int kAttLayoutTableFix = 9;

Element SmallTable() { return Element("Table")({Element("TR")({Element("TH"), Element("TD")({Element("P")})})}); }

class AttLayoutTableFix : public testing::Test {
 protected:
  ~AttLayoutTableFix() override { std::remove(path_.c_str()); }

  /// The structure tree after the action with a file of these lines.
  std::string Repaired(const std::vector<Element>& elements, const std::string& lines) {
    std::ofstream(path_) << lines;
    TestDocument document;
    document.AddPage();
    document.Tree(elements);
    OpenDocument open(document.Write());
    EXPECT_EQ(open.Action(kAttLayoutTableFix, path_), test::kSuccess);
    return SavedTree(open);
  }

  const std::string path_ =
      testing::TempDir() + "/" + testing::UnitTest::GetInstance()->current_test_info()->name() + ".tables.tsv";
  const std::string small_ = "Table\n  TR\n    TH\n    TD\n      P\n";
  const std::string divs_ = "Div\n  Div\n    Div\n    Div\n      P\n";
};

TEST_F(AttLayoutTableFix, RetagsTheTablesThatTheFileCallsLayout) {
  EXPECT_EQ(Repaired({SmallTable(), SmallTable()}, "Table\t2\nLayout\n"), small_ + divs_);
}

TEST_F(AttLayoutTableFix, KeepsOtherElementsInALayoutTable) {
  EXPECT_EQ(Repaired({Element("Table")({Element("Caption"), Element("Figure")})}, "Table\t1\nLayout\n"),
            "Div\n  Caption\n  Figure\n");
}

TEST_F(AttLayoutTableFix, ChangesNothingForAFileWithoutLayoutTables) {
  EXPECT_EQ(Repaired({SmallTable(), SmallTable(), SmallTable()}, "Table\t1\nTable\t2\nSimple\t1\t1\nTable\t3\nRow\n"),
            small_ + small_ + small_);
}

TEST_F(AttLayoutTableFix, PassesOverNumbersThatNoTableHas) {
  EXPECT_EQ(Repaired({SmallTable()}, "Table\t0\nLayout\nTable\t-1\nLayout\nTable\t2\nLayout\n"), small_);
}

TEST_F(AttLayoutTableFix, TakesANumberThatStandsTwiceOnce) {
  EXPECT_EQ(Repaired({SmallTable()}, "Table\t1\nLayout\nTable\t1\nLayout\n"), divs_);
}

TEST_F(AttLayoutTableFix, RetagsTablesInALayoutTableWithoutShiftingTheNumbers) {
  EXPECT_EQ(
      Repaired({Element("Table")({Element("Table")}), SmallTable(), SmallTable()}, "Table\t1\nLayout\nTable\t3\nLayout\n"),
      "Div\n  Div\n" + divs_ + small_);
}

TEST_F(AttLayoutTableFix, GoesByTheTypeItselfAndNotByItsRole) {
  std::ofstream(path_) << "Table\t1\nLayout\n";
  TestDocument document;
  document.AddPage();
  document.RoleMap({{"Grid", "Table"}}).Tree({Element("Grid"), SmallTable()});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Action(kAttLayoutTableFix, path_), test::kSuccess);
  EXPECT_EQ(SavedTree(open), "Grid\n" + divs_);
}

TEST_F(AttLayoutTableFix, FailsWithoutATextForAFileThatCannotBeOpened) {
  TestDocument document;
  document.AddPage();
  document.Tree({SmallTable()});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Action(kAttLayoutTableFix, path_ + ".missing"), test::kSoftFailure);
  EXPECT_EQ(SavedTree(open), small_);
}

TEST_F(AttLayoutTableFix, FailsAtOnceForWhatIsNoRegularFile) {
  const std::string pipe = path_ + ".pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  TestDocument document;
  document.AddPage();
  document.Tree({SmallTable()});
  OpenDocument open(document.Write());
  for (const std::string& path : {pipe, testing::TempDir(), std::string("/dev/zero"), std::string("/dev/null")}) {
    EXPECT_EQ(open.Action(kAttLayoutTableFix, path), test::kSoftFailure) << path;
  }
  EXPECT_EQ(SavedTree(open), small_);
  std::remove(pipe.c_str());
}

TEST_F(AttLayoutTableFix, FailsForAFileOfMoreLinesThanAnyDocumentNeeds) {
  TestDocument document;
  document.AddPage();
  document.Tree({SmallTable()});
  OpenDocument open(document.Write());
  std::ofstream lines(path_);
  lines << "Table\t1\nLayout\n";
  for (int i = 2; i < 1'000'000; ++i) lines << "x\n";
  lines.flush();
  EXPECT_EQ(open.Action(kAttLayoutTableFix, path_), test::kSuccess);
  EXPECT_EQ(SavedTree(open), divs_);

  OpenDocument fresh(document.Write());
  lines << "x\n";
  lines.flush();
  EXPECT_EQ(fresh.Action(kAttLayoutTableFix, path_), test::kSoftFailure);
  EXPECT_EQ(SavedTree(fresh), small_);
}

TEST_F(AttLayoutTableFix, FailsForAFileBeyondAnyListOfTables) {
  std::ofstream(path_) << "Table\t1\nLayout\n";
  std::filesystem::resize_file(path_, (std::uintmax_t{64} << 20U) + 1);
  TestDocument document;
  document.AddPage();
  document.Tree({SmallTable()});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Action(kAttLayoutTableFix, path_), test::kSoftFailure);
}

TEST_F(AttLayoutTableFix, FailsWithoutATextForADocumentWithoutAStructureTree) {
  std::ofstream(path_) << "Table\t1\nLayout\n";
  TestDocument document;
  document.AddPage();
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Action(kAttLayoutTableFix, path_), test::kSoftFailure);
  EXPECT_EQ(SavedTree(open), "(no structure tree)\n");
}

TEST_F(AttLayoutTableFix, FailsForAnEmptyPath) {
  TestDocument document;
  document.AddPage();
  document.Tree({SmallTable()});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Action(kAttLayoutTableFix, ""), test::kSoftFailure);
}

}  // namespace
}  // namespace tgx
