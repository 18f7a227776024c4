#include <gtest/gtest.h>

#include "host/core/Atoms.h"
#include "tests/host/HostDocument.h"

namespace tgx::host {
namespace {

const CosTable& Cos() { return *Tables()->cos; }

TEST(CosDict, GivesBackTheVeryObjectThatWasPut) {
  HostDocument document;
  const CosObj value = document.Dict();
  const CosObj dict = document.Dict();
  Cos().CosDictPut(dict, Intern("Key"), value);
  EXPECT_EQ(Cos().CosDictGet(dict, Intern("Key")), value);
  EXPECT_EQ(Cos().CosDictGetKeyString(dict, "Key"), value);
}

TEST(CosDict, GivesTheNullObjectForAMissingKey) {
  HostDocument document;
  EXPECT_TRUE(IsNullObject(Cos().CosDictGetKeyString(document.Dict(), "Key")));
  EXPECT_EQ(Cos().CosDictKnownKeyString(document.Dict(), "Key"), 0);
}

TEST(CosDict, LosesAnEntryThatIsSetToNull) {
  HostDocument document;
  const CosObj dict = document.Dict();
  Cos().CosDictPutKeyString(dict, "Key", document.Integer(1));
  ASSERT_EQ(Cos().CosDictKnown(dict, Intern("Key")), 1);
  Cos().CosDictPutKeyString(dict, "Key", Cos().CosNewNull());
  EXPECT_EQ(Cos().CosDictKnown(dict, Intern("Key")), 0);
}

TEST(CosDict, RemovesAnEntryAndDoesNotMindAMissingOne) {
  HostDocument document;
  const CosObj dict = document.Dict();
  Cos().CosDictPutKeyString(dict, "Key", document.Integer(1));
  Cos().CosDictRemove(dict, Intern("Key"));
  Cos().CosDictRemoveKeyString(dict, "Key");
  EXPECT_EQ(Cos().CosDictKnownKeyString(dict, "Key"), 0);
}

TEST(CosDict, OperationsRaiseWrongTypeForScalarsAndNull) {
  HostDocument document;
  for (const CosObj object : {document.Integer(3), document.Array(), Cos().CosNewNull()}) {
    EXPECT_EQ(RaisedCode([&] { Cos().CosDictGetKeyString(object, "Key"); }), kASWrongType);
    EXPECT_EQ(RaisedCode([&] { Cos().CosDictKnownKeyString(object, "Key"); }), kASWrongType);
    EXPECT_EQ(RaisedCode([&] { Cos().CosDictRemoveKeyString(object, "Key"); }), kASWrongType);
    EXPECT_EQ(RaisedCode([&] { Cos().CosDictPutKeyString(object, "Key", object); }), kASWrongType);
  }
}

TEST(CosDict, RefusesAValueOfAnotherDocument) {
  HostDocument document;
  HostDocument other;
  const CosObj dict = document.Dict();
  EXPECT_EQ(RaisedCode([&] { Cos().CosDictPutKeyString(dict, "Key", other.Integer(1)); }), kASBadParameter);
}

TEST(CosDict, RefusesADirectValueThatContainsIt) {
  HostDocument document;
  const CosObj inner = document.Dict();
  const CosObj outer = document.Array();
  Cos().CosArrayInsert(outer, 0, inner);
  EXPECT_EQ(RaisedCode([&] { Cos().CosDictPutKeyString(inner, "Key", outer); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosDictPutKeyString(inner, "Key", inner); }), kASBadParameter);
}

TEST(CosDict, MayReferToItselfWhenIndirect) {
  HostDocument document;
  const CosObj dict = document.Dict(true);
  Cos().CosDictPutKeyString(dict, "Self", dict);
  EXPECT_EQ(Cos().CosDictGetKeyString(dict, "Self"), dict);
}

TEST(CosDict, MarksTheDocumentChangedOnlyWhenEdited) {
  HostDocument document;
  const CosObj dict = document.Dict();
  Cos().CosDictGetKeyString(dict, "Key");
  Cos().CosDictKnownKeyString(dict, "Key");
  Cos().CosDictRemoveKeyString(dict, "Key");
  Cos().CosDictPutKeyString(dict, "Key", Cos().CosNewNull());
  EXPECT_FALSE(document->IsChanged());
  Cos().CosDictPutKeyString(dict, "Key", document.Integer(1));
  EXPECT_TRUE(document->IsChanged());
}

TEST(CosDict, HoldsADirectObjectThatAlsoStandsElsewhere) {
  HostDocument document;
  const CosObj shared = document.Dict();
  Cos().CosDictPutKeyString(document.Root(), "First", shared);
  Cos().CosDictPutKeyString(document.Root(), "Second", shared);
  Cos().CosDictPutKeyString(shared, "Key", document.Integer(1));
  HostDocument again = document.Reopened();
  for (const char* key : {"First", "Second"}) {
    EXPECT_EQ(Cos().CosDictKnownKeyString(Cos().CosDictGetKeyString(again.Root(), key), "Key"), 1) << key;
  }
}

TEST(CosDict, TakesADanglingReferenceForNothing) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /D 9 0 R /N null >>");
  for (const char* key : {"D", "N"}) {
    EXPECT_EQ(Cos().CosDictKnownKeyString(document.Root(), key), 0) << key;
    EXPECT_TRUE(IsNullObject(Cos().CosDictGetKeyString(document.Root(), key))) << key;
  }
}

TEST(CosDict, FindsWhatTheStructureTreeHasNotWrittenYet) {
  HostDocument document;
  const PDSEditWriteTable& edit = *Tables()->pdsEditWrite;
  PDSTreeRoot root = {};
  PDSElement element = {};
  edit.PDDocCreateStructTreeRoot(document->Handle(), &root);
  edit.PDSElementCreate(document->Handle(), &element);
  edit.PDSElementInsertKid(root, element, kPDSAfterLast);
  const CosObj kids = Cos().CosDictGetKeyString(root, "K");
  const CosObj kid = Cos().CosObjGetType(kids) == CosArray ? Cos().CosArrayGet(kids, 0) : kids;
  EXPECT_TRUE(kid == element);
}

}  // namespace
}  // namespace tgx::host
