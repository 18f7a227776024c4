#include <gtest/gtest.h>

#include "tests/host/pdsedit/StructureFixture.h"

namespace tgx::host::structure {
namespace {

using test::Page;

/// An element with these kids as PDF text, on a document of two pages and with a stream `$form` and a link `$link`.
class KidKinds : public testing::Test {
 protected:
  KidKinds() {
    source_.AddPage();
    source_.AddPage();
    source_.Stream("form", "<</Type/XObject/Subtype/Form/BBox[0 0 1 1]>>", "");
    link_ = source_.PageAt(2).Link("https://example.org/").Named("link");
  }

  /// The first kid of an element with this "K" and these other entries.
  SeenKid Kid(const std::string& kid, const std::string& page = "") {
    Open(kid, page);
    return KidOf(document_->At({0, 0}), 0);
  }

  /// The page of that kid, counted from 1; 0 for none.
  int PageNumber(const std::string& kid, const std::string& page = "") {
    const SeenKid seen = Kid(kid, page);
    if (seen.page == kNullObject) return 0;
    return seen.page == document_->PageObject(0) ? 1 : seen.page == document_->PageObject(1) ? 2 : -1;
  }

  void Open(const std::string& kid, const std::string& page = "") {
    Element holder = Element("P").RawKid(kid);
    if (!page.empty()) holder.Set("Pg", page);
    source_.Tree({Element("Sect")({holder})}).WithoutParentTree();
    document_ = std::make_unique<StructureDocument>(source_);
  }

  CosObj ItemOfKids() {
    const CosObj k = Cos().CosDictGetKeyString(document_->At({0, 0}), "K");
    return Cos().CosObjGetType(k) == CosArray ? Cos().CosArrayGet(k, 0) : k;
  }

