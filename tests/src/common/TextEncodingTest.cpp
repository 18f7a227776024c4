#include "src/common/TextEncoding.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "tests/support/OpenDocument.h"

namespace tgx {
namespace {

ByteVector Base64(const std::string& text) {
  ByteVector bytes = {0x55};
  Base64Decode(text, bytes);
  return bytes;
}

ByteVector Hex(const std::string& text) {
  ByteVector bytes = {0x55};
  HexDecode(text, bytes);
  return bytes;
}

ByteVector Utf16Of(const std::string& utf8) {
  const test::HostSession session;
  ByteVector bytes = {0x55};
  Utf8ToUtf16(utf8, bytes);
  return bytes;
}

TEST(Utf8ToUtf16, WritesTheHighByteFirstAndNoMark) {
  EXPECT_EQ(Utf16Of("A\u00df"), (ByteVector{0x00, 0x41, 0x00, 0xDF}));
  EXPECT_EQ(Utf16Of("\U0001f600"), (ByteVector{0xD8, 0x3D, 0xDE, 0x00}));
}

TEST(Utf8ToUtf16, GivesNothingForNothing) { EXPECT_TRUE(Utf16Of("").empty()); }

TEST(Utf8ToUtf16, TakesBytesThatAreNoUtf8WithoutHarm) {
  EXPECT_EQ(Utf16Of("A\xFC"
                    "B")
                    .size() %
                2,
            0U);
  EXPECT_EQ(Utf16Of("\xC3").size() % 2, 0U);
}

TEST(StripBom, TakesEitherMarkOff) {
  ByteVector big = {0xFE, 0xFF, 0x00, 0x41};
  ByteVector little = {0xFF, 0xFE, 0x41, 0x00};
  EXPECT_TRUE(StripBom(big));
  EXPECT_TRUE(StripBom(little));
  EXPECT_EQ(big, (ByteVector{0x00, 0x41}));
  EXPECT_EQ(little, (ByteVector{0x41, 0x00}));
}

TEST(StripBom, LeavesNothingOfTheMarkAlone) {
  ByteVector text = {0xFE, 0xFF};
  EXPECT_TRUE(StripBom(text));
  EXPECT_TRUE(text.empty());
}

TEST(StripBom, TakesOneMarkOnly) {
  ByteVector text = {0xFE, 0xFF, 0xFE, 0xFF};
  EXPECT_TRUE(StripBom(text));
  EXPECT_EQ(text, (ByteVector{0xFE, 0xFF}));
}

TEST(StripBom, LeavesTextWithoutMark) {
  ByteVector single = {0xFE};
  ByteVector halves = {0xFE, 0xFE, 0xFF};
  EXPECT_FALSE(StripBom(single));
  EXPECT_FALSE(StripBom(halves));
  EXPECT_EQ(single, (ByteVector{0xFE}));
  EXPECT_EQ(halves, (ByteVector{0xFE, 0xFE, 0xFF}));
}

TEST(StripZeroBytes, DropsThemWhereverTheyStand) {
  EXPECT_EQ(StripZeroBytes({0x00, 0x41, 0x00, 0x00, 0x42, 0x00}), "AB");
  EXPECT_EQ(StripZeroBytes({0x00}), "");
}

TEST(DropFirstTwo, LeavesTheRest) {
  ByteVector text = {0x01, 0x02, 0x03};
  DropFirstTwo(text);
  EXPECT_EQ(text, (ByteVector{0x03}));
}

TEST(DropFirstTwo, ThrowsWhereNothingWouldStay) {
  ByteVector text = {0x01, 0x02};
  try {
    DropFirstTwo(text);
    FAIL() << "nothing thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "wrong vector range");
  }
}

TEST(Base64Decode, DropsPaddingAndTheBitsThatFillNoByte) {
  EXPECT_EQ(Base64("QQ=="), (ByteVector{0x41}));
  EXPECT_EQ(Base64("QUI="), (ByteVector{0x41, 0x42}));
  EXPECT_EQ(Base64("QUJD"), (ByteVector{0x41, 0x42, 0x43}));
}

TEST(Base64Decode, SkipsLineBreaksAndOtherCharacters) {
  EXPECT_EQ(Base64("QU\r\nJD"), (ByteVector{0x41, 0x42, 0x43}));
  EXPECT_EQ(Base64("=Q-U_J D"), (ByteVector{0x41, 0x42, 0x43}));
}

TEST(Base64Decode, KnowsTheWholeAlphabet) {
  EXPECT_EQ(Base64("+/az09AZ"), (ByteVector{0xFB, 0xF6, 0xB3, 0xD3, 0xD0, 0x19}));
}

TEST(Base64Decode, GivesNothingForNothing) {
  EXPECT_TRUE(Base64("").empty());
  EXPECT_TRUE(Base64("====").empty());
  EXPECT_TRUE(Base64("Q").empty());
}

TEST(Base64Decode, GoesOnBehindPaddingInTheMiddle) { EXPECT_EQ(Base64("QQ==QUJD"), Base64("QQQUJD")); }

TEST(Base64Decode, ReadsNoFurtherThanTheLength) {
  ByteVector bytes;
  Base64Decode("QUJDQUJD", 4, bytes);
  EXPECT_EQ(bytes, (ByteVector{0x41, 0x42, 0x43}));
}

TEST(HexDecode, AlignsOnTheLastDigit) { EXPECT_EQ(Hex("abc"), (ByteVector{0x0A, 0xBC})); }

TEST(HexDecode, TakesBothCases) { EXPECT_EQ(Hex("0aF9"), (ByteVector{0x0A, 0xF9})); }

TEST(HexDecode, LeavesZeroBytesAtTheFrontForSkippedCharacters) {
  EXPECT_EQ(Hex("41-42 x"), (ByteVector{0x00, 0x00, 0x41, 0x42}));
  EXPECT_EQ(Hex("zz"), (ByteVector{0x00}));
}

TEST(HexDecode, GivesNothingForNothing) { EXPECT_TRUE(Hex("").empty()); }

TEST(HexEncode, WritesLowerCaseHighNibbleFirst) {
  ByteVector text = {0x55};
  HexEncode(ByteVector{0x0A, 0xBC, 0x00}, text);
  EXPECT_EQ(std::string(text.begin(), text.end()), "0abc00");
  EXPECT_EQ(HexEncode({0xFF, 0x10}), "ff10");
  EXPECT_EQ(HexEncode({}), "");
}

}  // namespace
}  // namespace tgx
