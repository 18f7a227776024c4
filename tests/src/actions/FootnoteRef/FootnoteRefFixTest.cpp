#include <gtest/gtest.h>

#include "src/actions/FootnoteRef/FootnoteRefFix.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::OpenDocument;
using test::TestDocument;

constexpr int kFootnoteLinks = 10;

class FootnoteLinks : public testing::Test {
 protected:
  Element Reference(test::Page& page, double x, double y) {
    return Element("Reference").Mark(page, test::Text("1").At(x, y));
  }
  Element Note(test::Page& page, double x, double y) { return Element("Note").Mark(page, test::Text("a note").At(x, y)); }
  Element Marker(const std::string& text) {
    return Element("Figure").Alt(std::u16string_view(std::u16string(text.begin(), text.end())));
  }

  test::Outcome Run(const std::vector<Element>& elements) {
    document_.Tree(elements);
    OpenDocument open(document_.Write());
    const test::Outcome outcome = open.Action(kFootnoteLinks);
    saved_ = open.Save();
    test::ExpectSound(saved_);
    file_ = std::make_unique<test::ReadBack>(saved_);
    return outcome;
  }

  QPDFObjectHandle Annotation(int page, int index) { return file_->Page(page).getKey("/Annots").getArrayItem(index); }
  int Annotations(int page) {
    QPDFObjectHandle annotations = file_->Page(page).getKey("/Annots");
    return annotations.isArray() ? annotations.getArrayNItems() : 0;
  }
  static double Number(QPDFObjectHandle array, int index) { return array.getArrayItem(index).getNumericValue(); }

  TestDocument document_;
  test::Page& page_ = document_.AddPage();
  std::string saved_;
  std::unique_ptr<test::ReadBack> file_;
};

TEST_F(FootnoteLinks, LinkReferenceAndNoteInBothDirections) {
  EXPECT_EQ(Run({Element("P")({Reference(page_, 100, 600)}), Note(page_, 72, 100)}), test::kSuccess);
  EXPECT_EQ(test::TreeText(saved_),
            "P\n"
            "  Reference\n"
            "    Link\n"
            "      mcid 0 page 1\n"
            "      objr Link page 1\n"
            "Note\n"
            "  Link\n"
            "    mcid 1 page 1\n"
            "    objr Link page 1\n");
  ASSERT_EQ(Annotations(1), 2);
  EXPECT_EQ(Annotation(1, 0).getKey("/T").getStringValue(), "Footnote 1");
  EXPECT_EQ(Annotation(1, 1).getKey("/T").getStringValue(), "Footnote reference 1");
}

TEST_F(FootnoteLinks, LieOverTheTextAndLeadToTheOtherOne) {
  EXPECT_EQ(Run({Reference(page_, 100, 600), Note(page_, 72, 100)}), test::kSuccess);
  QPDFObjectHandle forth = Annotation(1, 0);
  QPDFObjectHandle back = Annotation(1, 1);
  EXPECT_NEAR(Number(forth.getKey("/Rect"), 0), 100, 0.01);
  EXPECT_NEAR(Number(back.getKey("/Rect"), 0), 72, 0.01);
  QPDFObjectHandle target = forth.getKey("/A").getKey("/D");
  EXPECT_EQ(target.getArrayItem(1).unparse(), "/FitR");
  EXPECT_NEAR(Number(target, 2), 72, 0.01);
  EXPECT_NEAR(Number(back.getKey("/A").getKey("/D"), 2), 100, 0.01);
  EXPECT_EQ(forth.getKey("/Border").unparse(), "[ 0 0 0 ]");
}

TEST_F(FootnoteLinks, LeadBackToThePageOfTheNoteWithTheAreaOfTheReference) {
  test::Page& second = document_.AddPage();
  EXPECT_EQ(Run({Reference(page_, 100, 600), Note(second, 72, 100)}), test::kSuccess);
  ASSERT_EQ(Annotations(1), 1);
  ASSERT_EQ(Annotations(2), 1);
  QPDFObjectHandle target = Annotation(2, 0).getKey("/A").getKey("/D");
  EXPECT_EQ(target.getArrayItem(0).getObjGen(), file_->Page(2).getObjGen());
  EXPECT_NEAR(Number(target, 2), 100, 0.01);
}

