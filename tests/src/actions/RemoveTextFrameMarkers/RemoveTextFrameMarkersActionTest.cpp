#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/ActionFixture.h"
#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::kSoftFailure;
using test::kSuccess;
using test::Marked;
using test::OpenDocument;
using test::Operation;
using test::Page;
using test::ReadBack;
using test::TestDocument;
using test::Text;
using testing::HasSubstr;
using testing::Not;

constexpr int kRemoveFrameMarkers = 11;

class RemoveTextFrameMarkersTest : public test::ActionFixture {
 protected:
  RemoveTextFrameMarkersTest() : ActionFixture(kRemoveFrameMarkers) {}
};

TEST_F(RemoveTextFrameMarkersTest, RemovesMarkersAndTheirContent) {
  doc.Tree(
      {Element("Document")({Element("Span").Alt(u"TEXTFRAME_START").Text(page, "start"), Element("P").Text(page, "text"),
                            Element("Span").Alt(u"TEXTFRAME_END").Text(page, "end")})});
  const std::string saved = SavedAfter();
  EXPECT_EQ(test::TreeText(saved), "Document\n  P\n    mcid 1 page 1\n");
  const std::string content = ReadBack(saved).Content(1);
  EXPECT_THAT(content, HasSubstr("(text)"));
  EXPECT_THAT(content, Not(HasSubstr("(start)")));
  EXPECT_THAT(content, Not(HasSubstr("(end)")));
}

