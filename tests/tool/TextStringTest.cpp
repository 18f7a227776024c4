#include "tool/TextString.h"

#include <gtest/gtest.h>

namespace tgx::tool {
namespace {

using namespace std::string_literals;

TEST(DecodeTextString, ReadsUtf16WithMark) { EXPECT_EQ(DecodeTextString("\xFE\xFF\x22\x64\0A"s), "\u2264A"); }

TEST(DecodeTextString, ReadsUtf16OfTheOtherByteOrder) { EXPECT_EQ(DecodeTextString("\xFF\xFE\x64\x22"s), "\u2264"); }

TEST(DecodeTextString, JoinsSurrogates) { EXPECT_EQ(DecodeTextString("\xFE\xFF\xD8\x35\xDC\x65"s), "\U0001D465"); }

TEST(DecodeTextString, ReplacesLoneSurrogates) {
  EXPECT_EQ(DecodeTextString("\xFE\xFF\xD8\x35\0A\xDC\x65"s), "\uFFFDA\uFFFD");
}

TEST(DecodeTextString, ReplacesHalfACharacterAtTheEnd) { EXPECT_EQ(DecodeTextString("\xFE\xFF\0A\0"s), "A\uFFFD"); }

TEST(DecodeTextString, ReadsUtf8WithMark) { EXPECT_EQ(DecodeTextString("\xEF\xBB\xBF\xC3\xA9"s), "\u00E9"); }

TEST(DecodeTextString, ReplacesWhatIsNotUtf8BehindTheMark) { EXPECT_EQ(DecodeTextString("\xEF\xBB\xBF\xC3("s), "\uFFFD("); }

TEST(DecodeTextString, ReadsPDFDocEncodingWithoutMark) {
  EXPECT_EQ(DecodeTextString("\x80 caf\xE9 \xA0 \x18\x1F"s), "\u2022 caf\u00E9 \u20AC \u02D8\u02DC");
}

TEST(DecodeTextString, ReplacesCodesWithoutACharacter) {
  EXPECT_EQ(DecodeTextString("\x7F\x9F\xAD"s), "\uFFFD\uFFFD\uFFFD");
}

TEST(DecodeTextString, GivesNothingForAMarkAlone) { EXPECT_EQ(DecodeTextString("\xFE\xFF"s), ""); }

TEST(DecodeName, KeepsUtf8) { EXPECT_EQ(DecodeName("Flie\xC3\x9Ftext"), "Flie\u00DFtext"); }

TEST(DecodeName, ReadsOtherBytesAsPDFDocEncoding) { EXPECT_EQ(DecodeName("Flie\xDFtext"), "Flie\u00DFtext"); }

TEST(IsUtf8, RefusesOverlongFormsSurrogatesAndCutOffCharacters) {
  EXPECT_TRUE(IsUtf8("a\u00E9\u20AC\U0001D465"));
  EXPECT_FALSE(IsUtf8("\xC0\xAF"));
  EXPECT_FALSE(IsUtf8("\xE0\x80\xAF"));
  EXPECT_FALSE(IsUtf8("\xED\xA0\x80"));
  EXPECT_FALSE(IsUtf8("\xF4\x90\x80\x80"));
  EXPECT_FALSE(IsUtf8("\xE2\x82"));
}

TEST(ForTerminal, EscapesWhatATerminalActsOn) {
  EXPECT_EQ(ForTerminal("a\x1B[2J\n\t\u009B\u202E", 60), "a\\u001b[2J\\n\\t\\u009b\\u202e");
}

TEST(ForTerminal, CutsAfterCharactersNotBytes) { EXPECT_EQ(ForTerminal("\u00E9\u00E9\u00E9", 2), "\u00E9\u00E9\u2026"); }

TEST(ForTerminal, KeepsTextOfTheExactLength) { EXPECT_EQ(ForTerminal("\u00E9\u00E9", 2), "\u00E9\u00E9"); }

}  // namespace
}  // namespace tgx::tool
