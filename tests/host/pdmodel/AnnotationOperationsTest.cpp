#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/pdmodel/Pages.h"

namespace tgx::host {
namespace {

constexpr ASFixed kPoint = 0x10000;
constexpr ASFixedRect kRect = {10 * kPoint, 40 * kPoint, 30 * kPoint, 20 * kPoint};

const CosTable& Cos() { return *Tables()->cos; }

/// The subtypes of a page's annotations, as the list gives them.
std::string Subtypes(PDPage page) {
  std::string text;
  for (ASInt32 i = 0; i < Model().PDPageGetNumAnnots(page); ++i) {
    text += AtomText(Model().PDAnnotGetSubtype(Model().PDPageGetAnnot(page, i)));
    text += ' ';
  }
  return text;
}

/// A page with the annotations A, B and C, and items between them that are none.
class AnnotationList : public testing::Test {
 protected:
  HostDocument document = WithPages({"/Annots [7 20 0 R null 21 0 R 99 0 R [] << /Subtype /C >> (x)]"},
                                    "20 0 obj\n<< /Subtype /A >>\nendobj\n21 0 obj\n<< /Subtype /B >>\nendobj\n");
  PDPage page = PageOf(document, 0);

  void AddAfter(ASInt32 index) { Model().PDPageAddNewAnnot(page, index, Intern("X"), &kRect); }
};

TEST_F(AnnotationList, IsTheDictionariesInOrder) { EXPECT_EQ(Subtypes(page), "A B C "); }

TEST_F(AnnotationList, RaisesOutsideIt) {
  EXPECT_EQ(RaisedCode([&] { Model().PDPageGetAnnot(page, 3); }), kASOutOfRange);
  EXPECT_EQ(RaisedText([&] { Model().PDPageGetAnnot(page, -1); }), "test.pdf: page 1: no annotation -1 among 3");
  EXPECT_EQ(RaisedCode([&] { Model().PDPageRemoveAnnot(page, 3); }), kASOutOfRange);
}

TEST_F(AnnotationList, GivesTheSameHandleEachTime) {
  EXPECT_EQ(Model().PDPageGetAnnot(page, 0), document.Object(20));
  EXPECT_EQ(Model().PDPageGetAnnot(page, 2), Model().PDPageGetAnnot(page, 2));
}

TEST_F(AnnotationList, TakesOneBehindAnIndex) {
  AddAfter(0);
  EXPECT_EQ(Subtypes(page), "A X B C ");
}

TEST_F(AnnotationList, TakesOneBeforeTheFirst) {
  AddAfter(kPDAnnotBeforeFirst);
  EXPECT_EQ(Subtypes(page), "X A B C ");
}

TEST_F(AnnotationList, TakesOneBehindTheLast) {
  AddAfter(kPDAnnotAfterLast);
  EXPECT_EQ(Subtypes(page), "A B C X ");
}

TEST_F(AnnotationList, TakesAnIndexPastTheLastForTheLast) {
  AddAfter(2);
  AddAfter(700);
  EXPECT_EQ(Subtypes(page), "A B C X X ");
}

TEST_F(AnnotationList, RaisesForAPlaceBelowBehindTheLast) {
  EXPECT_EQ(RaisedCode([&] { AddAfter(-3); }), kASOutOfRange);
  EXPECT_EQ(Subtypes(page), "A B C ");
}

TEST_F(AnnotationList, KeepsWhatIsNoAnnotationWhereItIs) {
  AddAfter(0);
  Model().PDPageRemoveAnnot(page, 0);
  const std::string text = Text(Cos().CosDictGetKeyString(Model().PDPageGetCosObj(page), "Annots"));
  EXPECT_TRUE(text.starts_with("[ 7 ")) << text;
  EXPECT_TRUE(text.ends_with(" 99 0 R [ ] << /Subtype /C >> (x) ]")) << text;
}

TEST_F(AnnotationList, ShiftsWhenOneIsRemoved) {
  const PDAnnot second = Model().PDPageGetAnnot(page, 1);
  Model().PDPageRemoveAnnot(page, 0);
  EXPECT_EQ(Model().PDPageGetAnnot(page, 0), second);
  EXPECT_EQ(Model().PDPageGetNumAnnots(page), 2);
}

TEST_F(AnnotationList, LeavesARemovedOneAlive) {
  const PDAnnot removed = Model().PDPageGetAnnot(page, 0);
  Model().PDPageRemoveAnnot(page, 0);
  EXPECT_EQ(Model().PDAnnotGetSubtype(removed), Intern("A"));
  Model().PDPageAddAnnot(page, kPDAnnotAfterLast, removed);
  EXPECT_EQ(Subtypes(page), "B C A ");
}

TEST_F(AnnotationList, RefusesOneThatItHas) {
  EXPECT_EQ(RaisedCode([&] { Model().PDPageAddAnnot(page, kPDAnnotAfterLast, document.Object(20)); }), kASBadParameter);
}

TEST_F(AnnotationList, RefusesWhatIsNoAnnotation) {
  EXPECT_EQ(RaisedCode([&] { Model().PDPageAddAnnot(page, 0, document.Array()); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Model().PDPageAddAnnot(page, 0, CosObj{0, 0}); }), kASBadParameter);
}

TEST_F(AnnotationList, RefusesOneOfAnotherDocument) {
  HostDocument other;
  EXPECT_EQ(RaisedCode([&] { Model().PDPageAddAnnot(page, 0, other.Dict()); }), kASBadParameter);
}

TEST_F(AnnotationList, FollowsCosEditsOfTheArray) {
  Cos().CosArrayInsert(Cos().CosDictGetKeyString(Model().PDPageGetCosObj(page), "Annots"), 0, document.Object(10));
  EXPECT_EQ(Model().PDPageGetNumAnnots(page), 4);
}

TEST_F(AnnotationList, FollowsCosEditsOfThePage) {
  EXPECT_EQ(Model().PDPageGetNumAnnots(page), 3);
  Cos().CosDictRemoveKeyString(Model().PDPageGetCosObj(page), "Annots");
  EXPECT_EQ(Model().PDPageGetNumAnnots(page), 0);
}

TEST_F(AnnotationList, IsWrittenWithTheDocument) {
  AddAfter(0);
  HostDocument again = document.Reopened();
  EXPECT_EQ(Subtypes(PageOf(again, 0)), "A X B C ");
}

TEST_F(AnnotationList, MarksTheDocumentChangedByEditsOnly) {
  Subtypes(page);
  EXPECT_FALSE(document->IsChanged());
  Model().PDPageRemoveAnnot(page, 0);
  EXPECT_TRUE(document->IsChanged());
}

TEST(AnnotationLists, AreEmptyForWhatIsNoArray) {
  for (const char* annots : {"", "/Annots null", "/Annots 7", "/Annots << /Subtype /A >>", "/Annots []", "/Annots 99 0 R"}) {
    HostDocument document = WithPages({annots});
    const PDPage page = PageOf(document, 0);
    EXPECT_EQ(Model().PDPageGetNumAnnots(page), 0) << annots;
    Model().PDPageAddNewAnnot(page, 5, Intern("X"), &kRect);
    EXPECT_EQ(Subtypes(page), "X ") << annots;
  }
}

TEST_F(AnnotationList, RefusesOneThatItWasGiven) {
  const PDAnnot added = Model().PDPageAddNewAnnot(page, 0, Intern("X"), &kRect);
  EXPECT_EQ(RaisedCode([&] { Model().PDPageAddAnnot(page, kPDAnnotAfterLast, added); }), kASBadParameter);
  EXPECT_EQ(Subtypes(page), "A X B C ");
}

TEST_F(AnnotationList, StaysTrueThroughInsertionsAndRemovals) {
  std::vector<std::string> expected = {"A", "B", "C"};
  std::mt19937 random(1);
  for (int i = 0; i < 200; ++i) {
    const auto count = static_cast<int>(expected.size());
    const int index = static_cast<int>(random() % static_cast<unsigned>(count + 3)) - 2;  // from behind the last to past it
    if (random() % 3 == 0 && index >= 0 && index < count) {
      Model().PDPageRemoveAnnot(page, index);
      expected.erase(expected.begin() + index);
    } else {
      const std::string name = "X" + std::to_string(i);
      Model().PDPageAddNewAnnot(page, index, Intern(name.c_str()), &kRect);
      const int place = index == kPDAnnotAfterLast ? count : std::min(index + 1, count);
      expected.insert(expected.begin() + place, name);
    }
    std::string text;
    for (const std::string& name : expected) text += name + " ";
    ASSERT_EQ(Subtypes(page), text) << "step " << i;
  }
}

TEST(AnnotationLists, OfTwoPagesWithOneArrayChangeApart) {
  HostDocument document = WithPages({"/Annots 20 0 R", "/Annots 20 0 R"},
                                    "20 0 obj\n[30 0 R 31 0 R]\nendobj\n30 0 obj\n<< /Subtype /A >>\nendobj\n"
                                    "31 0 obj\n<< /Subtype /B >>\nendobj\n");
  const PDPage first = PageOf(document, 0);
  const PDPage second = PageOf(document, 1);
  Model().PDPageRemoveAnnot(first, 0);
  Model().PDPageAddNewAnnot(second, 0, Intern("X"), &kRect);
  EXPECT_EQ(Subtypes(first), "B ");
  EXPECT_EQ(Subtypes(second), "A X B ");
}

TEST(AnnotationLists, OfTwoPagesWithOneArrayBecomeArraysThatCanBeShared) {
  HostDocument document = WithPages({"/Annots 20 0 R", "/Annots 20 0 R"}, "20 0 obj\n[<< /Subtype /A >>]\nendobj\n");
  const PDPage page = PageOf(document, 0);
  Model().PDPageRemoveAnnot(page, 0);
  const CosObj array = Cos().CosDictGetKeyString(Model().PDPageGetCosObj(page), "Annots");
  EXPECT_NE(array, document.Object(20));
  EXPECT_EQ(Cos().CosObjIsIndirect(array), 1);
}

TEST(AnnotationLists, StayTrueThroughManyRemovals) {
  HostDocument document =
      WithPages({"/Annots [7 << /Subtype /A >> null << /Subtype /B >> << /Subtype /C >> (x) << /Subtype /D >>]"});
  const PDPage page = PageOf(document, 0);
  Model().PDPageRemoveAnnot(page, 1);
  EXPECT_EQ(Subtypes(page), "A C D ");
  Model().PDPageRemoveAnnot(page, 1);
  Model().PDPageRemoveAnnot(page, 1);
  EXPECT_EQ(Subtypes(page), "A ");
  Model().PDPageAddNewAnnot(page, 0, Intern("X"), &kRect);
  EXPECT_EQ(Subtypes(page), "A X ");
}

TEST(AnnotationLists, OfAPageThatStandsTwiceInTheTreeChangeApart) {
  HostDocument document = HostDocument::FromObjects(
      "<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Type /Pages /Count 2 /Kids [10 0 R 10 0 R] >>\nendobj\n"
      "10 0 obj\n<< /Type /Page /Parent 2 0 R /Annots [<< /Subtype /A >> << /Subtype /B >>] >>");
  Model().PDPageRemoveAnnot(PageOf(document, 1), 0);
  EXPECT_EQ(Subtypes(PageOf(document, 0)), "A B ");
  EXPECT_EQ(Subtypes(PageOf(document, 1)), "B ");
}

TEST(AnnotationLists, OfOnePageKeepTheirArrayWhenTheyChange) {
  HostDocument document = WithPages({"/Annots 20 0 R"}, "20 0 obj\n[<< /Subtype /A >>]\nendobj\n");
  const PDPage page = PageOf(document, 0);
  Model().PDPageRemoveAnnot(page, 0);
  EXPECT_EQ(Text(document.Object(20)), "[ ]");
  EXPECT_EQ(Cos().CosDictGetKeyString(Model().PDPageGetCosObj(page), "Annots"), document.Object(20));
}

TEST(NewAnnotations, HaveTypeSubtypeAndRectangle) {
  HostDocument document = WithPages({""});
  const PDPage page = PageOf(document, 0);
  const ASFixedRect rect = {10 * kPoint, 40 * kPoint, 30 * kPoint + kPoint / 2, 20 * kPoint};
  const PDAnnot annotation = Model().PDPageCreateAnnot(page, Intern("Link"), &rect);
  EXPECT_EQ(Text(annotation), "<< /Rect [ 10 20 30.5 40 ] /Subtype /Link /Type /Annot >>");
  EXPECT_EQ(Cos().CosObjIsIndirect(annotation), 1);
  EXPECT_EQ(Model().PDPageGetNumAnnots(page), 0);
}

TEST(NewAnnotations, KnowTheirPageOnceTheyAreOnIt) {
  HostDocument document = WithPages({""});
  const PDPage page = PageOf(document, 0);
  const PDAnnot annotation = Model().PDPageAddNewAnnot(page, kPDAnnotAfterLast, Intern("Highlight"), &kRect);
  EXPECT_EQ(Cos().CosDictGetKeyString(annotation, "P"), Model().PDPageGetCosObj(page));
  EXPECT_EQ(Model().PDPageGetAnnot(page, 0), annotation);
}

TEST(NewAnnotations, BecomeIndirectOnAPage) {
  HostDocument document = WithPages({""});
  const CosObj annotation = document.Dict();
  Model().PDPageAddAnnot(PageOf(document, 0), kPDAnnotAfterLast, annotation);
  EXPECT_EQ(Cos().CosObjIsIndirect(annotation), 1);
  EXPECT_EQ(Model().PDPageGetAnnot(PageOf(document, 0), 0), annotation);
}

TEST(NewAnnotations, KeepAnySubtypeName) {
  HostDocument document = WithPages({""});
  const std::string name = "odd #41 (name) \xC3\xA4";
  Model().PDPageAddNewAnnot(PageOf(document, 0), 0, Intern(name), &kRect);
  HostDocument again = document.Reopened();
  EXPECT_EQ(Subtypes(PageOf(again, 0)), name + " ");
}

TEST(NewAnnotations, NeedARectangleAndAnAtom) {
  HostDocument document = WithPages({""});
  EXPECT_EQ(RaisedCode([&] { Model().PDPageCreateAnnot(PageOf(document, 0), Intern("Link"), nullptr); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDPageCreateAnnot(PageOf(document, 0), ASAtomNull, &kRect); }), kASBadParameter);
}

class Annotation : public testing::Test {
 protected:
  HostDocument document = WithPages({""});
  PDAnnot annotation = Model().PDPageAddNewAnnot(PageOf(document, 0), 0, Intern("Link"), &kRect);

