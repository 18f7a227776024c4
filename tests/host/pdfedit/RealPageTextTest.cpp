// Text of documents that others made, against what a viewer reads off the same pages: the first page of each. The whole
// sweep is bench/content/sweep.py.
#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <qpdf/QUtil.hh>

#include "host/core/Atoms.h"
#include "host/core/Fixed.h"
#include "host/pdmodel/PageList.h"
#include "tests/host/pdfedit/ContentFixture.h"
#include "tests/support/DataFiles.h"
#include "tests/support/TestDocument.h"
#include "tests/support/Viewers.h"

namespace tgx::host {
namespace {

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

/// The Unicode text of a text element in UTF-8, by the operations that clients use.
std::string UnicodeOf(PDEText text) {
  std::string utf16 = "\xFE\xFF";
  for (ASInt32 c = 0; c < ReadContent().PDETextGetNumChars(text); ++c) {
    std::array<ASUns8, 10> code{};
    const ASInt32 length = ReadContent().PDETextGetText(text, kPDETextChar, c, code.data());
    const PDEFont font = ReadContent().PDETextGetFont(text, kPDETextChar, c);
    if (font == nullptr) continue;
    std::array<ASUns8, 64> unicode{};
    const ASInt32 size = WriteContent().PDEFontTranslateGlyphIdsToUnicode(font, code.data(), length, unicode.data(), 64);
    utf16.append(reinterpret_cast<const char*>(unicode.data()), static_cast<std::size_t>(size));
  }
  return QUtil::utf16_to_utf8(utf16);
}

/// What a container says that its content reads as. The other reader listens to it in spans only.
bool HasActualText(PDEContainer container, std::string& text) {
  CosObj dictionary{};
  if (std::string_view(AtomText(ReadContent().PDEContainerGetMCTag(container))) != "Span") return false;
  if (ReadContent().PDEContainerGetDict(container, &dictionary, nullptr) == 0) return false;
  QPDFObjectHandle actualText = ObjectOf(dictionary).getKey("/ActualText");
  if (!actualText.isString()) return false;
  text = actualText.getUTF8Value();
  return true;
}

/// A piece of text and where it stands on the page; `text` of containers with "ActualText" is that, with the box of all.
struct Text {
  std::string text;
  test::Box box;
};

void CollectTexts(PDEContent list, std::vector<Text>& texts) {
  for (ASInt32 i = 0; i < ReadContent().PDEContentGetNumElems(list); ++i) {
    const PDEElement element = ReadContent().PDEContentGetElem(list, i);
    const ASInt32 type = ReadContent().PDEObjectGetType(element);
    std::string text;
    if (type == kPDEText) {
      text = UnicodeOf(element);
    } else if (type != kPDEContainer) {
      continue;
    } else if (!HasActualText(element, text)) {
      CollectTexts(ReadContent().PDEContainerGetContent(element), texts);
      continue;
    }
    ASFixedRect box{};
    ReadContent().PDEElementGetBBox(element, &box);
    texts.push_back({text, {FromFixed(box.left), FromFixed(box.bottom), FromFixed(box.right), FromFixed(box.top)}});
  }
}

/// The document without what has text of its own: the faces of annotations, and forms, which are not entered.
std::string WithoutFormsAndAnnotations(const std::string& bytes) {
  QPDF pdf;
  pdf.setSuppressWarnings(true);
  pdf.processMemoryFile("document", bytes.data(), bytes.size());
  QPDFObjectHandle page = pdf.getAllPages().at(0);
  page.removeKey("/Annots");
  pdf.getRoot().removeKey("/AcroForm");
  for (QPDFObjectHandle& object : pdf.getAllObjects()) {
    if (!object.isStream() || !object.getDict().getKey("/Subtype").isNameAndEquals("/Form")) continue;
    object.replaceStreamData("", QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull());
  }
  return test::WriteToString(pdf);
}

class RealPageText : public testing::TestWithParam<test::DataFile> {
 protected:
  RealPageText() { CollectTexts(document_.Root(), texts_); }

