#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "src/common/ContentUtils.h"
#include "tests/src/common/StructureFixture.h"

namespace tgx {
namespace {

using test::Page;
using testing::IsEmpty;

ByteVector Bytes(std::string_view text) { return {text.begin(), text.end()}; }

class UnicodeTextTest : public test::StructureTest {
 protected:
  // A text in a composite font whose codes are one and two bytes long, and what its ToUnicode map says.
  PDEElement MixedText(const std::string& hexCodes, bool withToUnicode = true) {
    return TextOf("/F9 12 Tf <" + hexCodes + "> Tj", withToUnicode);
  }
  PDEElement TextOf(const std::string& operators, bool withToUnicode = true) {
    doc.Stream("cmap", "<</Type/CMap/CMapName/Mixed/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>>>",
               "1 begincodespacerange <00><7F> endcodespacerange 1 begincodespacerange <8000><FFFF> endcodespacerange "
               "1 begincidrange <00><7F> 0 endcidrange 1 begincidrange <8000><FFFF> 200 endcidrange");
    doc.Stream("unicode", "<<>>",
               "1 begincodespacerange <00><7F> endcodespacerange 1 begincodespacerange <8000><FFFF> endcodespacerange "
               "4 beginbfchar <41><0058> <8001><00E4> <8002><D83DDE00> <8003><006600660069> endbfchar");
    doc.Object("descendant",
               "<</Type/Font/Subtype/CIDFontType2/BaseFont/Mixed/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)"
               "/Supplement 0>>/FontDescriptor<</Type/FontDescriptor/FontName/Mixed/Flags 4>>>>");
    Page& onPage = doc.AddPage();
    onPage.Resource("Font", "F9",
                    "<</Type/Font/Subtype/Type0/BaseFont/Mixed/Encoding $cmap/DescendantFonts[$descendant]" +
                        std::string(withToUnicode ? "/ToUnicode $unicode>>" : ">>"));
    onPage.Add(test::Ops("BT " + operators + " ET"));
    return PDEContentGetElem(PDPageAcquirePDEContent(PDDocAcquirePage(Open(), 0), nullptr), 0);
  }

  ByteVector single;
  std::vector<std::uint16_t> utf16;
  std::vector<std::uint32_t> utf32;
};

// The units as the bytes that they are made of.
template <typename Unit>
std::string Memory(const std::vector<Unit>& units) {
  return HexEncode(ByteVector(reinterpret_cast<const std::uint8_t*>(units.data()),
                              reinterpret_cast<const std::uint8_t*>(units.data() + units.size())));
}

TEST_F(UnicodeTextTest, ReadsCodesOfSeveralBytes) {
  GetRawText(MixedText("418001"), single);
  EXPECT_EQ(single, (ByteVector{0x41, 0x80, 0x01}));
}

TEST_F(UnicodeTextTest, KeepsCharactersOfDifferentWidthsApart) {
  GetUnicodeText(MixedText("8001418002428001"), single, utf16, utf32);
  EXPECT_EQ(single, Bytes("AB"));
  EXPECT_EQ(Memory(utf16), "00e400e4");
  EXPECT_EQ(Memory(utf32), "d83dde00");
}

TEST_F(UnicodeTextTest, TakesAOneByteCodeForTheCharacterItself) {
  GetUnicodeText(MixedText("41"), single, utf16, utf32);
  EXPECT_EQ(single, Bytes("A")) << "not the X of the map";
}

TEST_F(UnicodeTextTest, EndsAtACodeThatStandsForNothing) {
  GetUnicodeText(MixedText("41800942"), single, utf16, utf32);
  EXPECT_EQ(single, Bytes("A"));
  EXPECT_THAT(utf16, IsEmpty());
}

TEST_F(UnicodeTextTest, EndsAtACodeThatStandsForSeveralCharacters) {
  GetUnicodeText(MixedText("8001800342"), single, utf16, utf32);
  EXPECT_THAT(single, IsEmpty());
  EXPECT_EQ(Memory(utf16), "00e4");
}

TEST_F(UnicodeTextTest, EndsAtACharacterWithoutAFont) {
  GetUnicodeText(TextOf("/F9 12 Tf <418001> Tj /Missing 12 Tf <42> Tj /F9 12 Tf <438001> Tj"), single, utf16, utf32);
  EXPECT_EQ(single, Bytes("A"));
  EXPECT_EQ(Memory(utf16), "00e4");
}

TEST_F(UnicodeTextTest, GivesNothingOfAFontWithoutToUnicodeTable) {
  single = {'x'};
  GetUnicodeText(MixedText("4142", false), single, utf16, utf32);
  EXPECT_THAT(single, IsEmpty());
}

}  // namespace
}  // namespace tgx