  std::string Entry(const char* key) {
    const CosObj value = Cos().CosDictGetKeyString(annotation, key);
    return IsNullObject(value) ? "none" : Text(value);
  }
};

TEST_F(Annotation, IsItsDictionary) {
  EXPECT_EQ(Model().PDAnnotGetCosObj(annotation), annotation);
  EXPECT_EQ(RaisedCode([&] { Model().PDAnnotGetCosObj(CosObj{0, 0}); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDAnnotGetCosObj(document.Integer(1)); }), kASWrongType);
}

TEST_F(Annotation, WithoutASubtypeHasNoAtom) {
  EXPECT_EQ(Model().PDAnnotGetSubtype(document.Dict()), ASAtomNull);
  Cos().CosDictPutKeyString(annotation, "Subtype", document.Integer(7));
  EXPECT_EQ(Model().PDAnnotGetSubtype(annotation), ASAtomNull);
}

TEST_F(Annotation, TakesFlags) {
  Model().PDAnnotSetFlags(annotation, 4);
  EXPECT_EQ(Entry("F"), "4");
}

TEST_F(Annotation, TakesATitleByteForByte) {
  Model().PDAnnotSetTitle(annotation, "a\0b", 3);
  ASTArraySize count = 0;
  const char* bytes = Cos().CosStringValue(Cos().CosDictGetKeyString(annotation, "T"), &count);
  EXPECT_EQ(std::string(bytes, static_cast<std::size_t>(count)), std::string("a\0b", 3));
  Model().PDAnnotSetTitle(annotation, nullptr, 0);
  EXPECT_EQ(Entry("T"), "()");
}

TEST_F(Annotation, RefusesATitleWithoutBytes) {
  EXPECT_EQ(RaisedCode([&] { Model().PDAnnotSetTitle(annotation, nullptr, 1); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDAnnotSetTitle(annotation, "x", -1); }), kASBadParameter);
}

TEST_F(Annotation, LosesItsDestinationForAnAction) {
  Cos().CosDictPutKeyString(annotation, "Dest", document.Name("there"));
  const CosObj action = document.Dict();
  Model().PDLinkAnnotSetAction(annotation, action);
  EXPECT_EQ(Cos().CosDictGetKeyString(annotation, "A"), action);
  EXPECT_EQ(Entry("Dest"), "none");
}

TEST_F(Annotation, RefusesAnActionThatIsNone) {
  HostDocument other;
  EXPECT_EQ(RaisedCode([&] { Model().PDLinkAnnotSetAction(annotation, CosObj{0, 0}); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDLinkAnnotSetAction(annotation, document.Array()); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Model().PDLinkAnnotSetAction(annotation, other.Dict()); }), kASBadParameter);
  EXPECT_EQ(Entry("A"), "none");
}

PDLinkAnnotBorder BorderFrom(const std::string& entries) {
  HostDocument document = WithPages({"/Annots [<< " + entries + " >>]"});
  PDLinkAnnotBorder border;
  std::memset(&border, 0x55, sizeof border);
  Model().PDLinkAnnotGetBorder(Model().PDPageGetAnnot(PageOf(document, 0), 0), &border);
  return border;
}

TEST(Border, IsOnePointWithoutOne) {
  for (const char* entries : {"", "/Border null", "/Border 7", "/Border []", "/Border [1 2]"}) {
    const PDLinkAnnotBorder border = BorderFrom(entries);
    EXPECT_EQ(border.hCornerRadius, 0) << entries;
    EXPECT_EQ(border.vCornerRadius, 0) << entries;
    EXPECT_EQ(border.width, kPoint) << entries;
    EXPECT_EQ(border.dashArrayLen, 0) << entries;
  }
}

TEST(Border, IsRead) {
  const PDLinkAnnotBorder border = BorderFrom("/Border [1 2.5 0 [3 4]]");
  EXPECT_EQ(border.hCornerRadius, kPoint);
  EXPECT_EQ(border.vCornerRadius, 2 * kPoint + kPoint / 2);
  EXPECT_EQ(border.width, 0);
  EXPECT_EQ(border.dashArrayLen, 2);
  EXPECT_EQ(border.dashArray[0], 3 * kPoint);
  EXPECT_EQ(border.dashArray[1], 4 * kPoint);
  EXPECT_EQ(border.dashArray[2], 0);
}

TEST(Border, HasAtMostFourDashes) { EXPECT_EQ(BorderFrom("/Border [0 0 1 [1 2 3 4 5 6]]").dashArrayLen, 4); }

TEST_F(Annotation, TakesABorder) {
  PDLinkAnnotBorder border = {0, kPoint, kPoint / 2, 0, {}};
  Model().PDLinkAnnotSetBorder(annotation, &border);
  EXPECT_EQ(Entry("Border"), "[ 0 1 0.5 ]");
  border.dashArrayLen = 2;
  border.dashArray[0] = 3 * kPoint;
  Model().PDLinkAnnotSetBorder(annotation, &border);
  EXPECT_EQ(Entry("Border"), "[ 0 1 0.5 [ 3 0 ] ]");
}

TEST_F(Annotation, RefusesABorderThatIsNone) {
  PDLinkAnnotBorder border = {0, 0, 0, 5, {}};
  EXPECT_EQ(RaisedCode([&] { Model().PDLinkAnnotSetBorder(annotation, &border); }), kASBadParameter);
  border.dashArrayLen = -1;
  EXPECT_EQ(RaisedCode([&] { Model().PDLinkAnnotSetBorder(annotation, &border); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDLinkAnnotSetBorder(annotation, nullptr); }), kASBadParameter);
  EXPECT_EQ(Entry("Border"), "none");
}

std::string Destination(const std::string& fit, const ASFixedRect* rect = &kRect) {
  HostDocument document = WithPages({"", ""});
  return Text(Model().PDViewDestCreate(document->Handle(), PageOf(document, 1), Intern(fit), rect, 2 * kPoint, 7));
}

TEST(Destination, HasThePlacesOfItsKind) {
  EXPECT_EQ(Destination("XYZ"), "[ 11 0 R /XYZ 10 40 2 ]");
  EXPECT_EQ(Destination("Fit"), "[ 11 0 R /Fit ]");
  EXPECT_EQ(Destination("FitB"), "[ 11 0 R /FitB ]");
  EXPECT_EQ(Destination("FitH"), "[ 11 0 R /FitH 40 ]");
  EXPECT_EQ(Destination("FitBH"), "[ 11 0 R /FitBH 40 ]");
  EXPECT_EQ(Destination("FitV"), "[ 11 0 R /FitV 10 ]");
  EXPECT_EQ(Destination("FitBV"), "[ 11 0 R /FitBV 10 ]");
  EXPECT_EQ(Destination("FitR"), "[ 11 0 R /FitR 10 20 30 40 ]");
}

TEST(Destination, OfAnotherKindRaises) {
  EXPECT_EQ(RaisedCode([] { Destination("FitX"); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([] { Destination(""); }), kASBadParameter);
}

TEST(Destination, NeedsARectangleForAPlace) {
  EXPECT_EQ(RaisedCode([] { Destination("XYZ", nullptr); }), kASBadParameter);
  EXPECT_EQ(Destination("Fit", nullptr), "[ 11 0 R /Fit ]");
}

TEST(Destination, WithoutAPageHasANumber) {
  HostDocument document = WithPages({""});
  EXPECT_EQ(Text(Model().PDViewDestCreate(document->Handle(), nullptr, Intern("Fit"), nullptr, 0, 7)), "[ 7 /Fit ]");
}

TEST(Destination, InAnotherDocumentRaises) {
  HostDocument document = WithPages({""});
  HostDocument other = WithPages({""});
  const PDPage page = PageOf(other, 0);
  EXPECT_EQ(RaisedCode([&] { Model().PDViewDestCreate(document->Handle(), page, Intern("Fit"), nullptr, 0, 0); }),
            kASBadParameter);
}

TEST(Action, GoesToADestination) {
  HostDocument document = WithPages({""});
  const PDDoc doc = document->Handle();
  const PDViewDestination dest = Model().PDViewDestCreate(doc, PageOf(document, 0), Intern("Fit"), nullptr, 0, 0);
  const PDAction action = Model().PDActionNewFromDest(doc, dest, doc);
  EXPECT_EQ(Text(action), "<< /D [ 10 0 R /Fit ] /S /GoTo >>");
  EXPECT_EQ(Cos().CosDictGetKeyString(action, "D"), dest);
}

TEST(Action, RefusesWhatIsElsewhere) {
  HostDocument document = WithPages({""});
  HostDocument other = WithPages({""});
  const PDDoc doc = document->Handle();
  const PDViewDestination dest = Model().PDViewDestCreate(doc, PageOf(document, 0), Intern("Fit"), nullptr, 0, 0);
  EXPECT_EQ(RaisedCode([&] { Model().PDActionNewFromDest(doc, dest, other->Handle()); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDActionNewFromDest(other->Handle(), dest, other->Handle()); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDActionNewFromDest(doc, dest, nullptr); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDActionNewFromDest(doc, CosObj{0, 0}, doc); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDActionNewFromDest(doc, document.Dict(), doc); }), kASWrongType);
}

}  // namespace
}  // namespace tgx::host
