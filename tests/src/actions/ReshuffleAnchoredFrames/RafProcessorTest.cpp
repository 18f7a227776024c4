#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/ActionFixture.h"
#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::kSuccess;
using test::Marked;
using test::OpenDocument;
using test::Ops;
using test::Page;
using test::ReadBack;
using test::TestDocument;
using test::Text;
using testing::HasSubstr;
using testing::Not;

constexpr int kReshuffleFramesByHolder = 0;

Element Mark(char16_t mark, const std::u16string& name) { return Element("Span").Alt(std::u16string_view(mark + name)); }
Element Start(const std::u16string& name = u"f") { return Mark(u'\u2264', name); }
Element End(const std::u16string& name = u"f") { return Mark(u'\u2265', name); }
Element Anchor(const std::u16string& name = u"f") { return Mark(u'\u222E', name); }
Element Holder() { return Element("Sect").Title(u"\u2230"); }

class RafProcessorTest : public test::ActionFixture {
 protected:
  RafProcessorTest() : ActionFixture(kReshuffleFramesByHolder) {}
};

TEST_F(RafProcessorTest, PutsTheFrameBehindTheParagraphOfItsAnchor) {
  doc.Tree(
      {Element("Document")({Element("P").Text(page, "before").Add(Anchor()).Text(page, "behind"), Element("H1"),
                            Holder()({Start(), Element("H2").Text(page, "one"), Element("P").Text(page, "two"), End()})})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  P\n"
            "    mcid 0 page 1\n"
            "    mcid 1 page 1\n"
            "  H2\n"
            "    mcid 2 page 1\n"
            "  P\n"
            "    mcid 3 page 1\n"
            "  H1\n");
}

TEST_F(RafProcessorTest, PutsTheFrameBeforeAParagraphThatBeginsWithTheAnchor) {
  doc.Tree({Element("Document")({Element("H1"), Element("P").Add(Anchor()).Text(page, "text"),
                                 Holder()({Start(), Element("H2"), Element("H3"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  H1\n  H2\n  H3\n  P\n    mcid 0 page 1\n");
}

TEST_F(RafProcessorTest, PutsTheFrameInFrontOfAllWhereTheFirstParagraphBeginsWithTheAnchor) {
  doc.Tree({Element("Document")({Element("P")({Anchor()}), Element("H1"), Holder()({Start(), Element("H2"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  H2\n  P\n  H1\n");
}

/// That many anchors, each of which takes each of that many frames.
std::vector<Element> AnchorsOfAllFrames(int count) {
  std::vector<Element> anchors;
  std::vector<Element> frames;
  for (int i = 0; i < count; ++i) {
    anchors.push_back(Anchor(u""));
    frames.insert(frames.end(), {Start(u""), Element("H2"), End(u"")});
  }
  return {Element("Document")({Element("P")(anchors)}), Holder()(frames)};
}

TEST_F(RafProcessorTest, SavesFramesInManyPlacesSoThatTheyCanBeReadAgain) {
  doc.Tree(AnchorsOfAllFrames(100));
  const std::string saved = SavedAfter();
  OpenDocument again(saved);
  EXPECT_EQ(again.Action(kReshuffleFramesByHolder), kSuccess);
}

TEST_F(RafProcessorTest, DoesNotSaveFramesInSoManyPlacesThatTheyCouldNotBeReadAgain) {
  doc.Tree(AnchorsOfAllFrames(350));
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kReshuffleFramesByHolder), kSuccess);
  try {
    open.Save();
    ADD_FAILURE() << "saved";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), HasSubstr("in so many places that it cannot be walked"));
  }
}

TEST_F(RafProcessorTest, PlacesAFrameThatIsAnchoredInAParagraphOfAnother) {
  doc.Tree({Element("Document")({Element("P")({Element("Span"), Anchor(u"a")})}),
            Holder()({Start(u"a"), Element("Sect")({Element("H2"), Element("P")({Element("Span"), Anchor(u"b")})}),
                      End(u"a"), Start(u"b"), Element("H3"), End(u"b")})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H2\n  P\n    Span\n  H3\n");
}

TEST_F(RafProcessorTest, LeavesNothingOpenButThePagesThatItLookedForContentOn) {
  doc.Tree({Element("Document")({Element("P").Text(page, "text").Add(Anchor())}),
            Holder()({Start().Text(page, "start"), Element("H2").Text(page, "two"), End()})});
  OpenDocument open(doc.Write());
  test::CountingHost host;
  const test::HostSession session(host.Tables());
  ASSERT_EQ(open.Action(kReshuffleFramesByHolder), kSuccess);
  EXPECT_THAT(host.Uneven(), testing::ElementsAre("contents +1", "pages +1"));
}

TEST_F(RafProcessorTest, PlacesFramesAtTheTopOfTheTree) {
  doc.Tree({Element("H1"), Element("P")({Element("Span"), Anchor()}), Element("H4"),
            Holder()({Start(), Element("H2"), Element("H3"), End()})});
  EXPECT_EQ(TreeAfter(), "H1\nP\n  Span\nH2\nH3\nH4\n");
}

TEST_F(RafProcessorTest, PutsTheFrameOfAnAnchorOnTopInFrontOfTheTree) {
  doc.Tree({Element("H1"), Anchor(), Holder()({Start(), Element("H2"), Element("H3"), End()})});
  EXPECT_EQ(TreeAfter(), "H2\nH3\nH1\n");
}

TEST_F(RafProcessorTest, PutsTheFrameOfAnAnchorThatIsTheVeryFirstElementInFrontOfTheTree) {
  doc.Tree({Anchor(), Element("H1"), Holder()({Start(), Element("H2"), Element("H3"), End()})});
  EXPECT_EQ(TreeAfter(), "H2\nH3\nH1\n");
}

TEST_F(RafProcessorTest, PutsTheFrameOfAnAnchorInAHolderInFrontOfTheTree) {
  doc.Tree({Element("Document")({Element("H1")}), Holder()({Start(), Element("H2"), End(), Anchor()})});
  EXPECT_EQ(TreeAfter(), "H2\nDocument\n  H1\n");
}

TEST_F(RafProcessorTest, KeepsTheOrderOfFramesOfOneParagraph) {
  doc.Tree(
      {Element("Document")({Element("P")({Element("Span"), Anchor(u"a"), Anchor(u"b")}),
                            Holder()({Start(u"b"), Element("H2"), End(u"b"), Start(u"a"), Element("H1"), End(u"a")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H1\n  H2\n");
}

TEST_F(RafProcessorTest, DropsAFrameWithoutEndAndErasesItsMarker) {
  doc.Tree({Element("Document")({Element("P").Text(page, "text").Add(Anchor()),
                                 Holder()({Start().Text(page, "start"), Element("H2").Text(page, "two")})})});
  const std::string saved = SavedAfter();
  EXPECT_EQ(test::TreeText(saved), "Document\n  P\n    mcid 0 page 1\n");
  const std::string content = ReadBack(saved).Content(1);
  EXPECT_THAT(content, Not(HasSubstr("(start)")));
  EXPECT_THAT(content, HasSubstr("(two)"));
}

TEST_F(RafProcessorTest, LeavesTheContentOfAnEndWithoutStart) {
  doc.Tree({Element("Document")({Element("P").Text(page, "text"), Holder()({End().Text(page, "end")})})});
  EXPECT_THAT(ContentAfter(), HasSubstr("(end)"));
}

TEST_F(RafProcessorTest, PassesOverAnEndWithoutStart) {
  doc.Tree({Element("Document")(
      {Element("P")({Element("Span"), Anchor()}), Holder()({End(), Element("H1"), Start(), Element("H2"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H2\n");
}

TEST_F(RafProcessorTest, PlacesAllFramesOfTheIdentifier) {
  doc.Tree({Element("Document")({Element("P")({Element("Span"), Anchor()}),
                                 Holder()({Start(), Element("H1"), Element("H2"), End()}),
                                 Holder()({Start(), Element("H3"), Element("H4"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H1\n  H2\n  H3\n  H4\n");
}

TEST_F(RafProcessorTest, PlacesTheFramesAtEachAnchorOfTheIdentifier) {
  doc.Tree({Element("Document")({Element("Sect")({Element("P")({Element("Span"), Anchor()})}),
                                 Element("Div")({Element("P")({Element("Span"), Anchor()})}),
                                 Holder()({Start(), Element("H1"), Element("H2"), End()}),
                                 Holder()({Start(), Element("H3"), End()})})});
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kReshuffleFramesByHolder), kSuccess);
  EXPECT_EQ(test::SavedTree(open),
            "Document\n"
            "  Sect\n"
            "    P\n"
            "      Span\n"
            "    H1\n"
            "    H2\n"
            "    H3\n"
            "  Div\n"
            "    P\n"
            "      Span\n"
            "    H1\n"
            "    H2\n"
            "    H3\n");
}

TEST_F(RafProcessorTest, TakesEveryFrameWhoseStartHoldsTheKey) {
  doc.Tree({Element("Document")({Element("P")({Element("Span"), Anchor(u"f")}),
                                 Holder()({Start(u"xf1"), Element("H1"), End(), Start(u"g"), Element("H2"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H1\n");
}

TEST_F(RafProcessorTest, DoesNotTakeAFrameWhoseStartIsOnlyAPartOfTheKey) {
  doc.Tree({Element("Document")(
      {Element("P")({Element("Span"), Anchor(u"f1")}), Holder()({Start(u"f"), Element("H1"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n");
}

TEST_F(RafProcessorTest, TakesEveryFrameForTheEmptyKey) {
  doc.Tree({Element("Document")({Element("P")({Element("Span"), Anchor(u"")}),
                                 Holder()({Start(u"a"), Element("H1"), End(), Start(u"b"), Element("H2"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H1\n  H2\n");
}

TEST_F(RafProcessorTest, TakesEveryFrameForAnAnchorOfNothingButTheMark) {
  doc.Tree({Element("Document")(
      {Element("P")({Element("Span"), Element("Span").Alt("\x22\x2E")}), Holder()({Start(u"a"), Element("H1"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H1\n");
}

TEST_F(RafProcessorTest, MatchesWhateverTheEndSays) {
  doc.Tree({Element("Document")(
      {Element("P")({Element("Span"), Anchor(u"a")}), Holder()({Start(u"a"), Element("H1"), End(u"b")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H1\n");
}

TEST_F(RafProcessorTest, PlacesAnElementWithContentAloneAsAWhole) {
  doc.Tree({Element("Document")({Element("P")({Element("Span"), Anchor()}),
                                 Holder()({Start(), Element("H2").Text(page, "a").Text(page, "b"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H2\n    mcid 0 page 1\n    mcid 1 page 1\n");
}

TEST_F(RafProcessorTest, PutsTheElementsOfAnElementInItsPlaceAndLosesItsOwnContent) {
  doc.Tree({Element("Document")(
      {Element("P")({Element("Span"), Anchor()}),
       Holder()(
           {Start(), Element("Sect").Text(page, "lost").Add(Element("H2").Text(page, "a")).Add(Element("H3")), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H2\n    mcid 1 page 1\n  H3\n");
}

TEST_F(RafProcessorTest, RemovesStoriesBelowTheElementsOfAFrame) {
  doc.Tree(
      {Element("Document")({Element("P")({Element("Span"), Anchor()}),
                            Holder()({Start(),
                                      Element("Sect")({Element("Story")({Element("H1")}), Element("Story"),
                                                       Element("Div")({Element("H2"), Element("Story")({Element("H3")})})}),
                                      End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  Div\n    H2\n");
}

TEST_F(RafProcessorTest, KeepsWhatAStoryHoldsThatIsItselfAnElementOfAFrame) {
  doc.Tree({Element("Document")(
      {Element("P")({Element("Span"), Anchor()}), Holder()({Start(), Element("Story")({Element("H1")}), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H1\n");
}

TEST_F(RafProcessorTest, KeepsStoriesOutsideOfFrames) {
  doc.Tree({Element("Document")(
      {Element("Story")({Element("P")({Element("Span"), Anchor()})}), Holder()({Start(), Element("H1"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  Story\n    P\n      Span\n    H1\n");
}

TEST_F(RafProcessorTest, TellsAFrameInAFrameFromTheOuterOne) {
  doc.Tree({Element("Document")(
      {Element("P")({Element("Span"), Anchor(u"out")}), Element("P")({Element("Span"), Anchor(u"in")}),
       Holder()({Start(u"out"), Element("H1"), Start(u"in"), Element("H2"), End(u"in"), Element("H3"), End(u"out")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H1\n  H3\n  P\n    Span\n  H2\n");
}

TEST_F(RafProcessorTest, PlacesAnInnerFrameBeforeTheOuterOneOfTheSameIdentifier) {
  doc.Tree({Element("Document")({Element("P")({Element("Span"), Anchor()}),
                                 Holder()({Start(), Element("H1"), Start(), Element("H2"), End(), Element("H3"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H2\n  H1\n  H3\n");
}

TEST_F(RafProcessorTest, LooksForMarkersAmongTheDirectKidsOfAHolderAlone) {
  doc.Tree({Element("Document")(
      {Element("P")({Element("Span"), Anchor()}), Holder()({Element("Sect")({Start(), Element("H1"), End()})})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n");
}

TEST_F(RafProcessorTest, LeavesMarkersOutsideOfHolders) {
  doc.Tree({Element("Document")({Start(), Element("H1"), End()})});
  EXPECT_EQ(TreeAfter(), "Document\n  Span alt=u\"\\u{2264}f\"\n  H1\n  Span alt=u\"\\u{2265}f\"\n");
}

TEST_F(RafProcessorTest, RemovesAHolderInAHolder) {
  doc.Tree({Element("Document")(
      {Element("P")({Element("Span"), Anchor()}), Holder()({Holder()({Start(), Element("H1"), End()}), Element("H2")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H1\n");
}

TEST_F(RafProcessorTest, RemovesAnAnchorWithoutAFrame) {
  doc.Tree({Element("Document")({Element("P").Text(page, "a").Add(Anchor())})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    mcid 0 page 1\n");
}

TEST_F(RafProcessorTest, LosesAFrameWithoutAnAnchorFromTheTreeAndKeepsItsContent) {
  doc.Tree({Element("Document")({Element("P"), Holder()({Start(), Element("H1").Text(page, "one"), End()})})});
  const std::string saved = SavedAfter();
  EXPECT_EQ(test::TreeText(saved), "Document\n  P\n");
  EXPECT_THAT(ReadBack(saved).Content(1), HasSubstr("(one)"));
}

TEST_F(RafProcessorTest, FindsTheMarkOfAnAnchorBetweenTwoCharacters) {
  // The bytes 00 22 2E 00.
  doc.Tree({Element("Document")({Element("P").Text(page, "a").Add(Element("Span").Alt(u"\u0022\u2E00"))})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    mcid 0 page 1\n");
}

TEST_F(RafProcessorTest, FindsTheMarkOfAnAnchorInPlainText) {
  doc.Tree({Element("Document")({Element("P").Text(page, "a").Add(Element("Span").Alt("the \"end\"."))})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    mcid 0 page 1\n");
}

TEST_F(RafProcessorTest, FindsTheMarkOfAHolderAnywhereInTheTitle) {
  doc.Tree({Element("Document")({Element("P"), Element("Sect").Title(u"all \u2230"), Element("Sect").Title("a \"0\"")})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n");
}

TEST_F(RafProcessorTest, TakesAMarkerOfBothKindsForAStart) {
  doc.Tree({Element("Document")(
      {Element("P")({Element("Span"), Anchor()}), Holder()({Start(u"f\u2265"), Element("H1"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Span\n  H1\n");
}

TEST_F(RafProcessorTest, ErasesTheContentOfAnchorsAndMarkers) {
  doc.Tree({Element("Document")(
      {Element("P").Text(page, "text").Add(Anchor().Text(page, "anchor")),
       Holder()({Start().Text(page, "start"), Element("H1").Text(page, "one"), End().Text(page, "end")})})});
  const std::string content = ContentAfter();
  EXPECT_THAT(content, HasSubstr("(text)"));
  EXPECT_THAT(content, HasSubstr("(one)"));
  for (const char* gone : {"(anchor)", "(start)", "(end)"}) EXPECT_THAT(content, Not(HasSubstr(gone)));
}

TEST_F(RafProcessorTest, ErasesContentOfTheSameMcidOnAllPages) {
  Page& other = doc.AddPage();
  doc.Tree({Element("Document")(
      {Element("P").Add(Anchor().Text(page, "anchor")), Element("P").Text(other, "same").Text(other, "next")})});
  const std::string content = ContentAfter(2);
  EXPECT_THAT(content, Not(HasSubstr("(same)")));
  EXPECT_THAT(content, HasSubstr("(next)"));
}

TEST_F(RafProcessorTest, ErasesContentInsideOtherMarkedContent) {
  page.Add(Marked(
      "Artifact", "",
      {Text("kept"), Marked("Span", "<</MCID 0>>", {Text("anchor")}), Marked("Span", "<</MCID 0>>", {Text("again")})}));
  doc.Tree({Element("Document")({Element("P").Add(Anchor().Mcid(page, 0))})});
  const std::string content = ContentAfter();
  EXPECT_THAT(content, HasSubstr("(kept)"));
  EXPECT_THAT(content, Not(HasSubstr("(anchor)")));
  EXPECT_THAT(content, Not(HasSubstr("(again)")));
}

TEST_F(RafProcessorTest, KeepsMarkedContentWithoutAnMcid) {
  page.Add(Marked("Artifact", "", {Text("plain")})).Add(Marked("Span", "<</MCID/Zero>>", {Text("named")}));
  doc.Tree({Element("Document")({Element("P").Add(Anchor().Text(page, "anchor"))})});
  const std::string content = ContentAfter();
  EXPECT_THAT(content, HasSubstr("(plain)"));
  EXPECT_THAT(content, HasSubstr("(named)"));
}

TEST_F(RafProcessorTest, DoesNothingWithoutAStructureTree) {
  page.Add(Ops("q 1 0 0 1 0 100 cm BI /W 1 /H 1 /BPC 8 /CS /RGB /F /AHx ID 000000> EI Q"));
  const std::string before = ReadBack(doc.Write()).Content(1);
  EXPECT_EQ(ContentAfter(), before);
}

TEST_F(RafProcessorTest, MakesCallsInProportionToTheAnchors) {
  const auto callsFor = [](int anchors) {
    TestDocument many;
    many.AddPage();
    Element body("Document");
    Element holder = Holder();
    for (int anchor = 0; anchor < anchors; ++anchor) {
      std::u16string name = u"[";
      for (const char digit : std::to_string(anchor)) name += static_cast<char16_t>(digit);
      name += u"]";
      body.Add(Element("P")({Element("Span"), Anchor(name)}));
      holder.Add(Start(name)).Add(Element("H1")).Add(End(name));
    }
    many.Tree({body.Add(holder)});
    OpenDocument open(many.Write());
    const test::RaisingHost host(test::EmbeddedTables(), 0);
    const test::HostSession session(host.Tables());
    EXPECT_EQ(open.Action(kReshuffleFramesByHolder), kSuccess);
    return host.Calls();
  };
  EXPECT_LT(callsFor(400), 5 * callsFor(100));
}

/// A black RGB sample as an inline image of one by one unit.
std::string Sample(const std::string& left, const std::string& image = "/W 1 /H 1 /BPC 8 /CS /RGB /F /AHx ID 000000>") {
  return "q 1 0 0 1 " + left + " 100 cm BI " + image + " EI Q";
}

class DummyImages : public RafProcessorTest {
 protected:
  DummyImages() { doc.Tree({}); }
  /// How many inline images the page has afterwards.
  int ImagesAfter() {
    const std::string content = ContentAfter();
    int count = 0;
    for (auto at = content.find("ID "); at != std::string::npos; at = content.find("ID ", at + 1)) ++count;
    return count;
  }
};

TEST_F(DummyImages, GoFromTheLeftEdgeOfThePage) {
  page.Add(Ops(Sample("0")));
  EXPECT_EQ(ImagesAfter(), 0);
}

TEST_F(DummyImages, GoEvenSeveralInARow) {
  page.Add(Ops(Sample("0"))).Add(Ops(Sample("0"))).Add(Text("a")).Add(Ops(Sample("0")));
  EXPECT_EQ(ImagesAfter(), 0);
}

TEST_F(DummyImages, GoFromInsideMarkedContent) {
  page.Add(Marked("Figure", "", {Marked("Span", "", {Ops(Sample("0"))}), Ops(Sample("0")), Text("a")}));
  EXPECT_EQ(ImagesAfter(), 0);
}

TEST_F(DummyImages, StayElsewhereThanOnTheLeftEdge) {
  page.Add(Ops(Sample("0.5")));
  EXPECT_EQ(ImagesAfter(), 1);
}

TEST_F(DummyImages, GoFromTheEdgeOfTheBoxThatIsShown) {
  page.Set("MediaBox", "[-20 0 600 700]").Set("CropBox", "[10 0 600 700]");
  page.Add(Ops(Sample("10"))).Add(Ops(Sample("0"))).Add(Ops(Sample("-20")));
  EXPECT_EQ(ImagesAfter(), 2);
}

TEST_F(DummyImages, StayInAnotherColour) {
  page.Add(Ops(Sample("0", "/W 1 /H 1 /BPC 8 /CS /RGB /F /AHx ID 000001>")));
  EXPECT_EQ(ImagesAfter(), 1);
}

TEST_F(DummyImages, StayWithOneByteOfData) {
  page.Add(Ops(Sample("0", "/W 1 /H 1 /BPC 8 /CS /G /F /AHx ID 00>")));
  EXPECT_EQ(ImagesAfter(), 1);
}

TEST_F(DummyImages, StayWithMoreThanOneSample) {
  page.Add(Ops(Sample("0", "/W 1 /H 3 /BPC 8 /CS /G /F /AHx ID 000000>")));
  EXPECT_EQ(ImagesAfter(), 1);
}

TEST_F(DummyImages, LeaveThePageAloneWhereThereAreNone) {
  page.Add(Ops(Sample("7"))).Add(Text("a"));
  const std::string before = ReadBack(doc.Write()).Content(1);
  EXPECT_EQ(ContentAfter(), before);
}

}  // namespace
}  // namespace tgx
