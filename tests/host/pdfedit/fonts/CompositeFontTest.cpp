#include <gtest/gtest.h>

#include <qpdf/QPDF.hh>

#include "host/pdfedit/fonts/Font.h"

namespace tgx::host {
namespace {

using namespace std::string_view_literals;

std::unique_ptr<Font> FontOf(const std::string& entries, const std::string& descendant) {
  return Font::Read(
      QPDFObjectHandle::parse("<</Subtype /Type0 " + entries + " /DescendantFonts [<<" + descendant + ">>]>>"));
}

std::u16string TextOf(const Font& font, std::string_view bytes) {
  std::u16string text;
  while (!bytes.empty()) {
    const Font::Code code = font.NextCode(bytes);
    font.AppendUnicode(code, text);
    bytes.remove_prefix(static_cast<std::size_t>(code.length));
  }
  return text;
}

double WidthOf(const std::string& descendant, std::uint32_t cid) {
  return FontOf("/Encoding /Identity-H", descendant)->Advance({cid, 2});
}

constexpr char kJapan[] = "/CIDSystemInfo <</Registry (Adobe) /Ordering (Japan1) /Supplement 2>>";

TEST(CompositeFont, WidthsHaveTwoForms) {
  const std::string widths = "/W [10 [100 200] 20 29 300 40 [400]]";
  EXPECT_DOUBLE_EQ(WidthOf(widths, 9), 1);
  EXPECT_DOUBLE_EQ(WidthOf(widths, 10), 0.1);
  EXPECT_DOUBLE_EQ(WidthOf(widths, 11), 0.2);
  EXPECT_DOUBLE_EQ(WidthOf(widths, 12), 1);
  EXPECT_DOUBLE_EQ(WidthOf(widths, 25), 0.3);
  EXPECT_DOUBLE_EQ(WidthOf(widths, 40), 0.4);
}

TEST(CompositeFont, DefaultWidthIsDW) {
  EXPECT_DOUBLE_EQ(WidthOf("/DW 600 /W [1 [500]]", 2), 0.6);
  EXPECT_DOUBLE_EQ(WidthOf("/DW (wide)", 2), 1);
  EXPECT_DOUBLE_EQ(WidthOf("/DW 0", 2), 0);
}

TEST(CompositeFont, DamagedWidthsDoNotSpoilTheOthers) {
  EXPECT_DOUBLE_EQ(WidthOf("/W [10 [(x) 200] 20]", 11), 0.2);
  EXPECT_DOUBLE_EQ(WidthOf("/W [10 [(x) 200] 20]", 10), 1);
  EXPECT_DOUBLE_EQ(WidthOf("/W [(x) 10 [100]]", 10), 0.1);
  EXPECT_DOUBLE_EQ(WidthOf("/W [5 (x) 10 [100]]", 10), 0.1);
  EXPECT_DOUBLE_EQ(WidthOf("/W [5 6 (x) 10 [100]]", 10), 0.1);
  EXPECT_DOUBLE_EQ(WidthOf("/W [9 3 700 10 [100]]", 10), 0.1);
  EXPECT_DOUBLE_EQ(WidthOf("/W [-5 [7 7 7 7 7 7 7] 10 [100]]", 0), 0.007);
  EXPECT_DOUBLE_EQ(WidthOf("/W [0 99999999 250]", 65535), 0.25);
  EXPECT_DOUBLE_EQ(WidthOf("/W [1 2]", 1), 1);
  EXPECT_DOUBLE_EQ(WidthOf("/W 7", 1), 1);
}

TEST(CompositeFont, SharedWidthArraysStayBounded) {
  QPDF file;
  file.emptyPDF();
  QPDFObjectHandle shared = file.makeIndirectObject(QPDFObjectHandle::newArray());
  for (int i = 0; i < 2000; ++i) shared.appendItem(QPDFObjectHandle::newInteger(i));
  QPDFObjectHandle widths = QPDFObjectHandle::newArray();
  for (int i = 0; i < 5000; ++i) {
    widths.appendItem(QPDFObjectHandle::newInteger(0));
    widths.appendItem(shared);
  }
  QPDFObjectHandle font = QPDFObjectHandle::parse("<</Subtype /Type0 /Encoding /Identity-H /DescendantFonts [<<>>]>>");
  font.getKey("/DescendantFonts").getArrayItem(0).replaceKey("/W", widths);
  EXPECT_DOUBLE_EQ(Font::Read(font)->Advance({500, 2}), 0.5);
}

TEST(CompositeFont, VerticalFontsMoveDown) {
  const auto font = FontOf("/Encoding /Identity-V", "/DW 600 /W2 [10 [-500 250 700] 20 29 -800 300 900]");
  EXPECT_TRUE(font->IsVertical());
  EXPECT_DOUBLE_EQ(font->Advance({5, 2}), -1);
  EXPECT_DOUBLE_EQ(font->VerticalOrigin({5, 2}).x, 0.3);
  EXPECT_DOUBLE_EQ(font->VerticalOrigin({5, 2}).y, 0.88);
  EXPECT_DOUBLE_EQ(font->Advance({10, 2}), -0.5);
  EXPECT_DOUBLE_EQ(font->VerticalOrigin({10, 2}).x, 0.25);
  EXPECT_DOUBLE_EQ(font->VerticalOrigin({10, 2}).y, 0.7);
  EXPECT_DOUBLE_EQ(font->Advance({25, 2}), -0.8);
  EXPECT_DOUBLE_EQ(font->Width({25, 2}), 0.6);
}

TEST(CompositeFont, VerticalDefaultsAreDW2) {
  const auto font = FontOf("/Encoding /Identity-V", "/DW2 [800 -900]");
  EXPECT_DOUBLE_EQ(font->Advance({5, 2}), -0.9);
  EXPECT_DOUBLE_EQ(font->VerticalOrigin({5, 2}).y, 0.8);
}

TEST(CompositeFont, HorizontalFontsHaveNoVerticalOrigin) {
  const auto font = FontOf("/Encoding /Identity-H", "/W2 [10 [-500 250 700]]");
  EXPECT_DOUBLE_EQ(font->Advance({10, 2}), 1);
  EXPECT_DOUBLE_EQ(font->VerticalOrigin({10, 2}).x, 0);
}

TEST(CompositeFont, ToUnicodeGivesText) {
  QPDF file;
  file.emptyPDF();
  QPDFObjectHandle dictionary = QPDFObjectHandle::parse("<</Subtype /Type0 /Encoding /Identity-H /DescendantFonts [<<>>]>>");
  dictionary.replaceKey("/ToUnicode", file.newStream("1 beginbfrange <0001> <0003> <0041> endbfrange"));
  const auto font = Font::Read(dictionary);
  EXPECT_TRUE(font->HasToUnicode());
  EXPECT_EQ(TextOf(*font, "\0\1\0\3\0\4"sv), u"AC");
}

TEST(CompositeFont, CodesOfNoKnownMeaningGiveNothing) {
  const auto font = FontOf("/Encoding /Identity-H", "/CIDSystemInfo <</Registry (Adobe) /Ordering (Identity)>>");
  EXPECT_FALSE(font->HasToUnicode());
  EXPECT_EQ(TextOf(*font, "\0A"sv), u"");
}

TEST(CompositeFont, IdentityAsToUnicodeMakesCodesCharacters) {
  const auto font = FontOf("/Encoding /Identity-H /ToUnicode /Identity-H", "");
  EXPECT_FALSE(font->HasToUnicode());
  EXPECT_EQ(TextOf(*font, "\0A"sv), u"A");
}

TEST(CompositeFont, UnicodeCMapsNeedNoData) {
  const auto font = FontOf("/Encoding /UniJIS-UTF16-H", kJapan);
  EXPECT_EQ(TextOf(*font, "\x30\x42\xD8\x3D\xDE\x00"sv), u"\u3042\U0001F600");
}

TEST(CompositeFont, PredefinedCMapsGoThroughTheCidsOfTheirCollection) {
  EXPECT_EQ(TextOf(*FontOf("/Encoding /90ms-RKSJ-H", kJapan), "A\x82\xA0"), u"A\u3042");
  EXPECT_EQ(TextOf(*FontOf("/Encoding /GBK-EUC-H", ""), "\xB0\xA1"), u"\u554A");
  EXPECT_EQ(TextOf(*FontOf("/Encoding /ETen-B5-H", ""), "\xA4\x40"), u"\u4E00");
  EXPECT_EQ(TextOf(*FontOf("/Encoding /KSCms-UHC-H", ""), "\xB0\xA1"), u"\uAC00");
}

TEST(CompositeFont, GlyphsOfVerticalWritingAreTheirOrdinaryCharacters) {
  EXPECT_EQ(TextOf(*FontOf("/Encoding /90ms-RKSJ-V", kJapan), "\x81\x41\x81\x69"), u"\u3001\uFF08");
}

TEST(CompositeFont, IdentityCodesAreCidsOfTheDescendantsCollection) {
  EXPECT_EQ(TextOf(*FontOf("/Encoding /Identity-H", kJapan), "\x03\x4B"), u"\u3042");
}

TEST(CompositeFont, HalfWidthCodesOfPredefinedCMapsHaveTheirWidths) {
  const auto font = FontOf("/Encoding /90ms-RKSJ-H", std::string(kJapan) + " /W [231 632 500]");
  EXPECT_DOUBLE_EQ(font->Advance(font->NextCode("A")), 0.5);
  EXPECT_DOUBLE_EQ(font->Advance(font->NextCode("\x82\xA0")), 1);
}

TEST(CompositeFont, EveryFontIsReadSomehow) {
  for (const char* dictionary :
       {"<</Subtype /Type0>>", "<</Subtype /Type0 /DescendantFonts 5>>", "<</Subtype /Type0 /DescendantFonts [[]]>>",
        "<</Subtype /Type0 /DescendantFonts [<</CIDSystemInfo 3 /FontDescriptor [] /W [[]] /DW2 [] /W2 [1 2 3 4]>>]>>",
        "<</Subtype /Type0 /Encoding 7 /ToUnicode [] /DescendantFonts <<>>>>"}) {
    const auto font = Font::Read(QPDFObjectHandle::parse(dictionary));
    EXPECT_EQ(font->NextCode("abc").length, 2) << dictionary;
    EXPECT_DOUBLE_EQ(font->Advance({1, 2}), 1) << dictionary;
    EXPECT_GT(font->Ascent(), font->Descent()) << dictionary;
  }
}

}  // namespace
}  // namespace tgx::host
