#include <gtest/gtest.h>

#include "host/pdfedit/PageContents.h"
#include "tests/host/pdsedit/StructureFixture.h"

namespace tgx::host::structure {
namespace {

using test::Marked;
using test::Page;
using test::Text;

/// Two pages. A holds MCID 0 of page 1, B an MCR of MCID 0 of page 2, C nothing; page 1 has MCID 1 and a container without
/// one besides.
class MarkedContentKids : public testing::Test {
 protected:
  static std::string File() {
    TestDocument source;
    Page& first = source.AddPage();
    Page& second = source.AddPage();
    source.Tree(
        {Element("A").Set("Pg", "$page1").Mcid(first, 0), Element("B").Set("Pg", "$page1").Mcr(second, 0), Element("C")});
    first.Add(Marked("P", "<</MCID 0>>", {Text("a")})).Add(Marked("P", "<</MCID 1>>", {Text("b")}));
    first.Add(Marked("P", "<</Lang(de)>>", {Text("c")}));
    second.Add(Marked("P", "<</MCID 0>>", {Text("d")}));
    return source.Write();
  }

  PDEContainer Container(int page, int index) {
    const PDPage handle = Tables()->pdModel->PDDocAcquirePage(document_.Handle(), page);
    const PDEContent content = Tables()->pagePDEContent->PDPageAcquirePDEContent(handle, nullptr);
    return Tables()->pdfEditRead->PDEContentGetElem(content, index);
  }

  void InsertMC(PDSElement element, int page, PDEContainer container, ASInt32 insertAfter = kPDSAfterLast) {
    Write().PDSElementInsertMCAsKid(element, document_.PageObject(page), container, insertAfter);
  }

  bool IsParsed(int page) { return Document::Of(document_.Handle()).Contents().Find(page) != nullptr; }

  StructureDocument document_{File()};
  PDSElement a_ = document_.At({0});
  PDSElement b_ = document_.At({1});
  PDSElement c_ = document_.At({2});
};

TEST_F(MarkedContentKids, HaveTheContainerThatTheContentGives) {
  EXPECT_EQ(KidOf(a_, 0).pointer, Container(0, 0));
  EXPECT_EQ(KidOf(b_, 0).pointer, Container(1, 0));
}

TEST_F(MarkedContentKids, DoNotParseThePageUnlessTheContainerIsAskedFor) {
  CosObj kid = kNullObject, page = kNullObject;
  PDSMCInfo info;
  Read().PDSElementGetKidWithMCInfo(a_, 0, &kid, &info, nullptr, &page);
  EXPECT_FALSE(IsParsed(0));
  KidOf(a_, 0);
  EXPECT_TRUE(IsParsed(0));
  EXPECT_FALSE(IsParsed(1));
}

TEST_F(MarkedContentKids, LoseTheContainerWithItsMcid) {
  CosObj properties = kNullObject;
  Tables()->pdfEditRead->PDEContainerGetDict(Container(0, 0), &properties, nullptr);
  Cos().CosDictRemoveKeyString(properties, "MCID");
  EXPECT_EQ(KidOf(a_, 0).pointer, nullptr);
  EXPECT_EQ(KidOf(a_, 0).mcid, 0);
  Write().PDSElementRemoveKidMC(a_, document_.PageObject(0), nullptr);
  EXPECT_EQ(Read().PDSElementGetNumKids(a_), 0);
}

TEST_F(MarkedContentKids, AreNumbersOnTheElementsOwnPage) {
  InsertMC(a_, 0, Container(0, 1));
  const SeenKid kid = KidOf(a_, 1);
  EXPECT_EQ(Cos().CosObjGetType(kid.kid), CosInteger);
  EXPECT_EQ(kid.mcid, 1);
  EXPECT_EQ(kid.page, document_.PageObject(0));
  EXPECT_EQ(kid.pointer, Container(0, 1));
}

TEST_F(MarkedContentKids, GiveThePageToAnElementWithoutPageAndKids) {
  InsertMC(c_, 1, Container(1, 0));
  EXPECT_EQ(Cos().CosObjGetType(KidOf(c_, 0).kid), CosInteger);
  EXPECT_EQ(Cos().CosDictGetKeyString(c_, "Pg"), document_.PageObject(1));
}

TEST_F(MarkedContentKids, AreReferencesOnAnotherPage) {
  InsertMC(a_, 1, Container(1, 0), kPDSBeforeFirst);
  const SeenKid kid = KidOf(a_, 0);
  EXPECT_EQ(Cos().CosNameValue(Cos().CosDictGetKeyString(kid.kid, "Type")), Intern("MCR"));
  EXPECT_EQ(Cos().CosDictGetKeyString(kid.kid, "Pg"), document_.PageObject(1));
  EXPECT_EQ(Cos().CosIntegerValue(Cos().CosDictGetKeyString(kid.kid, "MCID")), 0);
  EXPECT_EQ(kid.pointer, Container(1, 0));
}

TEST_F(MarkedContentKids, AreReferencesInAnElementWithKidsAndWithoutPage) {
  Write().PDSElementInsertKid(c_, document_.NewElement("Span"), 0);
  InsertMC(c_, 1, Container(1, 0));
  EXPECT_EQ(Cos().CosObjGetType(KidOf(c_, 1).kid), CosDict);
  EXPECT_EQ(Cos().CosDictKnownKeyString(c_, "Pg"), 0);
}

TEST_F(MarkedContentKids, AreNotAddedTwice) {
  InsertMC(a_, 0, Container(0, 0));
  InsertMC(b_, 1, Container(1, 0));
  EXPECT_EQ(Read().PDSElementGetNumKids(a_), 1);
  EXPECT_EQ(Read().PDSElementGetNumKids(b_), 1);
}

TEST_F(MarkedContentKids, OfTheSameNumberOnAnotherPageAreOthers) {
  InsertMC(b_, 0, Container(0, 0));
  EXPECT_EQ(KidsOf(b_), "MC MC");
}

TEST_F(MarkedContentKids, NeedAContainerWithAnMcidAndAPage) {
  EXPECT_EQ(RaisedCode([&] { InsertMC(c_, 0, Container(0, 2)); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { InsertMC(c_, 0, nullptr); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { InsertMC(document_.Root(), 0, Container(0, 0)); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { InsertMC(c_, 0, Container(0, 1), -2); }), kASOutOfRange);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertMCAsKid(c_, a_, Container(0, 0), 0); }), kASNotFound);
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementInsertMCAsKid(c_, kNullObject, Container(0, 0), 0); }), kASBadParameter);
  EXPECT_EQ(Read().PDSElementGetNumKids(c_), 0);
}

