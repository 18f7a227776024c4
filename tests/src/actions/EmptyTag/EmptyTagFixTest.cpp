#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Hosts.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::HardFailure;
using test::HookedHost;
using test::HostCall;
using test::HostSession;
using test::kSuccess;
using test::OpenDocument;
using test::Operation;
using test::Page;
using test::RaiseAsHost;
using test::RecordingHost;
using test::SavedTree;
using test::TestDocument;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr int kRemove = 6, kMark = 7;

/// A host that refuses the null object as a parent.
class HostWithoutNullParent {
 public:
  HostWithoutNullParent()
      : host_(test::EmbeddedTables(),
              [](const HostCall& call) {
                if (call.Is(Operation::PDSElementRemoveKid) && call.values[0] == 0) {
                  RaiseAsHost(kASBadParameter, "no element is null");
                }
              }),
        session_(host_.Tables()) {}

 private:
  HookedHost host_;
  HostSession session_;
};

TEST(RemoveEmptyTags, TakesAnEmptyElementOut) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({
      Element("P").Text(page, "a"),
      Element("P"),
      Element("P").Text(page, "b"),
  })});
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kRemove), kSuccess);
  EXPECT_EQ(SavedTree(document), "Document\n  P\n    mcid 0 page 1\n  P\n    mcid 1 page 1\n");
  test::ExpectSound(document.Save());
}

TEST(RemoveEmptyTags, TakesASubtreeOfElementsOutInOneCall) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({
      Element("L")({Element("LI")({Element("Lbl"), Element("LBody")})}),
      Element("P").Text(page, "a"),
  })});
  OpenDocument document(doc.Write());
  RecordingHost host;
  {
    const HostSession session(host.Tables());
    EXPECT_EQ(document.Action(kRemove), kSuccess);
  }
  EXPECT_EQ(host.Count(Operation::PDSElementRemoveKid), 1U);
  EXPECT_EQ(SavedTree(document), "Document\n  P\n    mcid 0 page 1\n");
}

TEST(RemoveEmptyTags, KeepsAnElementWithAnObjectReference) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("Link").Object(page.Link("https://example.org/"))})});
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kRemove), kSuccess);
  EXPECT_EQ(SavedTree(document), "Document\n  Link\n    objr Link page 1\n");
}

TEST(RemoveEmptyTags, KeepsAnElementWhoseOnlyKidIsOfNoKnownKind) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Document")({Element("P").RawKid("<</Type/Strange>>")})});
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kRemove), kSuccess);
  EXPECT_THAT(SavedTree(document), HasSubstr("  P\n"));
}

TEST(RemoveEmptyTags, TakesOnlyTheEmptyKidOfAnElementWithContentOfItsOwn) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("P").Text(page, "a").Add(Element("Span")).Text(page, "b")})});
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kRemove), kSuccess);
  EXPECT_EQ(SavedTree(document), "Document\n  P\n    mcid 0 page 1\n    mcid 1 page 1\n");
}

TEST(RemoveEmptyTags, GoesDownToEmptyElementsBesideContent) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Sect")({Element("Sect")({Element("P"), Element("P").Text(page, "a"), Element("P")})})});
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kRemove), kSuccess);
  EXPECT_EQ(SavedTree(document), "Sect\n  Sect\n    P\n      mcid 0 page 1\n");
}

TEST(RemoveEmptyTags, TakesTopLevelElementsOutWhereNullMeansTheRoot) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Sect")({Element("P")}), Element("P").Text(page, "a")});
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kRemove), kSuccess);
  EXPECT_EQ(SavedTree(document), "P\n  mcid 0 page 1\n");
}

TEST(RemoveEmptyTags, CallsTheHostWithANullParentForATopLevelElement) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("P")});
  OpenDocument document(doc.Write());
  RecordingHost host;
  {
    const HostSession session(host.Tables());
    document.Action(kRemove);
  }
  EXPECT_THAT(host.Calls(), Contains(testing::StartsWith("PDSElementRemoveKid(0:0, ")));
}

TEST(RemoveEmptyTags, FailsWithTheTextOfAHostThatRefusesTheNullParent) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Sect")({Element("P"), Element("P").Text(page, "a")}), Element("P")});
  OpenDocument document(doc.Write());
  const HostWithoutNullParent host;
  EXPECT_EQ(document.Action(kRemove), HardFailure("no element is null"));
}

TEST(RemoveEmptyTags, KeepsTheRemovalsMadeBeforeAFailure) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Sect")({Element("P"), Element("P").Text(page, "a")}), Element("Div")});
  OpenDocument document(doc.Write());
  {
    const HostWithoutNullParent host;
    document.Action(kRemove);
  }
  EXPECT_EQ(SavedTree(document), "Sect\n  P\n    mcid 0 page 1\nDiv\n");
}

TEST(RemoveEmptyTags, LeavesAnElementWhoseMarkedContentIsNotOnThePage) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("P").Mcid(page, 7)});
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kRemove), kSuccess);
  EXPECT_THAT(SavedTree(document), HasSubstr("P\n"));
}

