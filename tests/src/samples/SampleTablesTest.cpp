// What becomes of the tables of documents of real exporters: the cells that name one another, the heads that repeat.

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qpdf/QPDFNameTreeObjectHelper.hh>

#include "tests/src/samples/Samples.h"
#include "tests/support/Rendering.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::ReadBack;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr int kTableMetadata = 12;
constexpr int kLayoutTables = 9;
constexpr std::uint32_t kHeadersFooters = 0x40;

using Handler = std::function<void(QPDFObjectHandle element)>;

std::vector<QPDFObjectHandle> ElementKids(QPDFObjectHandle parent) {
  QPDFObjectHandle kids = parent.getKey("/K");
  std::vector<QPDFObjectHandle> elements;
  for (QPDFObjectHandle& kid : kids.isArray() ? kids.getArrayAsVector() : std::vector{kids}) {
    if (kid.isDictionary() && kid.hasKey("/S")) elements.push_back(kid);
  }
  return elements;
}

/// Hands each structure element below `parent` to the handler, parents before kids.
void ForEachElement(const QPDFObjectHandle& parent, const Handler& handler) {
  for (QPDFObjectHandle& kid : ElementKids(parent)) {
    handler(kid);
    ForEachElement(kid, handler);
  }
}

std::string TypeOf(QPDFObjectHandle element) { return element.getKey("/S").getName(); }

std::vector<QPDFObjectHandle> ElementsOfType(const QPDFObjectHandle& parent, const std::string& type) {
  std::vector<QPDFObjectHandle> elements;
  ForEachElement(parent, [&](const QPDFObjectHandle& element) {
    if (TypeOf(element) == type) elements.push_back(element);
  });
  return elements;
}

/// The owner's value of an attribute, null where the cell has none.
QPDFObjectHandle TableAttribute(QPDFObjectHandle cell, const std::string& key) {
  QPDFObjectHandle attributes = cell.getKey("/A");
  for (QPDFObjectHandle& owned : attributes.isArray() ? attributes.getArrayAsVector() : std::vector{attributes}) {
    if (owned.isDictionary() && owned.getKey("/O").isNameAndEquals("/Table") && owned.hasKey(key)) return owned.getKey(key);
  }
  return QPDFObjectHandle::newNull();
}

/// "TH Column", "TD 1_2_1 < 1_0_1 1_2_0": type, scope, identifier, and the identifiers that it names as its headers.
std::string CellText(QPDFObjectHandle cell) {
  std::string text = TypeOf(cell).substr(1);
  if (QPDFObjectHandle scope = TableAttribute(cell, "/Scope"); scope.isName()) text += " " + scope.getName().substr(1);
  if (cell.getKey("/ID").isString()) text += " " + cell.getKey("/ID").getStringValue();
  if (QPDFObjectHandle headers = TableAttribute(cell, "/Headers"); headers.isArray()) {
    text += " <";
    for (QPDFObjectHandle& header : headers.getArrayAsVector()) text += " " + header.getStringValue();
  }
  return text;
}

std::string RowsText(const std::vector<QPDFObjectHandle>& rows) {
  std::string text;
  for (const QPDFObjectHandle& row : rows) {
    std::string cells;
    for (QPDFObjectHandle& cell : ElementKids(row)) cells += (cells.empty() ? "" : " | ") + CellText(cell);
    text += cells + "\n";
  }
  return text;
}

/// The rows of a table, counted from 1: a line each, with bars between the cells.
std::string TableText(const std::string& pdf, std::size_t number) {
  ReadBack file(pdf);
  return RowsText(ElementsOfType(ElementsOfType(file.TreeRoot(), "/Table").at(number - 1), "/TR"));
}

/// The same of tables that are divisions now, in divisions of divisions.
std::string LayoutTablesText(const std::string& pdf) {
  const auto areDivisions = [](const std::vector<QPDFObjectHandle>& elements) {
    return !elements.empty() &&
           std::all_of(elements.begin(), elements.end(), [](const auto& element) { return TypeOf(element) == "/Div"; });
  };
  ReadBack file(pdf);
  std::string text;
  for (QPDFObjectHandle& element : ElementsOfType(file.TreeRoot(), "/Div")) {
    const auto rows = ElementKids(element);
    if (areDivisions(rows) && areDivisions(ElementKids(rows.front()))) text += RowsText(rows);
  }
  return text;
}

