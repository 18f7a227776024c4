#include <gtest/gtest.h>

#include "tests/host/pdsedit/StructureFixture.h"

namespace tgx::host::structure {
namespace {

/// Document > A B C, where B holds D.
std::string LettersFile() {
  TestDocument source;
  source.AddPage();
  source.Tree({Element("Document")({Element("A"), Element("B")({Element("D")}), Element("C")})});
  return source.Write();
}

struct Letters {
  StructureDocument document{LettersFile()};
  PDSElement top = document.At({0});
};

TEST(InsertKid, PutsTheKidAfterTheKidAtTheIndex) {
  Letters letters;
  Write().PDSElementInsertKid(letters.top, letters.document.NewElement("N"), 0);
  EXPECT_EQ(KidsOf(letters.top), "A N B C");
}

TEST(InsertKid, PutsTheKidBeforeTheFirst) {
  Letters letters;
  Write().PDSElementInsertKid(letters.top, letters.document.NewElement("N"), kPDSBeforeFirst);
  EXPECT_EQ(KidsOf(letters.top), "N A B C");
}

TEST(InsertKid, TakesAnyIndexFromTheLastKidOnAsTheEnd) {
  for (const ASInt32 index : {2, 3, 57, static_cast<ASInt32>(kPDSAfterLast), 0x7FFFFFFF}) {
    Letters letters;
    Write().PDSElementInsertKid(letters.top, letters.document.NewElement("N"), index);
    EXPECT_EQ(KidsOf(letters.top), "A B C N") << index;
  }
}

TEST(InsertKid, IgnoresTheIndexUnderAParentWithoutKids) {
  Letters letters;
  const PDSElement parent = letters.document.NewElement("Parent");
  Write().PDSElementInsertKid(parent, letters.document.NewElement("N"), 41);
  EXPECT_EQ(KidsOf(parent), "N");
}

TEST(InsertKid, RaisesForAnIndexBelowBeforeFirst) {
  Letters letters;
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertKid(letters.top, letters.document.NewElement("N"), -2); }),
            kASOutOfRange);
  EXPECT_EQ(KidsOf(letters.top), "A B C");
}

TEST(InsertKid, GivesTheKidItsParent) {
  Letters letters;
  const PDSElement kid = letters.document.NewElement("N");
  EXPECT_EQ(ParentOf(kid), kNullObject);
  Write().PDSElementInsertKid(letters.top, kid, 0);
  EXPECT_EQ(ParentOf(kid), letters.top);
}

TEST(InsertKid, AtOneIndexLastFirstGivesTheOriginalOrder) {
  Letters letters;
  for (const char* type : {"Z", "Y", "X"}) {
    Write().PDSElementInsertKid(letters.top, letters.document.NewElement(type), 0);
  }
  EXPECT_EQ(KidsOf(letters.top), "A X Y Z B C");
}

TEST(InsertKid, LeavesTheKidInItsFormerParent) {
  Letters letters;
  const PDSElement kid = letters.document.At({0, 1, 0});
  Write().PDSElementInsertKid(letters.top, kid, 0);
  EXPECT_EQ(KidsOf(letters.top), "A D B C");
  EXPECT_EQ(KidsOf(letters.document.At({0, 2})), "D");
  EXPECT_EQ(ParentOf(kid), letters.top);
}

TEST(InsertKid, RefusesToMakeAnElementItsOwnAncestor) {
  Letters letters;
  const PDSElement inner = letters.document.At({0, 1, 0});
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertKid(inner, letters.top, 0); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertKid(inner, inner, 0); }), kASBadParameter);
  EXPECT_EQ(KidsOf(inner), "");
}

TEST(InsertKid, RefusesACycleThroughAnElementThatStandsInTwoPlaces) {
  Letters letters;
  const PDSElement b = letters.document.At({0, 1});
  const PDSElement inner = letters.document.At({0, 1, 0});
  Write().PDSElementInsertKid(letters.document.At({0, 0}), inner, 0);  // D also below A
  Write().PDSElementRemoveKid(letters.document.At({0, 0}), inner);     // where it stands now is not known without a search
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertKid(inner, b, 0); }), kASBadParameter);
}

TEST(InsertKid, RefusesMoreLevelsThanCanBeReadAgain) {
  TestDocument source;
  source.AddPage();
  Element top("L");
  Element at = top;
  for (int i = 2; i <= 511; ++i) at = at.AddNew("L");
  source.Tree({top});
  StructureDocument document(source);
  const PDSElement bottom = document.At(std::vector<ASInt32>(511, 0));
  const PDSElement last = document.NewElement("P");
  Write().PDSElementInsertKid(bottom, last, kPDSAfterLast);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertKid(last, document.NewElement("P"), kPDSAfterLast); }),
            kASBadParameter);
  const PDSElement pair = document.NewElement("Sect");
  Write().PDSElementInsertKid(pair, document.NewElement("P"), kPDSAfterLast);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementReplaceKid(bottom, last, pair); }), kASBadParameter);
  EXPECT_EQ(KidsOf(bottom), "P");
  StructureDocument again(document.Save());
  EXPECT_EQ(Read().PDSTreeRootGetNumKids(again.Root()), 1);
}

