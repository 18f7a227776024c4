#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "src/api/HostException.h"
#include "src/wrappers/PDS_Element.h"
#include "src/wrappers/PDS_MC.h"
#include "src/wrappers/PDS_OBJR.h"
#include "src/wrappers/PDS_TreeRoot.h"
#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::HostSession;
using test::Operation;
using test::Page;
using test::RecordingHost;

class StructureWrappersTest : public test::StructureTest {
 protected:
  /// The snapshot of the first top-level element of `doc`.
  PDS_Element& Snapshot() {
    Open();
    tree_ = std::make_unique<PDS_TreeRoot>(Root());
    return ElementAt(*tree_, 0);
  }
  template <typename Node>
  static PDS_Element& ElementAt(const Node& node, int index) {
    return dynamic_cast<PDS_Element&>(*node.GetKid(index));
  }
  std::string Saved() {
    const std::string saved = Opened().Save();
    test::ExpectSound(saved);
    return test::TreeText(saved);
  }

  Page& page = doc.AddPage();

 private:
  std::unique_ptr<PDS_TreeRoot> tree_;
};

TEST_F(StructureWrappersTest, LoadTheTreeWithItsThreeKindsOfKids) {
  doc.Tree({Element("Document")({Element("P").Text(page, "a"), Element("Link").Object(page.Link("u"))}), Element("Sect")});
  Open();
  const PDS_TreeRoot tree(Root());
  EXPECT_EQ(tree.GetParent(), nullptr);
  ASSERT_EQ(tree.GetNumKids(), 2);
  const PDS_Element& document = ElementAt(tree, 0);
  EXPECT_EQ(document.GetParent(), &tree);
  ASSERT_EQ(document.GetNumKids(), 2);
  EXPECT_STREQ(ASAtomGetString(ElementAt(document, 1).GetType()), "Link");
  EXPECT_EQ(document.GetKid(0)->GetParent(), &document);
  EXPECT_NE(dynamic_cast<PDS_MC*>(ElementAt(document, 0).GetKid(0)), nullptr);
  EXPECT_NE(dynamic_cast<PDS_OBJR*>(ElementAt(document, 1).GetKid(0)), nullptr);
}

TEST_F(StructureWrappersTest, HaveNoKindOfTheirOwn) {
  doc.Tree({Element("P").Text(page, "a").Object(page.Link("u"))});
  const PDS_Element& element = Snapshot();
  EXPECT_EQ(element.GetKind(), -1);
  EXPECT_EQ(element.GetKid(0)->GetKind(), -1);
  EXPECT_EQ(element.GetKid(1)->GetKind(), -1);
  EXPECT_EQ(element.GetParent()->GetKind(), -1);
}

TEST_F(StructureWrappersTest, KeepTheRecordOfMarkedContent) {
  Page& second = doc.AddPage();
  second.Mark("Span", test::Text("other"));
  doc.Tree({Element("P").Text(second, "text")});
  const PDS_Element& element = Snapshot();
  const auto& content = dynamic_cast<const PDS_MC&>(*element.GetKid(0));
  EXPECT_EQ(content.GetMCID(), 1);
  EXPECT_EQ(PageNumber(content.GetPage()), 2);
  EXPECT_EQ(content.GetHandle().size, sizeof(PDSMCInfo));
}

TEST_F(StructureWrappersTest, GiveKidsOfOtherTypesNoWrapper) {
  doc.Tree({Element("P").RawKid("<</Type/Strange>>").Text(page, "a").RawKid("(text)")});
  const PDS_Element& element = Snapshot();
  EXPECT_EQ(element.GetNumKids(), 1);
  EXPECT_EQ(PDSElementGetNumKids(element.GetHandle()), 3);
}

TEST_F(StructureWrappersTest, SeeChangesOfOthersOnlyAfterRefresh) {
  doc.Tree({Element("Sect")({Element("P"), Element("P")})});
  PDS_Element& element = Snapshot();
  PDSElementRemoveKid(element.GetHandle(), At({0, 0}));
  EXPECT_EQ(element.GetNumKids(), 2);
  element.Refresh();
  EXPECT_EQ(element.GetNumKids(), 1);
}

TEST_F(StructureWrappersTest, LeaveTheDocumentAsItIsWhenTheyAreDropped) {
  doc.Tree({Element("Sect")({Element("P").Text(page, "a").Object(page.Link("u"))})});
  PDS_Element& element = Snapshot();
  const std::string before = Saved();
  element.ClearKids();
  EXPECT_EQ(element.GetNumKids(), 0);
  EXPECT_EQ(Saved(), before);
}

