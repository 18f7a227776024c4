#include <cstring>
#include <string>

#include <gtest/gtest.h>
#include <qpdf/QUtil.hh>

#include "tests/host/HostDocument.h"

namespace tgx::host {
namespace {

const TextTable& Text() { return *Tables()->text; }

/// A text object for the length of a test.
class HeldText {
 public:
  HeldText() : text_(Text().ASTextNew()) {}
  HeldText(std::string_view bytes, ASInt32 format)
      : text_(Text().ASTextFromSizedUnicode(reinterpret_cast<const ASUTF16Val*>(bytes.data()), format,
                                            static_cast<ASTArraySize>(bytes.size()))) {}
  ~HeldText() { Text().ASTextDestroy(text_); }
  HeldText(const HeldText&) = delete;
  HeldText& operator=(const HeldText&) = delete;
  operator ASText() const { return text_; }  // NOLINT(google-explicit-constructor): stands for the text in calls

 private:
  ASText text_;
};

std::u16string Units(ASText text) { return reinterpret_cast<const char16_t*>(Text().ASTextGetUnicode(text)); }

std::u16string FromPdf(const char* bytes) {
  const HeldText text;
  Text().ASTextSetPDText(text, bytes);
  return Units(text);
}

std::u16string From(std::string_view bytes, ASInt32 format) { return Units(HeldText(bytes, format)); }

/// The copy in a format, without the zeros behind.
std::string Copy(ASText text, ASInt32 format, std::size_t size) {
  ASUTF16Val* const copy = Text().ASTextGetUnicodeCopy(text, format);
  std::string bytes(reinterpret_cast<const char*>(copy), size);
  Tables()->acroSupport->ASfree(copy);
  return bytes;
}

TEST(TextObject, StartsEmpty) { EXPECT_EQ(Units(HeldText()), u""); }

TEST(TextObject, TakesBigEndianUnits) { EXPECT_EQ(From({"\x22\x2E\0A", 4}, kUTF16BigEndian), u"\u222EA"); }

TEST(TextObject, TakesUnitsInTheProcessorsOrder) {
  const std::u16string units = u"\u222EA";
  EXPECT_EQ(From({reinterpret_cast<const char*>(units.data()), 4}, kUTF16HostEndian), units);
}

TEST(TextObject, TakesUtf8) { EXPECT_EQ(From("\xE2\x88\xAE\xF0\x9F\x98\x80", kUTF8), u"\u222E\U0001F600"); }

TEST(TextObject, KeepsAMarkAsACharacter) {
  EXPECT_EQ(From({"\xFE\xFF\0A", 4}, kUTF16BigEndian), u"\uFEFFA");
  EXPECT_EQ(From("\xEF\xBB\xBF"
                 "A",
                 kUTF8),
            u"\uFEFFA");
}

TEST(TextObject, TakesUnalignedData) {
  const char16_t units[] = u"xAB";
  std::string shifted(1, '?');
  shifted.append(reinterpret_cast<const char*>(units), 6);
  EXPECT_EQ(From(std::string_view(shifted).substr(1), kUTF16HostEndian), u"xAB");
  EXPECT_EQ(From(std::string_view("?\0A\0B", 5).substr(1), kUTF16BigEndian), u"AB");
}

TEST(TextObject, TakesNoBytesAtAll) {
  const ASText text = Text().ASTextFromSizedUnicode(nullptr, kUTF16BigEndian, 0);
  EXPECT_EQ(Units(text), u"");
  Text().ASTextDestroy(text);
}

TEST(TextObject, RefusesHalfAUnit) {
  EXPECT_EQ(RaisedCode([] { From("abc", kUTF16BigEndian); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([] { From("abc", kUTF16HostEndian); }), kASBadParameter);
}

TEST(TextObject, RefusesUnknownFormatsNegativeSizesAndMissingData) {
  EXPECT_EQ(RaisedCode([] { From("ab", 3); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([] { Text().ASTextFromSizedUnicode(nullptr, kUTF8, 1); }), kASBadParameter);
  const ASUTF16Val unit = 0;
  EXPECT_EQ(RaisedCode([&] { Text().ASTextFromSizedUnicode(&unit, kUTF8, -2); }), kASBadParameter);
  const HeldText text;
  EXPECT_EQ(RaisedCode([&] { Text().ASTextGetUnicodeCopy(text, 3); }), kASBadParameter);
}

TEST(TextObject, ReplacesIllFormedUtf8) {
  EXPECT_EQ(From("a\xFF"
                 "b",
                 kUTF8),
            u"a\uFFFDb");
  EXPECT_EQ(From("\xE2\x88", kUTF8), u"\uFFFD") << "a sequence that stops early is one character";
  EXPECT_EQ(From("\xC0\xAF", kUTF8), u"\uFFFD\uFFFD") << "no overlong forms";
  EXPECT_EQ(From("\xED\xA0\x80", kUTF8), u"\uFFFD\uFFFD\uFFFD") << "no surrogates";
  EXPECT_EQ(From("\xF4\x90\x80\x80", kUTF8), u"\uFFFD\uFFFD\uFFFD\uFFFD") << "nothing above U+10FFFF";
}

TEST(TextObject, KeepsLoneSurrogatesButNotInUtf8) {
  const HeldText text({"\xD8\x3D\0A\xDE\0", 6}, kUTF16BigEndian);
  EXPECT_EQ(Units(text), (std::u16string{0xD83D, u'A', 0xDE00}));
  EXPECT_EQ(Copy(text, kUTF16BigEndian, 6), std::string("\xD8\x3D\0A\xDE\0", 6));
  EXPECT_EQ(Copy(text, kUTF8, 7),
            "\xEF\xBF\xBD"
            "A"
            "\xEF\xBF\xBD");
}

TEST(TextObject, JoinsSurrogatePairsInUtf8) {
  const HeldText text("\xF0\x9F\x98\x80", kUTF8);
  EXPECT_EQ(Copy(text, kUTF16BigEndian, 4), "\xD8\x3D\xDE" + std::string(1, '\0'));
  EXPECT_EQ(Copy(text, kUTF8, 4), "\xF0\x9F\x98\x80");
}

TEST(TextObject, IsCopiedWithAZeroBehind) {
  const HeldText text("\xC3\xA9", kUTF8);
  EXPECT_EQ(Copy(text, kUTF16BigEndian, 4), std::string("\0\xE9\0\0", 4));
  EXPECT_EQ(Copy(text, kUTF8, 3), std::string("\xC3\xA9\0", 3));
  const char16_t units[] = u"\u00E9";
  EXPECT_EQ(Copy(text, kUTF16HostEndian, 4), std::string(reinterpret_cast<const char*>(units), 4));
}

TEST(TextObject, IsDeadForGoodOnceDestroyed) {
  const ASText dead = Text().ASTextNew();
  Text().ASTextDestroy(dead);
  const HeldText other;
  EXPECT_NE(dead, other);
  EXPECT_EQ(RaisedCode([&] { Text().ASTextGetUnicode(dead); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Text().ASTextSetPDText(dead, ""); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Text().ASTextGetUnicodeCopy(dead, kUTF8); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Text().ASTextGetUnicode(nullptr); }), kASBadParameter);
}

TEST(TextObject, MayBeDestroyedTwiceOrBeNull) {
  const ASText dead = Text().ASTextNew();
  Text().ASTextDestroy(dead);
  Text().ASTextDestroy(dead);
  Text().ASTextDestroy(nullptr);
}

TEST(PdfText, IsUtf16BehindTheMarkUpToAZeroUnit) {
  const char bytes[] = "\xFE\xFF\x22\x2E\x01\0\0A\0\0\0B";
  EXPECT_EQ(FromPdf(bytes), u"\u222E\u0100A");
}

TEST(PdfText, IsUtf8BehindItsMarkUpToAZeroByte) { EXPECT_EQ(FromPdf("\xEF\xBB\xBF\xC3\xA9x\0y"), u"\u00E9x"); }

TEST(PdfText, IsPdfDocEncodingOtherwise) {
  EXPECT_EQ(FromPdf("plain\0more"), u"plain");
  EXPECT_EQ(FromPdf("\x18\x1F\x80\x8F\x90\x9E\xA0\xE9\xFF"), u"\u02D8\u02DC\u2022\u2018\u2019\u017E\u20AC\u00E9\u00FF");
  EXPECT_EQ(FromPdf("\x7F\x9F\xAD"), u"\uFFFD\uFFFD\uFFFD");
}

TEST(PdfText, DecodesEveryByteAsQpdfDoes) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string bytes = "x" + std::string(1, static_cast<char>(byte));
    const std::string expected = QUtil::pdf_doc_to_utf8(bytes);
    const HeldText text;
    Text().ASTextSetPDText(text, bytes.c_str());
    EXPECT_EQ(Copy(text, kUTF8, expected.size()), expected) << "byte " << byte;
  }
}

TEST(PdfText, WithOneMarkByteIsNotUtf16) { EXPECT_EQ(FromPdf("\xFE"), u"\u00FE"); }

TEST(PdfText, ReplacesWhatTheTextHeld) {
  const HeldText text("old", kUTF8);
  Text().ASTextSetPDText(text, "new");
  EXPECT_EQ(Units(text), u"new");
  EXPECT_EQ(RaisedCode([&] { Text().ASTextSetPDText(text, nullptr); }), kASBadParameter);
  EXPECT_EQ(Units(text), u"new");
}

}  // namespace
}  // namespace tgx::host
