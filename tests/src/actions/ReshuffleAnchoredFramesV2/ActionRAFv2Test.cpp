#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::Image;
using test::kSuccess;
using test::OpenDocument;
using test::Page;
using test::ReadBack;
using test::TestDocument;

constexpr int kReshuffleFrames = 14;

Element Start(const std::u16string& name = u"f") { return Element("Span").Alt(std::u16string_view(u"\u2264" + name)); }
Element End(const std::u16string& name = u"f") { return Element("Span").Alt(std::u16string_view(u"\u2265" + name)); }
Element Anchor(const std::u16string& name = u"f") { return Element("Span").Alt(std::u16string_view(u"\u222E" + name)); }
Element Holder() { return Element("Sect").Title(u"\u2230 holder"); }

class ActionRAFv2Test : public testing::Test {
 protected:
  std::string TreeAfter() {
    OpenDocument open(doc.Write());
    EXPECT_EQ(open.Action(kReshuffleFrames), kSuccess);
    const std::string saved = open.Save();
    test::ExpectSound(saved);
    return test::TreeText(saved);
  }

  TestDocument doc;
  Page& page = doc.AddPage();
};

TEST_F(ActionRAFv2Test, PutsTheFrameInThePlaceOfItsAnchor) {
  doc.Tree({Element("Document")(
      {Element("P").Text(page, "before").Add(Anchor()).Text(page, "behind"),
       Holder()({Start().Text(page, "s"), Element("H2").Text(page, "one"), Element("P").Text(page, "two"), End()})})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  P\n"
            "    mcid 0 page 1\n"
            "    H2\n"
            "      mcid 3 page 1\n"
            "    P\n"
            "      mcid 4 page 1\n"
            "    mcid 1 page 1\n");
}

TEST_F(ActionRAFv2Test, LeavesTheContentOfThePageAlone) {
  doc.Tree({Element("Document")({Element("P").Add(Anchor().Text(page, "a")),
                                 Element("Sect")({Start().Text(page, "s"), Element("H2").Text(page, "one"), End()})})});
  const std::string before = ReadBack(doc.Write()).Content(1);
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kReshuffleFrames), kSuccess);
  EXPECT_EQ(ReadBack(open.Save()).Content(1), before);
}

TEST_F(ActionRAFv2Test, PutsAFrameAtAnAnchorOnTop) {
  doc.Tree({Element("H1"), Anchor(), Element("P"), Start(), Element("H2"), Element("H3"), End()});
  EXPECT_EQ(TreeAfter(), "H1\nH2\nH3\nP\n");
}

