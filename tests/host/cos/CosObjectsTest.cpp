#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "host/core/Raise.h"
#include "tests/host/HostDocument.h"

namespace tgx::host {
namespace {

const CosTable& Cos() { return *Tables()->cos; }

constexpr CosObj kNeverGiven = {0x00FFFFFF, 0x7FFFFFFF};

HostDocument DocumentOfEveryType() {
  return HostDocument::FromObjects(
      "<< /Type /Catalog /All [true 1 1.5 (text) /Name [] << >> 2 0 R null 9 0 R] >> endobj\n"
      "2 0 obj << /Length 2 >> stream\nab\nendstream");
}

TEST(CosObj, KnowsTheTypeOfEveryObject) {
  HostDocument document = DocumentOfEveryType();
  const CosObj all = Cos().CosDictGetKeyString(document.Root(), "All");
  const std::vector<int> types = {CosBoolean, CosInteger, CosFixed,  CosString, CosName,
                                  CosArray,   CosDict,    CosStream, CosNull,   CosNull};
  for (std::size_t i = 0; i < types.size(); ++i) {
    EXPECT_EQ(Cos().CosObjGetType(Cos().CosArrayGet(all, static_cast<ASInt32>(i))), types[i]) << "item " << i;
  }
}

TEST(CosObj, IsTheNullObjectWhenItResolvesToNothing) {
  HostDocument document = DocumentOfEveryType();
  const CosObj all = Cos().CosDictGetKeyString(document.Root(), "All");
  EXPECT_TRUE(IsNullObject(Cos().CosArrayGet(all, 8))) << "a null item";
  EXPECT_TRUE(IsNullObject(Cos().CosArrayGet(all, 9))) << "a dangling reference";
  EXPECT_TRUE(IsNullObject(Cos().CosNewNull()));
}

TEST(CosObj, IsOneValueForOneObjectWhicheverWayLeadsThere) {
  HostDocument document = HostDocument::FromObjects(
      "<< /Type /Catalog /A 2 0 R /B [2 0 R] /C << /D 1 >> >> endobj\n"
      "2 0 obj << >>");
  const CosObj first = Cos().CosDictGetKeyString(document.Root(), "A");
  EXPECT_EQ(Cos().CosObjEqual(first, Cos().CosArrayGet(Cos().CosDictGetKeyString(document.Root(), "B"), 0)), 1);
  const CosObj direct = Cos().CosDictGetKeyString(Cos().CosDictGetKeyString(document.Root(), "C"), "D");
  EXPECT_EQ(Cos().CosObjEqual(direct, Cos().CosDictGetKeyString(Cos().CosDictGetKeyString(document.Root(), "C"), "D")), 1);
}

TEST(CosObj, IsAnotherValueForAnotherObjectOfTheSameContents) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /K [7 7] >>");
  const CosObj kids = Cos().CosDictGetKeyString(document.Root(), "K");
  EXPECT_EQ(Cos().CosObjEqual(Cos().CosArrayGet(kids, 0), Cos().CosArrayGet(kids, 1)), 0);
}

TEST(CosObj, KeepsItsValueOutsideEverything) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /A << /B 1 >> >>");
  const CosObj taken = Cos().CosDictGetKeyString(document.Root(), "A");
  Cos().CosDictRemoveKeyString(document.Root(), "A");
  EXPECT_EQ(Cos().CosDictKnownKeyString(taken, "B"), 1);
}

TEST(CosObj, OfTwoDocumentsIsNeverEqual) {
  HostDocument first;
  HostDocument second;
  EXPECT_EQ(Cos().CosObjEqual(first.Root(), second.Root()), 0);
}

TEST(CosObjEqual, ComparesTheNullObjectAndDeadHandlesToo) {
  HostDocument document;
  const CosObj dead = document.Root();
  document.Close();
  EXPECT_EQ(Cos().CosObjEqual(dead, dead), 1);
  EXPECT_EQ(Cos().CosObjEqual(Cos().CosNewNull(), Cos().CosNewNull()), 1);
  EXPECT_EQ(Cos().CosObjEqual(dead, Cos().CosNewNull()), 0);
}