/// The kids of a table of one type, each by its marked content.
std::vector<std::string> PartsOf(const QPDFObjectHandle& table, const std::string& type) {
  std::vector<std::string> parts;
  for (QPDFObjectHandle& part : ElementKids(table)) {
    if (TypeOf(part) != type) continue;
    std::string content;
    ForEachElement(part, [&](QPDFObjectHandle element) {
      QPDFObjectHandle kids = element.getKey("/K");
      for (QPDFObjectHandle& kid : kids.isArray() ? kids.getArrayAsVector() : std::vector{kids}) {
        if (kid.isDictionary() && kid.hasKey("/MCID")) kid = kid.getKey("/MCID");
        if (kid.isInteger()) content += kid.unparse() + " ";
      }
    });
    parts.push_back(content);
  }
  return parts;
}

class SampleTables : public testing::TestWithParam<std::string> {
 protected:
  std::string Bytes() const { return test::SampleBytes(GetParam()); }
  std::string AfterMetadata() const { return test::SampleAfterAction(GetParam(), kTableMetadata); }
  std::string AfterHeadersFooters() const { return test::SampleAfterFixes(GetParam(), kHeadersFooters); }
};

INSTANTIATE_TEST_SUITE_P(Samples, SampleTables, testing::Values("annual-report", "travel-guide", "handbook"),
                         [](const auto& tested) {
                           std::string name = tested.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST_P(SampleTables, LoseEveryPlaceholder) {
  EXPECT_THAT(test::TreeText(Bytes()), HasSubstr("[ATT]"));
  EXPECT_THAT(test::TreeText(AfterMetadata()), Not(HasSubstr("[ATT]")));
}

TEST_P(SampleTables, KeepTheContentOfThePages) {
  const auto before = test::RenderPages(Bytes());
  const auto after = test::RenderPages(AfterMetadata());
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t page = 0; page < after.size(); ++page) {
    EXPECT_TRUE(test::Compare(before[page], after[page]).IsEmpty()) << "page " << page + 1;
  }
}

TEST_P(SampleTables, NameTheHeaderCellsOfTheirTable) {
  // The descriptions of two samples name columns of a first row whose last cell stands over several of them.
  const std::map<std::string, std::set<std::string>> missing = {
      {"annual-report", {"1_0_3"}}, {"handbook", {"1_0_2", "1_0_3"}}, {"travel-guide", {}}};
  std::set<std::string> dangling;
  int references = 0;
  ReadBack file(AfterMetadata());
  for (QPDFObjectHandle& table : ElementsOfType(file.TreeRoot(), "/Table")) {
    std::map<std::string, std::string> typesById;
    ForEachElement(table, [&](QPDFObjectHandle cell) {
      if (cell.getKey("/ID").isString()) typesById[cell.getKey("/ID").getStringValue()] = TypeOf(cell);
    });
    ForEachElement(table, [&](QPDFObjectHandle cell) {
      if (!cell.getKey("/A").isDictionary() || !cell.getKey("/A").hasKey("/Headers")) return;
      EXPECT_EQ(TypeOf(cell), "/TD");
      EXPECT_EQ(cell.getKey("/A").getKey("/O").getName(), "/Table");
      for (QPDFObjectHandle& header : cell.getKey("/A").getKey("/Headers").getArrayAsVector()) {
        ++references;
        const auto named = typesById.find(header.getStringValue());
        if (named == typesById.end()) {
          dangling.insert(header.getStringValue());
        } else {
          EXPECT_EQ(named->second, "/TH") << named->first;
        }
      }
    });
  }
  EXPECT_GT(references, 0);
  EXPECT_EQ(dangling, missing.at(GetParam()));
}

TEST_P(SampleTables, ListEveryIdentifierInTheIdTree) {
  ReadBack file(AfterMetadata());
  std::map<std::string, QPDFObjGen> elements;
  ForEachElement(file.TreeRoot(), [&](QPDFObjectHandle element) {
    if (!element.getKey("/ID").isString()) return;
    const bool isNew = elements.emplace(element.getKey("/ID").getStringValue(), element.getObjGen()).second;
    EXPECT_TRUE(isNew) << "stands twice: " << element.getKey("/ID").getStringValue();
  });
  std::map<std::string, QPDFObjGen> listed;
  for (const auto& [id, element] : QPDFNameTreeObjectHelper(file.TreeRoot().getKey("/IDTree"), file.Pdf(), false)) {
    listed.emplace(id, element.getObjGen());
  }
  EXPECT_THAT(elements, Not(IsEmpty()));
  EXPECT_EQ(listed, elements);
}

TEST_P(SampleTables, KeepTheirFirstHeadAndTheirLastFootAndAllBetween) {
  ReadBack before(Bytes());
  ReadBack after(AfterHeadersFooters());
  const auto tables = ElementsOfType(before.TreeRoot(), "/Table");
  const auto repaired = ElementsOfType(after.TreeRoot(), "/Table");
  ASSERT_EQ(repaired.size(), tables.size());
  int withRepeatedHeads = 0;
  for (std::size_t i = 0; i < tables.size(); ++i) {
    std::vector<std::string> heads = PartsOf(tables[i], "/THead");
    std::vector<std::string> feet = PartsOf(tables[i], "/TFoot");
    if (heads.size() > 1) {
      ++withRepeatedHeads;
      EXPECT_NE(heads[0], heads[1]);
      heads.resize(1);
    }
    if (feet.size() > 1) feet.erase(feet.begin(), feet.end() - 1);
    EXPECT_EQ(PartsOf(repaired[i], "/THead"), heads);
    EXPECT_EQ(PartsOf(repaired[i], "/TFoot"), feet);
    EXPECT_EQ(PartsOf(repaired[i], "/TBody"), PartsOf(tables[i], "/TBody"));
  }
  EXPECT_EQ(withRepeatedHeads, 1);
}

TEST_P(SampleTables, LookTheSameWithoutRepeatedHeads) {
  const auto before = test::RenderPages(Bytes());
  const auto after = test::RenderPages(AfterHeadersFooters());
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t page = 0; page < after.size(); ++page) {
    EXPECT_TRUE(test::Compare(before[page], after[page]).IsEmpty()) << "page " << page + 1;
  }
}

