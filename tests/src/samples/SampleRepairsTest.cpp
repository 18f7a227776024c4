// What actions and fixes make of documents of real exporters with an exporter's marks in them. tests/data/samples/README.md
// says of every mark what is right; the reference files hold what changes in the structure tree and the role map.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/DataFiles.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/Paths.h"
#include "tests/support/Rendering.h"
#include "tests/support/TextDifference.h"
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
  // The structure must differ from the sample's own as the reference file says.
  void ExpectChanges(const std::string& step, const std::string& after) {
    test::ExpectGolden("samples/" + GetParam() + "." + step, test::TextDifference(Structure(Bytes()), Structure(after)));
  }
  static std::string Sound(std::string pdf) {
    test::ExpectSound(pdf);
    return pdf;
  }
};

INSTANTIATE_TEST_SUITE_P(Samples, SampleRepairs, testing::Values("annual-report", "travel-guide", "handbook"),
                         [](const auto& sample) {
                           std::string name = sample.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

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
  ExpectChanges("remove-frame-markers", after);
  const auto before = test::RenderPages(Bytes());
  const auto pages = test::RenderPages(after);
  const auto bare = test::RenderPages(AfterAction(13));
  ASSERT_EQ(pages.size(), before.size());
  for (std::size_t page = 0; page < pages.size(); ++page) {
    EXPECT_TRUE(test::IsBetween(pages[page], before[page], bare[page])) << "page " << page + 1;
  }
}

TEST_P(SampleRepairs, FramesComeToTheirAnchors) { ExpectChanges("reshuffle-frames", AfterAction(14)); }

TEST_P(SampleRepairs, EndNotesAreMapped) { ExpectChanges("end-notes", AfterAction(15)); }

TEST_P(SampleRepairs, GroupsAreBuilt) {
  const std::string after = AfterAction(16);
  EXPECT_THAT(Structure(after), Not(HasSubstr("GT_")));
  ExpectChanges("group-tags", after);
}

TEST_P(SampleRepairs, ExtraParagraphsLeaveTheirTables) { ExpectChanges("extra-paragraphs", AfterFix(0x2)); }

TEST_P(SampleRepairs, TheRoleMapLosesMappingsToThemselves) { ExpectChanges("role-map", AfterFix(0x200)); }

TEST_P(SampleRepairs, StylesGetTheirNames) {
  if (GetParam() == "travel-guide") return;  // it has no list of styles
  ExpectChanges("style-names", AfterAction(2, SamplePath(GetParam() + ".styles.xml")));
}

}  // namespace
}  // namespace tgx
