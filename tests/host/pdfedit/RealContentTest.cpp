// Documents that others made, seen through a viewer before and after: the first page of each. The whole sweep is
// bench/content/sweep.py.
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <qpdf/QUtil.hh>

#include "host/core/Fixed.h"
#include "host/pdmodel/PageList.h"
#include "tests/host/pdfedit/ContentFixture.h"
#include "tests/host/pdmodel/FileTest.h"
#include "tests/support/DataFiles.h"

namespace tgx::host {
namespace {

constexpr int kResolution = 100;

std::string OutputOf(const std::string& command) {
  std::string output;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return output;
  std::array<char, 4096> buffer{};
  while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe)) output.append(buffer.data(), count);
  pclose(pipe);
  return output;
}

std::string TextOf(const std::string& path) { return OutputOf("pdftotext -l 1 -raw '" + path + "' - 2>/dev/null"); }

/// The first page as it is shown.
struct Picture {
  int width = 0, height = 0;
  std::string pixels;  ///< three bytes each, from the top left

  explicit Picture(const std::string& path) {
    const std::string data =
        OutputOf("pdftoppm -r " + std::to_string(kResolution) + " -f 1 -l 1 '" + path + "' 2>/dev/null");
    int header = 0;
    if (std::sscanf(data.c_str(), "P6 %d %d 255%n", &width, &height, &header) == 2) pixels = data.substr(header + 1U);
  }
};

/// Characters that show; spaces are a reader's guess, and marks of direction its own.
std::map<unsigned long, int> Printed(const std::string& utf8) {
  std::map<unsigned long, int> counts;
  bool hasError = false;
  for (std::size_t at = 0; at < utf8.size();) {
    const unsigned long c = QUtil::get_next_utf8_codepoint(utf8, at, hasError);
    const bool isSpace = c <= ' ' || c == 0xA0 || (c >= 0x2000 && c <= 0x200F) || c == 0x202F || c == 0x3000;
    if (!isSpace && !(c >= 0x202A && c <= 0x202E)) ++counts[c];
  }
  return counts;
}

/// The Unicode text of all text elements, by the operations that clients use.
void AppendUnicode(PDEContent list, std::string& utf16) {
  const PDFEditReadTable& read = ReadContent();
  for (ASInt32 i = 0; i < read.PDEContentGetNumElems(list); ++i) {
    const PDEElement element = read.PDEContentGetElem(list, i);
    if (read.PDEObjectGetType(element) == kPDEContainer) AppendUnicode(read.PDEContainerGetContent(element), utf16);
    if (read.PDEObjectGetType(element) != kPDEText) continue;
    for (ASInt32 c = 0; c < read.PDETextGetNumChars(element); ++c) {
      std::array<ASUns8, 10> code{};
      const ASInt32 length = read.PDETextGetText(element, kPDETextChar, c, code.data());
      const PDEFont font = read.PDETextGetFont(element, kPDETextChar, c);
      if (font == nullptr) continue;
      std::array<ASUns8, 64> unicode{};
      const ASInt32 size = WriteContent().PDEFontTranslateGlyphIdsToUnicode(font, code.data(), length, unicode.data(), 64);
      utf16.append(reinterpret_cast<const char*>(unicode.data()), static_cast<std::size_t>(size));
    }
  }
}

/// The container in the middle of a list's containers, inner ones not looked at; -1 when there is none.
ASInt32 MiddleContainer(PDEContent list) {
  std::vector<ASInt32> containers;
  for (ASInt32 i = 0; i < ReadContent().PDEContentGetNumElems(list); ++i) {
    if (ReadContent().PDEObjectGetType(ReadContent().PDEContentGetElem(list, i)) == kPDEContainer) containers.push_back(i);
  }
  return containers.empty() ? -1 : containers[containers.size() / 2];
}

class RealContent : public FileTest, public testing::WithParamInterface<test::DataFile> {
 protected:
  ContentDocument document_ = ContentDocument::FromBytes(test::ReadBytes(GetParam().path));
};

TEST_P(RealContent, LooksTheSameFromItsOperatorsAlone) {
  for (ASInt32 page = 0; page < document_.Host()->Pages().Count(); ++page) document_.Model(page).WriteOperators();
  const std::string path = Put("operators.pdf", document_.SavedBytes());
  EXPECT_EQ(TextOf(path), TextOf(GetParam().path));
  const Picture before(GetParam().path);
  const Picture after(path);
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
  const Picture before(GetParam().path);
  const Picture after(Put("removed.pdf", document_.SavedBytes()));
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
}

/// Whose text the other reader takes from somewhere else than the shown strings of the page.
bool HasOtherText(const std::string& name) {
  for (const char* known : {"corpus/pdfplumber-pr-138-example.pdf",  // forms, and "ActualText" in place of ligatures
                            "corpus/typst-getreide.pdf",             // word joiners in "ActualText"
                            "corpus/pikepdf-form_dd0293.pdf"}) {     // the faces of form fields
    if (name == known) return true;
  }
  return false;
}

TEST_P(RealContent, HasTheCharactersThatAnotherReaderFinds) {
  if (HasOtherText(GetParam().name)) GTEST_SKIP() << "text that is not the page's own";
  std::string utf16 = "\xFE\xFF";
  AppendUnicode(document_.Root(), utf16);
  EXPECT_EQ(Printed(QUtil::utf16_to_utf8(utf16)), Printed(TextOf(GetParam().path)));
}

INSTANTIATE_TEST_SUITE_P(Files, RealContent, testing::ValuesIn(test::DataFiles()),
                         [](const auto& parameter) { return test::TestName(parameter.param); });

}  // namespace
}  // namespace tgx::host
