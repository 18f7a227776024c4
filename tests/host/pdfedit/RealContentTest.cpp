// Documents that others made, seen through a viewer before and after. The sweep over every container of any document is
// bench/content/sweep.py.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

#include "host/core/Fixed.h"
#include "host/pdmodel/PageList.h"
#include "tests/host/pdfedit/ContentFixture.h"
#include "tests/support/DataFiles.h"
#include "tests/support/Viewers.h"

namespace tgx::host {
namespace {

constexpr int kResolution = 100;
constexpr ASInt32 kMostPages = 9;  ///< that are rendered and edited; a single document has more

std::string TextOf(const std::string& pdf) { return test::OutputOf("pdftotext -raw {} - 2>/dev/null", pdf); }

/// The pages as they are shown.
class Pictures {
 public:
  struct Picture {
    int width = 0, height = 0;
    std::string_view pixels;  ///< three bytes each, from the top left
  };

  explicit Pictures(const std::string& pdf)
      : data_(test::OutputOf(
            "pdftoppm -l " + std::to_string(kMostPages) + " -r " + std::to_string(kResolution) + " {} 2>/dev/null", pdf)) {
    Picture picture;
    int header = 0;
    for (std::size_t at = 0; at < data_.size(); at += picture.pixels.size()) {
      const std::string start = data_.substr(at, 32);
      const bool isPicture = std::sscanf(start.c_str(), "P6 %d %d 255%n", &picture.width, &picture.height, &header) == 2;
      if (!isPicture) throw std::runtime_error("pdftoppm gave no picture of page " + std::to_string(pages_.size() + 1));
      at += static_cast<std::size_t>(header) + 1;
      picture.pixels = std::string_view(data_).substr(at, static_cast<std::size_t>(picture.width * picture.height) * 3);
      pages_.push_back(picture);
    }
  }
  Pictures(const Pictures&) = delete;
  Pictures& operator=(const Pictures&) = delete;

  std::size_t Count() const { return pages_.size(); }
  const Picture& Of(ASInt32 page) const { return pages_.at(static_cast<std::size_t>(page)); }

 private:
  std::string data_;
  std::vector<Picture> pages_;
};

/// The words of a page that stand clear of an area, with their places. One that was joined to what stood there may be
/// another word afterwards.
std::multiset<std::string> WordsOutside(const test::Box& area, ASInt32 page, const std::vector<test::SeenWord>& all) {
  constexpr double kNear = 6;  // points
  std::multiset<std::string> words;
  for (const test::SeenWord& word : all) {
    const bool isNear = word.box.right >= area.left - kNear && word.box.left <= area.right + kNear &&
                        word.box.top >= area.bottom - kNear && word.box.bottom <= area.top + kNear;
    if (word.page != page + 1 || isNear) continue;
    words.insert(word.text + ' ' + std::to_string(std::lround(word.box.left)) + ' ' +
                 std::to_string(std::lround(word.box.bottom)));
  }
  return words;
}

/// The first pixel that differs outside an area of a page, as "x y"; empty when none does.
std::string DifferenceOutside(const test::Box& area, double pageHeight, const Pictures::Picture& before,
                              const Pictures::Picture& after) {
  constexpr double kMargin = 4;  // pixels: line widths, glyphs that reach out of their metrics, smoothing
  constexpr double kScale = kResolution / 72.0;
  const double left = area.left * kScale - kMargin;
  const double right = area.right * kScale + kMargin;
  const double top = (pageHeight - area.top) * kScale - kMargin;
  const double bottom = (pageHeight - area.bottom) * kScale + kMargin;
  const auto stride = static_cast<std::size_t>(before.width) * 3;
  for (int y = 0; y < before.height; ++y) {
    const std::size_t row = static_cast<std::size_t>(y) * stride;
    if (before.pixels.substr(row, stride) == after.pixels.substr(row, stride)) continue;
    for (int x = 0; x < before.width; ++x) {
      if (x >= left && x <= right && y >= top && y <= bottom) continue;
      const std::size_t at = row + static_cast<std::size_t>(x) * 3;
      if (before.pixels.substr(at, 3) != after.pixels.substr(at, 3)) return std::to_string(x) + ' ' + std::to_string(y);
    }
  }
  return {};
}

struct Place {
  PDEContent list;
  ASInt32 index;
};

/// The containers of a list at any depth, from `depth` on.
void CollectContainers(PDEContent list, int depth, std::vector<Place>& containers) {
  for (ASInt32 i = 0; i < ReadContent().PDEContentGetNumElems(list); ++i) {
    const PDEElement element = ReadContent().PDEContentGetElem(list, i);
    if (ReadContent().PDEObjectGetType(element) != kPDEContainer) continue;
    if (depth <= 0) containers.push_back({list, i});
    CollectContainers(ReadContent().PDEContainerGetContent(element), depth - 1, containers);
  }
}

class RealContent : public testing::TestWithParam<test::DataFile> {
 protected:
  ASInt32 PageCount() { return std::min(document_.Host()->Pages().Count(), kMostPages); }

  void ExpectTheSame(const std::string& saved) {
    EXPECT_EQ(TextOf(saved), TextOf(bytes_));
    const Pictures before(bytes_);
    const Pictures after(saved);
    ASSERT_EQ(before.Count(), static_cast<std::size_t>(PageCount()));
    ASSERT_EQ(after.Count(), before.Count());
    for (ASInt32 page = 0; page < PageCount(); ++page) {
      EXPECT_TRUE(before.Of(page).pixels == after.Of(page).pixels) << "page " << page + 1;
    }
  }