TEST_F(StructureWrappersTest, AppendElementsBehindTheLastKid) {
  doc.Tree({Element("Sect")({Element("P")})});
  PDS_Element& sect = Snapshot();
  const auto child = sect.CreateChild("Note");
  EXPECT_EQ(child->GetParent(), nullptr);
  EXPECT_EQ(Saved(), "Sect\n  P\n");
  sect.AppendKid(child);
  EXPECT_EQ(child->GetParent(), &sect);
  EXPECT_EQ(sect.GetKid(1), child.get());
  EXPECT_EQ(Saved(), "Sect\n  P\n  Note\n");
}

TEST_F(StructureWrappersTest, MakeChildrenInTheDocumentOfTheElement) {
  doc.Tree({Element("Sect")});
  const PDS_Element& sect = Snapshot();
  EXPECT_EQ(sect.GetDocument(), Opened().Handle());
  const auto child = sect.CreateChild("P");
  EXPECT_EQ(child->GetDocument(), Opened().Handle());
  EXPECT_EQ(child->GetNumKids(), 0);
  EXPECT_EQ(Type(child->GetHandle()), "P");
}

TEST_F(StructureWrappersTest, SetTypes) {
  doc.Tree({Element("P")});
  PDS_Element& element = Snapshot();
  element.SetType("H1");
  EXPECT_EQ(element.GetType(), ASAtomFromString("H1"));
  EXPECT_EQ(Saved(), "H1\n");
}

TEST_F(StructureWrappersTest, HandRemovedElementsToTheCaller) {
  doc.Tree({Element("Sect")({Element("Div")({Element("P").Text(page, "a")}), Element("Note")})});
  PDS_Element& sect = Snapshot();
  const auto division = std::static_pointer_cast<PDS_Element>(sect.RemoveKid(sect.GetKid(0)));
  EXPECT_EQ(division->GetParent(), nullptr);
  EXPECT_EQ(division->GetNumKids(), 1);
  EXPECT_EQ(sect.GetNumKids(), 1);
  EXPECT_EQ(Saved(), "Sect\n  Note\n");
  sect.AppendKid(division);
  EXPECT_EQ(Saved(), "Sect\n  Note\n  Div\n    P\n      mcid 0 page 1\n");
}

TEST_F(StructureWrappersTest, RemoveAKidThatStandsTwiceFromBothPlaces) {
  doc.Tree({Element("Sect")({Element("P"), Element("Note")})});
  PDS_Element& sect = Snapshot();
  const auto paragraph = sect.GetKids()[0];
  sect.AppendKid(paragraph);
  ASSERT_EQ(sect.GetNumKids(), 3);
  EXPECT_EQ(sect.RemoveKid(paragraph.get()), paragraph);
  EXPECT_EQ(sect.GetNumKids(), 1);
}

TEST_F(StructureWrappersTest, RaiseForAKidThatStandsElsewhere) {
  doc.Tree({Element("Sect")({Element("Div")({Element("P")})})});
  PDS_Element& sect = Snapshot();
  PDS_Object* paragraph = ElementAt(sect, 0).GetKid(0);
  EXPECT_THROW(InExceptionFrame([&] { sect.RemoveKid(paragraph); }), APDFLException::ASExceptionInfo);
}

TEST_F(StructureWrappersTest, RemovingAllKidsLeavesMarkedContentInTheDocument) {
  doc.Tree({Element("Sect").Text(page, "a").Add(Element("P")).Object(page.Link("u")).Text(page, "b").Add(Element("Div"))});
  PDS_Element& sect = Snapshot();
  const PDS_Kids kids = sect.GetKids();
  ASSERT_EQ(kids.size(), 5U);
  sect.RemoveAllKids();
  EXPECT_EQ(sect.GetNumKids(), 0);
  for (const auto& kid : kids) EXPECT_EQ(kid->GetParent(), nullptr);
  EXPECT_EQ(Saved(), "Sect\n  mcid 0 page 1\n  mcid 1 page 1\n");
}

TEST_F(StructureWrappersTest, RemovingAllKidsTakesAKidThatStandsTwiceOutOnce) {
  doc.Tree({Element("Sect")({Element("P")})});
  PDS_Element& sect = Snapshot();
  sect.AppendKid(sect.GetKids()[0]);
  RecordingHost recording;
  const HostSession session(recording.Tables());
  sect.RemoveAllKids();
  EXPECT_EQ(sect.GetNumKids(), 0);
  EXPECT_EQ(recording.Count(Operation::PDSElementRemoveKid), 1U);
}

TEST_F(StructureWrappersTest, RemovingAllKidsPassesOverObjectsOfOtherClasses) {
  doc.Tree({Element("Sect")({Element("P")})});
  PDS_Element& sect = Snapshot();
  const auto other = std::make_shared<PDS_Object>(nullptr);
  sect.AppendKid(other);
  sect.RemoveAllKids();
  ASSERT_EQ(sect.GetNumKids(), 1);
  EXPECT_EQ(sect.GetKid(0), other.get());
  EXPECT_EQ(other->GetParent(), &sect);
}

