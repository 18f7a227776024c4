#include "src/common/TagStructureWalker.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"

namespace tgx {
namespace {

using test::Element;
using test::Operation;
using test::Page;
using test::RecordingHost;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

class TagStructureWalkerTest : public test::StructureTest {
 public:
  using test::StructureTest::PageNumber;
  using test::StructureTest::Type;
};

// Writes down what it is told, one word an event.
class Listener : public ITagStructureVisitor {
 public:
  explicit Listener(std::vector<std::string>& events, std::string name = "") : events_(events), name_(std::move(name)) {}
  virtual ~Listener() = default;

  void VisitElement(PDSElement& element) override { Note(TagStructureWalkerTest::Type(element)); }
  void VisitMarkedContentPointer(void*& pointer, int mcid, CosObj page) override {
    Note("pointer" + Place(mcid, page));
    pointers.push_back(pointer);
  }
  void VisitMarkedContent(CosObj& kid, int mcid, CosObj page) override {
    Note("content" + Place(mcid, page));
    kidTypes.push_back(CosObjGetType(kid));
  }
  void VisitObjectReference(CosObj& kid, int mcid, CosObj page) override {
    Note("object" + Place(mcid, page));
    kidTypes.push_back(CosObjGetType(kid));
  }
  void VisitOther(CosObj& kid, int mcid, CosObj page) override {
    Note("other" + Place(mcid, page));
    kidTypes.push_back(CosObjGetType(kid));
  }

  std::vector<void*> pointers;
  std::vector<int> kidTypes;

 private:
  static std::string Place(int mcid, CosObj page) {
    return " " + std::to_string(mcid) + " page " + std::to_string(TagStructureWalkerTest::PageNumber(page));
  }
  void Note(const std::string& event) { events_.push_back(name_ + event); }

  std::vector<std::string>& events_;
  std::string name_;
};

TEST_F(TagStructureWalkerTest, GoesDepthFirstWithParentsBeforeKids) {
  doc.AddPage();
  doc.Tree({Element("Document")({Element("Sect")({Element("H1"), Element("P")}), Element("Art")}), Element("Part")});
  Open();
  std::vector<std::string> events;
  Listener listener(events);
  TagStructureWalker walker;
  walker.AddVisitor(&listener);
  walker.Walk(Root());
  EXPECT_THAT(events, ElementsAre("Document", "Sect", "H1", "P", "Art", "Part"));
}

TEST_F(TagStructureWalkerTest, TellsMarkedContentTwice) {
  Page& first = doc.AddPage();
  Page& second = doc.AddPage();
  doc.Tree({Element("P").Text(first, "one").Text(second, "two").Text(second, "three")});
  Open();
  std::vector<std::string> events;
  Listener listener(events);
  TagStructureWalker walker;
  walker.AddVisitor(&listener);
  walker.Walk(Root());
  EXPECT_THAT(events, ElementsAre("P", "content 0 page 1", "pointer 0 page 1", "content 0 page 2", "pointer 0 page 2",
                                  "content 1 page 2", "pointer 1 page 2"));
}

TEST_F(TagStructureWalkerTest, TellsMarkedContentToAllBeforeAnyPointer) {
  Page& page = doc.AddPage();
  doc.Tree({Element("P").Text(page, "text")});
  Open();
  std::vector<std::string> events;
  Listener first(events);
  Listener second(events);
  TagStructureWalker walker;
  walker.AddVisitor(&first);
  walker.AddVisitor(&second);
  walker.Walk(Root());
  EXPECT_THAT(events, ElementsAre("P", "P", "content 0 page 1", "content 0 page 1", "pointer 0 page 1", "pointer 0 page 1"));
}

TEST_F(TagStructureWalkerTest, TellsObjectReferences) {
  Page& page = doc.AddPage();
  doc.Tree({Element("Link").Object(page.Link("https://example.org/"))});
  Open();
  std::vector<std::string> events;
  Listener listener(events);
  TagStructureWalker walker;
  walker.AddVisitor(&listener);
  walker.Walk(Root());
  EXPECT_THAT(events, ElementsAre("Link", "object -1 page 1"));
  EXPECT_THAT(listener.kidTypes, ElementsAre(CosDict));
}

TEST_F(TagStructureWalkerTest, TellsKidsOfOtherTypes) {
  doc.AddPage();
  doc.Tree({Element("P").RawKid("<</Type/Whatever>>").RawKid("(text)")});
  Open();
  std::vector<std::string> events;
  Listener listener(events);
  TagStructureWalker walker;
  walker.AddVisitor(&listener);
  walker.Walk(Root());
  EXPECT_THAT(events, ElementsAre("P", "other -1 page 0", "other -1 page 0"));
  EXPECT_THAT(listener.kidTypes, ElementsAre(CosDict, CosString));
}

TEST_F(TagStructureWalkerTest, LeavesTheElementItselfOutBelowAnElement) {
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("Sect")({Element("P").Text(page, "text")}), Element("Art")})});
  Open();
  std::vector<std::string> events;
  Listener listener(events);
  TagStructureWalker walker;
  walker.AddVisitor(&listener);
  PDSElement sect = At({0, 0});
  walker.WalkKids(sect);
  EXPECT_THAT(events, ElementsAre("P", "content 0 page 1", "pointer 0 page 1"));
}