TEST(InsertKid, TakesTheNullObjectForTheRootOfTheKidsDocument) {
  Letters letters;
  Write().PDSElementInsertKid(kNullObject, letters.document.NewElement("N"), 0);
  EXPECT_EQ(KidsOf(letters.document.Root()), "Document N");
}

TEST(InsertKid, RaisesForTheTreeRootAsKid) {
  Letters letters;
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertKid(letters.top, letters.document.Root(), 0); }), kASWrongType);
}

TEST(InsertKid, RaisesForAKidOfAnotherDocument) {
  Letters letters, others;
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertKid(letters.top, others.top, 0); }), kASBadParameter);
}

TEST(RemoveKid, TakesTheKidAndItsParentAway) {
  Letters letters;
  const PDSElement kid = letters.document.At({0, 1});
  Write().PDSElementRemoveKid(letters.top, kid);
  EXPECT_EQ(KidsOf(letters.top), "A C");
  EXPECT_EQ(ParentOf(kid), kNullObject);
  EXPECT_EQ(KidsOf(kid), "D");
}

TEST(RemoveKid, RaisesForAKidThatDoesNotStandThere) {
  Letters letters;
  const PDSElement inner = letters.document.At({0, 1, 0});
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementRemoveKid(letters.top, inner); }), kASNotFound);
  EXPECT_EQ(ParentOf(inner), letters.document.At({0, 1}));
}

TEST(RemoveKid, TakesTheFirstOfTwoPlaces) {
  Letters letters;
  const PDSElement a = letters.document.At({0, 0});
  Write().PDSElementInsertKid(letters.top, a, kPDSAfterLast);
  Write().PDSElementRemoveKid(letters.top, a);
  EXPECT_EQ(KidsOf(letters.top), "B C A");
}

TEST(RemoveKid, TakesTopLevelElementsByANullParent) {
  Letters letters;
  Write().PDSElementRemoveKid(kNullObject, letters.top);
  EXPECT_EQ(Read().PDSTreeRootGetNumKids(letters.document.Root()), 0);
}

TEST(RemoveKid, ThenInsertedAgainElsewhereIsAMove) {
  Letters letters;
  const PDSElement kid = letters.document.At({0, 1});
  Write().PDSElementRemoveKid(letters.top, kid);
  Write().PDSElementInsertKid(letters.document.At({0, 0}), kid, 0);
  EXPECT_EQ(letters.document.SavedTree(), "Document\n  A\n    B\n      D\n  C\n");
}

TEST(RemoveKid, OfTheFirstKidEndsALoop) {
  Letters letters;
  int rounds = 0;
  while (Read().PDSElementGetNumKids(letters.top) > 0 && rounds < 10) {
    Write().PDSElementRemoveKid(letters.top, KidOf(letters.top, 0).kid);
    ++rounds;
  }
  EXPECT_EQ(rounds, 3);
}

TEST(ReplaceKid, PutsTheNewElementInThePlaceOfTheOld) {
  Letters letters;
  const PDSElement old = letters.document.At({0, 1});
  const PDSElement inner = letters.document.At({0, 1, 0});
  Write().PDSElementRemoveKid(old, inner);
  Write().PDSElementReplaceKid(letters.top, old, inner);
  EXPECT_EQ(KidsOf(letters.top), "A D C");
  EXPECT_EQ(ParentOf(old), kNullObject);
  EXPECT_EQ(ParentOf(inner), letters.top);
}

TEST(ReplaceKid, LeavesTheNewElementInItsFormerParent) {
  Letters letters;
  const PDSElement inner = letters.document.At({0, 1, 0});
  Write().PDSElementReplaceKid(letters.top, letters.document.At({0, 0}), inner);
  EXPECT_EQ(KidsOf(letters.top), "D B C");
  EXPECT_EQ(KidsOf(letters.document.At({0, 1})), "D");
}

TEST(ReplaceKid, TakesTopLevelElementsByANullParent) {
  Letters letters;
  Write().PDSElementReplaceKid(kNullObject, letters.top, letters.document.NewElement("N"));
  EXPECT_EQ(KidsOf(letters.document.Root()), "N");
}

TEST(ReplaceKid, RaisesForAnElementThatDoesNotStandThere) {
  Letters letters;
  const PDSElement inner = letters.document.At({0, 1, 0});
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementReplaceKid(letters.top, inner, letters.document.NewElement("N")); }),
            kASNotFound);
}

TEST(ReplaceKid, RefusesToMakeAnElementItsOwnAncestor) {
  Letters letters;
  const PDSElement b = letters.document.At({0, 1});
  EXPECT_EQ(RaisedCode([&] {
              Write().PDSElementReplaceKid(b, letters.document.At({0, 1, 0}), letters.top);
            }),
            kASBadParameter);
  EXPECT_EQ(KidsOf(b), "D");
}

}  // namespace
}  // namespace tgx::host::structure
