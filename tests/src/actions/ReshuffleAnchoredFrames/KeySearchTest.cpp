#include "src/actions/ReshuffleAnchoredFrames/KeySearch.h"

#include <gmock/gmock.h>

#include <random>
#include <string>

namespace tgx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr std::size_t kLongest = 100;  // text of a test

TEST(KeySearch, FindsAKeyAnywhereInTheText) {
  KeySearch search({"one", "two", "three"}, kLongest);
  EXPECT_THAT(search.KeysIn("xxtwoxxone"), UnorderedElementsAre(0, 1));
}

TEST(KeySearch, FindsAKeyInsideAnother) {
  KeySearch search({"abcd", "bc", "c"}, kLongest);
  EXPECT_THAT(search.KeysIn("abcx"), UnorderedElementsAre(1, 2));
}

TEST(KeySearch, FindsAKeyThatBeginsInABrokenOffOne) {
  KeySearch search({"aab"}, kLongest);
  EXPECT_THAT(search.KeysIn("aaab"), ElementsAre(0));
}

TEST(KeySearch, NamesAKeyOnceHoweverOftenItStands) {
  KeySearch search({"a"}, kLongest);
  EXPECT_THAT(search.KeysIn("aaa"), ElementsAre(0));
}

TEST(KeySearch, NamesEqualKeysApart) {
  KeySearch search({"a", "a"}, kLongest);
  EXPECT_THAT(search.KeysIn("a"), UnorderedElementsAre(0, 1));
}

TEST(KeySearch, FindsTheEmptyKeyInEveryText) {
  KeySearch search({"", "a"}, kLongest);
  EXPECT_THAT(search.KeysIn(""), ElementsAre(0));
  EXPECT_THAT(search.KeysIn("b"), ElementsAre(0));
}

TEST(KeySearch, ForgetsTheTextBefore) {
  KeySearch search({"ab"}, kLongest);
  EXPECT_THAT(search.KeysIn("a"), IsEmpty());
  EXPECT_THAT(search.KeysIn("b"), IsEmpty());
  EXPECT_THAT(search.KeysIn("ab"), ElementsAre(0));
  EXPECT_THAT(search.KeysIn("ab"), ElementsAre(0));
}

TEST(KeySearch, AgreesWithASearchForEachKey) {
  std::mt19937 random(7);
  const auto text = [&](std::size_t most) {
    std::string letters(random() % (most + 1), '\0');
    for (char& letter : letters) letter = static_cast<char>('a' + random() % 2);
    return letters;
  };
  for (int round = 0; round < 200; ++round) {
    std::vector<std::string> keys(8);
    for (std::string& key : keys) key = text(5);
    KeySearch search({keys.begin(), keys.end()}, kLongest);
    for (int i = 0; i < 5; ++i) {
      const std::string in = text(12);
      std::vector<std::size_t> expected;
      for (std::size_t key = 0; key < keys.size(); ++key) {
        if (in.find(keys[key]) != std::string::npos) expected.push_back(key);
      }
      EXPECT_THAT(search.KeysIn(in), testing::UnorderedElementsAreArray(expected)) << in;
    }
  }
}

TEST(KeySearch, GivesNoRoomToKeysThatNoTextCanHold) {
  const std::string longKey(1000, 'a');
  KeySearch search({longKey, "aa"}, 999);
  EXPECT_EQ(search.NodeCount(), 3U);
  EXPECT_THAT(search.KeysIn(std::string(999, 'a')), ElementsAre(1));
}

}  // namespace
}  // namespace tgx