TEST_F(FootnoteLinks, DoNothingInADocumentWithoutFootnotes) {
  EXPECT_EQ(Run({Element("P").Text(page_, "x")}), test::kSuccess);
  EXPECT_EQ(Annotations(1), 0);
}

TEST_F(FootnoteLinks, FailWhereNotesAndReferencesAreNotAsMany) {
  EXPECT_EQ(Run({Reference(page_, 100, 600), Reference(page_, 200, 600), Note(page_, 72, 100), Note(page_, 72, 80),
                 Note(page_, 72, 60)}),
            test::kSoftFailure);
  EXPECT_EQ(Annotations(1), 0);
}

TEST_F(FootnoteLinks, PassOverNotesThatLieInALink) {
  EXPECT_EQ(Run({Element("Link")({Note(page_, 72, 100)}), Reference(page_, 100, 600)}), test::kSoftFailure);
}

TEST_F(FootnoteLinks, SkipAReferenceWithoutContentAndKeepItsNumber) {
  EXPECT_EQ(Run({Element("Reference"), Reference(page_, 100, 600), Note(page_, 72, 100), Note(page_, 72, 80)}),
            test::kSuccess);
  ASSERT_EQ(Annotations(1), 2);
  EXPECT_EQ(Annotation(1, 0).getKey("/T").getStringValue(), "Footnote 2");
}

TEST_F(FootnoteLinks, FindNothingToDoTheSecondTime) {
  document_.Tree({Reference(page_, 100, 600), Note(page_, 72, 100)});
  OpenDocument open(document_.Write());
  ASSERT_EQ(open.Action(kFootnoteLinks), test::kSuccess);
  const std::string once = SavedTree(open);
  EXPECT_EQ(open.Action(kFootnoteLinks), test::kSuccess);
  EXPECT_EQ(SavedTree(open), once);
}

TEST_F(FootnoteLinks, LeadBackToTheFrameAroundTheReference) {
  const auto body = [this](double x, double y) { return Element("P").Mark(page_, test::Text("frame").At(x, y)); };
  EXPECT_EQ(Run({Marker("TEXTFRAME_START"), body(50, 700), Reference(page_, 60, 600), body(90, 500), Marker("TEXTFRAME_END"),
                 Note(page_, 72, 100)}),
            test::kSuccess);
  QPDFObjectHandle target = Annotation(1, 1).getKey("/A").getKey("/D");
  EXPECT_NEAR(Number(target, 2), 50, 0.01) << "left of the frame";
  EXPECT_LT(Number(target, 3), 501) << "bottom of the frame";
  EXPECT_GT(Number(target, 5), 700) << "top of the frame";
}

TEST_F(FootnoteLinks, LeadBackToThePartOfAFrameOnThePageOfTheReference) {
  test::Page& second = document_.AddPage();
  const auto body = [](test::Page& page, double x, double y) {
    return Element("P").Mark(page, test::Text("frame").At(x, y));
  };
  EXPECT_EQ(Run({Marker("TEXTFRAME_START"), body(page_, 50, 700), body(page_, 300, 600), body(second, 20, 750),
                 Reference(second, 30, 740), body(second, 80, 650), Marker("TEXTFRAME_END"), Note(second, 72, 100)}),
            test::kSuccess);
  QPDFObjectHandle target = Annotation(2, 1).getKey("/A").getKey("/D");
  EXPECT_NEAR(Number(target, 2), 20, 0.01);
  EXPECT_NEAR(Number(target, 3), 648, 3);
  EXPECT_LT(Number(target, 4), 200) << "what lies on the first page counts for nothing";
}

