#include "src/tables/TsvTables.h"

#include <sstream>

#include <gtest/gtest.h>

namespace tgx {
namespace {

class TsvParser : public testing::Test {
 protected:
  void Read(const std::string& text) {
    std::istringstream stream(text);
    parser_.readLines(stream, lines_);
    parser_.parse(lines_);
  }

  /// The kinds and numbers of the tables, such as "Layout 4".
  std::vector<std::string> Tables() const {
    std::vector<std::string> names;
    for (const auto& table : parser_.tables) {
      const TSV_Table& it = *table;
      std::string kind = "?";
      if (dynamic_cast<const IDH_Table*>(&it) != nullptr) kind = "IDH";
      if (dynamic_cast<const Layout_Table*>(&it) != nullptr) kind = "Layout";
      if (dynamic_cast<const STH_Table*>(&it) != nullptr) kind = "STH";
      if (const auto* counted = dynamic_cast<const QTH_Table*>(&it)) {
        kind = "QTH(" + std::to_string(counted->rows) + "," + std::to_string(counted->cols) + ")";
      }
      names.push_back(kind + " " + std::to_string(it.index));
    }
    return names;
  }

  using Names = std::vector<std::string>;
  TSV_Parser parser_;
  std::vector<std::string> lines_;
};

TEST_F(TsvParser, GivesNothingForAnEmptyFile) {
  Read("");
  EXPECT_TRUE(Tables().empty());
  EXPECT_EQ(parser_.typeFirst, "");
  EXPECT_EQ(parser_.typeSecond, "");
}

TEST_F(TsvParser, ReadsEveryKind) {
  Read("Type\tTSV\t1.0\nTable\t1\nTable\t2\nSimple\t1\t2\nTable\t3\nRow\t1\nTable\t4\nLayout\nTable\t5\n");
  EXPECT_EQ(Tables(), (Names{"IDH 1", "QTH(1,2) 2", "STH 3", "Layout 4", "IDH 5"}));
  EXPECT_EQ(parser_.typeFirst, "TSV");
  EXPECT_EQ(parser_.typeSecond, "1.0");
}

TEST_F(TsvParser, MakesATableWithTaggedHeadersOfATableLineAtTheEnd) {
  Read("Table\t7");
  EXPECT_EQ(Tables(), Names{"IDH 7"});
}

TEST_F(TsvParser, ReadsTheSecondOfTwoTableLinesByWhatFollowsIt) {
  Read("Table\t1\nTable\t2\nLayout\n");
  EXPECT_EQ(Tables(), (Names{"IDH 1", "Layout 2"}));
}

TEST_F(TsvParser, TakesATableLineWithoutANumberForAnyOtherLine) {
  Read("Table\tx\nLayout\nTable\t2\nLayout\n");
  EXPECT_EQ(Tables(), Names{"Layout 2"});
}

TEST_F(TsvParser, TakesANumberOfMoreThan32BitsForNone) {
  Read("Table\t4294967297\nLayout\nTable\t99999999999999999999999\nLayout\nTable\t-2147483648\nLayout\n");
  EXPECT_EQ(Tables(), Names{"Layout -2147483648"});
  Read("Table\t1\nSimple\t1\t2147483648\nTable\t2\nSimple 2147483647 -1\n");
  EXPECT_EQ(Tables(), Names{"QTH(2147483647,-1) 2"});
}

TEST_F(TsvParser, MakesNoTableOfASimpleLineWithOneNumber) {
  Read("Table\t1\nSimple\t1\nTable\t2\n");
  EXPECT_EQ(Tables(), Names{"IDH 2"});
}

TEST_F(TsvParser, LosesATableWhoseNextLineNamesNoKind) {
  Read("Table\t1\nnothing\nLayout\n");
  EXPECT_TRUE(Tables().empty());
}

TEST_F(TsvParser, NeedsBothWordsOfTheTypeLine) {
  Read("Type\tonly\n");
  EXPECT_EQ(parser_.typeFirst, "");
  EXPECT_EQ(parser_.typeSecond, "");
}

TEST_F(TsvParser, DoesNotReadATypeLineThatStandsInThePlaceOfAKind) {
  Read("Table\t1\nType\ta\tb\nTable\t2\n");
  EXPECT_EQ(Tables(), Names{"IDH 2"});
  EXPECT_EQ(parser_.typeFirst, "");
}

TEST_F(TsvParser, ReadsATableLineThatHoldsTheWordOfATypeLine) {
  Read("Table\t4 Type\nLayout\n");
  EXPECT_EQ(Tables(), Names{"Layout 4"});
}

TEST_F(TsvParser, EndsALineAtAZeroByte) {
  Read(std::string("Table\t1\nLay\0out\nTable\t2\n", 24));
  EXPECT_EQ(Tables(), Names{"IDH 2"});
}

TEST_F(TsvParser, TakesNothingOverFromALongerLineBefore) {
  Read("Table\t1\nLayout is long\nTable\t2\nRow\n\nTable\t3\n");
  EXPECT_EQ(Tables(), (Names{"Layout 1", "STH 2", "IDH 3"}));
}

TEST_F(TsvParser, LetsALaterTypeLineWin) {
  Read("Type\ta\tb\nType\tc\td\nType\te\n");
  EXPECT_EQ(parser_.typeFirst, "c");
  EXPECT_EQ(parser_.typeSecond, "d");
}

TEST_F(TsvParser, CutsAWordOfTheTypeLineAfter49Characters) {
  Read("Type\t" + std::string(60, 'x') + "\ty\n");
  EXPECT_EQ(parser_.typeFirst, std::string(49, 'x'));
  EXPECT_EQ(parser_.typeSecond, std::string(11, 'x'));
}

TEST_F(TsvParser, TakesABlankForTheTab) {
  Read("Table 3\nLayout\n");
  EXPECT_EQ(Tables(), Names{"Layout 3"});
}

TEST_F(TsvParser, WantsTheWordAtTheStartOfATableLine) {
  Read(" Table\t3\nLayout\n");
  EXPECT_TRUE(Tables().empty());
}

TEST_F(TsvParser, LooksForTheKindAnywhereInTheLine) {
  Read("Table\t1\na Rowing boat\nTable\t2\nthe Layouts\n");
  EXPECT_EQ(Tables(), (Names{"STH 1", "Layout 2"}));
}

TEST_F(TsvParser, PrefersSimpleToLayoutToRow) {
  Read("Table\t1\nSimple Layout Row\nTable\t2\nRow Layout\n");
  EXPECT_EQ(Tables(), Names{"Layout 2"});
}

TEST_F(TsvParser, DoesNotLetABlankLineSeparateATableFromItsKind) {
  Read("Table\t1\n\n\nLayout\n");
  EXPECT_EQ(Tables(), Names{"Layout 1"});
}

TEST_F(TsvParser, IsNotDisturbedByCarriageReturns) {
  Read("Type\ta\tb\r\nTable\t1\r\nSimple\t1\t2\r\nTable\t2\r\nLayout\r\n");
  EXPECT_EQ(Tables(), (Names{"QTH(1,2) 1", "Layout 2"}));
  EXPECT_EQ(parser_.typeSecond, "b");
}

TEST_F(TsvParser, ForgetsTheTablesOfAnEarlierParse) {
  Read("Table\t1\n");
  Read("Table\t2\n");
  EXPECT_EQ(Tables(), Names{"IDH 2"});
}

TEST_F(TsvParser, ReadsALineOf1023Characters) {
  Read("Table\t1\nLayout" + std::string(1017, '.') + "\nTable\t2\n");
  EXPECT_EQ(Tables(), (Names{"Layout 1", "IDH 2"}));
}

TEST_F(TsvParser, EndsAtALineOf1024CharactersWithWhatWasRead) {
  Read("Table\t1\nLayout" + std::string(1018, '.') + "\nTable\t2\n");
  EXPECT_EQ(Tables(), Names{"Layout 1"});
}

}  // namespace
}  // namespace tgx