TEST(CosObj, IsABadParameterOnceItsDocumentIsClosed) {
  HostDocument document;
  const CosObj dict = document.Dict();
  document.Close();
  EXPECT_EQ(RaisedCode([&] { Cos().CosObjGetType(dict); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosObjIsIndirect(dict); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosObjGetDoc(dict); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosDictGetKeyString(dict, "A"); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosArrayLength(dict); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosIntegerValue(dict); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosStreamDict(dict); }), kASBadParameter);
  Cos().CosObjDestroy(dict);
}

TEST(CosObj, ThatWasNeverGivenOutIsABadParameter) {
  HostDocument document;
  EXPECT_EQ(RaisedCode([&] { Cos().CosObjGetType(kNeverGiven); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosObjGetType({5000, document->Serial()}); }), kASBadParameter);
}

TEST(CosObj, OperationsThatTakeTheNullObjectGiveNothingForIt) {
  const CosObj null = Cos().CosNewNull();
  EXPECT_EQ(Cos().CosObjGetType(null), CosNull);
  EXPECT_EQ(Cos().CosObjIsIndirect(null), 0);
  EXPECT_EQ(Cos().CosObjGetDoc(null), nullptr);
  Cos().CosObjDestroy(null);
}

TEST(CosObj, BelongsToItsDocumentAlsoWhenDirectAndNew) {
  HostDocument document;
  EXPECT_EQ(Cos().CosObjGetDoc(document.Integer(1)), document.Doc());
  EXPECT_EQ(Cos().CosObjGetDoc(document.Root()), document.Doc());
}

TEST(CosObj, SaysWhetherItIsIndirect) {
  HostDocument document;
  EXPECT_EQ(Cos().CosObjIsIndirect(document.Root()), 1);
  EXPECT_EQ(Cos().CosObjIsIndirect(document.Dict()), 0);
  EXPECT_EQ(Cos().CosObjIsIndirect(document.Dict(true)), 1);
}

TEST(CosObj, KeepsItsValueWhenItIsMadeIndirect) {
  HostDocument document;
  const CosObj dict = document.Dict();
  const QPDFObjectHandle indirect = document->Pdf().makeIndirectObject(ObjectOf(dict));
  EXPECT_TRUE(document->HandleOf(indirect) == dict);
  EXPECT_EQ(Cos().CosObjIsIndirect(dict), 1);
}

TEST(CosObjDestroy, LeavesTheObjectToItsOtherUsers) {
  HostDocument document;
  const CosObj dict = document.Dict(true);
  Cos().CosDictPutKeyString(document.Root(), "A", dict);
  Cos().CosObjDestroy(dict);
  EXPECT_TRUE(Cos().CosDictGetKeyString(document.Root(), "A") == dict);
  EXPECT_EQ(Cos().CosObjGetType(dict), CosDict);
}

TEST(CosDocGetRoot, GivesTheCatalog) {
  HostDocument document;
  EXPECT_EQ(Cos().CosDictKnownKeyString(Cos().CosDocGetRoot(document.Doc()), "Pages"), 1);
}

TEST(CosDocGetRoot, RaisesForADocumentThatIsClosed) {
  HostDocument document;
  const CosDoc doc = document.Doc();
  document.Close();
  EXPECT_EQ(RaisedCode([&] { Cos().CosDocGetRoot(doc); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosDocGetRoot(nullptr); }), kASBadParameter);
}

/// What an enumeration handed out, and what the procedure is to do.
struct Enumeration {
  std::vector<CosObj> first, second;
  std::size_t stopAfter = 100;
  HostDocument* close = nullptr;
  CosObj clear = {0, 0};
};

ASBool Collect(CosObj first, CosObj second, void* data) {
  auto& enumeration = *static_cast<Enumeration*>(data);
  enumeration.first.push_back(first);
  enumeration.second.push_back(second);
  if (enumeration.close != nullptr) enumeration.close->Close();
  if (!IsNullObject(enumeration.clear)) {
    Cos().CosDictRemoveKeyString(enumeration.clear, "A");
    Cos().CosDictRemoveKeyString(enumeration.clear, "B");
    Cos().CosDictPutKeyString(enumeration.clear, "C", first);
  }
  return enumeration.first.size() < enumeration.stopAfter ? 1 : 0;
}