TEST_F(FootnoteLinks, LeadBackToAFrameThatEndsAboveTheBottomOfTheReference) {
  // The frame is as high as its text at 600; the reference is larger, but not higher.
  EXPECT_EQ(Run({Marker("TEXTFRAME_START"), Element("P").Mark(page_, test::Text("frame and more").At(50, 600)),
                 Marker("TEXTFRAME_END"), Reference(page_, 60, 590), Note(page_, 72, 100)}),
            test::kSuccess);
  EXPECT_NEAR(Number(Annotation(1, 1).getKey("/A").getKey("/D"), 2), 50, 0.01);
}

TEST_F(FootnoteLinks, LeadBackToTheReferenceBesideAFrame) {
  EXPECT_EQ(Run({Marker("TEXTFRAME_START"), Element("P").Mark(page_, test::Text("frame").At(50, 600)),
                 Marker("TEXTFRAME_END"), Reference(page_, 300, 590), Note(page_, 72, 100)}),
            test::kSuccess);
  EXPECT_NEAR(Number(Annotation(1, 1).getKey("/A").getKey("/D"), 2), 300, 0.01);
}

TEST_F(FootnoteLinks, LeadBackToTheReferenceInAFrameThatDoesNotEnd) {
  EXPECT_EQ(Run({Marker("TEXTFRAME_START"), Element("P").Mark(page_, test::Text("frame and more").At(50, 600)),
                 Reference(page_, 60, 590), Note(page_, 72, 100)}),
            test::kSuccess);
  EXPECT_NEAR(Number(Annotation(1, 1).getKey("/A").getKey("/D"), 2), 60, 0.01);
}

TEST_F(FootnoteLinks, PassOverTheEndOfAFrameThatDoesNotBegin) {
  EXPECT_EQ(Run({Element("P").Mark(page_, test::Text("frame and more").At(50, 600)), Marker("TEXTFRAME_END"),
                 Reference(page_, 60, 590), Note(page_, 72, 100)}),
            test::kSuccess);
  EXPECT_NEAR(Number(Annotation(1, 1).getKey("/A").getKey("/D"), 2), 60, 0.01);
}

TEST_F(FootnoteLinks, LeadBackToTheFirstOfTheFramesAroundTheReference) {
  const auto frame = [&](double x) {
    return std::vector<Element>{Marker("TEXTFRAME_START"), Element("P").Mark(page_, test::Text("frame and more").At(x, 600)),
                                Marker("TEXTFRAME_END")};
  };
  std::vector<Element> elements = frame(55);
  for (const Element& element : frame(50)) elements.push_back(element);
  elements.insert(elements.end(), {Reference(page_, 60, 590), Note(page_, 72, 100)});
  EXPECT_EQ(Run(elements), test::kSuccess);
  EXPECT_NEAR(Number(Annotation(1, 1).getKey("/A").getKey("/D"), 2), 55, 0.01);
}

TEST_F(FootnoteLinks, DoNotGatherWhatIsLeftOfAFrameBehindAnInnerOne) {
  const auto body = [this](double x, double y) { return Element("P").Mark(page_, test::Text("frame").At(x, y)); };
  EXPECT_EQ(
      Run({Marker("TEXTFRAME_START"), body(50, 700), Marker("TEXTFRAME_START"), body(400, 300), Marker("TEXTFRAME_END"),
           body(10, 650), Marker("TEXTFRAME_END"), Reference(page_, 55, 690), Note(page_, 72, 100)}),
      test::kSuccess);
  EXPECT_NEAR(Number(Annotation(1, 1).getKey("/A").getKey("/D"), 2), 50, 0.01) << "the left edge before the inner frame";
}

TEST_F(FootnoteLinks, DoNotSeeAFrameMarkThatIsNotInUtf16) {
  const auto marker = [](const char* text) { return Element("Figure").Alt(text); };
  EXPECT_EQ(Run({marker("TEXTFRAME_START"), Element("P").Mark(page_, test::Text("frame").At(50, 600)),
                 marker("TEXTFRAME_END"), Reference(page_, 60, 590), Note(page_, 72, 100)}),
            test::kSuccess);
  EXPECT_NEAR(Number(Annotation(1, 1).getKey("/A").getKey("/D"), 2), 60, 0.01);
}