  /// Takes a container out of each page that has one from `depth` on: the one at that part of them. Answers the areas from
  /// the bottom left corners of the pages, by page.
  std::map<ASInt32, test::Box> TakeOutContainers(int depth, double part) {
    std::map<ASInt32, test::Box> areas;
    for (ASInt32 page = 0; page < PageCount(); ++page) {
      std::vector<Place> containers;
      CollectContainers(document_.Root(page), depth, containers);
      if (containers.empty()) continue;
      const auto [list, index] = containers[static_cast<std::size_t>(static_cast<double>(containers.size()) * part)];
      ASFixedRect box{};
      ReadContent().PDEElementGetBBox(ReadContent().PDEContentGetElem(list, index), &box);
      const auto paper = InheritedAttribute(document_.Dictionary(page), "/MediaBox").getArrayAsRectangle();
      areas[page] = {FromFixed(box.left) - paper.llx, FromFixed(box.bottom) - paper.lly, FromFixed(box.right) - paper.llx,
                     FromFixed(box.top) - paper.lly};
      WriteContent().PDEContentRemoveElem(list, index);
      document_.Commit(page);
    }
    return areas;
  }

  void ExpectTheSameOutside(const std::map<ASInt32, test::Box>& areas) {
    const std::string saved = document_.SavedBytes();
    const auto wordsBefore = test::WordsSeen(bytes_);
    const auto wordsAfter = test::WordsSeen(saved);
    const Pictures before(bytes_);
    const Pictures after(saved);
    ASSERT_EQ(after.Count(), before.Count());
    for (const auto& [page, area] : areas) {
      SCOPED_TRACE("page " + std::to_string(page + 1));
      const QPDFObjectHandle dictionary = document_.Dictionary(page);
      QPDFObjectHandle rotation = InheritedAttribute(dictionary, "/Rotate");
      ASSERT_FALSE(rotation.isInteger() && rotation.getIntValue() != 0) << "the area is not computed for turned pages";
      const auto paper = InheritedAttribute(dictionary, "/MediaBox").getArrayAsRectangle();
      ASSERT_EQ(before.Of(page).pixels.size(), after.Of(page).pixels.size());
      EXPECT_EQ(DifferenceOutside(area, paper.ury - paper.lly, before.Of(page), after.Of(page)), "");
      const auto stood = WordsOutside(area, page, wordsBefore);
      const auto stands = WordsOutside(area, page, wordsAfter);
      std::vector<std::string> differing;
      std::set_symmetric_difference(stood.begin(), stood.end(), stands.begin(), stands.end(), std::back_inserter(differing));
      EXPECT_THAT(differing, testing::IsEmpty());
    }
  }

  std::string bytes_ = test::ReadBytes(GetParam().path);
  ContentDocument document_ = ContentDocument::FromBytes(bytes_);
};

TEST_P(RealContent, LooksTheSameFromItsOperatorsAlone) {
  for (ASInt32 page = 0; page < PageCount(); ++page) document_.Model(page).WriteOperators();
  ExpectTheSame(document_.SavedBytes());
}

TEST_P(RealContent, LooksTheSameWithEveryTextAndContainerWrittenAnew) {
  for (ASInt32 page = 0; page < PageCount(); ++page) {
    PageModel& model = document_.Model(page);
    bool hasText = false;
    for (std::uint32_t element = 0; element < model.Count(); ++element) {
      if (model.At(element).type == kPDEText) {
        hasText = true;
        // An empty range of removed characters makes the writer take the string apart.
        for (EditedRun& run : model.EditText(element)) run.removed.emplace_back(0, 0);
        model.TextChanged(element);
      } else if (model.At(element).type == kPDEContainer) {
        const std::string tag = model.TagOf(element);
        model.SetTag(element, tag + "Other");
        model.SetTag(element, tag);
      }
    }
    model.Commit();
    if (hasText) {
      EXPECT_TRUE(model.NewContent() != model.Bytes()) << "page " << page + 1;
    }
  }
  ExpectTheSame(document_.SavedBytes());
}

TEST_P(RealContent, LooksTheSameAroundContainersThatAreTakenOut) {
  const auto areas = TakeOutContainers(0, 0.5);
  ASSERT_FALSE(areas.empty()) << "a document without containers shows nothing here";
  ExpectTheSameOutside(areas);
}

TEST_P(RealContent, LooksTheSameAroundLateContainersThatAreTakenOut) { ExpectTheSameOutside(TakeOutContainers(0, 0.75)); }

INSTANTIATE_TEST_SUITE_P(Files, RealContent, testing::ValuesIn(test::DataFiles()),
                         [](const auto& parameter) { return test::TestName(parameter.param); });

/// The documents that have containers in containers.
class RealNestedContent : public RealContent {
 public:
  static std::vector<test::DataFile> Files() {
    const std::set<std::string> nested = {"corpus/pdfbox-PDFBOX-4531-bidi-ligature-2.pdf",
                                          "corpus/pdfplumber-pr-138-example.pdf", "corpus/typst-getreide.pdf"};
    std::vector<test::DataFile> files = test::DataFiles();
    std::erase_if(files, [&](const test::DataFile& file) { return nested.count(file.name) == 0; });
    return files;
  }
};

TEST_P(RealNestedContent, LooksTheSameAroundInnerContainersThatAreTakenOut) {
  const auto areas = TakeOutContainers(1, 0.3);
  ASSERT_FALSE(areas.empty());
  ExpectTheSameOutside(areas);
}

INSTANTIATE_TEST_SUITE_P(Files, RealNestedContent, testing::ValuesIn(RealNestedContent::Files()),
                         [](const auto& parameter) { return test::TestName(parameter.param); });

}  // namespace
}  // namespace tgx::host
