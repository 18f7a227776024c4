#include "src/fixes/LangEncoderFix/LangForms.h"

#include <gtest/gtest.h>

namespace tgx {
namespace {

using std::string_literals::operator""s;

const std::string kTagOfDe = "\xFE\xFF\0\x0E\0\x7F\0\x0E\0d\0\x0E\0e\0\x0E\0\x01"s;

TEST(LangForms, WritesATagByteByByte) { EXPECT_EQ(BracketToTagForm("[Lang=de]"), kTagOfDe); }

TEST(LangForms, WritesATagWithoutACharacterForEmptyBrackets) {
  EXPECT_EQ(BracketToTagForm("[Lang=]"), "\xFE\xFF\0\x0E\0\x7F\0\x0E\0\x01"s);
}

TEST(LangForms, RemovesBracketsThatRemovingOthersMakes) {
  EXPECT_EQ(BracketToTagForm("[La[Lang=ng=x]"), "\xFE\xFF\0\x0E\0\x7F\0\x0E\0x\0\x0E\0\x01"s);
}

TEST(LangForms, RemovesBracketsFromWithinBracketsAtOnce) {
  // Twenty thousand deep: a pass for each would take too long to see its end.
  std::string opening;
  for (int i = 0; i < 20000; ++i) opening += "[Lan";
  for (int i = 0; i < 20000; ++i) opening += "g=";
  EXPECT_EQ(BracketToTagForm(opening), "\xFE\xFF\0\x0E\0\x7F\0\x0E\0\x01"s);
}

TEST(LangForms, WritesABracketFormOfATag) { EXPECT_EQ(TagToBracketForm(kTagOfDe), "[Lang=de]"); }

TEST(LangForms, KnowsATag) { EXPECT_TRUE(IsTagForm(kTagOfDe)); }

TEST(LangForms, KnowsNoTagWithoutItsZeroBytes) {
  EXPECT_FALSE(
      IsTagForm("\xFE\xFF\x0E\x7F\x0E"
                "d\x0E\x01"s));
}

TEST(LangForms, KnowsNoTagWhoseCloseMarkStandsFirst) {
  EXPECT_FALSE(IsTagForm("\xFE\xFF\0\x0E\0\x01\0\x0E\0d\0\x0E\0\x7F"s));
}

TEST(LangForms, KnowsNoTagWithTwoByteOrderMarks) { EXPECT_FALSE(IsTagForm("\xFE\xFF"s + kTagOfDe)); }

TEST(LangForms, KnowsABracketForm) { EXPECT_TRUE(IsBracketForm("[Lang=de]")); }

TEST(LangForms, KnowsABracketFormWhateverTheOrderOfTheBrackets) { EXPECT_TRUE(IsBracketForm("de]x[Lang=")); }

TEST(LangForms, KnowsNoBracketFormWithTwoLanguages) { EXPECT_FALSE(IsBracketForm("[Lang=de][Lang=fr]")); }

TEST(LangForms, KnowsNoBracketFormWithoutBrackets) {
  EXPECT_FALSE(IsBracketForm("en-US"));
  EXPECT_FALSE(IsBracketForm("[Lang=de"));
  EXPECT_FALSE(IsBracketForm("de]"));
}

}  // namespace
}  // namespace tgx
