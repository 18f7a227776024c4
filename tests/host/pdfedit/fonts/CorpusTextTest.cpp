#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QUtil.hh>

#include "tests/host/pdfedit/fonts/PageTextScan.h"
#include "tests/support/Paths.h"

namespace tgx::host {
namespace {

std::string OutputOf(const std::string& command) {
  std::string output;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return output;
  char buffer[4096];
  for (std::size_t count = 0; (count = fread(buffer, 1, sizeof buffer, pipe)) > 0;) output.append(buffer, count);
  pclose(pipe);
  return output;
}

std::string PdfToText(const std::filesystem::path& file, std::size_t page, const std::string& options) {
  const std::string number = std::to_string(page + 1);
  return OutputOf("pdftotext -enc UTF-8 -f " + number + " -l " + number + ' ' + options + " '" + file.string() +
                  "' - 2>/dev/null");
}

/// Spaces are the reader's guess from distances, and the marks of direction are its own.
bool IsPrinted(unsigned long character) {
  const bool isSpace = character <= ' ' || character == 0xA0 || (character >= 0x2000 && character <= 0x200F) ||
                       character == 0x202F || character == 0x3000;
  const bool isDirection = character >= 0x202A && character <= 0x202E;
  return !isSpace && !isDirection;
}

std::map<unsigned long, int> CharactersIn(const std::string& utf8) {
  std::map<unsigned long, int> counts;
  bool hasError = false;
  for (std::size_t at = 0; at < utf8.size();) {
    const unsigned long character = QUtil::get_next_utf8_codepoint(utf8, at, hasError);
    if (IsPrinted(character)) ++counts[character];
  }
  return counts;
}

std::string ToUtf8(const std::u16string& text) {
  std::string bytes = "\xFE\xFF";
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<char>(unit >> 8));
    bytes.push_back(static_cast<char>(unit & 0xFF));
  }
  return QUtil::utf16_to_utf8(bytes);
}

std::vector<std::filesystem::path> Documents() {
  std::vector<std::filesystem::path> files;
  for (const char* folder : {"corpus", "samples"}) {
    for (const auto& entry : std::filesystem::directory_iterator(test::DataPath(folder))) {
      if (entry.path().extension() == ".pdf") files.push_back(entry.path());
    }
  }
  return files;
}

std::string TestName(const testing::TestParamInfo<std::filesystem::path>& info) {
  return std::regex_replace(info.param.stem().string(), std::regex("[^A-Za-z0-9]"), "_");
}

class CorpusText : public testing::TestWithParam<std::filesystem::path> {
 protected:
  void SetUp() override {
    file_.setSuppressWarnings(true);
    file_.processFile(GetParam().c_str());
    pages_ = QPDFPageDocumentHelper(file_).getAllPages();
    ASSERT_FALSE(pages_.empty());
  }

  QPDF file_;
  std::vector<QPDFPageObjectHelper> pages_;
};

TEST_P(CorpusText, EveryPageHasTheCharactersThatAnotherReaderFinds) {
  // These pages show a bullet twice in one place, which the other reader takes for boldface.
  const std::set<std::pair<std::string, std::size_t>> explained = {{"travel-guide", 7}};
  for (std::size_t page = 0; page < pages_.size(); ++page) {
    if (explained.contains({GetParam().stem().string(), page})) continue;
    EXPECT_EQ(CharactersIn(ToUtf8(PageText(pages_[page].getObjectHandle()))),
              CharactersIn(PdfToText(GetParam(), page, "-raw")))
        << "page " << page + 1;
  }
}

/// Where the glyphs of a page are, from its upper left corner.
class GlyphPlaces : public PageTextVisitor {
 public:
  explicit GlyphPlaces(QPDFPageObjectHelper page) : box_(page.getMediaBox().getArrayAsRectangle()) {
    ScanPageText(page.getObjectHandle(), *this);
  }
  void OnCode(const ShownCode& shown) override {
    const double x = shown.x - box_.llx;
    std::vector<Place>& places = shown.isUpright ? places_ : turned_;
    places.push_back({std::min(x, x + shown.width), std::max(x, x + shown.width), box_.ury - shown.y});
  }
  void OnActualText(const std::u16string& text) override { actualTexts_.insert(ToUtf8(text)); }

  /// The places of turned glyphs are not known here.
  bool HasTurnedText(double left, double top, double right, double bottom) const {
    return std::any_of(turned_.begin(), turned_.end(), [&](const Place& place) {
      return place.left >= left - 1 && place.left <= right + 1 && place.y >= top - 1 && place.y <= bottom + 1;
    });
  }
  /// The other reader has no place of its own for these.
  bool HasActualText(const std::string& word) const { return actualTexts_.contains(word); }

  /// How far the ends of a word are from the nearest ends of glyphs on its line, the worse of both.
  double Distance(double left, double top, double right, double bottom) const {
    double nearestLeft = HUGE_VAL;
    double nearestRight = HUGE_VAL;
    for (const Place& place : places_) {
      if (place.y < top - 1 || place.y > bottom + 1) continue;
      nearestLeft = std::min(nearestLeft, std::abs(place.left - left));
      nearestRight = std::min(nearestRight, std::abs(place.right - right));
    }
    return std::max(nearestLeft, nearestRight);
  }

 private:
  struct Place {
    double left, right, y;
  };
  QPDFObjectHandle::Rectangle box_;
  std::vector<Place> places_;
  std::vector<Place> turned_;
  std::set<std::string> actualTexts_;
};

TEST_P(CorpusText, WordsBeginAndEndWhereAnotherReaderHasThem) {
  const std::regex pattern("<word xMin=\"([-0-9.]+)\" yMin=\"([-0-9.]+)\" xMax=\"([-0-9.]+)\" yMax=\"([-0-9.]+)\">([^<]*)");
  for (std::size_t page = 0; page < pages_.size(); ++page) {
    const GlyphPlaces places(pages_[page]);
    const std::string words = PdfToText(GetParam(), page, "-bbox");
    for (std::sregex_iterator word(words.begin(), words.end(), pattern), end; word != end; ++word) {
      const double left = std::stod((*word)[1]);
      const double top = std::stod((*word)[2]);
      const double right = std::stod((*word)[3]);
      const double bottom = std::stod((*word)[4]);
      if (places.HasTurnedText(left, top, right, bottom) || places.HasActualText((*word)[5])) continue;
      EXPECT_LE(places.Distance(left, top, right, bottom), 1) << word->str() << " on page " << page + 1;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Documents, CorpusText, testing::ValuesIn(Documents()), TestName);

}  // namespace
}  // namespace tgx::host
