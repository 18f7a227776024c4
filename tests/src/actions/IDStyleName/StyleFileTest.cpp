#include "src/actions/IDStyleName/StyleFile.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/OpenDocument.h"

namespace tgx {
namespace {

class DecodeStyleNameTest : public testing::Test {
 private:
  test::HostSession session_;
};

TEST_F(DecodeStyleNameTest, ReadsUnitsOfUtf16) {
  EXPECT_EQ(DecodeStyleName("0041"), "A");
  EXPECT_EQ(DecodeStyleName("00DF20AC"), "\u00DF\u20AC");
  EXPECT_EQ(DecodeStyleName("D83DDE00"), "\U0001F600");
}

TEST_F(DecodeStyleNameTest, IsEmptyForAnOddNumberOfBytes) {
  EXPECT_EQ(DecodeStyleName("41"), "");
  EXPECT_EQ(DecodeStyleName("004142"), "");
  EXPECT_EQ(DecodeStyleName(""), "");
}

TEST_F(DecodeStyleNameTest, AlignsOnTheLastDigit) { EXPECT_EQ(DecodeStyleName("041"), "A"); }

TEST_F(DecodeStyleNameTest, EndsAtTheFirstZeroUnit) { EXPECT_EQ(DecodeStyleName("004100000042"), "A"); }

TEST_F(DecodeStyleNameTest, CountsTheBytesThatSkippedCharactersLeaveBehind) {
  EXPECT_EQ(DecodeStyleName("0041 0042"), "") << "five bytes";
  EXPECT_EQ(DecodeStyleName("00:41:00:42:"), "") << "six bytes, and the first unit is zero";
}

TEST(IDStyleMap, KeepsTheOrderOfFirstSetting) {
  IDStyleMap map;
  map.Set("b", "1");
  map.Set("a", "2");
  map.Set("b", "3");
  std::string text;
  for (const auto& [key, value] : map) text += key + value + " ";
  EXPECT_EQ(text, "b3 a2 ");
}

TEST(IDStyleMap, AddsAnEmptyValueForAKeyThatIsAskedFor) {
  IDStyleMap map;
  EXPECT_FALSE(map.Contains("a"));
  EXPECT_EQ(map.Get("a"), "");
  EXPECT_TRUE(map.Contains("a"));
}

TEST(IDStyleMap, ForgetsEverything) {
  IDStyleMap map;
  map.Set("a", "1");
  map.Clear();
  EXPECT_FALSE(map.Contains("a"));
  EXPECT_EQ(map.begin(), map.end());
}

}  // namespace
}  // namespace tgx
