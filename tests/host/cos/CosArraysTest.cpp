#include <string>

#include <gtest/gtest.h>

#include "tests/host/HostDocument.h"

namespace tgx::host {
namespace {

const CosTable& Cos() { return *Tables()->cos; }

class CosArray : public testing::Test {
 protected:
  /// A direct array with the items 0, 1, 2 and so on.
  CosObj Counting(int length) {
    const CosObj array = document_.Array();
    for (int i = 0; i < length; ++i) Cos().CosArrayInsert(array, i, document_.Integer(i));
    return array;
  }
  static std::string TextOf(CosObj array) { return ObjectOf(array).unparse(); }

  HostDocument document_;
};

TEST_F(CosArray, CountsNullItems) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /K [1 null 9 0 R 4] >>");
  EXPECT_EQ(Cos().CosArrayLength(Cos().CosDictGetKeyString(document.Root(), "K")), 4);
}

TEST_F(CosArray, GivesBackTheVeryObjectThatWasPut) {
  const CosObj array = Counting(1);
  const CosObj item = document_.Dict();
  Cos().CosArrayPut(array, 0, item);
  EXPECT_TRUE(Cos().CosArrayGet(array, 0) == item);
}

TEST_F(CosArray, GivesTheNullObjectPastTheEnd) {
  const CosObj array = Counting(2);
  EXPECT_TRUE(IsNullObject(Cos().CosArrayGet(array, 2)));
  EXPECT_TRUE(IsNullObject(Cos().CosArrayGet(array, 0x7FFFFFFF)));
}

TEST_F(CosArray, PutReplacesAnItem) {
  const CosObj array = Counting(3);
  Cos().CosArrayPut(array, 1, document_.Integer(9));
  EXPECT_EQ(TextOf(array), "[ 0 9 2 ]");
}

TEST_F(CosArray, PutAtTheEndAppends) {
  const CosObj array = Counting(1);
  Cos().CosArrayPut(array, 1, document_.Integer(9));
  EXPECT_EQ(TextOf(array), "[ 0 9 ]");
}

TEST_F(CosArray, PutPastTheEndFillsTheGapWithNull) {
  const CosObj array = Counting(1);
  Cos().CosArrayPut(array, 3, document_.Integer(9));
  EXPECT_EQ(TextOf(array), "[ 0 null null 9 ]");
  EXPECT_TRUE(IsNullObject(Cos().CosArrayGet(array, 2)));
}

TEST_F(CosArray, PutOutOfAllProportionRaises) {
  const CosObj array = Counting(1);
  EXPECT_EQ(RaisedCode([&] { Cos().CosArrayPut(array, 0x7FFFFFFF, document_.Integer(9)); }), kASOutOfRange);
  EXPECT_EQ(TextOf(array), "[ 0 ]");
}

TEST_F(CosArray, TakesTheNullObjectAsAnItem) {
  const CosObj array = Counting(2);
  Cos().CosArrayPut(array, 0, Cos().CosNewNull());
  Cos().CosArrayInsert(array, 2, Cos().CosNewNull());
  EXPECT_EQ(TextOf(array), "[ null 1 null ]");
}

TEST_F(CosArray, InsertGivesTheNewItemThatPosition) {
  const CosObj array = Counting(2);
  Cos().CosArrayInsert(array, 1, document_.Integer(9));
  Cos().CosArrayInsert(array, 0, document_.Integer(8));
  EXPECT_EQ(TextOf(array), "[ 8 0 9 1 ]");
}

TEST_F(CosArray, InsertPastTheEndAppendsWithoutAGap) {
  const CosObj array = Counting(2);
  Cos().CosArrayInsert(array, 3, document_.Integer(9));
  Cos().CosArrayInsert(array, 0x7FFFFFFF, document_.Integer(8));
  EXPECT_EQ(TextOf(array), "[ 0 1 9 8 ]");
}

TEST_F(CosArray, RaisesBelowZero) {
  const CosObj array = Counting(2);
  EXPECT_EQ(RaisedCode([&] { Cos().CosArrayGet(array, -1); }), kASOutOfRange);
  EXPECT_EQ(RaisedCode([&] { Cos().CosArrayPut(array, -1, document_.Integer(9)); }), kASOutOfRange);
  EXPECT_EQ(RaisedCode([&] { Cos().CosArrayInsert(array, -1, document_.Integer(9)); }), kASOutOfRange);
  EXPECT_EQ(TextOf(array), "[ 0 1 ]");
}

TEST_F(CosArray, NamesItsPlaceWhenAnIndexIsWrong) {
  const CosObj array = document_.Array(true);
  const std::string number = std::to_string(ObjectOf(array).getObjectID());
  EXPECT_EQ(RaisedText([&] { Cos().CosArrayGet(array, -2); }), "object " + number + " 0: no item has the index -2");
}

TEST_F(CosArray, OperationsRaiseForOtherTypesAndNull) {
  for (const CosObj object : {document_.Integer(1), document_.Dict(), Cos().CosNewNull()}) {
    EXPECT_EQ(RaisedCode([&] { Cos().CosArrayLength(object); }), kASWrongType);
    EXPECT_EQ(RaisedCode([&] { Cos().CosArrayGet(object, 0); }), kASWrongType);
    EXPECT_EQ(RaisedCode([&] { Cos().CosArrayPut(object, 0, document_.Integer(1)); }), kASWrongType);
    EXPECT_EQ(RaisedCode([&] { Cos().CosArrayInsert(object, 0, document_.Integer(1)); }), kASWrongType);
  }
}

TEST_F(CosArray, RefusesAnItemOfAnotherDocument) {
  HostDocument other;
  const CosObj array = Counting(1);
  EXPECT_EQ(RaisedCode([&] { Cos().CosArrayPut(array, 0, other.Integer(1)); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosArrayInsert(array, 0, other.Root()); }), kASBadParameter);
}

TEST_F(CosArray, RefusesADirectItemThatContainsIt) {
  const CosObj inner = Counting(0);
  const CosObj outer = document_.Dict();
  Cos().CosDictPutKeyString(outer, "Inner", inner);
  EXPECT_EQ(RaisedCode([&] { Cos().CosArrayInsert(inner, 0, outer); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosArrayPut(inner, 0, inner); }), kASBadParameter);
}

TEST_F(CosArray, RefusesDirectObjectsNestedDeeperThanFilesCanHold) {
  CosObj inner = document_.Array();
  const auto wrap = [&] {
    const CosObj outer = document_.Array();
    Cos().CosArrayInsert(outer, 0, inner);
    inner = outer;
  };
  EXPECT_EQ(RaisedCode([&] {
              for (int i = 0; i < 600; ++i) wrap();
            }),
            kASBadParameter);
}

TEST_F(CosArray, TakesAWideObjectThatSharesItsParts) {
  // Forty levels, each twice in the next: a walk that takes no notice of sharing would not end in this century.
  CosObj inner = document_.Array();
  for (int i = 0; i < 40; ++i) {
    const CosObj outer = document_.Array();
    Cos().CosArrayInsert(outer, 0, inner);
    Cos().CosArrayInsert(outer, 1, inner);
    inner = outer;
  }
  EXPECT_EQ(Cos().CosArrayLength(inner), 2);
}

TEST_F(CosArray, MarksTheDocumentChangedOnlyWhenEdited) {
  const CosObj array = document_.Array();
  Cos().CosArrayLength(array);
  Cos().CosArrayGet(array, 0);
  EXPECT_FALSE(document_->IsChanged());
  Cos().CosArrayInsert(array, 0, document_.Integer(1));
  EXPECT_TRUE(document_->IsChanged());
}

}  // namespace
}  // namespace tgx::host