TEST_F(TagStructureWalkerTest, EnumeratesTheWholeTreeWithoutVisitors) {
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("P").Text(page, "text"), Element("P")})});
  Open();
  const PDSTreeRoot root = Root();
  RecordingHost host;
  const test::HostSession session(host.Tables());
  TagStructureWalker().Walk(root);
  EXPECT_EQ(host.Count(Operation::PDSElementGetNumKids), 3U);
  EXPECT_EQ(host.Count(Operation::PDSElementGetKidEx), 3U);
}

TEST_F(TagStructureWalkerTest, TellsOneVisitorAfterTheOther) {
  doc.AddPage();
  doc.Tree({Element("Document")({Element("P")})});
  Open();
  std::vector<std::string> events;
  Listener visitors[] = {Listener(events, "a "), Listener(events, "b ")};
  TagStructureWalker walker;
  walker.AddVisitor(&visitors[1]);
  walker.AddVisitor(&visitors[0]);
  walker.Walk(Root());
  EXPECT_THAT(events, ElementsAre("a Document", "b Document", "a P", "b P"));
}

TEST_F(TagStructureWalkerTest, TellsAVisitorOnceThatWasAddedTwice) {
  doc.AddPage();
  doc.Tree({Element("P")});
  Open();
  std::vector<std::string> events;
  Listener listener(events);
  TagStructureWalker walker;
  walker.AddVisitor(&listener);
  walker.AddVisitor(&listener);
  walker.Walk(Root());
  EXPECT_THAT(events, ElementsAre("P"));
}

// Takes the first kid out of an element at the visit of that kid.
class Remover : public TagStructureVisitorBase {
 public:
  void VisitElement(PDSElement& element) override {
    const PDSElement parent = TagStructureWalker::GetParentElement(element);
    if (TagStructureWalkerTest::Type(element) == "P") PDSElementRemoveKid(parent, element);
  }
  bool NeedsContentPointers() const override { return false; }
};

TEST_F(TagStructureWalkerTest, CountsTheKidsOnceAndAsksForOneThatIsGone) {
  doc.AddPage();
  doc.Tree({Element("Document")({Element("P"), Element("Sect")})});
  Open();
  const std::size_t frames = TGXHost_FrameDepth();
  Remover remover;
  TagStructureWalker walker;
  walker.AddVisitor(&remover);
  EXPECT_ANY_THROW(walker.Walk(Root()));
  TGXHost_CutFrames(frames);
}

TEST_F(TagStructureWalkerTest, FindsPointersForVisitorsThatNeedThem) {
  Page& page = doc.AddPage();
  doc.Tree({Element("P").Text(page, "text")});
  const PDDoc document = Open();
  std::vector<std::string> events;
  Listener listener(events);
  TagStructureWalker walker;
  walker.AddVisitor(&listener);
  walker.Walk(Root());
  const PDEContent content = PDPageAcquirePDEContent(PDDocAcquirePage(document, 0), nullptr);
  EXPECT_THAT(listener.pointers, ElementsAre(static_cast<void*>(PDEContentGetElem(content, 0))));
}

class PointerlessListener : public Listener {
 public:
  using Listener::Listener;
  bool NeedsContentPointers() const override { return false; }
};

TEST_F(TagStructureWalkerTest, LeavesPagesUnreadWhereNoVisitorNeedsPointers) {
  Page& page = doc.AddPage();
  doc.Tree({Element("P").Text(page, "text")});
  Open();
  const PDSTreeRoot root = Root();
  RecordingHost host;
  const test::HostSession session(host.Tables());
  std::vector<std::string> events;
  PointerlessListener listener(events);
  TagStructureWalker walker;
  walker.AddVisitor(&listener);
  walker.Walk(root);
  EXPECT_THAT(events, ElementsAre("P", "content 0 page 1", "pointer 0 page 1"));
  EXPECT_THAT(listener.pointers, ElementsAre(testing::IsNull()));
  EXPECT_EQ(host.Count(Operation::PDSElementGetKidEx), 1U);
  EXPECT_THAT(host.Calls(), Contains(AllOf(StartsWith("PDSElementGetKidEx("), EndsWith("pointer, null, pointer)"))));
}

