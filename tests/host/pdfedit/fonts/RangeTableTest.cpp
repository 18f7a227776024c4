#include "host/pdfedit/fonts/RangeTable.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace tgx::host {
namespace {

int ValueAt(const RangeTable<int>& table, std::uint32_t code) {
  const int* value = table.Find(code);
  return value == nullptr ? -1 : *value;
}

TEST(RangeTable, FindsTheRangeOfACode) {
  RangeTable<int> table;
  table.Add(10, 19, 1);
  table.Add(30, 30, 2);
  table.Seal();
  EXPECT_EQ(ValueAt(table, 9), -1);
  EXPECT_EQ(ValueAt(table, 10), 1);
  EXPECT_EQ(ValueAt(table, 19), 1);
  EXPECT_EQ(ValueAt(table, 20), -1);
  EXPECT_EQ(ValueAt(table, 30), 2);
  EXPECT_EQ(ValueAt(table, 31), -1);
}

TEST(RangeTable, OrderOfAdditionDoesNotMatterWithoutOverlap) {
  RangeTable<int> table;
  table.Add(30, 39, 3);
  table.Add(10, 19, 1);
  table.Seal();
  EXPECT_EQ(ValueAt(table, 15), 1);
  EXPECT_EQ(ValueAt(table, 35), 3);
}

TEST(RangeTable, LaterRangesCoverEarlierOnes) {
  RangeTable<int> table;
  table.Add(0, 99, 1);
  table.Add(40, 59, 2);
  table.Add(50, 50, 3);
  table.Seal();
  EXPECT_EQ(ValueAt(table, 39), 1);
  EXPECT_EQ(ValueAt(table, 40), 2);
  EXPECT_EQ(ValueAt(table, 50), 3);
  EXPECT_EQ(ValueAt(table, 59), 2);
  EXPECT_EQ(ValueAt(table, 60), 1);
}

TEST(RangeTable, ReachesBothEndsOfTheCodes) {
  RangeTable<int> table;
  table.Add(0, 0xFFFFFFFF, 1);
  table.Add(0xFFFFFFFF, 0xFFFFFFFF, 2);
  table.Add(0, 0, 3);
  table.Seal();
  EXPECT_EQ(ValueAt(table, 0), 3);
  EXPECT_EQ(ValueAt(table, 1), 1);
  EXPECT_EQ(ValueAt(table, 0xFFFFFFFF), 2);
}

TEST(RangeTable, IgnoresRangesThatEndBeforeTheyBegin) {
  RangeTable<int> table;
  table.Add(5, 4, 1);
  table.Seal();
  EXPECT_TRUE(table.IsEmpty());
}

TEST(RangeTable, IsAMapInWhichTheLastOneWins) {
  std::mt19937 random(1);
  for (int round = 0; round < 200; ++round) {
    RangeTable<int> table;
    std::map<std::uint32_t, int> expected;
    for (int i = 0; i < 20; ++i) {
      const std::uint32_t first = random() % 100;
      const std::uint32_t last = first + random() % 20;
      table.Add(first, last, i);
      for (std::uint32_t code = first; code <= last; ++code) expected[code] = i;
    }
    table.Seal();
    for (std::uint32_t code = 0; code < 130; ++code) {
      EXPECT_EQ(ValueAt(table, code), expected.contains(code) ? expected[code] : -1);
    }
  }
}

TEST(RangeTable, StaysSmallUnderManyOverlaps) {
  RangeTable<int> table;
  constexpr int kCount = 100000;
  for (int i = 0; i < kCount; ++i)
    table.Add(static_cast<std::uint32_t>(kCount - i), kCount + static_cast<std::uint32_t>(i), i);
  table.Seal();
  EXPECT_LE(table.Count(), 2u * kCount);
  EXPECT_EQ(ValueAt(table, kCount), kCount - 1);
}

}  // namespace
}  // namespace tgx::host