  ContentDocument document_ = ContentDocument::FromBytes(test::ReadBytes(GetParam().path));
  std::vector<Text> texts_;
  std::string reference_ = WithoutFormsAndAnnotations(test::ReadBytes(GetParam().path));
};

TEST_P(RealPageText, HasTheCharactersThatAnotherReaderFinds) {
  std::string all;
  for (const Text& text : texts_) all += text.text;
  EXPECT_EQ(Printed(all), Printed(test::OutputOf("pdftotext -l 1 -raw {} - 2>/dev/null", reference_)));
}

constexpr double kTolerance = 1;  // points

bool AreOnOneLine(const test::Box& a, const test::Box& b) {
  const double middle = (b.bottom + b.top) / 2;
  return a.bottom <= middle && middle <= a.top;
}

/// Whether boxes that touch each other, on the line of `word`, reach from its left to its right.
bool IsCovered(const test::Box& word, std::vector<test::Box> boxes) {
  std::sort(boxes.begin(), boxes.end(), [](const auto& a, const auto& b) { return a.left < b.left; });
  double reached = word.left + kTolerance;
  bool isBegun = false;
  for (const test::Box& box : boxes) {
    if (!AreOnOneLine(box, word) || box.left > reached) continue;
    isBegun = true;
    reached = std::max(reached, box.right + kTolerance);
  }
  return isBegun && reached >= word.right;
}

bool IsSpaceAt(const std::string& text, std::size_t index) {
  return std::isspace(static_cast<unsigned char>(text[index])) != 0;
}

/// Whether a text is of one line. The edges of several lines can be those of spaces at their ends.
bool IsOfOneLine(const test::Box& text, const std::vector<test::Box>& words) {
  double lowest = text.top, highest = text.bottom, tallest = 0;
  for (const test::Box& word : words) {
    const double center = (word.left + word.right) / 2;
    if (!AreOnOneLine(text, word) || center < text.left || center > text.right) continue;
    lowest = std::min(lowest, word.bottom);
    highest = std::max(highest, word.bottom);
    tallest = std::max(tallest, word.top - word.bottom);
  }
  return highest - lowest < tallest / 2;
}

/// Whether a place is in or at a word of its line.
bool IsAtAWord(double x, const test::Box& line, const std::vector<test::Box>& words) {
  return std::any_of(words.begin(), words.end(), [&](const test::Box& word) {
    return AreOnOneLine(line, word) && word.left - kTolerance <= x && x <= word.right + kTolerance;
  });
}

TEST_P(RealPageText, HasBoxesThatBeginAndEndWithTheWordsThatAnotherReaderFinds) {
  std::vector<test::Box> words;
  for (const test::SeenWord& word : test::WordsSeen(reference_)) {
    const bool isShown = word.box.top > word.box.bottom;  // else a text that stands for a drawing
    if (word.page == 1 && isShown) words.push_back(word.box);
  }
  std::vector<test::Box> boxes;
  for (const Text& text : texts_) boxes.push_back(text.box);
  for (const test::Box& word : words) {
    EXPECT_TRUE(IsCovered(word, boxes)) << word.left << ' ' << word.bottom << ' ' << word.right << ' ' << word.top;
  }
  for (const Text& text : texts_) {
    if (Printed(text.text).empty() || !IsOfOneLine(text.box, words)) continue;
    if (!IsSpaceAt(text.text, 0)) {
      EXPECT_TRUE(IsAtAWord(text.box.left, text.box, words)) << text.text << ' ' << text.box.left << ' ' << text.box.bottom;
    }
    if (!IsSpaceAt(text.text, text.text.size() - 1)) {
      EXPECT_TRUE(IsAtAWord(text.box.right, text.box, words))
          << text.text << ' ' << text.box.right << ' ' << text.box.bottom;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Files, RealPageText, testing::ValuesIn(test::DataFiles()),
                         [](const auto& parameter) { return test::TestName(parameter.param); });

}  // namespace
}  // namespace tgx::host
