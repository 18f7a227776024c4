#include "src/tables/AttXmlReader.h"

#include <string>

#include <gtest/gtest.h>
#include <tinyxml2.h>

namespace tgx {
namespace {

std::vector<std::unique_ptr<ATT_XmlTable>> Parse(const std::string& xml) {
  std::vector<std::unique_ptr<ATT_XmlTable>> tables;
  ATT_XmlReader().parseTables(xml.data(), static_cast<std::int32_t>(xml.size()), tables);
  return tables;
}

std::vector<std::int32_t> Types(const std::vector<std::unique_ptr<ATT_XmlTable>>& tables) {
  std::vector<std::int32_t> types;
  for (const auto& table : tables) types.push_back(table->getType());
  return types;
}

/// The text of a table, as its `write` gives it.
std::string Written(const ATT_XmlTable& table) {
  tinyxml2::XMLDocument document;
  auto* element = document.NewElement("Table");
  document.InsertEndChild(element);
  table.write(*element);
  tinyxml2::XMLPrinter printer(nullptr, true);
  document.Print(&printer);
  return printer.CStr();
}

TEST(AttXmlReader, GivesNothingForAnEmptyText) { EXPECT_TRUE(Parse("").empty()); }

TEST(AttXmlReader, GivesNothingForTextThatIsNoXml) { EXPECT_TRUE(Parse("type\t1 <<<").empty()); }

TEST(AttXmlReader, GivesNothingForAnUnclosedElement) { EXPECT_TRUE(Parse("<Tables><Table type='1'>").empty()); }

TEST(AttXmlReader, ReadsNoFurtherThanTheGivenLength) {
  const std::string xml = "<Tables><Table type='1'/></Tables>";
  std::vector<std::unique_ptr<ATT_XmlTable>> tables;
  ATT_XmlReader().parseTables((xml + "</broken").c_str(), static_cast<std::int32_t>(xml.size()), tables);
  EXPECT_EQ(Types(tables), std::vector<std::int32_t>{1});
}

TEST(AttXmlReader, MakesTheClassOfEachType) {
  const auto tables = Parse("<Tables><Table type='1'/><Table type='2'/><Table type='3'/><Table type='4'/></Tables>");
  ASSERT_EQ(Types(tables), (std::vector<std::int32_t>{1, 2, 3, 4}));
  EXPECT_NE(dynamic_cast<ATT_IdhXmlTable*>(tables[0].get()), nullptr);
  EXPECT_NE(dynamic_cast<ATT_QthXmlTable*>(tables[1].get()), nullptr);
  EXPECT_NE(dynamic_cast<ATT_SthXmlTable*>(tables[2].get()), nullptr);
  EXPECT_NE(dynamic_cast<ATT_LayoutXmlTable*>(tables[3].get()), nullptr);
}

TEST(AttXmlReader, PassesOverTablesOfUnknownOrNoType) {
  EXPECT_EQ(Types(Parse("<Tables><Table type='1'/><Table type='5'/><Table/><Table type='x'/><Table type='4'/></Tables>")),
            (std::vector<std::int32_t>{1, 4}));
}

TEST(AttXmlReader, AppendsToWhatTheListHolds) {
  std::vector<std::unique_ptr<ATT_XmlTable>> tables;
  tables.push_back(std::make_unique<ATT_LayoutXmlTable>());
  const std::string xml = "<Tables><Table type='1'/></Tables>";
  ATT_XmlReader().parseTables(xml.data(), static_cast<std::int32_t>(xml.size()), tables);
  EXPECT_EQ(Types(tables), (std::vector<std::int32_t>{4, 1}));
}

TEST(AttXmlReader, FindsTablesBehindOtherTopLevelElements) {
  EXPECT_EQ(Types(Parse("<?xml version='1.0'?><!-- made --><Head/><Tables><Table type='4'/></Tables>")),
            std::vector<std::int32_t>{4});
}

TEST(AttXmlReader, DoesNotLookForTablesBelowTheTopLevel) {
  EXPECT_TRUE(Parse("<Wrap><Tables><Table type='4'/></Tables></Wrap>").empty());
}

TEST(AttXmlReader, ReadsOnlyTheFirstTables) {
  EXPECT_EQ(Types(Parse("<Tables><Table type='1'/></Tables><Tables><Table type='4'/></Tables>")),
            std::vector<std::int32_t>{1});
}

TEST(AttXmlReader, IsCaseSensitive) { EXPECT_TRUE(Parse("<tables><Table type='1'/></tables>").empty()); }

TEST(AttXmlReader, ReadsTheIndexOfEveryKind) {
  for (const auto& table : Parse("<Tables><Table type='1' index='7'/><Table type='2' index='7'/><Table type='3' index='7'/>"
                                 "<Table type='4' index='7'/></Tables>")) {
    EXPECT_EQ(table->index, 7) << "type " << table->getType();
  }
}

TEST(AttXmlReader, TakesZeroForAnIndexThatIsMissingOrNoNumber) {
  const auto tables = Parse("<Tables><Table type='1'/><Table type='1' index='first'/></Tables>");
  ASSERT_EQ(tables.size(), 2U);
  EXPECT_EQ(tables[0]->index, 0);
  EXPECT_EQ(tables[1]->index, 0);
}

TEST(AttXmlReader, IgnoresTheContentOfTablesThatNeedNone) {
  const auto tables =
      Parse("<Tables><Table type='1' rows='2' cols='1'><Row/></Table><Table type='4' rows='2'><Row/></Table></Tables>");
  ASSERT_EQ(Types(tables), (std::vector<std::int32_t>{1, 4}));
  EXPECT_EQ(Written(*tables[0]), "<Table type=\"1\" index=\"0\"/>");
  EXPECT_EQ(Written(*tables[1]), "<Table type=\"4\" index=\"0\"/>");
}

TEST(AttXmlReader, ReadsTheHeaderCounts) {
  const auto tables = Parse("<Tables><Table type='2' rows='2' cols='-1'/></Tables>");
  const auto& table = dynamic_cast<const ATT_QthXmlTable&>(*tables.at(0));
  EXPECT_EQ(table.rows, 2);
  EXPECT_EQ(table.cols, -1);
}

TEST(AttXmlReader, TakesZeroForMissingHeaderCounts) {
  const auto tables = Parse("<Tables><Table type='2'/></Tables>");
  const auto& table = dynamic_cast<const ATT_QthXmlTable&>(*tables.at(0));
  EXPECT_EQ(table.rows, 0);
  EXPECT_EQ(table.cols, 0);
}

TEST(AttXmlReader, ReadsRowsAndCellsInOrder) {
  const auto tables = Parse(
      "<Tables><Table type='3'><Row index='1'><Cell type='0' row='1' index='1'/><Cell type='1' row='1' index='2'/></Row>"
      "<Row index='2'/></Table></Tables>");
  const auto& table = dynamic_cast<const ATT_SthXmlTable&>(*tables.at(0));
  const auto rows = table.getRows();
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[1]->index, 2);
  const auto cells = rows[0]->getCells();
  ASSERT_EQ(cells.size(), 2U);
  EXPECT_EQ(cells[1]->type, 1);
  EXPECT_EQ(cells[1]->row, 1);
  EXPECT_EQ(cells[1]->index, 2);
}

TEST(AttXmlReader, ReadsNestedCellsToAnyDepth) {
  const auto tables = Parse(
      "<Tables><Table type='3'><Row><Cell index='1'><Cell index='2'><Cell index='3'/></Cell></Cell></Row></Table></Tables>");
  const auto& table = dynamic_cast<const ATT_SthXmlTable&>(*tables.at(0));
  const auto* outer = table.getRows().at(0)->getCells().at(0);
  EXPECT_EQ(outer->getCells().at(0)->getCells().at(0)->index, 3);
}

TEST(AttXmlReader, TakesACellWithoutAttributesForAHeaderCellAtZero) {
  const auto tables = Parse("<Tables><Table type='3'><Row><Cell/></Row></Table></Tables>");
  const auto* cell = dynamic_cast<const ATT_SthXmlTable&>(*tables.at(0)).getRows().at(0)->getCells().at(0);
  EXPECT_EQ(cell->type, 0);
  EXPECT_EQ(cell->row, 0);
  EXPECT_EQ(cell->index, 0);
}

TEST(AttXmlReader, TakesACellThatWasNeverReadForNoCell) {
  const ATT_SthXmlTableCell cell;
  EXPECT_EQ(cell.type, -1);
  EXPECT_EQ(cell.row, -1);
  EXPECT_EQ(cell.index, -1);
}

TEST(AttXmlReader, SurvivesElementsNestedTooDeep) {
  std::string xml = "<Tables><Table type='3'><Row>";
  for (int i = 0; i < 100000; ++i) xml += "<Cell>";
  EXPECT_TRUE(Parse(xml).empty());
}

TEST(AttXmlReader, GivesNothingForATagWithMoreAttributesThanAnyExporterWrites) {
  std::string attributes;
  for (int i = 0; i < 101; ++i) attributes += " a" + std::to_string(i) + "=''";
  EXPECT_TRUE(Parse("<Tables><Table type='1'/><Table type='1'" + attributes + "/></Tables>").empty());
}

TEST(CreateTable, GivesNullForUnknownTypes) {
  EXPECT_EQ(createTable(0), nullptr);
  EXPECT_EQ(createTable(5), nullptr);
  EXPECT_EQ(createTable(-1), nullptr);
}

TEST(AttXmlTable, WritesTheCountsOfColumnsBeforeThoseOfRows) {
  const auto tables = Parse("<Tables><Table type='2' index='3' rows='1' cols='2'/></Tables>");
  EXPECT_EQ(Written(*tables.at(0)), "<Table type=\"2\" index=\"3\" cols=\"2\" rows=\"1\"/>");
}

TEST(AttXmlTable, WritesWhatItRead) {
  const std::string xml =
      "<Table type=\"3\" index=\"4\"><Row index=\"1\"><Cell type=\"0\" row=\"1\" index=\"1\"/></Row><Row index=\"2\">"
      "<Cell type=\"1\" row=\"2\" index=\"1\"><Cell type=\"0\" row=\"1\" index=\"1\"><Cell type=\"0\" row=\"9\" "
      "index=\"9\"/></Cell>"
      "</Cell></Row></Table>";
  EXPECT_EQ(Written(*Parse("<Tables>" + xml + "</Tables>").at(0)), xml);
}

}  // namespace
}  // namespace tgx