TEST(CosObjEnum, HandsOutTheEntriesOfADictionary) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /D << /B (b) /A (a) /C null /E 9 0 R >> >>");
  const CosObj dict = Cos().CosDictGetKeyString(document.Root(), "D");
  Enumeration seen;
  EXPECT_EQ(Cos().CosObjEnum(dict, Collect, &seen), 1);
  ASSERT_EQ(seen.first.size(), 2U) << "entries that are null are left out";
  EXPECT_EQ(Cos().CosNameValue(seen.first[0]), Tables()->core->ASAtomFromString("A"));
  EXPECT_TRUE(seen.second[0] == Cos().CosDictGetKeyString(dict, "A"));
  EXPECT_TRUE(seen.second[1] == Cos().CosDictGetKeyString(dict, "B"));
}

TEST(CosObjEnum, HandsOutTheEntriesOfAStreamsDictionary) {
  HostDocument document = DocumentOfEveryType();
  Enumeration seen;
  EXPECT_EQ(Cos().CosObjEnum(document.Object(2), Collect, &seen), 1);
  ASSERT_EQ(seen.first.size(), 1U);
  EXPECT_EQ(Cos().CosNameValue(seen.first[0]), Tables()->core->ASAtomFromString("Length"));
}

TEST(CosObjEnum, HandsOutTheItemsOfAnArrayWithoutASecondObject) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /K [1 null 3] >>");
  const CosObj array = Cos().CosDictGetKeyString(document.Root(), "K");
  Enumeration seen;
  EXPECT_EQ(Cos().CosObjEnum(array, Collect, &seen), 1);
  ASSERT_EQ(seen.first.size(), 3U);
  EXPECT_TRUE(seen.first[0] == Cos().CosArrayGet(array, 0));
  EXPECT_TRUE(IsNullObject(seen.first[1]));
  EXPECT_TRUE(IsNullObject(seen.second[0]));
}

TEST(CosObjEnum, StopsWhenTheProcedureSaysSo) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /K [1 2 3] >>");
  Enumeration seen;
  seen.stopAfter = 2;
  EXPECT_EQ(Cos().CosObjEnum(Cos().CosDictGetKeyString(document.Root(), "K"), Collect, &seen), 0);
  EXPECT_EQ(seen.first.size(), 2U);
}

TEST(CosObjEnum, WorksOnASnapshot) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /D << /A 1 /B 2 >> >>");
  Enumeration seen;
  seen.clear = Cos().CosDictGetKeyString(document.Root(), "D");
  EXPECT_EQ(Cos().CosObjEnum(seen.clear, Collect, &seen), 1);
  EXPECT_EQ(seen.first.size(), 2U);
}

TEST(CosObjEnum, SurvivesAProcedureThatClosesTheDocument) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /K [1 2 3] >>");
  Enumeration seen;
  seen.close = &document;
  EXPECT_EQ(Cos().CosObjEnum(Cos().CosDictGetKeyString(document.Root(), "K"), Collect, &seen), 1);
  EXPECT_EQ(seen.first.size(), 3U);
}

TEST(CosObjEnum, LetsTheExceptionOfTheProcedureThroughAndKeepsTheFrame) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /K [1 2 3] >>");
  const CosObj array = Cos().CosDictGetKeyString(document.Root(), "K");
  Tables()->core->ASPushExceptionFrame(nullptr, [] { throw 1; });
  const CosObjEnumProc fail = [](CosObj, CosObj, void*) -> ASBool { throw std::runtime_error("the client's"); };
  EXPECT_THROW(Cos().CosObjEnum(array, fail, nullptr), std::runtime_error);
  EXPECT_EQ(FrameDepth(), 1U);
  CutFrames(0);
}

TEST(CosObjEnum, LetsARaiseInsideTheProcedureThroughOnce) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /K [1 2 3] >>");
  const CosObj array = Cos().CosDictGetKeyString(document.Root(), "K");
  Tables()->core->ASPushExceptionFrame(nullptr, [] { throw 1; });
  Tables()->core->ASPushExceptionFrame(nullptr, [] { throw 2; });
  const CosObjEnumProc fail = [](CosObj, CosObj, void*) -> ASBool { return Cos().CosArrayLength(Cos().CosNewNull()); };
  try {
    Cos().CosObjEnum(array, fail, nullptr);
    ADD_FAILURE() << "no raise";
  } catch (int frame) {
    EXPECT_EQ(frame, 2);
  }
  EXPECT_EQ(FrameDepth(), 1U);
  CutFrames(0);
}

