#include "host/pdsedit/KidList.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace tgx::host::structure {
namespace {

std::vector<ASUns32> PlacesOf(const KidList& kids) {
  std::vector<ASUns32> places;
  for (ASUns32 i = 0; i < kids.Size(); ++i) places.push_back(kids[i].place);
  return places;
}

Kid KidWith(ASUns32 place) { return {KidKind::kNumber, place, 0, kNoPage}; }

TEST(KidList, BehavesLikeAVectorUnderRandomEdits) {
  std::mt19937 random(4711);
  KidList kids;
  std::vector<ASUns32> model;
  for (ASUns32 step = 0; step < 5000; ++step) {
    if (model.empty() || random() % 100 < 55) {
      const ASUns32 index = random() % (model.size() + 1);
      kids.Insert(index, KidWith(step));
      model.insert(model.begin() + index, step);
    } else {
      const ASUns32 index = random() % model.size();
      kids.Erase(index);
      model.erase(model.begin() + index);
    }
    ASSERT_EQ(PlacesOf(kids), model) << "step " << step;
  }
}

TEST(KidList, KeepsEveryPartOfAKid) {
  KidList kids;
  kids.Append({KidKind::kReference, 3, -12, 134'000'000});
  kids.Append({KidKind::kOther, 4, 2'000'000'000, -134'000'000});
  EXPECT_EQ(kids[0].Kind(), KidKind::kReference);
  EXPECT_EQ(kids[0].mcid, -12);
  EXPECT_EQ(kids[0].page, 134'000'000);
  EXPECT_EQ(kids[1].Kind(), KidKind::kOther);
  EXPECT_EQ(kids[1].page, -134'000'000);
}

TEST(KidList, InsertsAKidOfItsOwnWhileItGrows) {
  KidList kids;
  kids.Append(KidWith(7));
  for (int i = 0; i < 20; ++i) kids.Insert(0, kids[kids.Size() - 1]);
  EXPECT_EQ(PlacesOf(kids), std::vector<ASUns32>(21, 7));
}

TEST(KidList, PointsAtTheLastEdit) {
  KidList kids;
  for (ASUns32 i = 0; i < 10; ++i) kids.Append(KidWith(i));
  kids.Erase(4);
  EXPECT_EQ(kids.LastEdit(), 4U);
  kids.Erase(3);
  EXPECT_EQ(kids.LastEdit(), 3U);
  while (kids.Size() > 0) kids.Erase(kids.Size() - 1);
  EXPECT_EQ(kids.LastEdit(), 0U);
}

}  // namespace
}  // namespace tgx::host::structure
