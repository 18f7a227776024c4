#include "host/pdfedit/fonts/Font.h"

#include <gtest/gtest.h>

namespace tgx::host {
namespace {

TEST(Font, SimpleFontsHaveOneByteCodes) {
  auto font = Font::Read(QPDFObjectHandle::parse("<</Subtype /TrueType /FirstChar 65 /Widths [500 250]>>"));
  const Font::Code code = font->NextCode("AB");
  EXPECT_EQ(code.length, 1);
  EXPECT_EQ(code.value, 65u);
  EXPECT_DOUBLE_EQ(font->Advance(code), 0.5);
  EXPECT_DOUBLE_EQ(font->Advance(font->NextCode("B")), 0.25);
}

TEST(Font, CodeIsNeverLongerThanTheBytesLeft) {
  auto font = Font::Read(QPDFObjectHandle::parse("<</Subtype /Type0 /Encoding /Identity-H>>"));
  EXPECT_EQ(font->NextCode("ab").length, 2);
  EXPECT_EQ(font->NextCode("a").length, 1);
}

}  // namespace
}  // namespace tgx::host
