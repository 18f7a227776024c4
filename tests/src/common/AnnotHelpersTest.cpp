#include "src/common/AnnotHelpers.h"

#include <gmock/gmock.h>

#include <string>

#include "src/common/PageHelpers.h"
#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::Page;
using test::ReadBack;
using testing::ElementsAre;

constexpr ASFixed kPoint = 0x10000;
constexpr ASFixedRect kRect = {10 * kPoint, 30 * kPoint, 20 * kPoint, 5 * kPoint};

class AnnotHelpersTest : public test::StructureTest {
 protected:
  PDPage PageAt(int index = 0) { return PDDocAcquirePage(Opened().Handle(), index); }
  // Wraps the kids of an element in a link with a new annotation on the first page.
  void Wrap(PDSElement element) {
    PDPageHelper page(PageAt());
    PDLinkAnnotHelper link(page.CreateLinkAnnot(kRect));
    page.AddAnnot(kPDAnnotAfterLast, link.GetAnnot());
    link.WrapKidsInLink(element, page.GetPage());
  }
  // The last annotation of the first page as it is saved.
  QPDFObjectHandle SavedAnnotation() {
    saved_ = std::make_unique<ReadBack>(Opened().Save());
    QPDFObjectHandle annotations = saved_->Page(1).getKey("/Annots");
    return annotations.getArrayItem(annotations.getArrayNItems() - 1);
  }

 private:
  std::unique_ptr<ReadBack> saved_;
};

TEST_F(AnnotHelpersTest, WrapsKidsOfAllKindsInTheirOrder) {
  Page& page = doc.AddPage();
  doc.Tree({Element("Reference")
                .Text(page, "a")
                .Add(Element("Span").Text(page, "b"))
                .Object(page.Link("https://example.org/"))
                .Text(page, "c")
                .Add(Element("Lbl"))});
  Open();
  Wrap(Top());
  EXPECT_EQ(test::SavedTree(Opened()),
            "Reference\n"
            "  Link\n"
            "    mcid 0 page 1\n"
            "    Span\n"
            "      mcid 2 page 1\n"
            "    objr Link page 1\n"
            "    mcid 1 page 1\n"
            "    Lbl\n"
            "    objr Link page 1\n");
}

TEST_F(AnnotHelpersTest, WrapsContentOfAnotherPageThatHasTheNumberOfContentOfTheLinksPage) {
  Page& first = doc.AddPage();
  Page& second = doc.AddPage();
  doc.Tree({Element("Reference").Text(first, "a").Text(second, "b"), Element("P").Text(second, "c")});
  Open();
  Wrap(Top());
  EXPECT_EQ(test::SavedTree(Opened()),
            "Reference\n"
            "  Link\n"
            "    mcid 0 page 1\n"
            "    mcr 0 page 2\n"
            "    objr Link page 1\n"
            "P\n"
            "  mcid 1 page 2\n");
}

TEST_F(AnnotHelpersTest, WrapsNothingInALinkOfTheAnnotationAlone) {
  doc.AddPage();
  doc.Tree({Element("Reference")});
  Open();
  Wrap(Top());
  EXPECT_EQ(test::SavedTree(Opened()), "Reference\n  Link\n    objr Link page 1\n");
}

TEST_F(AnnotHelpersTest, LeavesTheContentOfThePageAlone) {
  Page& page = doc.AddPage();
  doc.Tree({Element("Reference").Text(page, "a").Text(page, "b")});
  const std::string before = ReadBack(doc.Write()).Content(1);
  Open();
  Wrap(Top());
  EXPECT_EQ(ReadBack(Opened().Save()).Content(1), before);
}

TEST_F(AnnotHelpersTest, EndsAtAKidThatCannotBeMoved) {
  Page& page = doc.AddPage();
  doc.Tree({Element("Reference").Text(page, "a").RawKid("<</Type/Whatever>>").Text(page, "b")});
  Open();
  Wrap(Top());
  PDSElement reference = Top();
  EXPECT_EQ(PDSElementGetNumKids(reference), 3);
  EXPECT_EQ(Type(Kid(reference, 2)), "Link");
  EXPECT_EQ(PDSElementGetNumKids(Kid(reference, 2)), 2);
}

TEST_F(AnnotHelpersTest, EndsAtContentThatThePageLacks) {
  Page& page = doc.AddPage();
  doc.Tree({Element("Reference").Mcid(page, 7)});
  Open();
  Wrap(Top());
  EXPECT_EQ(PDSElementGetNumKids(Top()), 2);
}

TEST_F(AnnotHelpersTest, SetsTheWidthOfTheBorderAndKeepsTheRest) {
  doc.AddPage().Annotate("Link").Set("Border", "[3 4 1 [2 5]]");
  Open();
  PDLinkAnnotHelper(PDPageGetAnnot(PageAt(), 0)).SetBorderWidth(7 * kPoint);
  EXPECT_EQ(SavedAnnotation().getKey("/Border").unparse(), "[ 3 4 7 [ 2 5 ] ]");
}

