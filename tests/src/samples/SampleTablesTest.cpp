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

#include "tests/support/DataFiles.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/Paths.h"
#include "tests/support/Rendering.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::kSuccess;
using test::OpenDocument;
using test::ReadBack;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr int kTableMetadata = 12;
constexpr int kLayoutTables = 9;
constexpr std::uint32_t kHeadersFooters = 0x40;

using Handler = std::function<void(QPDFObjectHandle element)>;

/// Hands each structure element below `parent` to the handler, parents before kids.
void ForEachElement(QPDFObjectHandle parent, const Handler& handler) {
  QPDFObjectHandle kids = parent.getKey("/K");
  for (QPDFObjectHandle kid : kids.isArray() ? kids.getArrayAsVector() : std::vector{kids}) {
    if (!kid.isDictionary() || !kid.hasKey("/S")) continue;
    handler(kid);
    ForEachElement(kid, handler);
  }
}

std::string TypeOf(QPDFObjectHandle element) { return element.getKey("/S").getName(); }

std::vector<QPDFObjectHandle> ElementsOfType(QPDFObjectHandle parent, const std::string& type) {
  std::vector<QPDFObjectHandle> elements;
  ForEachElement(parent, [&](QPDFObjectHandle element) {
    if (TypeOf(element) == type) elements.push_back(element);
  });
  return elements;
}

class SampleTables : public testing::TestWithParam<std::string> {
 protected:
  std::string Bytes() const { return test::ReadBytes(test::DataPath("samples/" + GetParam() + ".pdf")); }
  std::string AfterMetadata() const {
    OpenDocument open(Bytes());
    EXPECT_EQ(open.Action(kTableMetadata), kSuccess);
    return open.Save();
  }
  std::string AfterHeadersFooters() const {
    OpenDocument open(Bytes());
    EXPECT_EQ(open.Fixups(kHeadersFooters), kSuccess);
    return open.Save();
  }
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

TEST_P(SampleTables, TellOfEveryHeaderCellWhatItHeads) {
  const auto hasScope = [](QPDFObjectHandle cell) {
    QPDFObjectHandle attributes = cell.getKey("/A");
    for (QPDFObjectHandle& owned : attributes.isArray() ? attributes.getArrayAsVector() : std::vector{attributes}) {
      if (owned.isDictionary() && owned.getKey("/Scope").isName()) return true;
    }
    return false;
  };
  const auto hasIdentifier = [](QPDFObjectHandle cell) { return cell.getKey("/ID").isString(); };
  ReadBack file(AfterMetadata());
  for (QPDFObjectHandle& table : ElementsOfType(file.TreeRoot(), "/Table")) {
    const auto headers = ElementsOfType(table, "/TH");
    EXPECT_TRUE(std::all_of(headers.begin(), headers.end(), hasScope) ||
                std::all_of(headers.begin(), headers.end(), hasIdentifier));
  }
}

TEST_P(SampleTables, KeepOneHeadAndOneFootAtMost) {
  int repeated = 0;
  ReadBack before(Bytes());
  for (QPDFObjectHandle& table : ElementsOfType(before.TreeRoot(), "/Table")) {
    repeated += ElementsOfType(table, "/THead").size() > 1 ? 1 : 0;
  }
  EXPECT_EQ(repeated, 1);
  ReadBack after(AfterHeadersFooters());
  for (QPDFObjectHandle& table : ElementsOfType(after.TreeRoot(), "/Table")) {
    EXPECT_LE(ElementsOfType(table, "/THead").size(), 1U);
    EXPECT_LE(ElementsOfType(table, "/TFoot").size(), 1U);
  }
}

TEST_P(SampleTables, LookTheSameWithoutRepeatedHeads) {
  const std::string saved = AfterHeadersFooters();
  test::ExpectSound(saved);
  const auto before = test::RenderPages(Bytes());
  const auto after = test::RenderPages(saved);
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

TEST(AnnualReportTables, BecomeDivisionsWhereTheFileSaysThatTheyOnlyLayOutThePage) {
  OpenDocument open(test::ReadBytes(test::DataPath("samples/annual-report.pdf")));
  EXPECT_EQ(open.Action(kLayoutTables, test::DataPath("samples/annual-report.tables.tsv")), kSuccess);
  const std::string saved = open.Save();
  test::ExpectSound(saved);
  ReadBack file(saved);
  EXPECT_EQ(ElementsOfType(file.TreeRoot(), "/Table").size(), 4U);
}

}  // namespace
}  // namespace tgx
