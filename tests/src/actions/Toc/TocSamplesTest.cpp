// The tables of contents of documents of real exporters. tests/data/samples/README.md says what is right.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/src/actions/Toc/TocFixture.h"
#include "tests/support/DataFiles.h"
#include "tests/support/Paths.h"
#include "tests/support/Rendering.h"

namespace tgx {
namespace {

using test::Item;
using test::kSuccess;
using test::kToc;
using test::OpenDocument;
using test::ReadBack;
using testing::HasSubstr;
using testing::Not;

struct Sample {
  std::string name;
  std::string contents;     // the outline of the table of contents afterwards
  std::string placeholder;  // the marked content that goes
};

void PrintTo(const Sample& sample, std::ostream* out) { *out << sample.name; }

std::string Join(const std::vector<std::string>& items) {
  std::string joined;
  for (const std::string& item : items) joined += (joined.empty() ? "" : " ") + item;
  return joined;
}

std::string Contents(const std::string& title, const std::vector<std::string>& items) {
  return "Div(H1(" + title + ") TOC(" + Join(items) + "))";
}

class TocSamples : public testing::TestWithParam<Sample> {
 protected:
  static std::string Path(const std::string& ending) { return test::DataPath("samples/" + GetParam().name + ending); }
  static std::string After(int action, const std::string& path = "") {
    OpenDocument open(test::ReadBytes(Path(".pdf")));
    EXPECT_EQ(open.Action(action, path), kSuccess);
    std::string saved = open.Save();
    test::ExpectSound(saved);
    return saved;
  }
  static std::string AfterToc() { return After(kToc, Path(".toc.xml")); }
};

INSTANTIATE_TEST_SUITE_P(
    Samples, TocSamples,
    testing::Values(
        Sample{
            "annual-report",
            Contents("Contents", {Item("1 The year at a glance", Join({Item("1.1 Weather and water"), Item("1.2 Cargo")})),
                                  Item("2 Building", Join({Item("2.1 The east quay"), Item("2.2 Energy on the quay")})),
                                  Item("3 Accounts"), Item("4 Return slip")}),
            "mcid 40 page 1"},
        Sample{"travel-guide",
               Contents("In this guide",
                        {Item("Getting there", Join({Item("By ferry"), Item("Par le train", Item("Les correspondances"))})),
                         Item("The north island", Item("Paths")), Item("Tables and numbers")}),
               "mcid 19 page 1"}),
    [](const auto& sample) {
      std::string name = sample.param.name;
      std::replace(name.begin(), name.end(), '-', '_');
      return name;
    });

TEST_P(TocSamples, NestAsTheirMetadataSay) {
  OpenDocument saved(AfterToc());
  EXPECT_THAT(test::Outline(saved), HasSubstr(GetParam().contents));
}

TEST_P(TocSamples, LoseThePlaceholderAndNothingElse) {
  auto before = test::Leaves(test::ReadBytes(Path(".pdf")));
  const auto placeholder = std::find(before.begin(), before.end(), GetParam().placeholder);
  ASSERT_NE(placeholder, before.end());
  before.erase(placeholder);
  const std::string after = AfterToc();
  EXPECT_EQ(test::Leaves(after), before);
  EXPECT_THAT(test::TreeText(after), Not(HasSubstr("TOC_FRAME")));
}

TEST_P(TocSamples, LookAsBeforeButForThePlaceholder) {
  const auto before = test::RenderPages(test::ReadBytes(Path(".pdf")));
  const auto bare = test::RenderPages(After(13));  // without the dots of all marks
  const auto pages = test::RenderPages(AfterToc());
  ASSERT_EQ(pages.size(), before.size());
  for (std::size_t page = 0; page < pages.size(); ++page) {
    EXPECT_TRUE(test::IsBetween(pages[page], before[page], bare[page])) << "page " << page + 1;
    EXPECT_TRUE(page == 0 || test::Compare(pages[page], before[page]).IsEmpty()) << "page " << page + 1;
  }
}

TEST_P(TocSamples, KeepTheirLinesWithoutMetadata) {
  OpenDocument saved(After(kToc, "/no/such/file"));
  const std::string outline = test::Outline(saved);
  EXPECT_THAT(outline, HasSubstr(") TOC)"));
  EXPECT_THAT(outline, Not(HasSubstr("TOCI")));
  EXPECT_EQ(test::Leaves(saved.Save()).size() + 1, test::Leaves(test::ReadBytes(Path(".pdf"))).size());
}

}  // namespace
}  // namespace tgx