TEST(CosObjEnum, RaisesForScalarsNullAndAMissingProcedure) {
  HostDocument document;
  EXPECT_EQ(RaisedCode([&] { Cos().CosObjEnum(document.Integer(1), Collect, nullptr); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Cos().CosObjEnum(Cos().CosNewNull(), Collect, nullptr); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Cos().CosObjEnum(document.Root(), nullptr, nullptr); }), kASBadParameter);
}

TEST(CosObj, IsNamedByItsPlaceInFailures) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /A 2 0 R /D << /K [1] >> >> endobj\n2 0 obj /Name");
  EXPECT_EQ(RaisedText([&] { Cos().CosIntegerValue(document.Object(2)); }), "object 2 0 is a name, not an integer");
  const CosObj array = Cos().CosDictGetKeyString(Cos().CosDictGetKeyString(document.Root(), "D"), "K");
  EXPECT_EQ(RaisedText([&] { Cos().CosNameValue(Cos().CosArrayGet(array, 0)); }),
            "a direct object in object 1 0 is an integer, not a name");
  EXPECT_EQ(RaisedText([&] { Cos().CosNameValue(document.Dict()); }), "a direct object is a dictionary, not a name");
  EXPECT_EQ(RaisedText([&] { Cos().CosNameValue(Cos().CosNewNull()); }), "the null object is not a name");
}

/// A piece of work of a client, which has at least one frame for as long as it lasts.
class PieceOfWork {
 public:
  PieceOfWork() {
    Tables()->core->ASPushExceptionFrame(nullptr, [] {});
  }
  ~PieceOfWork() { CutFrames(0); }
  PieceOfWork(const PieceOfWork&) = delete;
  PieceOfWork& operator=(const PieceOfWork&) = delete;
};

CosObj ValueIn(CosObj dict) {
  CosObj found = kNeverGiven;
  const CosObjEnumProc take = [](CosObj, CosObj value, void* data) -> ASBool {
    *static_cast<CosObj*>(data) = value;
    return 1;
  };
  Cos().CosObjEnum(dict, take, &found);
  return found;
}

TEST(Nesting, EndsAtFiveHundredLevelsForAClientThatFollowsACircle) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /A 2 0 R >> endobj\n2 0 obj << /X << /X 2 0 R >> >>");
  const PieceOfWork work;
  CosObj at = Cos().CosDictGetKeyString(document.Root(), "A");
  int levels = 0;
  EXPECT_EQ(RaisedText([&] {
              for (; levels < 1000; ++levels) at = ValueIn(at);
            }),
            "a direct object in object 2 0: nested deeper than 500 levels");
  EXPECT_EQ(levels, 500);
}

TEST(Nesting, OfStreamsCountsTheirDictionaries) {
  HostDocument document = HostDocument::FromObjects(
      "<< /Type /Catalog /A [2 0 R] >> endobj\n2 0 obj << /Length 2 /X 2 0 R >> stream\nab\nendstream");
  const PieceOfWork work;
  CosObj at = Cos().CosArrayGet(Cos().CosDictGetKeyString(document.Root(), "A"), 0);
  EXPECT_EQ(RaisedCode([&] {
              for (int i = 0; i < 1000; ++i)
                at = Cos().CosObjGetType(at) == CosStream ? Cos().CosStreamDict(at) : ValueIn(at);
            }),
            kASDamagedDocument);
}

TEST(Nesting, IsNoDeeperForACircleThatManyReferTo) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /A 2 0 R >> endobj\n2 0 obj << /X 2 0 R >>");
  const PieceOfWork work;
  for (int i = 0; i < 1000; ++i) {
    const CosObj circle = Cos().CosDictGetKeyString(document.Root(), "A");
    EXPECT_EQ(ValueIn(circle), circle);
  }
}

TEST(Nesting, IsNoDeeperForACircleThatIsComeUponAgain) {
  HostDocument document = HostDocument::FromObjects("<< /X 1 0 R >>");
  const PieceOfWork work;
  for (int i = 0; i < 1000; ++i) ValueIn(Cos().CosDocGetRoot(document.Doc()));
}

}  // namespace
}  // namespace tgx::host
