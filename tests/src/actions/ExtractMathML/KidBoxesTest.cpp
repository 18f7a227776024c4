#include "src/actions/ExtractMathML/KidBoxes.h"

#include <algorithm>
#include <random>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

namespace tgx {
namespace {

using Edges = std::tuple<ASFixed, ASFixed, ASFixed, ASFixed>;

Edges EdgesOf(const ASFixedRect& box) { return {box.left, box.top, box.right, box.bottom}; }

/// One box after the other.
ASFixedRect BoxOver(const std::vector<KidBoxes::Kid>& kids) {
  ASFixedRect box = {};
  for (const KidBoxes::Kid& kid : kids) {
    if (EdgesOf(box) == Edges()) {
      box = kid.box;
      continue;
    }
    box.left = std::min(box.left, kid.box.left);
    box.right = std::max(box.right, kid.box.right);
    box.top = std::min(box.top, kid.box.top);
    box.bottom = std::min(box.bottom, kid.box.bottom);
  }
  return box;
}

/// Boxes of edges from `least` to 2, many of them all zero; some have one content.
std::vector<KidBoxes::Kid> SomeKids(std::mt19937& random, ASFixed least, const std::string& contents) {
  std::vector<KidBoxes::Kid> kids(random() % 9);
  const auto edge = [&] { return least + static_cast<ASFixed>(random() % static_cast<unsigned>(3 - least)); };
  for (KidBoxes::Kid& kid : kids) {
    kid.content = &contents[random() % contents.size()];
    if (random() % 3 != 0) kid.box = {edge(), edge(), edge(), edge()};
  }
  return kids;
}

class BoxesOfKids : public testing::TestWithParam<ASFixed> {};

TEST_P(BoxesOfKids, ComeToTheSameAsOneAfterTheOther) {
  std::mt19937 random(8);
  const std::string contents = "abcdefghij";
  for (int round = 0; round < 3000; ++round) {
    std::vector<KidBoxes::Kid> kids = SomeKids(random, GetParam(), contents);
    KidBoxes boxes(kids);
    while (true) {
      ASSERT_EQ(EdgesOf(boxes.Box()), EdgesOf(BoxOver(kids))) << "round " << round << ", " << kids.size() << " kids";
      if (kids.empty()) break;
      const void* const content = kids[random() % kids.size()].content;
      boxes.Remove(content);
      kids.erase(std::find_if(kids.begin(), kids.end(), [&](const KidBoxes::Kid& kid) { return kid.content == content; }));
    }
  }
}

// Boxes that never reach to the left of the origin become all zero again the more often.
INSTANTIATE_TEST_SUITE_P(OfEdges, BoxesOfKids, testing::Values(-2, 0));

TEST(KidBoxes, LeaveWhatTheyDoNotKnow) {
  const char content = 'a';
  KidBoxes boxes({{&content, {1, 2, 3, 4}}});
  boxes.Remove(&boxes);
  EXPECT_EQ(EdgesOf(boxes.Box()), Edges(1, 2, 3, 4));
  EXPECT_EQ(boxes.CountOf(&boxes), 0U);
  EXPECT_EQ(boxes.CountOf(&content), 1U);
}

}  // namespace
}  // namespace tgx