TEST_F(FootnoteLinks, LieOverTheLastOfSeveralPiecesOfOneNumber) {
  page_.Add(test::Marked("Reference", "<</MCID 50>>", {test::Text("1").At(100, 600)}));
  page_.Add(test::Marked("Reference", "<</MCID 50>>", {test::Text("1").At(300, 500)}));
  const Element reference = Element("Reference").Mcid(page_, 50);
  EXPECT_EQ(Run({reference, Note(page_, 72, 100)}), test::kSuccess);
  EXPECT_NEAR(Number(Annotation(1, 0).getKey("/Rect"), 0), 300, 0.01);
}

TEST_F(FootnoteLinks, LieOverAllContentOnThePageOfTheFirst) {
  test::Page& second = document_.AddPage();
  Element note("Note");
  note.Mark(page_, test::Text("a note").At(72, 100)).Mark(page_, test::Text("goes on").At(60, 80));
  note.Mark(second, test::Text("and on").At(10, 10));
  EXPECT_EQ(Run({Reference(page_, 100, 600), note}), test::kSuccess);
  ASSERT_EQ(Annotations(1), 2);
  EXPECT_EQ(Annotations(2), 0);
  QPDFObjectHandle rect = Annotation(1, 1).getKey("/Rect");
  EXPECT_NEAR(Number(rect, 0), 60, 0.01);
  EXPECT_NEAR(Number(rect, 1), 78, 3);
  EXPECT_GT(Number(rect, 3), 105);
}

TEST_F(FootnoteLinks, WrapContentOfANoteThatGoesOnOnAnotherPage) {
  // The second page counts from 0, too: its first content has the number of the reference's.
  test::Page& second = document_.AddPage();
  Element note("Note");
  const Element reference = Reference(page_, 100, 600);
  note.Mark(page_, test::Text("a note").At(72, 100)).Mark(second, test::Text("and on").At(10, 10));
  EXPECT_EQ(Run({reference, note}), test::kSuccess);
  EXPECT_NE(test::TreeText(saved_).find("Note\n"
                                        "  Link\n"
                                        "    mcid 1 page 1\n"
                                        "    mcr 0 page 2\n"
                                        "    objr Link page 1\n"),
            std::string::npos)
      << test::TreeText(saved_);
  OpenDocument again(saved_);
  EXPECT_EQ(again.Action(10), test::kSuccess);
  EXPECT_EQ(test::SavedTree(again), test::TreeText(saved_));
}

TEST_F(FootnoteLinks, KeepElementsAndObjectsInTheLinkInTheirOrder) {
  EXPECT_EQ(Run({Reference(page_, 100, 600),
                 Element("Note").Text(page_, "1").Add(Element("P").Text(page_, "a note")).Object(page_.Link("x"))}),
            test::kSuccess);
  EXPECT_NE(test::TreeText(saved_).find("Note\n"
                                        "  Link\n"
                                        "    mcid 1 page 1\n"
                                        "    P\n"
                                        "      mcid 2 page 1\n"
                                        "    objr Link page 1\n"
                                        "    objr Link page 1\n"),
            std::string::npos)
      << test::TreeText(saved_);
}

TEST_F(FootnoteLinks, EndWithTheHostsRaiseForANoteWithoutContent) {
  document_.Tree({Reference(page_, 100, 600), Element("Note")});
  OpenDocument open(document_.Write());
  const test::Outcome outcome = open.Action(kFootnoteLinks);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
}

TEST_F(FootnoteLinks, DoNotMixContentOfOneNumberOnDifferentPages) {
  test::Page& second = document_.AddPage();
  second.Mark("P", test::Text("other").At(300, 300));
  EXPECT_EQ(Run({Reference(page_, 100, 600), Note(page_, 72, 100)}), test::kSuccess);
  EXPECT_NEAR(Number(Annotation(1, 0).getKey("/Rect"), 0), 100, 0.01);
}