TEST_F(MarkedContentKids, AreRemovedByTheirContainer) {
  Write().PDSElementRemoveKidMC(b_, document_.PageObject(1), Container(1, 0));
  EXPECT_EQ(Read().PDSElementGetNumKids(b_), 0);
}

TEST_F(MarkedContentKids, OfAnotherPageStayWhenOneIsRemoved) {
  Write().PDSElementRemoveKidMC(b_, document_.PageObject(0), Container(0, 0));
  EXPECT_EQ(Read().PDSElementGetNumKids(b_), 1);
}

TEST_F(MarkedContentKids, RemovalOfAContainerThatNoKidStandsForIsNothing) {
  Write().PDSElementRemoveKidMC(a_, document_.PageObject(0), Container(0, 1));
  Write().PDSElementRemoveKidMC(a_, document_.PageObject(0), Container(0, 2));
  EXPECT_EQ(Read().PDSElementGetNumKids(a_), 1);
}

TEST_F(MarkedContentKids, WithoutContainerAreNotThoseThatHaveOne) {
  EXPECT_EQ(RaisedCode([&] { Write().PDSElementRemoveKidMC(a_, document_.PageObject(0), nullptr); }), kASNotFound);
}

TEST_F(MarkedContentKids, LeadBackFromTheParentTreeWhereTheyMoved) {
  Write().PDSElementRemoveKidMC(a_, document_.PageObject(0), Container(0, 0));
  InsertMC(c_, 0, Container(0, 0));
  const std::string saved = document_.Save();
  EXPECT_EQ(test::TreeText(saved), "A\nB\n  mcr 0 page 2\nC\n  mcid 0 page 1\n");
  test::ExpectSound(saved);
}

TEST_F(MarkedContentKids, RecordOfAContainerHasItsMcid) {
  PDSMCInfo info;
  Read().PDSMCGetInfo(document_.PageObject(0), Container(0, 1), &info);
  EXPECT_EQ(info.size, 40U);
  EXPECT_EQ(info.mcid, 1);
  EXPECT_EQ(info.page, document_.PageObject(0));
  EXPECT_EQ(info.stream, kNullObject);
  Read().PDSMCGetInfo(document_.PageObject(0), Container(0, 2), &info);
  EXPECT_EQ(info.mcid, -1);
}

}  // namespace
}  // namespace tgx::host::structure