TEST_F(RemoveTextFrameMarkersTest, FindsTheMarkInsideALongerText) {
  doc.Tree({Element("Document")({Element("Span").Alt(u"frame 7: TEXTFRAME_START (main)"), Element("P")})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n");
}

TEST_F(RemoveTextFrameMarkersTest, NeedsNoByteOrderMark) {
  std::string bare;
  for (const char letter : std::string("TEXTFRAME_END")) bare += {'\0', letter};
  doc.Tree({Element("Document")({Element("Span").Alt(bare), Element("P")})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n");
}

TEST_F(RemoveTextFrameMarkersTest, ReadsTextAsUtf16Only) {
  doc.Tree({Element("Document")({Element("Span").Alt("TEXTFRAME_START"), Element("P").Alt("TEXTFRAME_END!")})});
  EXPECT_EQ(TreeAfter(), "Document\n  Span alt=\"TEXTFRAME_START\"\n  P alt=\"TEXTFRAME_END!\"\n");
}

TEST_F(RemoveTextFrameMarkersTest, LooksNoFurtherThanAZeroCharacter) {
  doc.Tree({Element("Document")({Element("Span").Alt(std::u16string_view(u"a\0TEXTFRAME_START", 17))})});
  EXPECT_THAT(TreeAfter(), HasSubstr("  Span alt="));
}

TEST_F(RemoveTextFrameMarkersTest, TellsUpperFromLowerCase) {
  doc.Tree({Element("Document")({Element("Span").Alt(u"TextFrame_Start")})});
  EXPECT_EQ(TreeAfter(), "Document\n  Span alt=u\"TextFrame_Start\"\n");
}

TEST_F(RemoveTextFrameMarkersTest, RemovesAMarkerWithoutKids) {
  doc.Tree({Element("Document")({Element("Span").Alt(u"TEXTFRAME_START")})});
  EXPECT_EQ(TreeAfter(), "Document\n");
}

TEST_F(RemoveTextFrameMarkersTest, RemovesAMarkerOnTop) {
  doc.Tree({Element("Span").Alt(u"TEXTFRAME_START"), Element("Document")});
  EXPECT_EQ(TreeAfter(), "Document\n");
}

TEST_F(RemoveTextFrameMarkersTest, RemovesAMarkerWithTheElementsInIt) {
  doc.Tree({Element("Document")(
      {Element("Div").Alt(u"TEXTFRAME_START")({Element("P").Text(page, "inner")}), Element("P").Text(page, "text")})});
  const std::string saved = SavedAfter();
  EXPECT_EQ(test::TreeText(saved), "Document\n  P\n    mcid 1 page 1\n");
  EXPECT_THAT(ReadBack(saved).Content(1), HasSubstr("(inner)")) << "only the marker's own content goes";
}

TEST_F(RemoveTextFrameMarkersTest, RemovesAMarkerInsideAnother) {
  doc.Tree({Element("Document")(
      {Element("Div").Alt(u"TEXTFRAME_START")({Element("Span").Alt(u"TEXTFRAME_END").Text(page, "inner")}), Element("P")})});
  const std::string saved = SavedAfter();
  EXPECT_EQ(test::TreeText(saved), "Document\n  P\n");
  EXPECT_THAT(ReadBack(saved).Content(1), Not(HasSubstr("(inner)")));
}

TEST_F(RemoveTextFrameMarkersTest, RemovesContentFromSeveralPages) {
  Page& second = doc.AddPage();
  doc.Tree({Element("Document")({Element("Span").Alt(u"TEXTFRAME_START").Text(page, "one").Text(second, "two")})});
  const std::string saved = SavedAfter();
  EXPECT_THAT(ReadBack(saved).Content(1), Not(HasSubstr("(one)")));
  EXPECT_THAT(ReadBack(saved).Content(2), Not(HasSubstr("(two)")));
}

TEST_F(RemoveTextFrameMarkersTest, RemovesTheFirstContainerOfAnMcidOnly) {
  page.Add(Marked("Span", "<</MCID 0>>", {Text("first")})).Add(Marked("Span", "<</MCID 0>>", {Text("second")}));
  doc.Tree({Element("Document")({Element("Span").Alt(u"TEXTFRAME_START").Mcid(page, 0)})});
  const std::string content = ContentAfter();
  EXPECT_THAT(content, Not(HasSubstr("(first)")));
  EXPECT_THAT(content, HasSubstr("(second)"));
}

TEST_F(RemoveTextFrameMarkersTest, WalksAPageOnceForAllItsMarkers) {
  constexpr std::size_t kMarkers = 500;
  Element document("Document");
  for (std::size_t i = 0; i < kMarkers; ++i) {
    document.Add(Element("Span").Alt(u"TEXTFRAME_START").Text(page, "start"));
    document.Add(Element("P").Text(page, "text"));
  }
  doc.Tree({document});
  OpenDocument open(doc.Write());
  test::RecordingHost host;
  {
    const test::HostSession session(host.Tables());
    EXPECT_EQ(open.Action(kRemoveFrameMarkers), kSuccess);
  }
  const std::size_t elements = 4 * kMarkers;  // containers, and the text in each
  EXPECT_LT(host.Count(Operation::PDEContentGetElem), 4 * elements);
  EXPECT_LT(host.Count(Operation::PDEContainerGetDict), 2 * elements);
  EXPECT_THAT(ReadBack(open.Save()).Content(1), Not(HasSubstr("(start)")));
}

TEST_F(RemoveTextFrameMarkersTest, FindsMarkersInAnyOrderOnTheirPageWithoutASearch) {
  constexpr int kMarkers = 500;
  for (int i = 0; i < kMarkers; ++i) page.Add(Marked("Span", "<</MCID " + std::to_string(i) + ">>", {Text("start")}));
  Element document("Document");
  for (int i = kMarkers; i-- > 0;) document.Add(Element("Span").Alt(u"TEXTFRAME_START").Mcid(page, i * 7 % kMarkers));
  doc.Tree({document});
  OpenDocument open(doc.Write());
  test::RecordingHost host;
  {
    const test::HostSession session(host.Tables());
    EXPECT_EQ(open.Action(kRemoveFrameMarkers), kSuccess);
  }
  EXPECT_LT(host.Count(Operation::PDEContentGetElem), 8U * kMarkers);
  EXPECT_THAT(ReadBack(open.Save()).Content(1), Not(HasSubstr("(start)")));
}

TEST_F(RemoveTextFrameMarkersTest, PassesOverTheKidBehindARemovedObjectReference) {
  doc.Tree({Element("Document")({Element("Span")
                                     .Alt(u"TEXTFRAME_START")
                                     .Object(page.Link("https://example.org/"))
                                     .Text(page, "stays")
                                     .Text(page, "goes")})});
  const std::string content = ContentAfter();
  EXPECT_THAT(content, HasSubstr("(stays)"));
  EXPECT_THAT(content, Not(HasSubstr("(goes)")));
}

TEST_F(RemoveTextFrameMarkersTest, EndsBehindTheKidsThatObjectReferencesLeave) {
  Element marker("Span");
  marker.Alt(u"TEXTFRAME_START");
  for (int link = 0; link < 3; ++link) marker.Object(page.Link("https://example.org/"));
  doc.Tree({Element("Document")({marker, Element("P")})});
  EXPECT_EQ(TreeAfter(), "Document\n  P\n");
}

TEST_F(RemoveTextFrameMarkersTest, TakesKidsOfAMisspelledTypeOutOfTheMarker) {
  doc.Tree({Element("Document")({Element("Span").Alt(u"TEXTFRAME_START").RawKid("<</Type/StuctElem/S/P>>")})});
  OpenDocument open(doc.Write());
  test::RecordingHost host;
  {
    const test::HostSession session(host.Tables());
    EXPECT_EQ(open.Action(kRemoveFrameMarkers), kSuccess);
  }
  EXPECT_EQ(host.Count(Operation::PDSElementRemoveKid), 2U);
}

TEST_F(RemoveTextFrameMarkersTest, LeavesADocumentWithoutMarkersAlone) {
  doc.Tree({Element("Document")({Element("Span").Alt(u"nothing").Text(page, "text")})});
  OpenDocument open(doc.Write());
  const std::string before = test::SavedTree(open);
  test::RecordingHost host;
  {
    const test::HostSession session(host.Tables());
    EXPECT_EQ(open.Action(kRemoveFrameMarkers), kSuccess);
  }
  EXPECT_EQ(test::SavedTree(open), before);
  EXPECT_EQ(host.Count(Operation::PDPageSetPDEContent), 0U);
}

TEST_F(RemoveTextFrameMarkersTest, FailsWithoutATreeAndMakesNone) {
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kRemoveFrameMarkers), kSoftFailure);
  EXPECT_FALSE(ReadBack(open.Save()).TreeRoot().isDictionary());
}

}  // namespace
}  // namespace tgx