TEST_F(TagStructureWalkerTest, FindsTheFirstDescendantOfATypeDepthFirst) {
  doc.AddPage();
  doc.Tree({Element("Document")({Element("Sect")({Element("P").Title("deep")}), Element("P").Title("shallow")})});
  Open();
  const PDSElement found = TagStructureWalker::FindDescendantByType(Top(), ASAtomFromString("P"));
  EXPECT_NE(CosObjEqual(found, At({0, 0, 0})), 0);
}

TEST_F(TagStructureWalkerTest, FindsAKidBeforeWhatIsBelowIt) {
  doc.AddPage();
  doc.Tree({Element("Document")({Element("L")({Element("L")})})});
  Open();
  EXPECT_NE(CosObjEqual(TagStructureWalker::FindDescendantByType(Top(), ASAtomFromString("L")), At({0, 0})), 0);
}

TEST_F(TagStructureWalkerTest, FindsNoDescendantInTheElementItselfOrInOtherKids) {
  Page& page = doc.AddPage();
  doc.Tree({Element("P").Text(page, "text").RawKid("<</Type/Whatever/S/P>>")});
  Open();
  EXPECT_TRUE(IsNull(TagStructureWalker::FindDescendantByType(Top(), ASAtomFromString("P"))));
}

TEST_F(TagStructureWalkerTest, FindsTheNearestAncestorOfAType) {
  doc.AddPage();
  doc.Tree({Element("Link")({Element("Link")({Element("Span")({Element("Link")})})})});
  Open();
  EXPECT_NE(CosObjEqual(TagStructureWalker::FindAncestorByType(At({0, 0, 0, 0}), "Link"), At({0, 0})), 0);
}

TEST_F(TagStructureWalkerTest, FindsNoAncestorAboveTheTopLevel) {
  doc.AddPage();
  doc.Tree({Element("Link")({Element("Span")})});
  Open();
  EXPECT_TRUE(IsNull(TagStructureWalker::FindAncestorByType(Top(), "Link")));
  EXPECT_TRUE(IsNull(TagStructureWalker::FindAncestorByType(At({0, 0}), "Note")));
}

TEST_F(TagStructureWalkerTest, FindsTheIndexOfAKid) {
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("P").Text(page, "text"), Element("P")}), Element("Part")});
  Open();
  EXPECT_EQ(TagStructureWalker::GetKidCount(Top()), 2);
  EXPECT_EQ(TagStructureWalker::IndexOfKid(Top(), At({0, 1})), 1);
  EXPECT_EQ(TagStructureWalker::IndexOfKid(Top(), At({0, 0})), 0);
  EXPECT_EQ(TagStructureWalker::IndexOfKid(Top(), Top(1)), -1);
  EXPECT_NE(CosObjEqual(TagStructureWalker::GetKidObject(Top(), 1), At({0, 1})), 0);
}

TEST_F(TagStructureWalkerTest, KnowsTheIndexInAParentElementAlone) {
  doc.AddPage();
  doc.Tree({Element("Document")({Element("P"), Element("P")}), Element("Part")});
  Open();
  EXPECT_EQ(TagStructureWalker::IndexInParent(At({0, 1})), 1);
  EXPECT_EQ(TagStructureWalker::IndexInParent(Top(1)), -1);
}

TEST_F(TagStructureWalkerTest, TakesTheTreeRootForNoParent) {
  doc.AddPage();
  doc.Tree({Element("Document")({Element("P")})});
  Open();
  EXPECT_NE(CosObjEqual(TagStructureWalker::GetParentElement(At({0, 0})), Top()), 0);
  EXPECT_TRUE(TagStructureWalker::IsNull(TagStructureWalker::GetParentElement(Top())));
  EXPECT_FALSE(TagStructureWalker::IsNull(Top()));
}

TEST_F(TagStructureWalkerTest, TellsElementKidsFromOthers) {
  Page& page = doc.AddPage();
  doc.Tree({Element("P").Text(page, "text").Add(Element("Span"))});
  Open();
  EXPECT_FALSE(TagStructureWalker::IsElementKid(Top(), 0));
  EXPECT_TRUE(TagStructureWalker::IsElementKid(Top(), 1));
}

}  // namespace
}  // namespace tgx
