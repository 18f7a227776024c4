#include "host/pdfedit/model/ContentList.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tgx::host {
namespace {

class ContentLists : public testing::Test {
 protected:
  void TearDown() override { list_.Free(); }

  void Fill(std::uint32_t count) {
    list_ = ContentList::WithRoomFor(count, 0);
    for (std::uint32_t i = 0; i < count; ++i) list_.Insert(i, i);
  }
  std::vector<std::uint32_t> Items() const {
    std::vector<std::uint32_t> items;
    for (std::uint32_t i = 0; i < list_.size; ++i) items.push_back(list_.Item(i));
    return items;
  }

  ContentList list_ = ContentList::WithRoomFor(0, 0);
};

TEST_F(ContentLists, HoldWhatAVectorHoldsAfterTheSameEdits) {
  std::vector<std::uint32_t> expected;
  std::uint32_t random = 7;
  for (std::uint32_t step = 0; step < 3000; ++step) {
    random = random * 1664525U + 1013904223U;
    const bool removes = !expected.empty() && (random >> 30U) == (step / 1000 == 1 ? 0U : 1U);
    const std::size_t index = (random >> 8U) % (expected.size() + (removes ? 0 : 1));
    if (removes) {
      expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(index));
      list_.Remove(static_cast<std::uint32_t>(index));
    } else {
      expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(index), step);
      list_.Insert(static_cast<std::uint32_t>(index), step);
    }
    ASSERT_EQ(Items(), expected) << "step " << step;
  }
}

TEST_F(ContentLists, CanBeEmptiedAndFilledAgain) {
  Fill(10);
  while (list_.size > 0) list_.Remove(list_.size / 2);
  list_.Insert(0, 2);
  list_.Insert(0, 1);
  EXPECT_THAT(Items(), testing::ElementsAre(1, 2));
}

// An item that an edit does not move stays at its address.
TEST_F(ContentLists, LeaveItemsInPlaceThatAreNotBetweenTwoEdits) {
  Fill(100);
  list_.Remove(50);
  list_.many.items[99] = 1000;  // moving the tail would take this along
  list_.many.items[0] = 2000;
  list_.Remove(50);
  list_.Remove(49);
  list_.Insert(51, 7);
  EXPECT_EQ(list_.many.items[99], 1000U);
  EXPECT_EQ(list_.many.items[0], 2000U);
  EXPECT_EQ(list_.Item(list_.size - 1), 1000U);
  EXPECT_EQ(list_.Item(51), 7U);
}

}  // namespace
}  // namespace tgx::host
