#include "src/common/KidFinder.h"

#include <random>

#include "src/common/StructureUtils.h"
#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"

namespace tgx {
namespace {

using test::Element;

constexpr int kManyKids = 1500;

class KidFinderTest : public test::StructureTest {
 protected:
  /// Opens a document with an element of that many kids.
  PDSElement OpenParentOf(int count) {
    doc.AddPage();
    Element parent("Sect");
    for (int i = 0; i < count; ++i) parent.Add(Element("P"));
    doc.Tree({parent, Element("Div")({Element("Span")})});
    Open();
    return Top();
  }
  void ExpectAllFound(PDSElement parent) {
    const ASInt32 count = PDSElementGetNumKids(parent);
    for (ASInt32 index = 0; index < count; ++index) {
      const CosObj kid = Kid(parent, index);
      ASSERT_EQ(finder.IndexOf(parent, kid), GetKidIndex(parent, kid)) << "at " << index;
    }
  }
  PDSElement NewElement() {
    PDSElement element = CosNewNull();
    PDSElementCreate(Opened().Handle(), &element);
    return element;
  }

  KidFinder finder;
};

TEST_F(KidFinderTest, AnswersAsTheSearchThroughAllKids) {
  for (const int count : {1, 5, kManyKids}) {
    SCOPED_TRACE(count);
    const PDSElement parent = OpenParentOf(count);
    ExpectAllFound(parent);
    EXPECT_EQ(finder.IndexOf(parent, At({1, 0})), -1);
    EXPECT_EQ(finder.IndexOf(CosNewNull(), Kid(parent, 0)), -1);
  }
}

TEST_F(KidFinderTest, GivesTheFirstPlaceOfAKidThatStandsInSeveral) {
  doc.AddPage();
  doc.Object("twice", "<</S/P>>").Object("thrice", "<</S/P>>");
  Element parent("Sect");
  for (int i = 0; i < kManyKids; ++i) {
    if (i == 3 || i == 1200) parent.RawKid("$twice");
    if (i == 700 || i == 701 || i == 1400) parent.RawKid("$thrice");
    parent.Add(Element("P"));
  }
  doc.Tree({parent});
  Open();
  ExpectAllFound(Top());
  const CosObj thrice = Kid(Top(), 701);
  EXPECT_EQ(finder.IndexOf(Top(), thrice), 701);
  finder.Remove(Top(), thrice);
  EXPECT_EQ(finder.IndexOf(Top(), thrice), 702);
  ExpectAllFound(Top());
}

TEST_F(KidFinderTest, FollowsItsOwnEdits) {
  const PDSElement parent = OpenParentOf(kManyKids);
  std::minstd_rand random(7);
  const auto place = [&] { return static_cast<int>(random() % static_cast<unsigned>(PDSElementGetNumKids(parent))); };
  ExpectAllFound(parent);
  for (int i = 0; i < 2000; ++i) {
    const CosObj kid = Kid(parent, place());
    switch (random() % 4) {
      case 0:
        finder.Remove(parent, kid);
        break;
      case 1:
        finder.Replace(parent, kid, NewElement());
        break;
      default:
        finder.Insert(parent, NewElement(), place() - 1);
        break;
    }
    const CosObj other = Kid(parent, place());
    ASSERT_EQ(finder.IndexOf(parent, other), GetKidIndex(parent, other));
  }
  finder.Insert(parent, NewElement(), kPDSBeforeFirst);
  finder.Insert(parent, NewElement(), kPDSAfterLast);
  ExpectAllFound(parent);
}

TEST_F(KidFinderTest, FillsOnePlaceWithManyKids) {
  const PDSElement parent = OpenParentOf(100);
  ExpectAllFound(parent);
  for (int i = 0; i < kManyKids; ++i) finder.Insert(parent, NewElement(), 49);
  ExpectAllFound(parent);
  while (PDSElementGetNumKids(parent) > 0) finder.Remove(parent, Kid(parent, 0));
  finder.Insert(parent, NewElement(), kPDSAfterLast);
  ExpectAllFound(parent);
}

TEST_F(KidFinderTest, TakesNoteOfTheEditsOfOthers) {
  const PDSElement parent = OpenParentOf(kManyKids);
  ExpectAllFound(parent);
  PDSElementRemoveKid(parent, Kid(parent, 10));
  ExpectAllFound(parent);
  PDSElementReplaceKid(parent, Kid(parent, 5), NewElement());
  EXPECT_EQ(finder.IndexOf(parent, Kid(parent, 5)), 5);
  const CosObj last = Kid(parent, kManyKids - 2);
  PDSElementRemoveKid(parent, last);
  PDSElementInsertKid(parent, last, kPDSBeforeFirst);
  EXPECT_EQ(finder.IndexOf(parent, last), 0);
}

TEST_F(KidFinderTest, AsksTheHostOnceForEachKidWhateverTheOrder) {
  const PDSElement parent = OpenParentOf(kManyKids);
  std::vector<CosObj> kids;
  kids.reserve(kManyKids);
  for (int i = 0; i < kManyKids; ++i) kids.push_back(Kid(parent, i));
  std::shuffle(kids.begin(), kids.end(), std::minstd_rand(7));
  const test::RaisingHost host(test::EmbeddedTables(), 0);
  const test::HostSession session(host.Tables());
  for (const CosObj kid : kids) finder.IndexOf(parent, kid);
  EXPECT_LT(host.Calls(), std::size_t{10} * kManyKids);
}

}  // namespace
}  // namespace tgx