TEST_F(FootnoteLinks, HaveTheKindThatIsSet) {
  const std::vector<std::pair<int, std::string>> kinds = {{0, "/XYZ"},  {1, "/Fit"},  {2, "/FitH"},  {3, "/FitV"},
                                                          {4, "/FitR"}, {5, "/FitB"}, {6, "/FitBH"}, {7, "/FitBV"},
                                                          {9, "/FitR"}, {-1, "/FitR"}};
  document_.Tree({Reference(page_, 100, 600), Note(page_, 72, 100)});
  const std::string bytes = document_.Write();
  for (const auto& [number, name] : kinds) {
    const test::HostSession session;
    OpenDocument open(bytes);
    FootnoteRefFix fix;
    fix.SetDocument(open.Handle());
    fix.SetDestinationFit(number);
    EXPECT_TRUE(fix.Run());
    file_ = std::make_unique<test::ReadBack>(open.Save());
    EXPECT_EQ(Annotation(1, 0).getKey("/A").getKey("/D").getArrayItem(1).unparse(), name) << number;
  }
}

TEST_F(FootnoteLinks, HaveTheThinnestBorderAndTheAreaOfTheOtherOneUnlessToldOtherwise) {
  document_.Tree({Reference(page_, 100, 600), Note(page_, 72, 100)});
  const test::HostSession session;
  OpenDocument open(document_.Write());
  FootnoteRefFix fix;
  fix.SetDocument(open.Handle());
  EXPECT_TRUE(fix.Run());
  file_ = std::make_unique<test::ReadBack>(open.Save());
  EXPECT_EQ(Annotation(1, 0).getKey("/Border").unparse(), "[ 0 0 0.00002 ]") << "one of 65,536 parts of a unit";
  EXPECT_EQ(Annotation(1, 0).getKey("/A").getKey("/D").getArrayItem(1).unparse(), "/FitR");
}

TEST_F(FootnoteLinks, ArePutIntoElementsWhoseLinkHoldsNoAnnotation) {
  const Element link = Element("Link").Mark(page_, test::Text("1").At(100, 600));
  EXPECT_EQ(Run({Element("Reference").Add(link), Note(page_, 72, 100)}), test::kSuccess);
  EXPECT_EQ(Annotations(1), 2);
}

TEST_F(FootnoteLinks, ArePutIntoElementsThatHoldMoreThanALink) {
  const Element link = Element("Link").Object(page_.Link("https://example.org/"));
  EXPECT_EQ(Run({Reference(page_, 100, 600).Add(link), Note(page_, 72, 100)}), test::kSuccess);
  EXPECT_EQ(Annotations(1), 3);
}

TEST_F(FootnoteLinks, AreNotPutASecondTimeBesideContentThatThePageDoesNotHave) {
  Element reference = Reference(page_, 100, 600);
  EXPECT_EQ(Run({reference.Mcid(page_, 90).Add(Element("Span").Mark(page_, test::Text("2"))), Note(page_, 72, 100)}),
            test::kSuccess);
  const std::string once = test::TreeText(saved_);
  EXPECT_NE(once.find("Reference\n"
                      "  mcid 90 page 1\n"
                      "  Span\n"
                      "    mcid 1 page 1\n"
                      "  Link\n"
                      "    mcid 0 page 1\n"
                      "    objr Link page 1\n"),
            std::string::npos)
      << once;
  OpenDocument again(saved_);
  EXPECT_EQ(again.Action(kFootnoteLinks), test::kSuccess);
  EXPECT_EQ(SavedTree(again), once);
}

TEST_F(FootnoteLinks, ArePutBesideALinkBehindContentOfThePage) {
  const Element link = Element("Link").Object(page_.Link("https://example.org/"));
  Element reference = Reference(page_, 100, 600);
  EXPECT_EQ(Run({reference.Mcid(page_, 90).Add(link), Note(page_, 72, 100)}), test::kSuccess);
  EXPECT_EQ(Annotations(1), 3);
}

TEST_F(FootnoteLinks, DoNothingInADocumentWithoutAStructureTree) {
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Action(kFootnoteLinks), test::kSuccess);
}

}  // namespace
}  // namespace tgx
