#include "host/core/Atoms.h"
#include "tests/host/pdfedit/ContentFixture.h"

namespace tgx::host {
namespace {

std::string UnparseOf(CosObj object) { return ObjectOf(object).unparseResolved(); }

TEST(ContainerDictionary, IsTheSameObjectEachTime) {
  ContentDocument document("/P <</MCID 0/Lang(de)>> BDC EMC");
  CosObj dict{};
  ASBool isInline = 9;
  EXPECT_EQ(ReadContent().PDEContainerGetDict(document.At({0}), &dict, &isInline), 1);
  EXPECT_EQ(isInline, 1);
  EXPECT_EQ(UnparseOf(dict), "<< /Lang (de) /MCID 0 >>");
  EXPECT_EQ(document.Properties(document.At({0})), dict);
}

TEST(ContainerDictionary, OfTheResourcesIsTheObjectItself) {
  ContentDocument document("/P /Pr0 BDC EMC /Q /Pr0 BDC EMC");
  CosObj dict{};
  ASBool isInline = 9;
  EXPECT_EQ(ReadContent().PDEContainerGetDict(document.At({0}), &dict, &isInline), 1);
  EXPECT_EQ(isInline, 0);
  EXPECT_EQ(dict, document.Host().Object(13));
  EXPECT_EQ(document.Properties(document.At({1})), dict);
}

TEST(ContainerDictionary, MayBeAbsent) {
  ContentDocument document("/P BMC EMC /P /Missing BDC EMC /P 5 BDC EMC");
  for (int i = 0; i < 3; ++i) {
    CosObj dict = document.Host().Root();
    EXPECT_EQ(ReadContent().PDEContainerGetDict(document.At({i}), &dict, nullptr), 0) << i;
    EXPECT_TRUE(IsNullObject(dict));
  }
}

TEST(ContainerDictionary, IsWrittenBackWhenItWasEdited) {
  ContentDocument document("1 w /P <</MCID 0>> BDC /Im Do EMC 2 w");
  Cos().CosDictPutKeyString(document.Properties(document.At({0})), "MCID", document.Host().Integer(5));
  document.Commit();
  EXPECT_EQ(document.Saved(), "1 w /P << /MCID 5 >> BDC /Im Do EMC 2 w");
}

TEST(ContainerDictionary, IsNotWrittenWhenAnEditWasTakenBack) {
  ContentDocument document("/P  <</MCID 0>>  BDC EMC");
  const CosObj dict = document.Properties(document.At({0}));
  Cos().CosDictPutKeyString(dict, "MCID", document.Host().Integer(5));
  Cos().CosDictPutKeyString(dict, "MCID", document.Host().Integer(0));
  document.Commit();
  EXPECT_EQ(document.SavedRaw(), "/P  <</MCID 0>>  BDC EMC");
}

TEST(ContainerDictionary, CanBeEditedAgainAfterACommit) {
  ContentDocument document("/P <</MCID 0>> BDC EMC");
  const CosObj dict = document.Properties(document.At({0}));
  Cos().CosDictPutKeyString(dict, "MCID", document.Host().Integer(5));
  document.Commit();
  Cos().CosDictPutKeyString(dict, "MCID", document.Host().Integer(0));
  document.Commit();
  EXPECT_EQ(document.Saved(), "/P << /MCID 0 >> BDC EMC");
}

TEST(ContainerDictionary, IsWrittenWhenANestedObjectWasEdited) {
  ContentDocument document("/P <</A[1 2]/B<</C 1>>>> BDC EMC");
  const CosObj dict = document.Properties(document.At({0}));
  Cos().CosDictPutKeyString(Cos().CosDictGetKeyString(dict, "B"), "C", document.Host().Integer(7));
  document.Commit();
  EXPECT_EQ(document.Saved(), "/P << /A [ 1 2 ] /B << /C 7 >> >> BDC EMC");
}

TEST(ContainerDictionary, MovesToTheResourcesWhenItHoldsAReference) {
  ContentDocument document("/P <</MCID 0>> BDC EMC");
  const CosObj dict = document.Properties(document.At({0}));
  Cos().CosDictPutKeyString(dict, "X", document.Host().Object(13));
  document.Commit();
  EXPECT_EQ(document.Saved(), "/P /Pr1 BDC EMC");
  ASBool isInline = 9;
  CosObj after{};
  ReadContent().PDEContainerGetDict(document.At({0}), &after, &isInline);
  EXPECT_EQ(isInline, 0);
  EXPECT_EQ(after, dict);
  HostDocument saved = document.Host().Reopened();
  QPDFObjectHandle properties =
      QPDFObjectHandle(saved->Pdf().getAllPages().at(0)).getKey("/Resources").getKey("/Properties");
  EXPECT_EQ(properties.getKey("/Pr1").getKey("/X").getKey("/MCID").unparse(), "7");
  EXPECT_TRUE(properties.hasKey("/Pr0"));
}

TEST(ContainerDictionary, GetsNoNameThatTheContentUsesForNothing) {
  ContentDocument document("/P /Pr1 BDC /Q /Pr2 DP EMC /P <</MCID 0>> BDC EMC");
  const CosObj dict = document.Properties(document.At({1}));
  Cos().CosDictPutKeyString(dict, "X", document.Host().Object(13));
  document.Commit();
  EXPECT_EQ(document.Saved(), "/P /Pr1 BDC /Q /Pr2 DP EMC /P /Pr3 BDC EMC");
  EXPECT_EQ(document.Host().Reopened()->Contents().ContainerOf(0, 7), nullptr);
}

/// The time of the search for a name, were it made anew for each, would be minutes.
TEST(ContainerDictionary, ManyCanMoveToTheResources) {
  constexpr int kMany = 30'000;
  std::string content;
  for (int i = 0; i < kMany; ++i) content += "/P <</MCID " + std::to_string(i) + ">> BDC EMC\n";
  ContentDocument document(content);
  const PDEContent list = document.Root();
  for (int i = 0; i < kMany; ++i) {
    const CosObj dict = document.Properties(ReadContent().PDEContentGetElem(list, i));
    Cos().CosDictPutKeyString(dict, "X", document.Host().Object(13));
  }
  document.Commit();
  document.Host()->Contents().WriteCommitted();
  QPDFObjectHandle properties = document.Dictionary().getKey("/Resources").getKey("/Properties");
  EXPECT_EQ(properties.getKeys().size(), kMany + 1U);
}

/// The same for taking back what watches the resource, at the end.
TEST(ContainerDictionary, OfTheResourcesCanHaveManyNames) {
  constexpr int kMany = 200'000;
  std::string content;
  std::string names;
  for (int i = 0; i < kMany; ++i) {
    content += "/P /N" + std::to_string(i) + " BDC EMC\n";
    names += "/N" + std::to_string(i) + " 13 0 R";
  }
  ContentDocument document(PageSource(content).Resources("/Properties <<" + names + ">>"));
  EXPECT_EQ(document.Host()->Contents().McidOf(document.At({kMany - 1})), 7);
  document.Host()->Contents().DropUnchanged();
}

TEST(ContainerDictionary, OfTheResourcesChangesNoContent) {
  ContentDocument document("/P /Pr0 BDC EMC");
  Cos().CosDictPutKeyString(document.Properties(document.At({0})), "MCID", document.Host().Integer(3));
  document.Commit();
  EXPECT_EQ(document.Tree(), "P#3[]");
  EXPECT_EQ(document.Saved(), "/P /Pr0 BDC EMC");
}

TEST(ContainerDictionary, KeepsResourcesThatOtherPagesShare) {
  ContentDocument document("/P <</MCID 0>> BDC EMC");
  const CosObj dict = document.Properties(document.At({0}));
  Cos().CosDictPutKeyString(dict, "X", document.Host().Object(13));
  document.Commit();
  document.Host()->Contents().WriteCommitted();
  QPDFObjectHandle shared = document.Host()->Pdf().getObjectByID(4, 0);
  EXPECT_FALSE(shared.getKey("/Properties").hasKey("/Pr1"));
}

TEST(ContainerDictionary, ThatIsDamagedIsNone) {
  ContentDocument document("/P <</MCID>> BDC EMC /P << 5 (x) >> BDC EMC /P <<<<<< BDC EMC");
  for (int i = 0; i < 3; ++i) {
    CosObj dict{};
    const ASBool has = ReadContent().PDEContainerGetDict(document.At({i}), &dict, nullptr);
    EXPECT_EQ(Cos().CosObjGetType(dict), has == 1 ? CosDict : CosNull) << i;
  }
}

TEST(ContainerTag, IsReadAndSet) {
  ContentDocument document("/P <</MCID 0>> BDC /Im Do EMC /Q BMC EMC");
  EXPECT_STREQ(AtomText(ReadContent().PDEContainerGetMCTag(document.At({0}))), "P");
  WriteContent().PDEContainerSetMCTag(document.At({0}), Intern("Artifact"));
  WriteContent().PDEContainerSetMCTag(document.At({1}), Intern("A B"));
  EXPECT_EQ(document.Tree(), "Artifact#0[image] A B[]");
  document.Commit();
  EXPECT_EQ(document.Saved(), "/Artifact <</MCID 0>> BDC /Im Do EMC /A#20B BMC EMC");
}

TEST(ContainerTag, ChangesTogetherWithTheDictionary) {
  ContentDocument document("/P <</MCID 0/Lang(de)>> BDC /Im Do EMC");
  WriteContent().PDEContainerSetMCTag(document.At({0}), Intern("Artifact"));
  Cos().CosDictRemoveKeyString(document.Properties(document.At({0})), "MCID");
  document.Commit();
  EXPECT_EQ(document.Saved(), "/Artifact << /Lang (de) >> BDC /Im Do EMC");
}

TEST(ContainerTag, OfTheSameNameChangesNothing) {
  ContentDocument document("/P BMC EMC");
  WriteContent().PDEContainerSetMCTag(document.At({0}), Intern("P"));
  EXPECT_FALSE(document.Model().IsEdited());
}

TEST(ContainerTag, IsWrittenAsItWasCommitted) {
  ContentDocument document("/P BMC EMC");
  WriteContent().PDEContainerSetMCTag(document.At({0}), Intern("Q"));
  document.Commit();
  WriteContent().PDEContainerSetMCTag(document.At({0}), Intern("R"));
  EXPECT_EQ(document.Saved(), "/Q BMC EMC");
}

TEST(SetContent, OfTheOwnListDoesNothing) {
  ContentDocument document("/P BMC /Im Do EMC");
  WriteContent().PDEContainerSetContent(document.At({0}), document.ListAt({0}));
  EXPECT_FALSE(document.Model().IsEdited());
}

TEST(SetContent, OfAnEmptyListEmptiesTheContainer) {
  ContentDocument document("/P BMC /Im Do /Q BMC EMC EMC /R BMC EMC");
  WriteContent().PDEContainerSetContent(document.At({0}), document.ListAt({1}));
  document.Commit();
  EXPECT_EQ(document.Tree(), "P[] R[]");
  EXPECT_EQ(document.Saved(), "/P BMC EMC /R BMC EMC");
}

TEST(SetContent, RefusesTheListThatTheContainerLiesIn) {
  ContentDocument document("/P BMC /Q BMC EMC EMC");
  const PDEContainer inner = document.At({0, 0});
  EXPECT_EQ(RaisedCode([&] { WriteContent().PDEContainerSetContent(inner, document.Root()); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { WriteContent().PDEContainerSetContent(inner, document.ListAt({0})); }), kASBadParameter);
}

TEST(SetContent, RefusesContentThatStandsElsewhere) {
  ContentDocument document("/P BMC EMC /Q BMC /Im Do EMC");
  EXPECT_EQ(RaisedCode([&] { WriteContent().PDEContainerSetContent(document.At({0}), document.ListAt({1})); }),
            kASNotSupported);
}

TEST(ContentHandles, OfNothingRaise) {
  ContentDocument document("/P BMC (a) Tj EMC");
  const PDEElement container = document.At({0});
  char local[64] = {};
  for (const PDEObject dead : {PDEObject{nullptr}, reinterpret_cast<PDEObject>(local), reinterpret_cast<PDEObject>(8),
                               reinterpret_cast<PDEObject>(reinterpret_cast<char*>(container) + 1),
                               reinterpret_cast<PDEObject>(reinterpret_cast<char*>(container) + 32 * 100)}) {
    EXPECT_EQ(RaisedCode([&] { ReadContent().PDEObjectGetType(dead); }), kASBadParameter);
    EXPECT_EQ(RaisedCode([&] { ReadContent().PDEContentGetNumElems(dead); }), kASBadParameter);
    EXPECT_EQ(RaisedCode([&] { ReadContent().PDETextGetNumChars(dead); }), kASBadParameter);
    EXPECT_EQ(RaisedCode([&] { ReadContent().PDEElementGetBBox(dead, nullptr); }), kASBadParameter);
    EXPECT_EQ(RaisedCode([&] { WriteContent().PDEFontGetCreateNeedFlags(dead); }), kASBadParameter);
    EXPECT_EQ(RaisedCode([&] { ReadContent().PDERelease(dead); }), kASBadParameter);
  }
}

TEST(ContentHandles, OfTheWrongKindRaise) {
  ContentDocument document("/P BMC (a) Tj EMC");
  const PDEElement container = document.At({0});
  const PDEElement text = document.At({0, 0});
  const PDEContent list = document.Root();
  EXPECT_EQ(ReadContent().PDEObjectGetType(list), kPDEContent);
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEContentGetNumElems(container); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEContainerGetContent(list); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEContainerGetContent(text); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDETextGetNumChars(container); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEElementGetBBox(list, nullptr); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEGroupGetContent(container); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { WriteContent().PDEGroupSetContent(container, list); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { WriteContent().PDEFontGetCreateNeedFlags(text); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEContainerGetMCTag(text); }), kASWrongType);
}

TEST(ContentHandles, DieWithTheirDocument) {
  PDEContent list = nullptr;
  {
    ContentDocument document("(a) Tj");
    list = document.Root();
  }
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEContentGetNumElems(list); }), kASBadParameter);
}

TEST(ContentHandles, RaiseForIndicesOutside) {
  ContentDocument document("(a) Tj");
  const PDEContent list = document.Root();
  for (const ASInt32 index : {-1, 1, 0x7FFFFFFF}) {
    EXPECT_EQ(RaisedCode([&] { ReadContent().PDEContentGetElem(list, index); }), kASOutOfRange);
    EXPECT_EQ(RaisedCode([&] { ReadContent().PDETextGetText(document.At({0}), kPDETextChar, index, nullptr); }),
              kASOutOfRange);
    EXPECT_EQ(RaisedCode([&] { ReadContent().PDETextGetText(document.At({0}), kPDETextRun, index, nullptr); }),
              kASOutOfRange);
  }
}

}  // namespace
}  // namespace tgx::host
