// What actions and fixes make of whole documents.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <cstdio>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tests/src/samples/Samples.h"
#include "tests/support/Rendering.h"

namespace tgx {
namespace {

using test::kSuccess;
using test::OpenDocument;
using test::ReadBack;
using test::SamplePath;
using testing::HasSubstr;
using testing::Not;

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
  std::string Bytes() { return test::SampleBytes(GetParam()); }
  std::string AfterAction(int number) { return test::SampleAfterAction(GetParam(), number); }
  std::string AfterFix(std::uint32_t mask) { return test::SampleAfterFixes(GetParam(), mask); }
};

struct PageMcid {
  int page;
  int mcid;
};

/// The tree without the marks around frames and what is in them; adds the content that the marks stand on.
std::string WithoutFrameMarkers(const std::string& tree, std::vector<PageMcid>& content) {
  constexpr std::size_t kOutside = std::string::npos;
  std::string rest;
  std::size_t marker = kOutside;
  std::istringstream lines(tree);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t level = line.find_first_not_of(' ');
    if (marker != kOutside && (level == std::string::npos || level <= marker)) marker = kOutside;
    if (line.find("TEXTFRAME_") != std::string::npos) marker = level;
    PageMcid kid = {};
    if (marker == kOutside) rest += line + "\n";
    if (marker != kOutside && std::sscanf(line.c_str(), " mcid %d page %d", &kid.mcid, &kid.page) == 2)
      content.push_back(kid);
  }
  return rest;
}

/// The document with the images in this marked content cut out of the text of its pages.
std::string WithoutImagesOf(const std::vector<PageMcid>& content, const std::string& pdf) {
  ReadBack file(pdf);
  for (const auto& [page, mcid] : content) {
    std::string text = file.Content(page);
    std::smatch begin;
    EXPECT_TRUE(std::regex_search(text, begin, std::regex("/MCID " + std::to_string(mcid) + "\\s*>>\\s*BDC")));
    const auto from = static_cast<std::size_t>(begin.position());
    const std::size_t to = text.find("EMC", from);
    const std::string without = std::regex_replace(text.substr(from, to - from), std::regex("/\\w+ Do\\b"), "");
    EXPECT_LT(without.size(), to - from) << "an image";
    file.Page(page).replaceKey("/Contents", file->newStream(text.replace(from, to - from, without)));
  }
  QPDFWriter writer(file.Pdf());
  writer.setOutputMemory();
  writer.write();
  const auto buffer = writer.getBufferSharedPointer();
  return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
}

std::vector<std::string> PixelsOf(const std::string& pdf) {
  std::vector<std::string> pixels;
  for (test::Bitmap& page : test::RenderPages(pdf)) pixels.push_back(std::move(page.pixels));
  return pixels;
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleRepairs, testing::Values("annual-report", "travel-guide", "handbook"), TestName);

TEST_P(SampleRepairs, DummyImagesLeaveThePagesAndNothingElseDoes) {
  const std::string after = AfterAction(13);
  EXPECT_EQ(Structure(after), Structure(Bytes()));
  const auto before = test::RenderPages(Bytes());
  const auto pages = test::RenderPages(after);
  ASSERT_EQ(pages.size(), before.size());
  // The dummy images stand in the margin, at most 30 units from the left edge, which are 40 points where the browser scales.
  constexpr int kMargin = 40 * 100 / 72 + 2;
  bool anyWent = false;
  for (std::size_t page = 0; page < pages.size(); ++page) {
    const test::Difference difference = test::Compare(before[page], pages[page]);
    anyWent = anyWent || !difference.IsEmpty();
    EXPECT_LE(difference.right, kMargin) << "page " << page + 1;
  }
  EXPECT_TRUE(anyWent);
  test::ReadBack file(after);
  for (const QPDFObjectHandle& page : file->getAllPages()) {
    for (auto& [name, image] : QPDFPageObjectHelper(page).getImages()) {
      const std::string content = file.Content(1 + static_cast<int>(&page - file->getAllPages().data()));
      const bool isDummy =
          image.getDict().getKey("/Width").getIntValue() == 1 && image.getDict().getKey("/Height").getIntValue() == 1;
      EXPECT_FALSE(isDummy && content.find(name + " Do") != std::string::npos) << name;
    }
  }
}

TEST_P(SampleRepairs, FrameMarkersLeaveTreeAndPagesAndNothingElseDoes) {
  std::vector<PageMcid> markers;
  const std::string tree = WithoutFrameMarkers(Structure(Bytes()), markers);
  EXPECT_EQ(markers.empty(), GetParam() == "annual-report") << "the other samples have some";
  const std::string after = AfterAction(11);
  EXPECT_EQ(Structure(after), tree);
  const std::vector<std::string> pixels = PixelsOf(after);
  EXPECT_EQ(pixels == PixelsOf(Bytes()), markers.empty());
  EXPECT_TRUE(pixels == PixelsOf(WithoutImagesOf(markers, Bytes())));
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
  OpenDocument open(test::SampleBytes("annual-report"));
  EXPECT_EQ(open.Action(14), kSuccess);
  const std::string tree = Structure(open.Save());
  for (const char* mark : {"\\u{2264}", "\\u{2265}", "\\u{222E}"}) EXPECT_THAT(tree, Not(HasSubstr(mark)));
}

TEST(AnnualReport, MapsItsEndNotes) {
  OpenDocument open(test::SampleBytes("annual-report"));
  EXPECT_EQ(open.Action(15), kSuccess);
  EXPECT_THAT(RoleMap(open.Save()), HasSubstr("Endnote -> Note\n"));
}

TEST(AnnualReport, GetsTheNamesOfItsStyles) {
  OpenDocument open(test::SampleBytes("annual-report"));
  EXPECT_THAT(Structure(open.Save()), HasSubstr("ps101"));
  EXPECT_EQ(open.Action(2, SamplePath("annual-report.styles.xml")), kSuccess);
  EXPECT_THAT(Structure(open.Save()), Not(HasSubstr("ps10")));
}

}  // namespace
}  // namespace tgx