TEST_F(AnnotHelpersTest, SetsTheTitleByteForByte) {
  doc.AddPage().Annotate("Link");
  Open();
  PDLinkAnnotHelper(PDPageGetAnnot(PageAt(), 0)).SetTitle("Footnote 12 and more", 11);
  EXPECT_EQ(SavedAnnotation().getKey("/T").getStringValue(), "Footnote 12");
}

TEST_F(AnnotHelpersTest, LeadsALinkToAPlaceOnAPage) {
  doc.AddPage().Annotate("Link");
  doc.AddPage();
  const PDDoc document = Open();
  const PDViewDestination destination = CreateViewDestination(document, PageAt(1), ASAtomFromString("FitR"), kRect, 0, 1);
  PDLinkAnnotHelper(PDPageGetAnnot(PageAt(), 0)).SetAction(NewActionFromDest(document, destination, document));
  QPDFObjectHandle action = SavedAnnotation().getKey("/A");
  EXPECT_EQ(action.getKey("/S").getName(), "/GoTo");
  QPDFObjectHandle place = action.getKey("/D");
  EXPECT_EQ(place.getArrayItem(1).getName(), "/FitR");
  EXPECT_EQ(place.getArrayItem(2).getNumericValue(), 10);
  EXPECT_EQ(place.getArrayItem(5).getNumericValue(), 30);
}

TEST_F(AnnotHelpersTest, HoldsAPageForAsLongAsItLives) {
  doc.AddPage();
  Open();
  const PDPage page = PageAt();
  test::CountingHost host;
  const test::HostSession session(host.Tables());
  {
    const PDPageHelper helper(page);
    EXPECT_EQ(helper.GetPage(), page);
    EXPECT_EQ(host.Open("pages"), 1);
  }
  EXPECT_EQ(host.Open("pages"), 0);
}

TEST_F(AnnotHelpersTest, MakesAHighlight) {
  doc.AddPage().Annotate("Link");
  Open();
  CreateHighlightAnnot(PageAt(), kRect);
  QPDFObjectHandle annotation = SavedAnnotation();
  EXPECT_EQ(annotation.getKey("/Subtype").getName(), "/Highlight");
  EXPECT_EQ(annotation.getKey("/Subj").getStringValue(), "Highlight");
  EXPECT_EQ(annotation.getKey("/Contents").getStringValue(), "");
  EXPECT_EQ(annotation.getKey("/RC").getStringValue(), "");
  EXPECT_EQ(annotation.getKey("/T").getStringValue(), "Highlight");
  EXPECT_EQ(annotation.getKey("/CA").getNumericValue(), 1);
}

TEST_F(AnnotHelpersTest, GivesTheCornersOfAHighlightInReadersOrder) {
  doc.AddPage();
  Open();
  CreateHighlightAnnot(PageAt(), kRect);
  std::vector<double> corners;
  for (QPDFObjectHandle& corner : SavedAnnotation().getKey("/QuadPoints").getArrayAsVector()) {
    corners.push_back(corner.getNumericValue());
  }
  EXPECT_THAT(corners, ElementsAre(20, 5, 10, 5, 20, 30, 10, 30));
}

TEST_F(AnnotHelpersTest, WritesColoursUnscaled) {
  doc.AddPage();
  Open();
  SetHighlightColor(CreateHighlightAnnot(PageAt(), kRect), {1, {kPoint, 0, 255, 99}});
  std::vector<double> components;
  for (QPDFObjectHandle& component : SavedAnnotation().getKey("/C").getArrayAsVector()) {
    components.push_back(component.getNumericValue());
  }
  EXPECT_THAT(components, ElementsAre(65536, 0, 255));
}

TEST_F(AnnotHelpersTest, SetsWhatAHighlightSays) {
  doc.AddPage();
  Open();
  const CosObj dict = CreateHighlightAnnot(PageAt(), kRect);
  SetHighlightOpacity(dict, 0.25F);
  SetAnnotFlags(dict, 4);
  SetAnnotTitle(dict, "MathML");
  SetAnnotContents(dict, "<math/>");
  QPDFObjectHandle annotation = SavedAnnotation();
  EXPECT_EQ(annotation.getKey("/CA").getNumericValue(), 0.25);
  EXPECT_EQ(annotation.getKey("/F").getIntValue(), 4);
  EXPECT_EQ(annotation.getKey("/T").getStringValue(), "MathML");
  EXPECT_EQ(annotation.getKey("/Contents").getStringValue(), "<math/>");
}

TEST_F(AnnotHelpersTest, FinishesAPage) {
  doc.AddPage();
  Open();
  const PDPage page = PageAt();
  PDPageAcquirePDEContent(page, nullptr);
  test::RecordingHost host;
  const test::HostSession session(host.Tables());
  FinishPage(page);
  EXPECT_THAT(host.Names(), ElementsAre("PDPageSetPDEContent", "PDPageReleasePDEContent", "PDPageNotifyContentsDidChange",
                                        "PDPageRelease"));
}

TEST_F(AnnotHelpersTest, FindsAPageByItsDictionary) {
  doc.AddPage();
  doc.AddPage();
  Open();
  EXPECT_EQ(AcquirePageByCosPage(PDPageGetCosObj(PageAt(1))), PageAt(1));
}

}  // namespace
}  // namespace tgx
