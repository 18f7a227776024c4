#include "src/actions/Toc/TocTexts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/OpenDocument.h"
#include "tests/support/StateFolder.h"

namespace tgx {
namespace {

using namespace std::string_literals;

std::string Stripped(std::string text) {
  stripControls(text);
  return text;
}

TEST(StripControls, TakesTabsAndCarriageReturnsOut) {
  EXPECT_EQ(Stripped("\0A\0\t\0\r\0B\0\n"s), "\0A\0B\0\n"s);
  EXPECT_EQ(Stripped(""), "");
}

TEST(StripControls, TakesPairsThatStraddleTwoCharactersToo) {
  EXPECT_EQ(Stripped("\1\0\r\x41"s), "\1\x41"s);
  EXPECT_EQ(Stripped("\1\0\t\x41"s), "\1\x41"s);
}

TEST(StripControls, LeavesNoPairThatArisesFromTheRemoval) {
  EXPECT_EQ(Stripped("\0\0\r\r"s), "");
  EXPECT_EQ(Stripped("\0\0\r\t"s), "");
}

TEST(StripControls, IsThroughWithCarriageReturnsWhenItTakesTabs) { EXPECT_EQ(Stripped("\0\0\t\r"s), "\0\r"s); }

TEST(HoldsBytes, FindsBytesAnywhere) {
  EXPECT_TRUE(HoldsBytes("\0A\0B"s, "A\0"s));
  EXPECT_TRUE(HoldsBytes("AB", "AB"));
  EXPECT_FALSE(HoldsBytes("AB", "ABC"));
  EXPECT_FALSE(HoldsBytes("AB", "BA"));
}

TEST(HoldsBytes, FindsTheEmptyTextInEveryTextThatIsNotEmpty) {
  EXPECT_TRUE(HoldsBytes("A", ""));
  EXPECT_FALSE(HoldsBytes("", ""));
}

TEST(HoldsBytes, FindsBytesInLongTextsThatNearlyMatch) {
  const std::string text(1000000, 'A');
  EXPECT_FALSE(HoldsBytes(text, std::string(300000, 'A') + "B"));
  EXPECT_TRUE(HoldsBytes(text + "B", std::string(300000, 'A') + "B"));
  EXPECT_TRUE(HoldsBytes(text, std::string(1000000, 'A')));
}

TEST(BytesFinder, FindsBytesAcrossPieces) {
  BytesFinder finder("ABABC");
  EXPECT_FALSE(finder.Read("xABA"));
  EXPECT_FALSE(finder.Read(""));
  EXPECT_FALSE(finder.Read("BAB"));
  EXPECT_TRUE(finder.Read("C"));
}

/// What FindTitlePiece is to give, by its definition: one growing text.
std::ptrdiff_t PlainSearch(const std::vector<std::string>& titles, const std::vector<std::string>& pieces) {
  std::string text;
  for (const std::string& title : titles) {
    for (std::size_t piece = 0; piece < pieces.size(); ++piece) {
      text += pieces[piece];
      if (HoldsBytes(text, title)) return static_cast<std::ptrdiff_t>(piece);
    }
  }
  return -1;
}

TEST(FindTitlePiece, GivesWhatASearchInAGrowingTextGives) {
  const std::vector<std::vector<std::string>> rowsOfPieces = {
      {}, {""}, {"", "a"}, {"a"}, {"ab", "", "c"}, {"b", "a"}, {"a", "b", "ab", "aa"}, {"ca", "bc", "ab"}};
  const std::vector<std::string> titles = {"",    "a",         "ab",          "bca", "caab",
                                           "aba", "cabcabcab", "bababababab", "zz",  "abcabcabca"};
  for (const auto& pieces : rowsOfPieces) {
    for (const auto& first : titles) {
      for (const auto& second : titles) {
        for (const auto& third : titles) {
          const std::vector<std::string> row = {first, second, third};
          ASSERT_EQ(FindTitlePiece(row, pieces.size(), [&](std::size_t piece) { return pieces[piece]; }),
                    PlainSearch(row, pieces))
              << first << " " << second << " " << third;
        }
      }
    }
  }
}

TEST(FindTitlePiece, ReadsNoMoreThanItNeeds) {
  int reads = 0;
  const auto read = [&](std::size_t) {
    ++reads;
    return "a"s;
  };
  EXPECT_EQ(FindTitlePiece({"aa"}, 1000, read), 1);
  EXPECT_EQ(reads, 2);
  EXPECT_EQ(FindTitlePiece({}, 1000, read), -1);
  EXPECT_EQ(reads, 2);
}

TEST(TocTexts, FindsTheLevelOfTheFirstEntryInTheOrderOfTheFile) {
  test::UseOwnStateFolder();
  const test::HostSession session;
  TocItem first;
  first.entries = {{3, {}, {}, {"x", "b"}}};
  TocItem second;
  second.title = "T\t";
  second.entries = {{4, {}, {}, {"ab"}}, {5, {}, {}, {"c"}}};
  const TocTexts texts({first, second});
  EXPECT_EQ(texts.matchLevel("\0a\0b"s), 3);
  EXPECT_EQ(texts.matchLevel("\0c"s), 5);
  EXPECT_EQ(texts.matchLevel("\0d"s), -1);
  EXPECT_EQ(texts.matchLevel(""), -1);
  EXPECT_EQ(texts.Titles(), (std::vector<std::string>{"", "\0T"s}));
}

}  // namespace
}  // namespace tgx
