#include "src/tables/AttTable.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "src/tables/AttXmlReader.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"

namespace tgx {
namespace {

class AttTableTest : public testing::Test {
 protected:
  /// The working table of the one "Table"; the XML objects are gone then.
  static std::unique_ptr<AttTable> Make(const std::string& table) {
    const std::string xml = "<Tables>" + table + "</Tables>";
    std::vector<std::unique_ptr<ATT_XmlTable>> tables;
    ATT_XmlReader().parseTables(xml.data(), static_cast<std::int32_t>(xml.size()), tables);
    return MakeAttTable(*tables.at(0));
  }
  static std::unique_ptr<SthTable> MakeDescribed(const std::string& rows) {
    auto table = Make("<Table type='3'>" + rows + "</Table>");
    return std::unique_ptr<SthTable>(dynamic_cast<SthTable*>(table.release()));
  }

 private:
  test::HostSession session_;
};

TEST_F(AttTableTest, HasTypeAndIndexOfItsSource) {
  for (const int type : {1, 2, 3, 4}) {
    const auto table = Make("<Table type='" + std::to_string(type) + "' index='7'/>");
    EXPECT_EQ(table->type, type);
    EXPECT_EQ(table->index, 7);
  }
}

TEST_F(AttTableTest, IsOfAClassOfItsOwnWhereItHasMoreToKeep) {
  EXPECT_NE(dynamic_cast<QthTable*>(Make("<Table type='2'/>").get()), nullptr);
  EXPECT_NE(dynamic_cast<SthTable*>(Make("<Table type='3'/>").get()), nullptr);
  for (const char* type : {"1", "4"}) {
    const auto table = Make(std::string("<Table type='") + type + "'/>");
    EXPECT_EQ(dynamic_cast<QthTable*>(table.get()), nullptr);
    EXPECT_EQ(dynamic_cast<SthTable*>(table.get()), nullptr);
  }
}

TEST_F(AttTableTest, IsValidOnceItIsBoundToAnElement) {
  test::TestDocument document;
  document.AddPage();
  document.Tree({test::Element("Table")});
  const test::OpenDocument open(document.Write());
  PDSTreeRoot root = {};
  PDDocGetStructTreeRoot(open.Handle(), &root);
  const auto table = Make("<Table type='2' index='3' rows='1'/>");
  EXPECT_FALSE(table->isValid());
  PDSTreeRootGetKid(root, 0, &table->element);
  EXPECT_TRUE(table->isValid());
}

TEST_F(AttTableTest, TakesTypeAndIndexGivenDirectly) {
  const AttTable table(4, 9);
  EXPECT_EQ(table.type, 4);
  EXPECT_EQ(table.index, 9);
  EXPECT_FALSE(table.isValid());
}

TEST_F(AttTableTest, KeepsTheCountsOfHeaders) {
  const auto table = Make("<Table type='2' rows='3' cols='4'/>");
  EXPECT_EQ(dynamic_cast<QthTable&>(*table).rows, 3);
  EXPECT_EQ(dynamic_cast<QthTable&>(*table).cols, 4);
}

TEST_F(AttTableTest, HasNoRowsWhereNoneAreDescribed) { EXPECT_TRUE(MakeDescribed("")->rows.empty()); }

TEST_F(AttTableTest, KeepsRowsAndCellsInTheirOrder) {
  const auto table = MakeDescribed(
      "<Row index='5'><Cell type='0' row='1' index='2'/><Cell type='1' row='3' index='4'/></Row><Row index='4'/>");
  ASSERT_EQ(table->rows.size(), 2U);
  EXPECT_EQ(table->rows[0]->index, 5);
  EXPECT_EQ(table->rows[1]->index, 4);
  ASSERT_EQ(table->rows[0]->cells.size(), 2U);
  EXPECT_EQ(table->rows[0]->cells[0]->type, 0);
  EXPECT_EQ(table->rows[0]->cells[1]->type, 1);
  EXPECT_EQ(table->rows[0]->cells[1]->row, 3);
  EXPECT_EQ(table->rows[0]->cells[1]->index, 4);
}

TEST_F(AttTableTest, KeepsCellsInCellsAndDropsWhatIsDeeper) {
  const auto table = MakeDescribed(
      "<Row><Cell><Cell row='1' index='1'><Cell row='2' index='2'/></Cell><Cell row='3' index='3'/></Cell></Row>");
  const auto& headers = table->rows.at(0)->cells.at(0)->headers;
  ASSERT_EQ(headers.size(), 2U);
  EXPECT_EQ(headers[0]->row, 1);
  EXPECT_EQ(headers[1]->row, 3);
  EXPECT_TRUE(headers[0]->headers.empty());
}

}  // namespace
}  // namespace tgx