TEST_F(ActionRAFv2Test, RemovesTheMarksOfAnEmptyFrame) {
  doc.Tree({Element("Document")({Element("P")({Anchor()}), Element("Sect")({Start(), End(), Element("H2")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n  Sect\n    H2\n");
}

TEST_F(ActionRAFv2Test, MovesNothingWithMarkersUnderDifferentParents) {
  doc.Tree({Element("Document")(
      {Element("P")({Anchor()}), Element("Sect")({Start(), Element("H2")}), Element("Sect")({Element("H3"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n  Sect\n    H2\n  Sect\n    H3\n");
}

TEST_F(ActionRAFv2Test, MovesNothingWhereTheEndComesFirst) {
  doc.Tree(
      {Element("Document")({Element("P")({Anchor()}), Element("Sect")({End(), Element("H2"), Start(), Element("H3")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n  Sect\n    H2\n    H3\n");
}

TEST_F(ActionRAFv2Test, LeavesAnAnchorWithoutBothMarkersUntouched) {
  doc.Tree({Element("Document")({Anchor(u"x"), Anchor(u"y"), Element("Sect")({Start(u"x"), Element("H2"), End(u"y")})})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  Span alt=u\"\\u{222E}x\"\n"
            "  Span alt=u\"\\u{222E}y\"\n"
            "  Sect\n"
            "    Span alt=u\"\\u{2264}x\"\n"
            "    H2\n"
            "    Span alt=u\"\\u{2265}y\"\n");
}

TEST_F(ActionRAFv2Test, ComparesTheWholeIdentifier) {
  doc.Tree({Element("Document")({Anchor(u"f1"), Element("Sect")({Start(u"f"), Element("H2"), End(u"f")})})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  Span alt=u\"\\u{222E}f1\"\n"
            "  Sect\n"
            "    Span alt=u\"\\u{2264}f\"\n"
            "    H2\n"
            "    Span alt=u\"\\u{2265}f\"\n");
}

TEST_F(ActionRAFv2Test, CountsZeroBytesAtTheEndOfAnIdentifier) {
  doc.Tree({Element("Document")(
      {Element("Span").Alt(std::string("\xFE\xFF\x22\x2E\0f\0\0", 8)), Element("Sect")({Start(), Element("H2"), End()})})});
  const std::string before = test::TreeText(doc.Write());
  EXPECT_EQ(TreeAfter(), before);
}

TEST_F(ActionRAFv2Test, TakesNoPartOfAFrameForItsStartThatStandsInItAgain) {
  doc.Object("start", "<</S/Span/Alt<FEFF22640066>>>");
  Element sect("Sect");
  sect.RawKid("$start").Add(Element("H2")).RawKid("$start").Add(Element("H3")).Add(End());
  doc.Tree({Element("Document")({Element("P")({Anchor()}), sect})});
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kReshuffleFrames), kSuccess);
  EXPECT_EQ(test::SavedTree(open),
            "Document\n"
            "  P\n"
            "    H2\n"
            "    H3\n"
            "  Sect\n"
            "    Span alt=u\"\\u{2264}f\"\n");
}

TEST_F(ActionRAFv2Test, AllowsAnEmptyIdentifier) {
  doc.Tree({Element("Document")({Anchor(u""), Element("Sect")({Start(u""), Element("H2"), End(u"")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  H2\n  Sect\n");
}

TEST_F(ActionRAFv2Test, DissolvesAStoryInTheFirstPlace) {
  doc.Tree({Element("Document")(
      {Element("P")({Anchor()}),
       Element("Sect")({Start(), Element("Story")({Element("H2"), Element("H3"), Element("H4")}), Element("P"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    H2\n    H3\n    H4\n    P\n  Sect\n");
}

TEST_F(ActionRAFv2Test, TakesTheKidsOfALaterStoryFromItsPlaceOn) {
  doc.Tree({Element("Document")(
      {Element("P")({Anchor()}),
       Element("Sect")({Start(), Element("P"), Element("Story")({Element("H2"), Element("H3"), Element("H4")}), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    P\n    H3\n    H4\n    H2\n  Sect\n");
}

TEST_F(ActionRAFv2Test, LosesNothingOfAStoryWithFewerKidsThanItsPlace) {
  doc.Tree({Element("Document")(
      {Element("P")({Anchor()}), Element("Sect")({Start(), Element("P"), Element("P"), Element("P"),
                                                  Element("Story")({Element("H2"), Element("H3")}), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    P\n    P\n    P\n    H3\n    H2\n  Sect\n");
}

TEST_F(ActionRAFv2Test, KeepsAStoryWithContentOfItsOwn) {
  doc.Tree({Element("Document")(
      {Element("P")({Anchor()}),
       Element("Sect")({Start(), Element("Story").Add(Element("H2")).Text(page, "text").Add(Element("H3")), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    H2\n    H3\n    Story\n      mcid 0 page 1\n  Sect\n");
}

TEST_F(ActionRAFv2Test, CountsTheContentOfALaterStoryAmongItsKids) {
  const Element story = Element("Story").Text(page, "text").Add(Element("H2")).Add(Element("H3"));
  doc.Tree({Element("Document")({Element("P")({Anchor()}), Element("Sect")({Start(), Element("P"), story, End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    P\n    H2\n    H3\n    Story\n      mcid 0 page 1\n  Sect\n");
}

TEST_F(ActionRAFv2Test, DissolvesAStoryWithoutKids) {
  doc.Tree({Element("Document")({Element("P")({Anchor()}), Element("Sect")({Start(), Element("Story"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n  Sect\n");
}

TEST_F(ActionRAFv2Test, DissolvesNoStoryBelowTheTopOfTheFrame) {
  doc.Tree({Element("Document")(
      {Anchor(), Element("Sect")({Start(), Element("Div")({Element("Story")({Element("H2")})}), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  Div\n    Story\n      H2\n  Sect\n");
}

TEST_F(ActionRAFv2Test, LeavesKidsThatAreNoElementsWhereTheyStand) {
  doc.Tree({Element("Document")(
      {Element("P")({Anchor()}), Element("Sect").Add(Start()).Text(page, "text").Add(Element("H2")).Add(End())})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    H2\n  Sect\n    mcid 0 page 1\n");
}

TEST_F(ActionRAFv2Test, ReadsMarksWithoutAByteOrderMark) {
  doc.Tree({Element("Document")(
      {Element("Span").Alt(std::string("\x22\x2E\0f", 4)), Element("Sect")({Start(), Element("H2"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  H2\n  Sect\n");
}

TEST_F(ActionRAFv2Test, ReadsMarksBehindAByteOrderMarkOfTheOtherKind) {
  doc.Tree({Element("Document")(
      {Element("Span").Alt(std::string("\xFF\xFE\x22\x2E\0f", 6)), Element("Sect")({Start(), Element("H2"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  H2\n  Sect\n");
}

TEST_F(ActionRAFv2Test, WantsTheMarkInFront) {
  doc.Tree({Element("Document")({Element("Span").Alt(u"a\u222Ef"), Element("Sect").Title(u"a\u2230")})});
  EXPECT_EQ(TreeAfter(), "Document\n  Span alt=u\"a\\u{222E}f\"\n  Sect title=u\"a\\u{2230}\"\n");
}

TEST_F(ActionRAFv2Test, ReadsShortTexts) {
  doc.Tree({Element("Document")(
      {Element("P").Alt("\x22"), Element("P").Alt(""), Element("P").Title("x"), Element("P").Alt(u"")})});
  const std::string before = test::TreeText(doc.Write());
  EXPECT_EQ(TreeAfter(), before);
}

TEST_F(ActionRAFv2Test, RemovesHoldersWithWhatIsLeftInThem) {
  doc.Tree({Element("Document")({Element("P"), Holder()({Element("H2")})}), Holder()});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n");
}

TEST_F(ActionRAFv2Test, TakesAnElementWithAHolderTitleForAHolderAlone) {
  doc.Tree({Element("Document")({Anchor().Title(u"\u2230"), Element("Sect")({Start(), Element("H2"), End()})})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  Sect\n"
            "    Span alt=u\"\\u{2264}f\"\n"
            "    H2\n"
            "    Span alt=u\"\\u{2265}f\"\n");
}

TEST_F(ActionRAFv2Test, ReadsTheAltOfAnElementWithAnotherTitle) {
  doc.Tree({Element("Document")({Anchor().Title(u"anchor"), Element("Sect")({Start(), Element("H2"), End()})})});
  EXPECT_EQ(TreeAfter(), "Document\n  H2\n  Sect\n");
}

TEST_F(ActionRAFv2Test, GivesTheLastFrameOfAnIdentifierToTheFirstAnchor) {
  doc.Tree({Element("Document")({Element("P")({Anchor()}), Element("Div")({Anchor()}),
                                 Element("Sect")({Start(), Element("H2"), End(), Start(), Element("H3"), End()})})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  P\n"
            "    H3\n"
            "  Div\n"
            "    Span alt=u\"\\u{222E}f\"\n"
            "  Sect\n"
            "    Span alt=u\"\\u{2264}f\"\n"
            "    H2\n"
            "    Span alt=u\"\\u{2265}f\"\n");
}

TEST_F(ActionRAFv2Test, PlacesAFrameWhoseAnchorStandsInAnother) {
  doc.Tree({Element("Document")(
      {Element("P")({Anchor(u"outer")}), Element("Sect")({Start(u"outer"), Element("Div")({Anchor(u"inner")}), End(u"outer"),
                                                          Start(u"inner"), Element("H2"), End(u"inner")})})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n    Div\n      H2\n  Sect\n");
}

TEST_F(ActionRAFv2Test, DropsAFrameWhoseAnchorStandsBetweenItsMarkers) {
  doc.Tree({Element("Document")({Start(), Element("H2"), Anchor(), End(), Element("P")})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n");
}

TEST_F(ActionRAFv2Test, RemovesDummyImagesWithoutAnyMarks) {
  page.Add(Image(1, 1)).Add(Image(2, 1));
  doc.Tree({Element("Document")({Element("P").Text(page, "text")})});
  OpenDocument open(doc.Write());
  const std::string before = test::SavedTree(open);
  EXPECT_EQ(open.Action(kReshuffleFrames), kSuccess);
  EXPECT_EQ(test::SavedTree(open), before);
  const std::string content = ReadBack(open.Save()).Content(1);
  const auto image = content.find(" Do");
  EXPECT_NE(image, std::string::npos);
  EXPECT_EQ(content.find(" Do", image + 1), std::string::npos);
}

TEST_F(ActionRAFv2Test, GivesADocumentWithoutATreeAnEmptyOne) {
  EXPECT_EQ(TreeAfter(), "");
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kReshuffleFrames), kSuccess);
  EXPECT_TRUE(ReadBack(open.Save()).TreeRoot().isDictionary());
}

TEST_F(ActionRAFv2Test, MovesAFrameOfManyElementsInProportionToThem) {
  const auto callsFor = [](int elements) {
    TestDocument many;
    many.AddPage();
    Element sect("Sect");
    sect.Add(Start());
    for (int element = 0; element < elements; ++element) sect.Add(Element("P"));
    sect.Add(End());
    many.Tree({Element("Document")({Anchor(), sect})});
    OpenDocument open(many.Write());
    const test::RaisingHost host(test::EmbeddedTables(), 0);
    const test::HostSession session(host.Tables());
    EXPECT_EQ(open.Action(kReshuffleFrames), kSuccess);
    return host.Calls();
  };
  EXPECT_LT(callsFor(400), 5 * callsFor(100));
}

// Anchors side by side below one parent, their frames in one holder in the order of the numbers.
std::size_t CallsForFrames(const std::vector<int>& order) {
  TestDocument doc;
  doc.AddPage();
  Element anchors("Sect");
  Element frames("Sect");
  const auto name = [](int i) {
    const std::string digits = std::to_string(i);
    return std::u16string(digits.begin(), digits.end());
  };
  for (int i = 0; i < static_cast<int>(order.size()); ++i) {
    const std::u16string frame = name(order[static_cast<std::size_t>(i)]);
    anchors.Add(Anchor(name(i)));
    frames.Add(Start(frame)).Add(Element("P").Title(test::Bytes(std::u16string_view(frame)))).Add(End(frame));
  }
  doc.Tree({Element("Document")({anchors, frames})});
  OpenDocument open(doc.Write());
  {
    const test::RaisingHost host(test::EmbeddedTables(), 0);
    const test::HostSession session(host.Tables());
    EXPECT_EQ(open.Action(kReshuffleFrames), kSuccess);
    std::string expected = "Document\n  Sect\n";
    for (std::size_t i = 0; i < order.size(); ++i) expected += "    P title=u\"" + std::to_string(i) + "\"\n";
    EXPECT_EQ(test::SavedTree(open), expected + "  Sect\n");
    return host.Calls();
  }
}

std::vector<int> Ascending(int count) {
  std::vector<int> order(static_cast<std::size_t>(count));
  std::iota(order.begin(), order.end(), 0);
  return order;
}
std::vector<int> Descending(int count) {
  std::vector<int> order = Ascending(count);
  std::reverse(order.begin(), order.end());
  return order;
}
std::vector<int> Shuffled(int count) {
  std::vector<int> order = Ascending(count);
  std::shuffle(order.begin(), order.end(), std::minstd_rand(7));
  return order;
}

TEST_F(ActionRAFv2Test, PlacesManyFramesInProportionToThem) {
  for (const auto order : {Ascending, Descending, Shuffled}) {
    EXPECT_LT(CallsForFrames(order(400)), 5 * CallsForFrames(order(100)));
  }
}

TEST_F(ActionRAFv2Test, TakesTheFirstPlaceOfAMarkThatStandsInTwo) {
  doc.Object("end", "<</S/Span/Alt<FEFF22650066>>>");
  Element sect("Sect");
  sect.Add(Start()).Add(Element("H2")).RawKid("$end").Add(Element("H3")).RawKid("$end");
  doc.Tree({Element("Document")({Element("P")({Anchor()}), sect})});
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kReshuffleFrames), kSuccess);
  EXPECT_EQ(test::SavedTree(open),
            "Document\n"
            "  P\n"
            "    H2\n"
            "  Sect\n"
            "    H3\n"
            "    Span alt=u\"\\u{2265}f\"\n");
}

TEST_F(ActionRAFv2Test, RemovesManyHoldersInProportionToThem) {
  const auto callsFor = [](int holders) {
    TestDocument many;
    many.AddPage();
    Element document("Document");
    for (int i = 0; i < holders; ++i) document.Add(Element("P")).Add(Holder());
    many.Tree({document});
    OpenDocument open(many.Write());
    const test::RaisingHost host(test::EmbeddedTables(), 0);
    const test::HostSession session(host.Tables());
    EXPECT_EQ(open.Action(kReshuffleFrames), kSuccess);
    return host.Calls();
  };
  EXPECT_LT(callsFor(400), 5 * callsFor(100));
}

TEST_F(ActionRAFv2Test, FailsForAnAnchorDeepInItsOwnFrame) {
  doc.Tree({Element("Document")({Start(), Element("Sect")({Element("P")({Anchor()})}), End()})});
  OpenDocument open(doc.Write());
  const test::Outcome outcome = open.Action(kReshuffleFrames);
  EXPECT_EQ(outcome.result, TGX_FAILED) << "the frame would become its own ancestor";
  EXPECT_NE(outcome.text, "");
  test::ExpectSound(open.Save());
}

TEST_F(ActionRAFv2Test, KeepsTheFrameTogetherWhereMarkersOfAnotherStandInIt) {
  doc.Tree({Element("Document")(
      {Element("P")({Anchor(u"a")}), Element("Div")({Anchor(u"b")}),
       Element("Sect")({Start(u"a"), Element("H2"), Start(u"b"), Element("H3"), End(u"a"), Element("H4"), End(u"b")})})});
  EXPECT_EQ(TreeAfter(),
            "Document\n"
            "  P\n"
            "    H2\n"
            "    H3\n"
            "  Div\n"
            "  Sect\n"
            "    H4\n");
}

}  // namespace
}  // namespace tgx