TEST_F(StructureWrappersTest, ObjectReferencesComeBackWithTheirPage) {
  Page& second = doc.AddPage();
  doc.Tree({Element("Link").Object(second.Link("u")).Add(Element("P"))});
  PDS_Element& link = Snapshot();
  const PDS_Kids kids = link.GetKids();
  link.RemoveAllKids();
  EXPECT_EQ(Saved(), "Link\n");
  link.AppendKid(kids[1]);
  link.AppendKid(kids[0]);
  EXPECT_EQ(Saved(), "Link\n  P\n  objr Link page 2\n");
}

TEST_F(StructureWrappersTest, ReferencesToNothingAreNotPutBack) {
  doc.Tree({Element("Link").RawKid("<</Type/OBJR/Obj 9999 0 R>>").RawKid("<</Type/OBJR/Obj 5>>").Object(page.Link("u"))});
  PDS_Element& link = Snapshot();
  const PDS_Kids kids = link.GetKids();
  ASSERT_EQ(kids.size(), 3U);
  link.RemoveAllKids();
  for (const auto& kid : kids) link.AppendKid(kid);
  EXPECT_EQ(link.GetNumKids(), 3);
  EXPECT_EQ(Saved(), "Link\n  objr Link page 1\n");
}

TEST_F(StructureWrappersTest, MarkedContentThatNeverLeftIsMovedInTheSnapshotAlone) {
  doc.Tree({Element("Sect").Text(page, "a").Add(Element("P"))});
  PDS_Element& sect = Snapshot();
  const PDS_Kids kids = sect.GetKids();
  sect.RemoveAllKids();
  auto& paragraph = dynamic_cast<PDS_Element&>(*kids[1]);
  RecordingHost recording;
  {
    const HostSession session(recording.Tables());
    paragraph.AppendKid(kids[0]);
  }
  EXPECT_THAT(recording.Calls(), testing::IsEmpty());
  EXPECT_EQ(paragraph.GetKid(0), kids[0].get());
  EXPECT_EQ(kids[0]->GetParent(), &paragraph);
  EXPECT_EQ(Saved(), "Sect\n  mcid 0 page 1\n");
}

TEST_F(StructureWrappersTest, MarkedContentThatWasRemovedIsInsertedAgain) {
  doc.Tree({Element("Sect").Text(page, "a").Text(page, "b").Add(Element("P").Text(page, "c"))});
  PDS_Element& sect = Snapshot();
  PDS_Element& paragraph = ElementAt(sect, 2);
  const auto content = sect.RemoveKid(sect.GetKid(1));
  EXPECT_EQ(Saved(), "Sect\n  mcid 0 page 1\n  P\n    mcid 2 page 1\n");
  paragraph.AppendKid(content);
  EXPECT_EQ(Saved(), "Sect\n  mcid 0 page 1\n  P\n    mcid 2 page 1\n    mcid 1 page 1\n");
}

TEST_F(StructureWrappersTest, MarkedContentIsRemovedFromWhereTheDocumentHasIt) {
  doc.Tree({Element("Sect").Text(page, "a").Add(Element("P"))});
  PDS_Element& sect = Snapshot();
  const PDS_Kids kids = sect.GetKids();
  sect.RemoveAllKids();
  auto& paragraph = dynamic_cast<PDS_Element&>(*kids[1]);
  paragraph.AppendKid(kids[0]);
  sect.AppendKid(kids[1]);
  paragraph.RemoveKid(kids[0].get());
  EXPECT_EQ(Saved(), "Sect\n  P\n");
  paragraph.AppendKid(kids[0]);
  EXPECT_EQ(Saved(), "Sect\n  P\n    mcid 0 page 1\n");
}

TEST_F(StructureWrappersTest, RaiseForContentThatIsGoneFromItsPage) {
  doc.Tree({Element("Sect").Mcid(page, 7)});
  PDS_Element& sect = Snapshot();
  const auto content = sect.RemoveKid(sect.GetKid(0));
  EXPECT_THROW(InExceptionFrame([&] { sect.AppendKid(content); }), APDFLException::ASExceptionInfo);
  EXPECT_EQ(sect.GetNumKids(), 0);
}

TEST_F(StructureWrappersTest, AskForEachKidOnce) {
  doc.Tree({Element("Sect")({Element("P").Text(page, "a"), Element("P").Text(page, "b")})});
  Open();
  RecordingHost recording;
  const HostSession session(recording.Tables());
  const PDS_TreeRoot tree(Root());
  EXPECT_EQ(recording.Count(Operation::PDSElementGetKidWithMCInfo), 4U);
  EXPECT_EQ(recording.Count(Operation::PDSTreeRootGetKid), 1U);
}

}  // namespace
}  // namespace tgx
