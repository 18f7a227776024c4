#include <gtest/gtest.h>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include "host/pdfedit/fonts/Font.h"
#include "host/pdfedit/fonts/FontFile.h"
#include "tests/support/Paths.h"

namespace tgx::host {
namespace {

using namespace std::string_view_literals;

std::unique_ptr<Font> FontOf(const std::string& dictionary) { return Font::Read(QPDFObjectHandle::parse(dictionary)); }

std::u16string TextOf(const Font& font, std::string_view bytes) {
  std::u16string text;
  while (!bytes.empty()) {
    const Font::Code code = font.NextCode(bytes);
    font.AppendUnicode(code, text);
    bytes.remove_prefix(static_cast<std::size_t>(code.length));
  }
  return text;
}

std::u16string TextOf(const std::string& dictionary, std::string_view bytes) { return TextOf(*FontOf(dictionary), bytes); }

double AdvanceOf(const Font& font, char byte) { return font.Advance(font.NextCode({&byte, 1})); }

QPDFObjectHandle FontWithToUnicode(QPDF& file, const std::string& dictionary, const std::string& map) {
  QPDFObjectHandle font = QPDFObjectHandle::parse(dictionary);
  font.replaceKey("/ToUnicode", file.newStream(map));
  return font;
}

TEST(SimpleFont, CodesHaveOneByte) {
  const auto font = FontOf("<</Subtype /TrueType>>");
  EXPECT_EQ(font->NextCode("\xFF\x01").value, 0xFFu);
  EXPECT_EQ(font->NextCode("\xFF\x01").length, 1);
  EXPECT_FALSE(font->IsVertical());
}

TEST(SimpleFont, SpaceIsTheOneByteCode32) {
  EXPECT_TRUE(Font::IsSpace({32, 1}));
  EXPECT_FALSE(Font::IsSpace({32, 2}));
  EXPECT_FALSE(Font::IsSpace({33, 1}));
}

TEST(SimpleFont, EncodingsGiveText) {
  EXPECT_EQ(TextOf("<</Subtype /Type1 /Encoding /WinAnsiEncoding>>", "a\x80\xE4'"), u"a\u20AC\u00E4'");
  EXPECT_EQ(TextOf("<</Subtype /Type1 /Encoding /MacRomanEncoding>>", "\x8A"), u"\u00E4");
  EXPECT_EQ(TextOf("<</Subtype /Type1>>", "'\xFB"), u"\u2019\u00DF");
  EXPECT_EQ(TextOf("<</Subtype /TrueType>>", "'\xE4"), u"'\u00E4");
  EXPECT_EQ(TextOf("<</Subtype /Type1 /BaseFont /Symbol>>", "abg"), u"\u03B1\u03B2\u03B3");
  EXPECT_EQ(TextOf("<</Subtype /Type1 /BaseFont /ZapfDingbats>>", "!"), u"\u2701");
  EXPECT_EQ(TextOf("<</Subtype /Type1 /Encoding /NoSuchEncoding>>", "A"), u"A");
}

TEST(SimpleFont, DifferencesStandUponTheBase) {
  const std::string font =
      "<</Subtype /Type1 /Encoding <</BaseEncoding /WinAnsiEncoding /Differences [65 /alpha /f_f_i 200 /uni20AC /foo]>>>>";
  EXPECT_EQ(TextOf(font, "ABC\xC8"), u"\u03B1ffiC\u20AC");
  EXPECT_EQ(TextOf(font, "\xC9"), u"");
}

TEST(SimpleFont, DifferencesOutOfRangeAreLeftOut) {
  EXPECT_EQ(TextOf("<</Encoding <</Differences [-1 /x /y 255 /a /b 99999999999 /c (s) 66 null /z]>>>>",
                   "\0\xFF"
                   "B"sv),
            u"yaz");
}

TEST(SimpleFont, NumbersInUnknownNamesAreCharacters) {
  EXPECT_EQ(TextOf("<</Subtype /Type3 /Encoding <</Differences [1 /g65 /c66 /AB67]>>>>", "\1\2\3"), u"ABC");
  EXPECT_EQ(TextOf("<</Subtype /Type3 /Encoding <</Differences [1 /C41 /C4A]>>>>", "\1\2"), u"AJ");
  EXPECT_EQ(TextOf("<</Subtype /Type3 /Encoding <</Differences [1 /g /xyz12 /g99999999999]>>>>", "\2\3"), u"");
}

TEST(SimpleFont, ToUnicodeGoesBeforeTheEncoding) {
  QPDF file;
  file.emptyPDF();
  const auto font = Font::Read(FontWithToUnicode(file, "<</Subtype /TrueType /Encoding /WinAnsiEncoding>>",
                                                 "1 beginbfchar <41> <03B1> endbfchar 1 beginbfchar <43> <0000> endbfchar"));
  EXPECT_TRUE(font->HasToUnicode());
  EXPECT_EQ(TextOf(*font, "ABC"), u"\u03B1BC");
}

TEST(SimpleFont, ToUnicodeMustBeAStream) {
  EXPECT_FALSE(FontOf("<</Subtype /TrueType /ToUnicode /Identity-H>>")->HasToUnicode());
}

TEST(SimpleFont, WidthsCountFromFirstChar) {
  const auto font =
      FontOf("<</FirstChar 65 /LastChar 68 /Widths [500 250.5 null 700 900] /FontDescriptor <</MissingWidth 333>>>>");
  EXPECT_DOUBLE_EQ(AdvanceOf(*font, 'A'), 0.5);
  EXPECT_DOUBLE_EQ(AdvanceOf(*font, 'B'), 0.2505);
  EXPECT_DOUBLE_EQ(AdvanceOf(*font, 'C'), 0.333);
  EXPECT_DOUBLE_EQ(AdvanceOf(*font, 'D'), 0.7);
  EXPECT_DOUBLE_EQ(AdvanceOf(*font, 'E'), 0.333);
  EXPECT_DOUBLE_EQ(AdvanceOf(*font, '@'), 0.333);
}

TEST(SimpleFont, WidthsMayBeginBeforeTheFirstCode) {
  const auto font = FontOf("<</FirstChar -1 /Widths [1 2 3]>>");
  EXPECT_DOUBLE_EQ(AdvanceOf(*font, '\0'), 0.002);
  EXPECT_DOUBLE_EQ(AdvanceOf(*font, '\1'), 0.003);
  EXPECT_DOUBLE_EQ(AdvanceOf(*FontOf("<</FirstChar 300 /Widths [1 2 3]>>"), ' '), 0);
}

TEST(SimpleFont, StandardFontsNeedNoWidths) {
  EXPECT_DOUBLE_EQ(AdvanceOf(*FontOf("<</Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding>>"), 'A'), 0.667);
  EXPECT_DOUBLE_EQ(AdvanceOf(*FontOf("<</Subtype /TrueType /BaseFont /Arial,Bold /Encoding /WinAnsiEncoding>>"), 'A'),
                   0.722);
  EXPECT_DOUBLE_EQ(AdvanceOf(*FontOf("<</Subtype /Type1 /BaseFont /Courier>>"), 'i'), 0.6);
}

TEST(SimpleFont, UnknownFontsWithoutWidthsAreMeasuredByTheirKind) {
  const std::string start = "<</Subtype /TrueType /BaseFont /Foo /FontDescriptor <</Flags ";
  EXPECT_DOUBLE_EQ(AdvanceOf(*FontOf(start + "32>>>>"), 'A'), 0.667);
  EXPECT_DOUBLE_EQ(AdvanceOf(*FontOf(start + "34>>>>"), 'A'), 0.722);
  EXPECT_DOUBLE_EQ(AdvanceOf(*FontOf(start + "33>>>>"), 'A'), 0.6);
  EXPECT_DOUBLE_EQ(AdvanceOf(*FontOf(start + "98>>>>"), 'A'), 0.611);
}

TEST(SimpleFont, Type3WidthsGoThroughTheMatrix) {
  const auto font =
      FontOf("<</Subtype /Type3 /FontMatrix [0.01 0 0 -0.02 0 0] /FontBBox [0 -10 50 40] /FirstChar 65 /Widths [50]>>");
  EXPECT_DOUBLE_EQ(AdvanceOf(*font, 'A'), 0.5);
  EXPECT_DOUBLE_EQ(font->Ascent(), 0.2);
  EXPECT_DOUBLE_EQ(font->Descent(), -0.8);
}

TEST(SimpleFont, Type3WithoutWidthsDoesNotMove) {
  EXPECT_DOUBLE_EQ(AdvanceOf(*FontOf("<</Subtype /Type3 /FontMatrix [1 0 0 1 0 0]>>"), 'A'), 0);
}

TEST(SimpleFont, ExtentsComeFromTheDescriptor) {
  const auto font = FontOf("<</FontDescriptor <</Ascent 800 /Descent -200 /FontBBox [0 -300 1000 900]>>>>");
  EXPECT_DOUBLE_EQ(font->Ascent(), 0.8);
  EXPECT_DOUBLE_EQ(font->Descent(), -0.2);
}

TEST(SimpleFont, ExtentsHaveTheRightSign) {
  const auto font = FontOf("<</FontDescriptor <</Ascent -800 /Descent 200>>>>");
  EXPECT_DOUBLE_EQ(font->Ascent(), 0.8);
  EXPECT_DOUBLE_EQ(font->Descent(), -0.2);
}

TEST(SimpleFont, AbsurdExtentsAreReplaced) {
  for (const char* numbers : {"/Ascent 0 /Descent 0", "/Ascent 99999 /Descent -99999", "/Ascent (x) /Descent null", ""}) {
    const auto boxed = FontOf("<</FontDescriptor <<" + std::string(numbers) + " /FontBBox [0 -300 1000 900]>>>>");
    EXPECT_DOUBLE_EQ(boxed->Ascent(), 0.9) << numbers;
    EXPECT_DOUBLE_EQ(boxed->Descent(), -0.3) << numbers;
    const auto bare = FontOf("<</FontDescriptor <<" + std::string(numbers) + ">>>>");
    EXPECT_DOUBLE_EQ(bare->Ascent(), 0.95) << numbers;
    EXPECT_DOUBLE_EQ(bare->Descent(), -0.35) << numbers;
  }
}

TEST(SimpleFont, TheBoxOfAllGlyphsGivesNoMoreThanAUsualExtent) {
  const auto font = FontOf("<</FontDescriptor <</Ascent 0 /Descent 0 /FontBBox [-769 -446 2104 1109]>>>>");
  EXPECT_DOUBLE_EQ(font->Ascent(), 0.95);
  EXPECT_DOUBLE_EQ(font->Descent(), -0.35);
}

TEST(SimpleFont, EveryFontIsReadSomehow) {
  for (const char* dictionary : {"null", "42", "[]", "<<>>", "<</Widths 1 /Encoding 2 /FontDescriptor 3 /ToUnicode 4>>",
                                 "<</Subtype /Type3 /FontMatrix [(a)] /Widths [[]] /FontBBox [1 2]>>",
                                 "<</FirstChar 9223372036854775807 /LastChar -9223372036854775808 /Widths [1]>>"}) {
    const auto font = FontOf(dictionary);
    EXPECT_EQ(font->NextCode("A").length, 1) << dictionary;
    EXPECT_GT(font->Ascent(), font->Descent()) << dictionary;
  }
}

/// The descriptor of the first font of that name in a document of the corpus.
QPDFObjectHandle DescriptorIn(QPDF& file, const char* document, const std::string& name) {
  file.setSuppressWarnings(true);
  file.processFile(test::DataPath("corpus/" + std::string(document)).c_str());
  for (QPDFObjectHandle& object : file.getAllObjects()) {
    if (object.isDictionary() && object.getKey("/FontName").isNameAndEquals(name)) return object;
  }
  return QPDFObjectHandle::newNull();
}

TEST(SimpleFont, EmbeddedCffProgramsTellTheirEncoding) {
  QPDF file;
  QPDFObjectHandle font = QPDFObjectHandle::parse("<</Subtype /Type1>>");
  font.replaceKey("/FontDescriptor", DescriptorIn(file, "pdf.js-annotation-button-widget.pdf", "/TAGHGH+MyriadPro-Regular"));
  const BuiltInEncoding encoding = ReadBuiltInEncoding(font.getKey("/FontDescriptor"));
  EXPECT_TRUE(encoding.isKnown);
  EXPECT_EQ(encoding.names['B'], "B");
}

TEST(SimpleFont, EmbeddedType1ProgramsTellTheirEncoding) {
  QPDF file;
  const BuiltInEncoding encoding =
      ReadBuiltInEncoding(DescriptorIn(file, "tagging-project-stem-article-2col-af.pdf", "/IAKJYQ+LMSans17-Regular"));
  EXPECT_TRUE(encoding.isKnown);
  EXPECT_EQ(encoding.names['A'], "A");
  EXPECT_EQ(encoding.names['B'], "");
}

TEST(SimpleFont, DamagedFontFilesHaveNoEncoding) {
  QPDF file;
  file.emptyPDF();
  QPDFObjectHandle descriptor = QPDFObjectHandle::newDictionary();
  for (const char* program : {"", "%!PS-AdobeFont-1.0", "\1\0\4\1 nonsense", "OTTO", "\0\1\0\0"}) {
    descriptor.replaceKey("/FontFile3", file.newStream(program));
    EXPECT_FALSE(ReadBuiltInEncoding(descriptor).isKnown) << program;
  }
  EXPECT_FALSE(ReadBuiltInEncoding(QPDFObjectHandle::newNull()).isKnown);
}

}  // namespace
}  // namespace tgx::host
