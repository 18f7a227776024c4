#include <gtest/gtest.h>

#include "tests/host/pdmodel/Pages.h"

namespace tgx::host {
namespace {

constexpr ASFixed kPoint = 0x10000;

std::string Box(PDPage page) {
  ASFixedRect box = {};
  Model().PDPageGetCropBox(page, &box);
  std::string text;
  for (const ASFixed side : {box.left, box.bottom, box.right, box.top}) {
    EXPECT_EQ(side % kPoint, 0);
    text += std::to_string(side / kPoint) + " ";
  }
  return text;
}

std::string CropBox(const std::string& pageEntries, const std::string& treeEntries = "") {
  HostDocument document = WithPages({pageEntries}, "", treeEntries);
  return Box(PageOf(document, 0));
}

TEST(Pages, AreCounted) {
  HostDocument document = WithPages({"", "", ""});
  EXPECT_EQ(Model().PDDocGetNumPages(document->Handle()), 3);
}

TEST(Pages, OfADocumentWithNoneAreNone) {
  HostDocument document = WithPages({});
  EXPECT_EQ(Model().PDDocGetNumPages(document->Handle()), 0);
}

TEST(Pages, HaveOneHandleEach) {
  HostDocument document = WithPages({"", ""});
  EXPECT_EQ(PageOf(document, 1), PageOf(document, 1));
  EXPECT_NE(PageOf(document, 1), PageOf(document, 0));
}

TEST(Pages, OutsideTheDocumentRaise) {
  HostDocument document = WithPages({""});
  EXPECT_EQ(RaisedCode([&] { PageOf(document, 1); }), kASOutOfRange);
  EXPECT_EQ(RaisedText([&] { PageOf(document, -1); }), "test.pdf: no page -1, the document has 1");
}

TEST(Pages, KnowDocumentAndNumber) {
  HostDocument document = WithPages({"", ""});
  EXPECT_EQ(Model().PDPageGetDoc(PageOf(document, 1)), document->Handle());
  EXPECT_EQ(Model().PDPageGetNumber(PageOf(document, 1)), 1);
}

TEST(Pages, AreFoundByTheirDictionary) {
  HostDocument document = WithPages({"", ""});
  const CosObj dictionary = Model().PDPageGetCosObj(PageOf(document, 1));
  EXPECT_EQ(dictionary, document.Object(11));
  EXPECT_EQ(Model().PDPageNumFromCosObj(dictionary), 1);
}

TEST(Pages, AskedForByADictionaryThatIsNonRaise) {
  HostDocument document = WithPages({""});
  EXPECT_EQ(RaisedCode([&] { Model().PDPageNumFromCosObj(document.Root()); }), kASNotFound);
}

TEST(Pages, AskedForByWhatIsNoDictionaryRaise) {
  HostDocument document = WithPages({""});
  EXPECT_EQ(RaisedCode([&] { Model().PDPageNumFromCosObj(document.Integer(7)); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Model().PDPageNumFromCosObj(CosObj{0, 0}); }), kASWrongType);
}

TEST(Pages, CanBeReleasedMoreOftenThanAcquired) {
  HostDocument document = WithPages({""});
  const PDPage page = PageOf(document, 0);
  EXPECT_EQ(Model().PDPageAcquire(page), page);
  for (int i = 0; i < 5; ++i) Model().PDPageRelease(page);
  EXPECT_EQ(Model().PDPageGetNumber(page), 0);
}

TEST(Pages, OfAClosedDocumentAreDead) {
  HostDocument document = WithPages({""});
  const PDPage page = PageOf(document, 0);
  document.Close();
  EXPECT_EQ(RaisedCode([&] { Model().PDPageGetNumber(page); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDPageNotifyContentsDidChange(page); }), kASBadParameter);
}

TEST(Pages, ThatAreNullRaise) {
  EXPECT_EQ(RaisedCode([&] { Model().PDPageGetCosObj(nullptr); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDPageRelease(nullptr); }), kASBadParameter);
}

TEST(Pages, OneOfADocumentIsNoneOfAnother) {
  HostDocument one = WithPages({"", ""});
  HostDocument other = WithPages({""});
  EXPECT_NE(PageOf(one, 0), PageOf(other, 0));
  EXPECT_EQ(Model().PDPageGetDoc(PageOf(other, 0)), other->Handle());
}

TEST(Pages, ThatStandTwiceInTheTreeAreTwoPages) {
  HostDocument document = HostDocument::FromObjects(
      "<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Type /Pages /Count 2 /Kids [10 0 R 10 0 R] >>\nendobj\n"
      "10 0 obj\n<< /Type /Page /Parent 2 0 R >>");
  EXPECT_EQ(Model().PDDocGetNumPages(document->Handle()), 2);
  const CosObj first = Model().PDPageGetCosObj(PageOf(document, 0));
  const CosObj second = Model().PDPageGetCosObj(PageOf(document, 1));
  EXPECT_FALSE(first == second);
  EXPECT_EQ(Model().PDPageNumFromCosObj(first), 0);
  EXPECT_EQ(Model().PDPageNumFromCosObj(second), 1);
}

TEST(Pages, ThatWouldBeCopiedEndlesslyAreRefused) {
  std::string kids, entries;
  for (int i = 0; i < 20'000; ++i) {
    kids += "10 0 R ";
    entries += "/K" + std::to_string(i) + " 1 ";
  }
  EXPECT_EQ(
      RaisedCode([&] {
        HostDocument::FromObjects("<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Type /Pages /Count 1 /Kids [" +
                                  kids + "] >>\nendobj\n10 0 obj\n<< /Type /Page /Parent 2 0 R " + entries + ">>");
      }),
      kASDamagedDocument);
}

TEST(Pages, ThatAreNoDictionariesAreLeftOut) {
  HostDocument document = HostDocument::FromObjects(
      "<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Type /Pages /Count 4 /Kids [99 0 R 11 0 R 10 0 R] >>\n"
      "endobj\n11 0 obj\n(text)\nendobj\n10 0 obj\n<< /Type /Page /Parent 2 0 R >>");
  EXPECT_EQ(Model().PDDocGetNumPages(document->Handle()), 1);
  EXPECT_EQ(Model().PDPageGetCosObj(PageOf(document, 0)), document.Object(10));
}

TEST(Pages, StandAmongAnyNumberOfItemsThatAreNone) {
  std::string strays;
  for (int i = 0; i < 200'000; ++i) strays += "7 ";
  HostDocument document = HostDocument::FromObjects(
      "<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Type /Pages /Count 2 /Kids [" + strays + "10 0 R " + strays +
      "11 0 R] >>\nendobj\n10 0 obj\n<< /Type /Page /Parent 2 0 R >>\nendobj\n11 0 obj\n<< /Type /Page /Parent 2 0 R >>");
  EXPECT_EQ(Model().PDDocGetNumPages(document->Handle()), 2);
  EXPECT_EQ(Model().PDPageGetCosObj(PageOf(document, 1)), document.Object(11));
}

TEST(Pages, OfAListThatPartsOfTheTreeShareAreRefused) {
  // Each part would have its own copy of every page.
  EXPECT_EQ(RaisedText([] {
              HostDocument::FromObjects(
                  "<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Type /Pages /Count 2 /Kids [3 0 R 4 0 R] >>\n"
                  "endobj\n3 0 obj\n<< /Type /Pages /Parent 2 0 R /Kids 5 0 R >>\nendobj\n"
                  "4 0 obj\n<< /Type /Pages /Parent 2 0 R /Kids 5 0 R >>\nendobj\n5 0 obj\n[10 0 R]\nendobj\n"
                  "10 0 obj\n<< /Type /Page /Parent 3 0 R >>");
            }),
            "test.pdf: damaged: a part of the page tree stands in it twice");
}

TEST(Pages, OfATreeOfSeveralLevelsAreInOrder) {
  HostDocument document = HostDocument::FromObjects(
      "<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Type /Pages /Count 3 /Kids [3 0 R 12 0 R] >>\nendobj\n"
      "3 0 obj\n<< /Type /Pages /Parent 2 0 R /Count 2 /Kids [11 0 R 10 0 R] >>\nendobj\n"
      "10 0 obj\n<< /Type /Page >>\nendobj\n11 0 obj\n<< /Type /Page >>\nendobj\n12 0 obj\n<< /Type /Page >>");
  EXPECT_EQ(Model().PDPageNumFromCosObj(document.Object(11)), 0);
  EXPECT_EQ(Model().PDPageNumFromCosObj(document.Object(10)), 1);
  EXPECT_EQ(Model().PDPageNumFromCosObj(document.Object(12)), 2);
}

TEST(Pages, TakenOutThroughTheirParentHaveNoNumber) {
  HostDocument document = WithPages({"", ""});
  const CosTable& cos = *Tables()->cos;
  const PDPage first = PageOf(document, 0);
  const PDPage second = PageOf(document, 1);
  const CosObj firstDictionary = Model().PDPageGetCosObj(first);
  const CosObj kids = cos.CosNewArray(document.Doc(), 0, 0);
  cos.CosArrayPut(kids, 0, Model().PDPageGetCosObj(second));
  cos.CosDictPutKeyString(document.Object(2), "Kids", kids);

  EXPECT_EQ(Model().PDDocGetNumPages(document->Handle()), 1);
  EXPECT_EQ(PageOf(document, 0), second);
  EXPECT_EQ(Model().PDPageGetNumber(second), 0);
  EXPECT_EQ(RaisedCode([&] { Model().PDPageGetNumber(first); }), kASNotFound);
  EXPECT_EQ(RaisedCode([&] { Model().PDPageNumFromCosObj(firstDictionary); }), kASNotFound);
  EXPECT_EQ(Model().PDPageGetCosObj(first), firstDictionary);
}

TEST(CropBox, IsThePagesOwn) { EXPECT_EQ(CropBox("/MediaBox [0 0 200 300] /CropBox [10 20 100 200]"), "10 20 100 200 "); }

TEST(CropBox, IsTheMediaBoxWhenThereIsNone) { EXPECT_EQ(CropBox("/MediaBox [0 0 200 300]"), "0 0 200 300 "); }

TEST(CropBox, IsInherited) {
  EXPECT_EQ(CropBox("/MediaBox [0 0 200 300]", "/CropBox [10 20 100 200]"), "10 20 100 200 ");
  EXPECT_EQ(CropBox("/CropBox [10 20 100 200]", "/MediaBox [50 0 200 300]"), "50 20 100 200 ");
}

TEST(CropBox, IsCutToTheMediaBox) {
  EXPECT_EQ(CropBox("/MediaBox [0 0 200 300] /CropBox [-10 20 400 900]"), "0 20 200 300 ");
}

TEST(CropBox, OutsideTheMediaBoxDoesNotCount) {
  EXPECT_EQ(CropBox("/MediaBox [0 0 200 300] /CropBox [500 500 600 600]"), "0 0 200 300 ");
}

TEST(CropBox, IsNormalised) { EXPECT_EQ(CropBox("/MediaBox [200 300 0 10]"), "0 10 200 300 "); }

TEST(CropBox, IsNotRotated) { EXPECT_EQ(CropBox("/MediaBox [0 0 200 300] /Rotate 90"), "0 0 200 300 "); }

TEST(CropBox, ThatIsUnusableDoesNotCount) {
  for (const char* bad : {"null", "7", "[]", "[1 2 3]", "[/a 0 10 10]", "[5 5 5 5]", "[10 20 10 200]"}) {
    EXPECT_EQ(CropBox(std::string("/MediaBox [0 0 200 300] /CropBox ") + bad), "0 0 200 300 ") << bad;
  }
}

TEST(CropBox, OfAPageWithoutAnyBoxIsLetterSize) { EXPECT_EQ(CropBox(""), "0 0 612 792 "); }

TEST(CropBox, SaturatesAtHugeNumbers) {
  HostDocument document = WithPages({"/MediaBox [-99999999999999999999.0 0 99999999999999999999.0 400000]"});
  ASFixedRect box = {};
  Model().PDPageGetCropBox(PageOf(document, 0), &box);
  EXPECT_EQ(box.left, static_cast<ASFixed>(0x80000000));
  EXPECT_EQ(box.right, 0x7FFFFFFF);
  EXPECT_EQ(box.top, 0x7FFFFFFF);
}

TEST(CropBox, OfParentsInACircleIsFound) {
  HostDocument document = HostDocument::FromObjects(
      "<< /Type /Catalog /Pages 2 0 R >>\nendobj\n2 0 obj\n<< /Type /Pages /Count 1 /Kids [10 0 R] >>\nendobj\n"
      "10 0 obj\n<< /Type /Page /Parent 10 0 R >>");
  EXPECT_EQ(Box(PageOf(document, 0)), "0 0 612 792 ");
}

TEST(Documents, HaveTwoViews) {
  HostDocument document = WithPages({""});
  const CosDoc cosDoc = Model().PDDocGetCosDoc(document->Handle());
  EXPECT_EQ(Model().PDDocFromCosDoc(cosDoc), document->Handle());
  EXPECT_EQ(Model().PDDocFromCosDoc(nullptr), nullptr);
}

TEST(Documents, StayOpenWhateverTheirCounts) {
  HostDocument document = WithPages({""});
  EXPECT_EQ(Model().PDDocAcquire(document->Handle()), document->Handle());
  for (int i = 0; i < 5; ++i) Model().PDDocRelease(document->Handle());
  EXPECT_EQ(Model().PDDocGetNumPages(document->Handle()), 1);
}

TEST(Documents, ThatAreClosedAreDead) {
  HostDocument document = WithPages({""});
  const PDDoc doc = document->Handle();
  const CosDoc cosDoc = document->CosHandle();
  document.Close();
  EXPECT_EQ(RaisedCode([&] { Model().PDDocGetNumPages(doc); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDDocClose(doc); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDDocFromCosDoc(cosDoc); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Model().PDDocAcquire(nullptr); }), kASBadParameter);
}

}  // namespace
}  // namespace tgx::host