TEST_P(SampleTables, LeaveTheContentOfRepeatedHeadsAsArtifacts) {
  const auto count = [](const std::string& text, const std::string& word) {
    int found = 0;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) ++found;
    return found;
  };
  const auto countOnPages = [&](const std::string& pdf, const std::string& word) {
    ReadBack file(pdf);
    int found = 0;
    for (int page = 1; page <= static_cast<int>(file->getAllPages().size()); ++page)
      found += count(file.Content(page), word);
    return found;
  };
  const std::string after = AfterHeadersFooters();
  const int gone = count(test::TreeText(Bytes()), " mcid ") - count(test::TreeText(after), " mcid ");
  EXPECT_GT(gone, 0);
  EXPECT_EQ(countOnPages(after, "/MCID"), countOnPages(Bytes(), "/MCID") - gone);
  EXPECT_EQ(countOnPages(after, "/Artifact"), countOnPages(Bytes(), "/Artifact") + gone);
}

TEST(AnnualReportTables, GetTheHeaderCellsThatTheirMetadataNames) {
  const std::string after = test::SampleAfterAction("annual-report", kTableMetadata);
  EXPECT_EQ(TableText(after, 1),
            "TH Column | TH Column | TH Column\n"
            "TD | TD | TD\n"
            "TD | TD | TD\n"
            "TD | TD | TD\n"
            "TD | TD | TD\n");
  EXPECT_EQ(TableText(after, 2),
            "TH Column | TH Column | TH Column | TH Column | TH Column\n"
            "TH Row | TD | TD | TD | TD\n"
            "TH Row | TD | TD | TD | TD\n"
            "TH Row | TD | TD | TD | TD\n");
  EXPECT_EQ(TableText(after, 3),
            "TH 1_0_0 | TH 1_0_1 | TH 1_0_2\n"
            "TH 1_1_0 | TH 1_1_1 | TH 1_1_2 | TH 1_1_3\n"
            "TH 1_2_0 | TD 1_2_1 < 1_0_1 1_1_1 1_2_0 | TD 1_2_2 < 1_0_2 1_1_2 1_2_0 | TD 1_2_3 < 1_0_3 1_1_3 1_2_0\n"
            "TH 1_3_0 | TD 1_3_1 < 1_0_1 1_1_1 1_3_0 | TD 1_3_2 < 1_0_2 1_1_2 1_3_0 | TD 1_3_3 < 1_0_3 1_1_3 1_3_0\n"
            "TH 1_4_0 | TD 1_4_1 < 1_0_1 1_1_1 1_4_0 | TD 1_4_2 < 1_0_2 1_1_2 1_4_0 | TD 1_4_3 < 1_0_3 1_1_3 1_4_0\n");
  for (const std::size_t undescribed : {4, 5}) {
    EXPECT_EQ(TableText(after, undescribed), TableText(test::SampleBytes("annual-report"), undescribed));
  }
}

