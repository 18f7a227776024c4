#include <gtest/gtest.h>

#include "tests/host/pdsedit/StructureFixture.h"

namespace tgx::host::structure {
namespace {

using test::Page;

/// Two elements, the first of which holds a link, a reference to it and one that leads nowhere; MCIDs without content.
class ObjectKids : public testing::Test {
 protected:
  static std::string File() {
    TestDocument source;
    Page& page = source.AddPage();
    source.AddPage();
    const test::Annotation link = page.Link("https://example.org/").Named("link");
    source.Tree({Element("A")
                     .Set("Pg", "$page1")
                     .Object(link)
                     .RawKid("<</Type/OBJR/Obj 9999 0 R>>")
                     .Mcid(page, 70)
                     .RawKid("<</Type/MCR/Pg $page2/MCID 71>>"),
                 Element("B"), Element("C").RawKid("3").RawKid("<</Type/Foo>>")});
    return source.Write();
  }
  StructureDocument document_{File()};
  PDSElement a_ = document_.At({0});
  PDSElement b_ = document_.At({1});
  PDSElement c_ = document_.At({2});
  CosObj link_ = KidOf(a_, 0).kid;
};

TEST_F(ObjectKids, ReferenceIsADictionaryWithPageAndObject) {
  Write().PDSElementInsertOBJAsKid(b_, document_.PageObject(1), link_, 0);
  const CosObj reference = Cos().CosDictGetKeyString(b_, "K");
  EXPECT_EQ(Cos().CosNameValue(Cos().CosDictGetKeyString(reference, "Type")), Intern("OBJR"));
  EXPECT_EQ(Cos().CosDictGetKeyString(reference, "Pg"), document_.PageObject(1));
  EXPECT_EQ(Cos().CosDictGetKeyString(reference, "Obj"), link_);
  EXPECT_EQ(KidOf(b_, 0).kid, link_);
}

TEST_F(ObjectKids, ReferenceWithoutPageHasNone) {
  Write().PDSElementInsertOBJAsKid(b_, kNullObject, link_, 0);
  EXPECT_EQ(Cos().CosDictKnownKeyString(Cos().CosDictGetKeyString(b_, "K"), "Pg"), 0);
}

TEST_F(ObjectKids, ReferenceTakesItsPlaceLikeAnyKid) {
  Write().PDSElementInsertOBJAsKid(a_, document_.PageObject(0), link_, 2);
  EXPECT_EQ(KidsOf(a_), "OBJR OBJR MC OBJR MC");
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertOBJAsKid(a_, document_.PageObject(0), link_, -2); }), kASOutOfRange);
}

TEST_F(ObjectKids, DirectObjectBecomesIndirectWhereItStands) {
  const CosObj direct = Cos().CosNewDict(document_.Doc(), 0, 0);
  Cos().CosDictPutKeyString(document_.PageObject(0), "Holder", direct);
  Write().PDSElementInsertOBJAsKid(b_, document_.PageObject(0), direct, 0);
  EXPECT_EQ(Cos().CosObjIsIndirect(direct), 1);
  EXPECT_EQ(Cos().CosDictGetKeyString(document_.PageObject(0), "Holder"), direct);
  EXPECT_EQ(KidOf(b_, 0).kid, direct);
}

TEST_F(ObjectKids, InsertionRaisesForWhatIsNoObjectOrPage) {
  const CosObj number = Cos().CosNewInteger(document_.Doc(), 0, 4);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertOBJAsKid(b_, document_.PageObject(0), kNullObject, 0); }),
            kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertOBJAsKid(b_, document_.PageObject(0), number, 0); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertOBJAsKid(b_, link_, link_, 0); }), kASNotFound);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertOBJAsKid(document_.Root(), kNullObject, link_, 0); }), kASWrongType);
  EXPECT_EQ(Read().PDSElementGetNumKids(b_), 0);
}

TEST_F(ObjectKids, ReferenceIsRemovedByItsObject) {
  Write().PDSElementRemoveKidOBJR(a_, link_);
  EXPECT_EQ(KidsOf(a_), "OBJR MC MC");
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementRemoveKidOBJR(a_, link_); }), kASNotFound);
}

TEST_F(ObjectKids, NullObjectNamesTheReferenceThatLeadsNowhere) {
  Write().PDSElementRemoveKidOBJR(a_, kNullObject);
  EXPECT_EQ(KidsOf(a_), "OBJR MC MC");
  EXPECT_EQ(KidOf(a_, 0).kid, link_);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementRemoveKidOBJR(a_, kNullObject); }), kASNotFound);
}

TEST_F(ObjectKids, ReferenceIsRemovedAsAnyKidIs) {
  Write().PDSElementRemoveKid(a_, link_);
  EXPECT_EQ(KidsOf(a_), "OBJR MC MC");
  EXPECT_EQ(Cos().CosDictKnownKeyString(link_, "Type"), 1);
}

TEST_F(ObjectKids, NumbersAndOtherItemsAreRemovedByTheirObject) {
  Write().PDSElementRemoveKid(c_, KidOf(c_, 1).kid);
  EXPECT_EQ(KidsOf(c_), "MC");
  Write().PDSElementRemoveKid(c_, KidOf(c_, 0).kid);
  EXPECT_EQ(KidsOf(c_), "");
  Write().PDSElementRemoveKid(a_, KidOf(a_, 3).kid);
  EXPECT_EQ(KidsOf(a_), "OBJR OBJR MC");
}

TEST_F(ObjectKids, RemovalRaisesForTheNullObject) {
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementRemoveKid(a_, kNullObject); }), kASBadParameter);
}

TEST_F(ObjectKids, NullContainerNamesTheFirstContentOfThePageThatIsGone) {
  Write().PDSElementRemoveKidMC(a_, document_.PageObject(1), nullptr);
  EXPECT_EQ(KidsOf(a_), "OBJR OBJR MC");
  EXPECT_EQ(KidOf(a_, 2).mcid, 70);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementRemoveKidMC(a_, document_.PageObject(1), nullptr); }), kASNotFound);
  Write().PDSElementRemoveKidMC(a_, document_.PageObject(0), nullptr);
  EXPECT_EQ(KidsOf(a_), "OBJR OBJR");
}

TEST_F(ObjectKids, NullPageNamesContentWithoutAPage) {
  Write().PDSElementRemoveKidMC(c_, kNullObject, nullptr);
  EXPECT_EQ(KidsOf(c_), "Foo");
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementRemoveKidMC(c_, kNullObject, nullptr); }), kASNotFound);
}

TEST_F(ObjectKids, NullContainerDoesNotBecomeAKid) {
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertMCAsKid(b_, document_.PageObject(0), nullptr, 0); }), kASBadParameter);
}

TEST_F(ObjectKids, AllKidsGoWhenTheFirstIsAlwaysTaken) {
  while (Read().PDSElementGetNumKids(a_) > 0) {
    const SeenKid kid = KidOf(a_, 0);
    if (kid.type == "OBJR") {
      Write().PDSElementRemoveKidOBJR(a_, kid.kid);
    } else {
      Write().PDSElementRemoveKidMC(a_, kid.page, nullptr);
    }
  }
  EXPECT_EQ(document_.SavedTree(), "A\nB\nC\n  mcid 3 no page\n  (no type)\n");
}

}  // namespace
}  // namespace tgx::host::structure