  TestDocument source_;
  test::Annotation link_{nullptr};
  std::unique_ptr<StructureDocument> document_;
};

TEST_F(KidKinds, IntegerIsMarkedContentOfTheNearestPage) {
  const SeenKid kid = Kid("7", "$page2");
  EXPECT_EQ(kid.type, "MC");
  EXPECT_EQ(kid.mcid, 7);
  EXPECT_EQ(kid.page, document_->PageObject(1));
  EXPECT_EQ(kid.kid, ItemOfKids());
  EXPECT_EQ(Cos().CosIntegerValue(kid.kid), 7);
}

TEST_F(KidKinds, IntegerWithoutAnyPageHasNone) {
  const SeenKid kid = Kid("7");
  EXPECT_EQ(kid.type, "MC");
  EXPECT_EQ(kid.page, kNullObject);
  EXPECT_EQ(kid.pointer, nullptr);
}

TEST_F(KidKinds, IntegerTakesThePageOfAnAncestor) {
  source_.Tree({Element("Sect").Set("Pg", "$page2")({Element("P").RawKid("0")})}).WithoutParentTree();
  StructureDocument document(source_);
  EXPECT_EQ(KidOf(document.At({0, 0}), 0).page, document.PageObject(1));
}

TEST_F(KidKinds, NegativeIntegerIsHandedOutAsItStands) { EXPECT_EQ(Kid("-5").mcid, -5); }

TEST_F(KidKinds, HugeIntegerSaturates) { EXPECT_EQ(Kid("99999999999").mcid, 2147483647); }

TEST_F(KidKinds, RealIsUnknown) {
  const SeenKid kid = Kid("7.0");
  EXPECT_EQ(kid.type, "Unknown");
  EXPECT_EQ(kid.mcid, -1);
  EXPECT_EQ(kid.kid, ItemOfKids());
  EXPECT_EQ(kid.page, kNullObject);
}

TEST_F(KidKinds, NestedArrayIsUnknown) { EXPECT_EQ(Kid("[[1 2]]").type, "Unknown"); }

TEST_F(KidKinds, McrIsMarkedContentOfItsOwnPage) {
  const SeenKid kid = Kid("<</Type/MCR/Pg $page2/MCID 4>>", "$page1");
  EXPECT_EQ(kid.type, "MC");
  EXPECT_EQ(kid.mcid, 4);
  EXPECT_EQ(kid.page, document_->PageObject(1));
  EXPECT_EQ(kid.kid, ItemOfKids());
}

TEST_F(KidKinds, McrWithoutPageTakesTheNearest) { EXPECT_EQ(PageNumber("<</Type/MCR/MCID 4>>", "$page1"), 1); }

TEST_F(KidKinds, McrWithoutNumberIsMarkedContentMinusOne) {
  const SeenKid kid = Kid("<</Type/MCR/Pg $page1>>");
  EXPECT_EQ(kid.type, "MC");
  EXPECT_EQ(kid.mcid, -1);
}

TEST_F(KidKinds, McrOfAStreamHasNoNumberOfThePage) {
  Open("<</Type/MCR/Pg $page1/Stm $form/StmOwn $page1/MCID 4>>");
  CosObj object = kNullObject;
  PDSMCInfo info;
  void* pointer = &info;
  const ASAtom type = Read().PDSElementGetKidWithMCInfo(document_->At({0, 0}), 0, &object, &info, &pointer, nullptr);
  EXPECT_STREQ(AtomText(type), "MC");
  EXPECT_EQ(info.mcid, -1);
  EXPECT_EQ(info.stream, Cos().CosDictGetKeyString(object, "Stm"));
  EXPECT_EQ(info.streamOwner, document_->PageObject(0));
  EXPECT_EQ(info.page, document_->PageObject(0));
  EXPECT_EQ(pointer, nullptr);
}

TEST_F(KidKinds, DictionaryWithMcidIsMarkedContent) { EXPECT_EQ(Kid("<</MCID 4>>").type, "MC"); }

TEST_F(KidKinds, DictionaryWithObjIsAnObjectReference) { EXPECT_EQ(Kid("<</Obj $link>>").type, "OBJR"); }

TEST_F(KidKinds, DictionaryWithSIsAnElement) { EXPECT_EQ(Kid("<</S/Span>>").type, "StructElem"); }

TEST_F(KidKinds, ElementWithoutSHasTheEmptyType) {
  const SeenKid kid = Kid("<</Type/StructElem>>");
  EXPECT_EQ(kid.type, "StructElem");
  EXPECT_EQ(Read().PDSElementGetType(kid.kid), 0);
}

TEST_F(KidKinds, DictionaryOfAnotherTypeIsReportedWithIt) {
  const SeenKid kid = Kid("<</Type/Foo/S/P>>");
  EXPECT_EQ(kid.type, "Foo");
  EXPECT_EQ(kid.kid, ItemOfKids());
}

TEST_F(KidKinds, DictionaryWithoutAnythingIsUnknown) { EXPECT_EQ(Kid("<</Type(x)>>").type, "Unknown"); }

TEST_F(KidKinds, StreamIsReportedWithItsType) { EXPECT_EQ(Kid("$form").type, "XObject"); }

TEST_F(KidKinds, ObjectReferenceGivesTheObject) {
  const SeenKid kid = Kid("<</Type/OBJR/Pg $page2/Obj $link>>");
  EXPECT_EQ(kid.type, "OBJR");
  EXPECT_EQ(kid.mcid, -1);
  EXPECT_EQ(kid.page, document_->PageObject(1));
  EXPECT_EQ(Cos().CosNameValue(Cos().CosDictGetKeyString(kid.kid, "Subtype")), Intern("Link"));
}

TEST_F(KidKinds, ObjectReferenceThatLeadsNowhereGivesTheNullObject) {
  const SeenKid kid = Kid("<</Type/OBJR/Obj 9999 0 R>>");
  EXPECT_EQ(kid.type, "OBJR");
  EXPECT_EQ(kid.kid, kNullObject);
}

TEST_F(KidKinds, ObjectReferenceTakesThePageThatTheObjectNames) {
  link_.Set("P", "$page2");
  EXPECT_EQ(PageNumber("<</Type/OBJR/Obj $link>>"), 2);
}

TEST_F(KidKinds, ObjectReferencePrefersThePageAbove) {
  link_.Set("P", "$page2");
  EXPECT_EQ(PageNumber("<</Type/OBJR/Obj $link>>", "$page1"), 1);
}

TEST_F(KidKinds, NullItemsAreNoKids) {
  Open("null");
  EXPECT_EQ(Read().PDSElementGetNumKids(document_->At({0, 0})), 0);
}

TEST_F(KidKinds, DanglingReferencesAreNoKids) {
  Open("9999 0 R");
  EXPECT_EQ(Read().PDSElementGetNumKids(document_->At({0, 0})), 0);
}

TEST_F(KidKinds, ReferenceToAMissingPageCountsAsNoPage) {
  EXPECT_EQ(PageNumber("<</Type/MCR/Pg 9999 0 R/MCID 4>>", "$page1"), 1);
}

TEST_F(KidKinds, DictionaryThatIsNoPageOfTheDocumentIsHandedOutWithoutContent) {
  const SeenKid kid = Kid("<</Type/MCR/Pg <</Type/Page>>/MCID 4>>");
  EXPECT_EQ(kid.page, Cos().CosDictGetKeyString(kid.kid, "Pg"));
  EXPECT_EQ(kid.pointer, nullptr);
}

TEST_F(KidKinds, ElementLiesOnItsOwnPage) {
  EXPECT_EQ(PageNumber("<</S/Span/Pg $page2/K <</MCID 0/Pg $page1>>>>", "$page1"), 2);
}

TEST_F(KidKinds, ElementWithoutPageLiesOnTheFirstBelowIt) {
  const std::string deep = "<</S/Span/K [<</S/A>> 7 <</S/B/K [<</MCID 0/Pg $page2>> <</MCID 0/Pg $page1>>]>>]>>";
  EXPECT_EQ(PageNumber(deep, "$page1"), 2);
}

TEST_F(KidKinds, ElementWithoutPageBelowItTakesTheNearestAbove) {
  EXPECT_EQ(PageNumber("<</S/Span/K <</S/A>>>>", "$page2"), 2);
}

TEST_F(KidKinds, AllThreeGettersGiveOneObject) {
  Open("<</S/Span>>");
  const PDSElement parent = document_->At({0, 0});
  CosObj a = kNullObject, b = kNullObject, c = kNullObject;
  Read().PDSElementGetKid(parent, 0, &a, nullptr, nullptr);
  Read().PDSElementGetKidEx(parent, 0, &b, nullptr, nullptr, nullptr);
  Read().PDSElementGetKidWithMCInfo(parent, 0, &c, nullptr, nullptr, nullptr);
  EXPECT_EQ(a, b);
  EXPECT_EQ(a, c);
  EXPECT_EQ(Read().PDSElementGetCosObj(a), a);
}

TEST_F(KidKinds, RecordIsFilledForElementsToo) {
  Open("<</S/Span>>", "$page2");
  PDSMCInfo info;
  Read().PDSElementGetKidWithMCInfo(document_->At({0, 0}), 0, nullptr, &info, nullptr, nullptr);
  EXPECT_EQ(info.size, 40U);
  EXPECT_EQ(info.flags, 0U);
  EXPECT_EQ(info.mcid, -1);
  EXPECT_EQ(info.stream, kNullObject);
  EXPECT_EQ(info.streamOwner, kNullObject);
  EXPECT_EQ(info.page, document_->PageObject(1));
}

TEST_F(KidKinds, IndexOutOfRangeRaisesAndSaysWhere) {
  Open("<</S/Span>>");
  const PDSElement parent = document_->At({0, 0});
  for (const ASInt32 index : {1, -1, 2147483647}) {
    EXPECT_EQ(RaisedCode([&] { KidOf(parent, index); }), kASOutOfRange);
    EXPECT_EQ(RaisedCode([&] { Read().PDSTreeRootGetKid(document_->Root(), index, nullptr); }), kASOutOfRange);
  }
  EXPECT_NE(RaisedText([&] { KidOf(parent, 7); }).find("has no kid 7"), std::string::npos);
  EXPECT_EQ(RaisedText([&] { KidOf(parent, 7); }).find("structure element "), 0U);
}

TEST_F(KidKinds, ItemsOfTheRootThatAreNoElementsAreNotCounted) {
  source_.Tree({Element("Sect")}).SetTree("K", "[5 <</S/A>> <</Type/OBJR/Obj $link>> null <</S/B>>]");
  StructureDocument document(source_);
  EXPECT_EQ(KidsOf(document.Root()), "A B");
  PDSElement second = kNullObject;
  Read().PDSTreeRootGetKid(document.Root(), 1, &second);
  EXPECT_EQ(TypeOf(second), "B");
}

TEST_F(KidKinds, ItemsOfTheRootThatAreNoElementsSurviveAnEdit) {
  source_.Tree({Element("Sect")}).SetTree("K", "[5 <</S/A>> <</Type/OBJR/Obj $link>> <</S/B>>]");
  StructureDocument document(source_);
  Write().PDSElementRemoveKid(document.Root(), document.At({0}));
  EXPECT_EQ(document.SavedTree(), "B\nmcid 5 no page\nobjr Link no page\n");
}

}  // namespace
}  // namespace tgx::host::structure