TEST(TravelGuideTables, GetTheHeaderCellsThatTheirMetadataNames) {
  const std::string after = test::SampleAfterAction("travel-guide", kTableMetadata);
  EXPECT_EQ(TableText(after, 1),
            "TH Column | TH Column | TH Column | TH Column\n"
            "TD | TD | TD | TD\n"
            "TD | TD | TD | TD\n");
  EXPECT_EQ(TableText(after, 2),
            "TH Column | TH Column | TH Column\n"
            "TH Row | TD | TD | TD\n"
            "TH Row | TD | TD | TD\n"
            "TD | TD | TD\n")
      << "the last row is a cell short";
  EXPECT_EQ(TableText(after, 3),
            "TH 1_0_0 | TH 1_0_1 | TH 1_0_2 | TH 1_0_3\n"
            "TH 1_1_0 | TD 1_1_1 < 1_0_1 1_1_0 | TD 1_1_2 < 1_0_2 1_1_0 | TD 1_1_3 < 1_0_3 1_1_0\n"
            "TH 1_2_0 | TD 1_2_1 < 1_0_1 1_2_0 | TD 1_2_2 < 1_0_2 1_2_0 | TD 1_2_3 < 1_0_3 1_2_0\n"
            "TH 1_3_0 | TD 1_3_1 < 1_0_1 1_3_0 | TD 1_3_2 < 1_0_2 1_3_0 | TD 1_3_3 < 1_0_3 1_3_0\n");
  EXPECT_EQ(LayoutTablesText(after), "Div | Div\nDiv | Div\n");
  EXPECT_EQ(TableText(after, 4), TableText(test::SampleBytes("travel-guide"), 5));
}

TEST(HandbookTables, GetTheHeaderCellsThatTheirMetadataNames) {
  const std::string after = test::SampleAfterAction("handbook", kTableMetadata);
  EXPECT_EQ(TableText(after, 1),
            "TH Column | TH Column | TH Column | TH Column\n"
            "TD | TD | TD | TD\n"
            "TD | TD | TD | TD\n"
            "TD | TD | TD | TD\n"
            "TD | TD | TD | TD\n")
      << "the first of its two placeholders counts";
  EXPECT_EQ(TableText(after, 2),
            "TH Column | TH Column | TH Column | TH Column\n"
            "TH Row | TD | TD | TD\n"
            "TH Row | TD | TD | TD\n");
  EXPECT_EQ(TableText(after, 3),
            "TH 1_0_0 | TH 1_0_1\n"
            "TH 1_1_0 | TH 1_1_1 | TH 1_1_2 | TH 1_1_3\n"
            "TH 1_2_0 | TD 1_2_1 < 1_0_1 1_1_1 1_2_0 | TD 1_2_2 < 1_0_2 1_1_2 1_2_0 | TD 1_2_3 < 1_0_3 1_1_3 1_2_0\n"
            "TH 1_3_0 | TD 1_3_1 < 1_0_1 1_1_1 1_3_0 | TD 1_3_2 < 1_0_2 1_1_2 1_3_0 | TD 1_3_3 < 1_0_3 1_1_3 1_3_0\n"
            "TH 1_4_0 | TD 1_4_1 < 1_0_1 1_1_1 1_4_0 | TD 1_4_2 < 1_0_2 1_1_2 1_4_0 | TD 1_4_3 < 1_0_3 1_1_3 1_4_0\n");
  EXPECT_EQ(LayoutTablesText(after), "Div | Div | Div\nDiv | Div | Div\n");
  EXPECT_EQ(TableText(after, 4), TableText(test::SampleBytes("handbook"), 5)) << "its metadata cannot be read";
}

TEST(AnnualReportTables, BecomeDivisionsWhereTheFileSaysThatTheyOnlyLayOutThePage) {
  const std::string before = test::SampleBytes("annual-report");
  const std::string after =
      test::SampleAfterAction("annual-report", kLayoutTables, test::SamplePath("annual-report.tables.tsv"));
  EXPECT_EQ(LayoutTablesText(before), "");
  EXPECT_EQ(LayoutTablesText(after), "Div | Div\nDiv | Div\n");
  for (const std::size_t other : {1, 2, 3}) EXPECT_EQ(TableText(after, other), TableText(before, other));
  EXPECT_EQ(TableText(after, 4), TableText(before, 5));
}

}  // namespace
}  // namespace tgx
