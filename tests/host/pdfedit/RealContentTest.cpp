// Documents that others made, seen through a viewer before and after: the first page of each. The whole sweep is
// bench/content/sweep.py.
#include <cmath>
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include "host/core/Fixed.h"
#include "host/pdmodel/PageList.h"
#include "tests/host/pdfedit/ContentFixture.h"
#include "tests/support/DataFiles.h"
#include "tests/support/Viewers.h"

namespace tgx::host {
namespace {

constexpr int kResolution = 100;

std::string TextOf(const std::string& pdf) { return test::OutputOf("pdftotext -l 1 -raw {} - 2>/dev/null", pdf); }

/// The first page as it is shown.
struct Picture {
  int width = 0, height = 0;
  std::string pixels;  ///< three bytes each, from the top left

  explicit Picture(const std::string& pdf) {
    const std::string data = test::OutputOf("pdftoppm -r " + std::to_string(kResolution) + " -f 1 -l 1 {} 2>/dev/null", pdf);
    int header = 0;
    if (std::sscanf(data.c_str(), "P6 %d %d 255%n", &width, &height, &header) == 2) pixels = data.substr(header + 1U);
  }
};

/// The words of the first page that stand clear of an area, with their places. One that was joined to what stood there
/// may be another word afterwards.
std::multiset<std::string> WordsOutside(const test::Box& area, const std::string& pdf) {
  constexpr double kNear = 6;  // points
  std::multiset<std::string> words;
  for (const test::SeenWord& word : test::WordsSeen(pdf)) {
    const bool isNear = word.box.right >= area.left - kNear && word.box.left <= area.right + kNear &&
                        word.box.top >= area.bottom - kNear && word.box.bottom <= area.top + kNear;
    if (word.page != 1 || isNear) continue;
    words.insert(word.text + ' ' + std::to_string(std::lround(word.box.left)) + ' ' +
                 std::to_string(std::lround(word.box.bottom)));
  }
  return words;
}

/// The container in the middle of a list's containers, inner ones not looked at; -1 when there is none.
ASInt32 MiddleContainer(PDEContent list) {
  std::vector<ASInt32> containers;
  for (ASInt32 i = 0; i < ReadContent().PDEContentGetNumElems(list); ++i) {
    if (ReadContent().PDEObjectGetType(ReadContent().PDEContentGetElem(list, i)) == kPDEContainer) containers.push_back(i);
  }
  return containers.empty() ? -1 : containers[containers.size() / 2];
}

class RealContent : public testing::TestWithParam<test::DataFile> {
 protected:
  std::string bytes_ = test::ReadBytes(GetParam().path);
  ContentDocument document_ = ContentDocument::FromBytes(bytes_);
};

TEST_P(RealContent, LooksTheSameFromItsOperatorsAlone) {
  for (ASInt32 page = 0; page < document_.Host()->Pages().Count(); ++page) document_.Model(page).WriteOperators();
  const std::string saved = document_.SavedBytes();
  EXPECT_EQ(TextOf(saved), TextOf(bytes_));
  const Picture before(bytes_);
  const Picture after(saved);
  ASSERT_FALSE(before.pixels.empty());
  EXPECT_TRUE(before.pixels == after.pixels);
}

TEST_P(RealContent, LooksTheSameAroundAContainerThatIsTakenOut) {
  constexpr double kMargin = 4;  // pixels: line widths, glyphs that reach out of their metrics, smoothing
  const PDEContent root = document_.Root();
  const ASInt32 index = MiddleContainer(root);
  const auto page = InheritedAttribute(document_.Dictionary(), "/MediaBox").getArrayAsRectangle();
  QPDFObjectHandle rotation = InheritedAttribute(document_.Dictionary(), "/Rotate");
  const bool isTurned = rotation.isInteger() && rotation.getIntValue() != 0;
  ASSERT_GE(index, 0) << "a document without a container on its first page shows nothing here";
  ASSERT_FALSE(isTurned) << "the area is not computed for turned pages";
  ASFixedRect area{};
  ReadContent().PDEElementGetBBox(ReadContent().PDEContentGetElem(root, index), &area);
  WriteContent().PDEContentRemoveElem(root, index);
  document_.Commit();
  const std::string saved = document_.SavedBytes();
  const Picture before(bytes_);
  const Picture after(saved);
  ASSERT_EQ(before.pixels.size(), after.pixels.size());
  const double scale = kResolution / 72.0;
  const double left = (FromFixed(area.left) - page.llx) * scale - kMargin;
  const double right = (FromFixed(area.right) - page.llx) * scale + kMargin;
  const double top = (page.ury - FromFixed(area.top)) * scale - kMargin;
  const double bottom = (page.ury - FromFixed(area.bottom)) * scale + kMargin;
  for (int y = 0; y < before.height; ++y) {
    for (int x = 0; x < before.width; ++x) {
      if (x >= left && x <= right && y >= top && y <= bottom) continue;
      const std::size_t at =
          (static_cast<std::size_t>(y) * static_cast<std::size_t>(before.width) + static_cast<std::size_t>(x)) * 3;
      ASSERT_EQ(before.pixels.compare(at, 3, after.pixels, at, 3), 0) << "pixel " << x << ' ' << y;
    }
  }
  const test::Box around = {FromFixed(area.left) - page.llx, FromFixed(area.bottom) - page.lly,
                            FromFixed(area.right) - page.llx, FromFixed(area.top) - page.lly};
  EXPECT_EQ(WordsOutside(around, saved), WordsOutside(around, bytes_));
}

INSTANTIATE_TEST_SUITE_P(Files, RealContent, testing::ValuesIn(test::DataFiles()),
                         [](const auto& parameter) { return test::TestName(parameter.param); });

}  // namespace
}  // namespace tgx::host
