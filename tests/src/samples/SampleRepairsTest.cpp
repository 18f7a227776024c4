// What actions and fixes make of documents of real exporters with an exporter's marks in them. tests/data/samples/README.md
// says of every mark what is right.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

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
using testing::Not;

std::string SamplePath(const std::string& file) { return test::DataPath("samples/" + file); }

std::string Structure(const std::string& pdf) {
  ReadBack document(pdf);
  return test::TreeText(document.Pdf()) + "\n" + test::RoleMapText(document.Pdf());
}

std::string RoleMap(const std::string& pdf) {
  ReadBack document(pdf);
  return test::RoleMapText(document.Pdf());
}

std::string TestName(const testing::TestParamInfo<std::string>& sample) {
  std::string name = sample.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

class SampleRepairs : public testing::TestWithParam<std::string> {
 protected:
  std::string Bytes() { return test::ReadBytes(SamplePath(GetParam() + ".pdf")); }
  std::string AfterAction(int number, const std::string& path = "") {
    OpenDocument open(Bytes());
    EXPECT_EQ(open.Action(number, path), kSuccess);
    return Sound(open.Save());
  }
  std::string AfterFix(std::uint32_t mask) {
    OpenDocument open(Bytes());
    EXPECT_EQ(open.Fixups(mask), kSuccess);
    return Sound(open.Save());
  }
  static std::string Sound(std::string pdf) {
    test::ExpectSound(pdf);
    return pdf;
  }
};

INSTANTIATE_TEST_SUITE_P(Samples, SampleRepairs, testing::Values("annual-report", "travel-guide", "handbook"), TestName);

TEST_P(SampleRepairs, DummyImagesLeaveThePagesAsTheExporterMadeThem) {
  const std::string after = AfterAction(13);
  EXPECT_EQ(Structure(after), Structure(Bytes()));
  const auto pages = test::RenderPages(after);
  const auto exported = test::RenderPages(test::ReadBytes(SamplePath("exported/" + GetParam() + ".pdf")));
  ASSERT_EQ(pages.size(), exported.size());
  for (std::size_t page = 0; page < pages.size(); ++page) {
    EXPECT_TRUE(test::Compare(pages[page], exported[page]).IsEmpty()) << "page " << page + 1;
  }
}

TEST_P(SampleRepairs, FrameMarkersLeaveTreeAndPagesAndNothingElseDoes) {
  const std::string after = AfterAction(11);
  EXPECT_THAT(Structure(after), Not(HasSubstr("TEXTFRAME")));
  const auto before = test::RenderPages(Bytes());
  const auto pages = test::RenderPages(after);
  const auto bare = test::RenderPages(AfterAction(13));
  ASSERT_EQ(pages.size(), before.size());
  for (std::size_t page = 0; page < pages.size(); ++page) {
    EXPECT_TRUE(test::IsBetween(pages[page], before[page], bare[page])) << "page " << page + 1;
  }
}

TEST_P(SampleRepairs, HoldersLeaveTheTree) {
  EXPECT_THAT(Structure(Bytes()), HasSubstr("\\u{2230}"));
  EXPECT_THAT(Structure(AfterAction(14)), Not(HasSubstr("\\u{2230}")));
}

TEST_P(SampleRepairs, GroupsTakeThePlaceOfPrivateTypes) {
  EXPECT_THAT(Structure(Bytes()), HasSubstr("GT_"));
  EXPECT_THAT(Structure(AfterAction(16)), Not(HasSubstr("GT_")));
}

TEST_P(SampleRepairs, TheRoleMapLosesMappingsToThemselves) {
  std::istringstream lines(RoleMap(AfterFix(0x200)));
  for (std::string line; std::getline(lines, line);) {
    const auto arrow = line.find(" -> ");
    EXPECT_NE(line.substr(0, arrow), line.substr(arrow + 4));
  }
}

// The sample whose frames all have good marks.
TEST(AnnualReport, GetsAllFramesToTheirAnchors) {
  OpenDocument open(test::ReadBytes(SamplePath("annual-report.pdf")));
  EXPECT_EQ(open.Action(14), kSuccess);
  const std::string tree = Structure(open.Save());
  for (const char* mark : {"\\u{2264}", "\\u{2265}", "\\u{222E}"}) EXPECT_THAT(tree, Not(HasSubstr(mark)));
}

TEST(AnnualReport, MapsItsEndNotes) {
  OpenDocument open(test::ReadBytes(SamplePath("annual-report.pdf")));
  EXPECT_EQ(open.Action(15), kSuccess);
  EXPECT_THAT(RoleMap(open.Save()), HasSubstr("Endnote -> Note\n"));
}

TEST(AnnualReport, GetsTheNamesOfItsStyles) {
  OpenDocument open(test::ReadBytes(SamplePath("annual-report.pdf")));
  EXPECT_THAT(Structure(open.Save()), HasSubstr("ps101"));
  EXPECT_EQ(open.Action(2, SamplePath("annual-report.styles.xml")), kSuccess);
  EXPECT_THAT(Structure(open.Save()), Not(HasSubstr("ps10")));
}

}  // namespace
}  // namespace tgx