TEST(RemoveEmptyTags, LeavesADocumentWithoutStructureWithoutOne) {
  TestDocument doc;
  doc.AddPage().Add(test::Text("plain"));
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kRemove), kSuccess);
  EXPECT_EQ(SavedTree(document), "(no structure tree)\n");
}

TEST(RemoveEmptyTags, LeavesAnEmptyTree) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({});
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kRemove), kSuccess);
  EXPECT_EQ(SavedTree(document), "");
}

TEST(RemoveEmptyTags, SecondRunFindsNothing) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("P"), Element("P").Text(page, "a")})});
  OpenDocument document(doc.Write());
  document.Action(kRemove);
  const std::string once = SavedTree(document);
  RecordingHost host;
  const HostSession session(host.Tables());
  EXPECT_EQ(document.Action(kRemove), kSuccess);
  EXPECT_EQ(host.Count(Operation::PDSElementRemoveKid), 0U);
  EXPECT_EQ(SavedTree(document), once);
}

TEST(RemoveEmptyTags, AnElementThatIsItsOwnAncestorFailsWithTheHostsText) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Sect").Named("loop").RawKid("$loop")});
  OpenDocument document(doc.Write());
  const test::Outcome outcome = document.Action(kRemove);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_THAT(outcome.text, Not(testing::IsEmpty()));
}

TEST(RemoveEmptyTags, TenThousandLevelsFailWithTheHostsText) {
  TestDocument doc;
  doc.AddPage();
  Element top("Sect");
  Element deepest = top;
  for (int level = 1; level < 10000; ++level) deepest = deepest.AddNew("Sect");
  doc.Tree({top});
  OpenDocument document(doc.Write());
  const test::Outcome outcome = document.Action(kRemove);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_THAT(outcome.text, HasSubstr("512"));
}

TEST(RemoveEmptyTags, HalfOfAHundredThousandKidsGo) {
  TestDocument doc;
  Page& page = doc.AddPage();
  Element parent("Document");
  for (int i = 0; i < 50000; ++i) {
    parent.Add(Element("P").Mcid(page, i));
    parent.Add(Element("P"));
  }
  doc.Tree({parent}).WithoutParentTree();
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kRemove), kSuccess);
  test::ReadBack file(document.Save());
  EXPECT_EQ(file.TreeRoot().getKey("/K").getArrayItem(0).getKey("/K").getArrayNItems(), 50000);
}

TEST(MarkEmptyTags, AppendsTheMarkToTheType) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("P").Text(page, "a"), Element("P")})});
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kMark), kSuccess);
  EXPECT_EQ(SavedTree(document), "Document\n  P\n    mcid 0 page 1\n  P [EMPTY]\n");
  test::ExpectSound(document.Save());
}

TEST(MarkEmptyTags, MarksOnlyTheTopmostElementOfAnEmptySubtree) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("L")({Element("LI")({Element("Lbl")})}), Element("P").Text(page, "a")})});
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kMark), kSuccess);
  EXPECT_EQ(SavedTree(document), "Document\n  L [EMPTY]\n    LI\n      Lbl\n  P\n    mcid 0 page 1\n");
}

TEST(MarkEmptyTags, MarksAnEmptyTopLevelElementWithoutACallOnTheRoot) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("P")});
  OpenDocument document(doc.Write());
  const HostWithoutNullParent refusing;
  EXPECT_EQ(document.Action(kMark), kSuccess);
  EXPECT_EQ(SavedTree(document), "P [EMPTY]\n");
}

TEST(MarkEmptyTags, SecondRunAppendsASecondMark) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("P")});
  OpenDocument document(doc.Write());
  document.Action(kMark);
  EXPECT_EQ(document.Action(kMark), kSuccess);
  EXPECT_EQ(SavedTree(document), "P [EMPTY] [EMPTY]\n");
}

TEST(MarkEmptyTags, KeepsTypesOfUnusualBytes) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("A#b (c)/\xC3\xA4")});
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kMark), kSuccess);
  EXPECT_EQ(SavedTree(document), "A#b (c)/\\u{00E4} [EMPTY]\n");
}

TEST(MarkEmptyTags, LeavesTheRoleMapAlone) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Custom")}).RoleMap({{"Custom", "P"}});
  OpenDocument document(doc.Write());
  document.Action(kMark);
  test::ReadBack file(document.Save());
  EXPECT_EQ(test::RoleMapText(file.Pdf()), "Custom -> P\n");
}

TEST(MarkEmptyTags, LeavesADocumentWithoutStructureWithoutOne) {
  TestDocument doc;
  doc.AddPage();
  OpenDocument document(doc.Write());
  EXPECT_EQ(document.Action(kMark), kSuccess);
  EXPECT_EQ(SavedTree(document), "(no structure tree)\n");
}

}  // namespace
}  // namespace tgx
