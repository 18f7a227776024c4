#include <gtest/gtest.h>

#include "tests/host/pdsedit/StructureFixture.h"

namespace tgx::host::structure {
namespace {

using test::Page;

std::string SectFile() {
  TestDocument source;
  Page& page = source.AddPage();
  source.AddPage();
  source.Tree({Element("Sect").Named("sect")({Element("A").Text(page, "a"), Element("B").Mcr(page, 0)})});
  return source.Write();
}

/// Sect > A (an integer kid), B (an MCR kid).
struct Sect {
  StructureDocument document{SectFile()};
  PDSElement top = document.At({0});
  PDSElement a = document.At({0, 0});
  PDSElement b = document.At({0, 1});
};

CosObj Get(CosObj dict, const char* key) { return Cos().CosDictGetKeyString(dict, key); }
void Put(CosObj dict, const char* key, CosObj value) { Cos().CosDictPutKeyString(dict, key, value); }
CosObj Integer(StructureDocument& document, int value) { return Cos().CosNewInteger(document.Doc(), 0, value); }

TEST(CosRead, OfKidsSeesAnInsertion) {
  Sect sect;
  const PDSElement kid = sect.document.NewElement("N");
  Write().PDSElementInsertKid(sect.top, kid, 0);
  const CosObj kids = Get(sect.top, "K");
  ASSERT_EQ(Cos().CosArrayLength(kids), 3);
  EXPECT_EQ(Cos().CosArrayGet(kids, 1), kid);
}

TEST(CosRead, OfAnArrayOfKidsThatAClientHoldsSeesAnInsertion) {
  Sect sect;
  const CosObj kids = Get(sect.top, "K");
  Write().PDSElementInsertKid(sect.top, sect.document.NewElement("N"), 0);
  EXPECT_EQ(Cos().CosArrayLength(kids), 3);
  EXPECT_EQ(Get(sect.top, "K"), kids);
}

TEST(CosRead, OfTheParentSeesAnInsertionAndARemoval) {
  Sect sect;
  const PDSElement kid = sect.document.NewElement("N");
  Write().PDSElementInsertKid(sect.top, kid, 0);
  EXPECT_EQ(Get(kid, "P"), sect.top);
  Write().PDSElementRemoveKid(sect.top, kid);
  EXPECT_EQ(Get(kid, "P"), kNullObject);
  EXPECT_EQ(Cos().CosDictKnownKeyString(kid, "P"), 0);
}

TEST(CosRead, EnumeratesTheEntriesThatEditsMade) {
  Sect sect;
  const PDSElement kid = sect.document.NewElement("N");
  Write().PDSElementInsertKid(sect.top, kid, 0);
  Write().PDSElementInsertKid(kid, sect.document.NewElement("M"), 0);
  std::string keys;
  Cos().CosObjEnum(
      kid,
      [](CosObj key, CosObj, void* text) -> ASBool {
        *static_cast<std::string*>(text) += AtomText(Cos().CosNameValue(key));
        return 1;
      },
      &keys);
  EXPECT_EQ(keys, "KPSType");
}

TEST(Kids, OneStaysBareAndTwoBecomeAnArrayThatStays) {
  Sect sect;
  const PDSElement parent = sect.document.NewElement("N");
  const PDSElement first = sect.document.NewElement("F"), second = sect.document.NewElement("G");
  EXPECT_EQ(Get(parent, "K"), kNullObject);
  Write().PDSElementInsertKid(parent, first, 0);
  EXPECT_EQ(Get(parent, "K"), first);
  Write().PDSElementInsertKid(parent, second, 0);
  EXPECT_EQ(Cos().CosArrayLength(Get(parent, "K")), 2);
  Write().PDSElementRemoveKid(parent, first);
  EXPECT_EQ(Cos().CosArrayLength(Get(parent, "K")), 1);
  Write().PDSElementRemoveKid(parent, second);
  EXPECT_EQ(Cos().CosArrayLength(Get(parent, "K")), 0);
}

TEST(Kids, BareOneThatLeavesTakesTheEntryWithIt) {
  Sect sect;
  const PDSElement parent = sect.document.NewElement("N");
  const PDSElement kid = sect.document.NewElement("F");
  Write().PDSElementInsertKid(parent, kid, 0);
  ASSERT_EQ(Get(parent, "K"), kid);
  Write().PDSElementRemoveKid(parent, kid);
  EXPECT_EQ(Cos().CosDictKnownKeyString(parent, "K"), 0);
}

TEST(Kids, KeepTheirIdentityThroughASaving) {
  Sect sect;
  const CosObj number = KidOf(sect.a, 0).kid;
  const CosObj reference = KidOf(sect.b, 0).kid;
  Write().PDSElementInsertKid(sect.a, sect.document.NewElement("N"), 0);
  Write().PDSElementInsertKid(sect.top, sect.document.NewElement("N"), 0);
  sect.document.Save();
  EXPECT_EQ(KidOf(sect.a, 0).kid, number);
  EXPECT_EQ(KidOf(sect.b, 0).kid, reference);
  EXPECT_EQ(sect.document.At({0, 0}), sect.a);
  EXPECT_EQ(sect.document.At({0, 2}), sect.b);
}

TEST(Kids, OfAnArrayThatTwoElementsShareAreEditedForOneOnly) {
  TestDocument source;
  source.AddPage();
  source.Object("kids", "[<</S/X>> <</S/Y>>]");
  source.Tree({Element("A").Set("K", "$kids"), Element("B").Set("K", "$kids")});
  StructureDocument document(source);
  Write().PDSElementRemoveKid(document.At({0}), document.At({0, 0}));
  EXPECT_EQ(document.SavedTree(), "A\n  Y\nB\n  X\n  Y\n");
}

TEST(CosEdit, OfKidsReplacesThem) {
  Sect sect;
  Put(sect.a, "K", Integer(sect.document, 9));
  EXPECT_EQ(Read().PDSElementGetNumKids(sect.a), 1);
  EXPECT_EQ(KidOf(sect.a, 0).mcid, 9);
  Cos().CosDictRemoveKeyString(sect.a, "K");
  EXPECT_EQ(Read().PDSElementGetNumKids(sect.a), 0);
}

TEST(CosEdit, OfKidsAfterAnInsertionKeepsTheInsertion) {
  Sect sect;
  const CosObj kids = Get(sect.top, "K");
  Write().PDSElementInsertKid(sect.top, sect.document.NewElement("N"), kPDSBeforeFirst);
  Cos().CosArrayInsert(kids, 1, Integer(sect.document, 5));
  EXPECT_EQ(KidsOf(sect.top), "N MC A B");
}

TEST(CosEdit, OfAnArrayOfKidsShowsInTheTree) {
  Sect sect;
  Cos().CosArrayPut(Get(sect.top, "K"), 0, Integer(sect.document, 5));
  EXPECT_EQ(KidsOf(sect.top), "MC B");
}

TEST(CosEdit, OfAnArrayReadBeforeTheTreeWasShowsInTheTree) {
  StructureDocument document(SectFile());
  const CosObj root = Get(Cos().CosDocGetRoot(document.Doc()), "StructTreeRoot");
  CosObj top = Get(root, "K");
  if (Cos().CosObjGetType(top) == CosArray) top = Cos().CosArrayGet(top, 0);
  const CosObj kids = Get(top, "K");
  ASSERT_EQ(KidsOf(document.At({0})), "A B");
  Cos().CosArrayPut(kids, 0, Integer(document, 5));
  EXPECT_EQ(KidsOf(document.At({0})), "MC B");
}

TEST(CosEdit, ThatPutsANewArrayIsFollowedFurther) {
  Sect sect;
  const CosObj kids = Cos().CosNewArray(sect.document.Doc(), 0, 0);
  Put(sect.a, "K", kids);
  EXPECT_EQ(KidsOf(sect.a), "");
  Cos().CosArrayInsert(kids, 0, Integer(sect.document, 5));
  EXPECT_EQ(KidsOf(sect.a), "MC");
}

TEST(CosEdit, OfAnIndirectArrayShowsInAllElementsThatShareIt) {
  TestDocument source;
  source.AddPage();
  source.Object("kids", "[<</S/X>>]").SetCatalog("Other", "$kids");
  source.Tree({Element("A").Set("K", "$kids"), Element("B").Set("K", "$kids")});
  StructureDocument document(source);
  ASSERT_EQ(KidsOf(document.At({0})), "X");
  Cos().CosArrayInsert(Get(Cos().CosDocGetRoot(document.Doc()), "Other"), 1, Integer(document, 0));
  EXPECT_EQ(KidsOf(document.At({0})), "X MC");
  EXPECT_EQ(KidsOf(document.At({1})), "X MC");
}

TEST(CosEdit, ThatMakesACycleRaisesUntilItIsUndone) {
  Sect sect;
  Put(sect.a, "K", sect.top);
  EXPECT_EQ(RaisedCode([&] { Read().PDSElementGetType(sect.b); }), kASDamagedDocument);
  Cos().CosDictRemoveKeyString(sect.a, "K");
  EXPECT_EQ(TypeOf(sect.b), "B");
}

TEST(CosEdit, ThatPutsAnElementIntoKidsGivesItAParent) {
  Sect sect;
  const PDSElement kid = sect.document.NewElement("N");
  Put(sect.a, "K", kid);
  EXPECT_EQ(ParentOf(kid), sect.a);
  EXPECT_EQ(sect.document.SavedTree(), "Sect\n  A\n    N\n  B\n    mcr 0 page 1\n");
}

TEST(CosEdit, OfTheParentShows) {
  Sect sect;
  Put(sect.a, "P", sect.b);
  EXPECT_EQ(ParentOf(sect.a), sect.b);
  Cos().CosDictRemoveKeyString(sect.a, "P");
  EXPECT_EQ(ParentOf(sect.a), kNullObject);
}

TEST(CosEdit, OfTheTypeShows) {
  Sect sect;
  ASSERT_EQ(TypeOf(sect.a), "A");
  Put(sect.a, "S", Cos().CosNewName(sect.document.Doc(), 0, Intern("Z")));
  EXPECT_EQ(TypeOf(sect.a), "Z");
  Cos().CosDictRemoveKeyString(sect.a, "S");
  EXPECT_EQ(TypeOf(sect.a), "");
}

TEST(CosEdit, OfThePageShowsInTheKids) {
  Sect sect;
  Put(sect.a, "Pg", sect.document.PageObject(1));
  EXPECT_EQ(KidOf(sect.a, 0).page, sect.document.PageObject(1));
}

TEST(CosEdit, OfAReferenceShows) {
  Sect sect;
  const CosObj reference = KidOf(sect.b, 0).kid;
  Put(reference, "MCID", Integer(sect.document, 8));
  EXPECT_EQ(KidOf(sect.b, 0).mcid, 8);
  Put(reference, "Pg", sect.document.PageObject(1));
  EXPECT_EQ(KidOf(sect.b, 0).page, sect.document.PageObject(1));
  Put(reference, "Type", Cos().CosNewName(sect.document.Doc(), 0, Intern("Other")));
  EXPECT_EQ(KidOf(sect.b, 0).type, "Other");
  EXPECT_EQ(KidOf(sect.b, 0).kid, reference);
}

TEST(CosEdit, OfAReferenceAmongUnwrittenEditsKeepsThem) {
  Sect sect;
  const CosObj reference = KidOf(sect.b, 0).kid;
  Write().PDSElementInsertKid(sect.b, sect.document.NewElement("N"), kPDSBeforeFirst);
  Put(reference, "MCID", Integer(sect.document, 8));
  EXPECT_EQ(KidsOf(sect.b), "N MC");
  EXPECT_EQ(KidOf(sect.b, 1).mcid, 8);
}

TEST(CosEdit, OfAReferenceThatWasInsertedLaterShows) {
  TestDocument source;
  Page& page = source.AddPage();
  const test::Annotation link = page.Link("https://example.org/");
  source.Tree({Element("A").Object(link).Mcr(page, 0), Element("B")});
  StructureDocument document(source);
  Put(KidOf(document.At({0}), 1).kid, "MCID", Integer(document, 8));  // references are watched from here on
  const CosObj object = KidOf(document.At({0}), 0).kid;
  Write().PDSElementInsertOBJAsKid(document.At({1}), document.PageObject(0), object, 0);
  const CosObj inserted = Get(document.At({1}), "K");
  Cos().CosDictRemoveKeyString(inserted, "Obj");
  EXPECT_EQ(KidOf(document.At({1}), 0).kid, kNullObject);
}

TEST(CosEdit, OfTheRootInTheCatalogShows) {
  Sect sect;
  const CosObj catalog = Cos().CosDocGetRoot(sect.document.Doc());
  const PDSTreeRoot old = sect.document.Root();
  Cos().CosDictRemoveKeyString(catalog, "StructTreeRoot");
  EXPECT_EQ(Read().PDDocGetStructTreeRoot(sect.document.Handle(), nullptr), 0);
  Put(catalog, "StructTreeRoot", old);
  EXPECT_EQ(sect.document.Root(), old);
  EXPECT_EQ(KidsOf(sect.top), "A B");
}

}  // namespace
}  // namespace tgx::host::structure
