#include "src/common/KidSequence.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace tgx {
namespace {

int PlaceAmong(const std::vector<std::uint64_t>& kids, std::uint64_t kid) {
  const auto at = std::find(kids.begin(), kids.end(), kid);
  return at == kids.end() ? -1 : static_cast<int>(at - kids.begin());
}

TEST(KidSequence, FindsTheFirstPlaceWhateverComesAndGoes) {
  for (const unsigned differentKids : {1U, 3U, 100U, 100'000U}) {
    std::minstd_rand random(differentKids);
    std::vector<std::uint64_t> kids(2000);
    for (std::uint64_t& kid : kids) kid = random() % differentKids;
    KidSequence sequence(kids);
    for (int i = 0; i < 6000; ++i) {
      const std::size_t place = random() % kids.size();
      // First they grow, then they shrink.
      if (random() % 4 == 0 ? i < 3000 : i >= 3000) {
        kids.erase(kids.begin() + static_cast<std::ptrdiff_t>(place));
        sequence.Erase(place);
      } else {
        const std::uint64_t kid = random() % differentKids;
        kids.insert(kids.begin() + static_cast<std::ptrdiff_t>(place), kid);
        sequence.Insert(place, kid);
      }
      ASSERT_EQ(sequence.Size(), kids.size());
      const std::uint64_t other = random() % (differentKids + 1);
      ASSERT_EQ(sequence.FirstPlaceOf(other), PlaceAmong(kids, other)) << differentKids << " different kids, edit " << i;
    }
  }
}

TEST(KidSequence, OfNoKidsTakesThemIn) {
  KidSequence sequence({});
  EXPECT_EQ(sequence.FirstPlaceOf(7), -1);
  sequence.Insert(0, 7);
  EXPECT_EQ(sequence.FirstPlaceOf(7), 0);
  sequence.Erase(0);
  EXPECT_EQ(sequence.FirstPlaceOf(7), -1);
  EXPECT_EQ(sequence.Size(), 0U);
}

TEST(KidSequence, TellsWhatStandsInOnePlace) {
  std::vector<std::uint64_t> kids(2000);
  std::iota(kids.begin(), kids.end(), 0);
  kids.insert(kids.end(), {7, 1998});
  const KidSequence sequence(kids);
  EXPECT_TRUE(sequence.HasOnce(8));
  EXPECT_FALSE(sequence.HasOnce(7));     // far apart
  EXPECT_FALSE(sequence.HasOnce(1998));  // side by side
  EXPECT_FALSE(sequence.HasOnce(2000));
}

}  // namespace
}  // namespace tgx
