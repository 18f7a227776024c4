#include "src/common/ContentWalker.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"

namespace tgx {
namespace {

using test::Image;
using test::Marked;
using test::Operation;
using test::Page;
using test::RecordingHost;
using test::Text;
using testing::ElementsAre;

std::string KindName(PDEElement element) {
  switch (PDEObjectGetType(element)) {
    case kPDEText:
      return "text";
    case kPDEImage:
      return "image";
    case kPDEForm:
      return "form";
    case kPDEContainer:
      return "container";
    case kPDEGroup:
      return "group";
    case kPDEContent:
      return "content";
    default:
      return "other";
  }
}

// Writes down what it is told, and does at each event what the test wants.
class Listener : public ContentVisitorBase {
 public:
  explicit Listener(ContentWalker& walker) : walker_(walker) { walker.AddVisitor(this); }

  void VisitElement(PDEElement& element) override {
    events.push_back(KindName(element) + " " + std::to_string(walker_.CurrentIndex()));
    if (onElement) onElement(element);
  }
  void VisitContent(PDEContent content) override {
    events.emplace_back("list");
    if (onContent) onContent(content);
  }
  void VisitContainer(PDEContainer container) override {
    events.push_back("open " + std::to_string(ContentWalker::GetMCID(container)));
    if (onContainer) onContainer(container);
  }

  void VisitGroup(PDEGroup group) override {
    events.emplace_back("open");
    if (onGroup) onGroup(group);
  }

  std::vector<std::string> events;
  std::function<void(PDEGroup)> onGroup;
  std::function<void(PDEElement&)> onElement;
  std::function<void(PDEContent)> onContent;
  std::function<void(PDEContainer)> onContainer;

 private:
  ContentWalker& walker_;
};

class ContentWalkerTest : public test::StructureTest {
 protected:
  // Opens the document with these pieces on its page, and gives the page.
  PDPage OpenPage(const std::vector<test::Content>& pieces) {
    Page& page = doc.AddPage();
    for (const test::Content& piece : pieces) page.Add(piece);
    return PDDocAcquirePage(Open(), 0);
  }
  // Takes the element under visit out of the list that is being walked.
  void RemoveCurrent() { PDEContentRemoveElem(walker.TopContent(), walker.CurrentIndex()); }

  ContentWalker walker;
  Listener listener{walker};
};

TEST_F(ContentWalkerTest, GoesThroughElementsInOrder) {
  walker.Walk(OpenPage({Text("a"), Image(2, 2), Text("b")}));
  EXPECT_THAT(listener.events, ElementsAre("list", "text 0", "image 1", "text 2"));
}

TEST_F(ContentWalkerTest, EntersContainers) {
  walker.Walk(OpenPage({Marked("P", "<</MCID 3>>", {Text("a"), Marked("Span", "", {Image(2, 2)})}), Text("b")}));
  EXPECT_THAT(listener.events, ElementsAre("list", "container 0", "open 3", "list", "text 0", "container 1", "open -1",
                                           "list", "image 0", "text 1"));
}

TEST_F(ContentWalkerTest, DoesNotEnterForms) {
  doc.Stream("form", "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]>>", "/P <</MCID 1>> BDC 0 0 9 9 re f EMC");
  Page& page = doc.AddPage();
  page.Resource("XObject", "Fm", "$form").Add(test::Ops("/Fm Do"));
  walker.Walk(PDDocAcquirePage(Open(), 0));
  EXPECT_THAT(listener.events, ElementsAre("list", "form 0"));
}

TEST_F(ContentWalkerTest, VisitsTheListOfAnEmptyPageAndWritesItBack) {
  const PDPage page = OpenPage({});
  RecordingHost host;
  const test::HostSession session(host.Tables());
  walker.Walk(page);
  EXPECT_THAT(listener.events, ElementsAre("list"));
  EXPECT_EQ(host.Count(Operation::PDPageSetPDEContent), 1U);
}

TEST_F(ContentWalkerTest, WritesBackAtTheEndAndReleasesNothing) {
  const PDPage page = OpenPage({Text("a")});
  RecordingHost host;
  const test::HostSession session(host.Tables());
  walker.Walk(page);
  EXPECT_EQ(host.Names().front(), "PDPageAcquirePDEContent");
  EXPECT_EQ(host.Names().back(), "PDPageSetPDEContent");
  EXPECT_EQ(host.Count(Operation::PDPageReleasePDEContent), 0U);
}

TEST_F(ContentWalkerTest, SetsTheContentOfAContainerBackAlsoUnchanged) {
  const PDPage page = OpenPage({Marked("P", "", {Text("a")}), Marked("P", "", {})});
  RecordingHost host;
  const test::HostSession session(host.Tables());
  walker.Walk(page);
  EXPECT_EQ(host.Count(Operation::PDEContainerSetContent), 2U);
}

TEST_F(ContentWalkerTest, GoesOnWithTheSuccessorOfARemovedElement) {
  listener.onElement = [this](PDEElement& element) {
    if (KindName(element) == "image") RemoveCurrent();
  };
  walker.Walk(OpenPage({Text("a"), Image(2, 2), Image(3, 3), Text("b")}));
  EXPECT_THAT(listener.events, ElementsAre("list", "text 0", "image 1", "image 1", "text 1"));
}

TEST_F(ContentWalkerTest, GoesOnAtTheStartWhenTheFirstElementWasRemoved) {
  listener.onElement = [this](PDEElement& element) {
    if (KindName(element) == "image") RemoveCurrent();
  };
  walker.Walk(OpenPage({Image(2, 2), Text("a")}));
  EXPECT_THAT(listener.events, ElementsAre("list", "image 0", "text 0"));
}

TEST_F(ContentWalkerTest, EndsWhenTheOnlyElementWasRemoved) {
  listener.onElement = [this](PDEElement&) { RemoveCurrent(); };
  walker.Walk(OpenPage({Image(2, 2)}));
  EXPECT_THAT(listener.events, ElementsAre("list", "image 0"));
}

TEST_F(ContentWalkerTest, NeitherOpensNorShowsToOthersARemovedContainer) {
  struct Second : ContentVisitorBase {
    void VisitElement(PDEElement& element) override { seen.push_back(KindName(element)); }
    std::vector<std::string> seen;
  };
  // The first of the two in memory is called first.
  std::pair<Listener, Second> visitors{Listener(walker), Second()};
  ContentWalker own;
  own.AddVisitor(&visitors.first);
  own.AddVisitor(&visitors.second);
  visitors.first.onElement = [&own](PDEElement& element) {
    if (KindName(element) == "container") PDEContentRemoveElem(own.TopContent(), own.CurrentIndex());
  };
  own.Walk(OpenPage({Marked("P", "<</MCID 0>>", {Text("a")}), Image(2, 2)}));
  EXPECT_THAT(visitors.second.seen, ElementsAre("image"));
  EXPECT_THAT(visitors.first.events, testing::Not(testing::Contains("open 0")));
}

TEST_F(ContentWalkerTest, StartsAgainAtTheSecondElementWhenTheListShrankBelowItsPlace) {
  bool done = false;
  listener.onElement = [&](PDEElement&) {
    if (walker.CurrentIndex() != 3 || done) return;
    done = true;
    while (PDEContentGetNumElems(walker.TopContent()) > 2) PDEContentRemoveElem(walker.TopContent(), 2);
  };
  walker.Walk(OpenPage({Text("a"), Image(2, 2), Text("b"), Text("c")}));
  EXPECT_THAT(listener.events, ElementsAre("list", "text 0", "image 1", "text 2", "text 3", "image 1"));
}

TEST_F(ContentWalkerTest, VisitsAnElementAgainAfterAnInsertion) {
  bool done = false;
  listener.onElement = [&](PDEElement&) {
    if (std::exchange(done, true)) return;
    PDEContentAddElem(walker.TopContent(), kPDEAfterLast, PDETextCreate());
  };
  walker.Walk(OpenPage({Image(2, 2), Image(3, 3)}));
  EXPECT_THAT(listener.events, ElementsAre("list", "image 0", "image 0", "image 1", "text 2"));
}

TEST_F(ContentWalkerTest, KeepsTheInnerListAsCurrentContentBehindAContainer) {
  std::vector<PDEContent> contents;
  std::vector<PDEContent> tops;
  listener.onElement = [&](PDEElement&) {
    contents.push_back(walker.CurrentContent());
    tops.push_back(walker.TopContent());
  };
  const PDPage page = OpenPage({Text("a"), Marked("P", "", {Text("b")}), Text("c")});
  walker.Walk(page);
  const PDEContent outer = PDPageAcquirePDEContent(page, nullptr);
  const PDEContent inner = PDEContainerGetContent(PDEContentGetElem(outer, 1));
  EXPECT_THAT(contents, ElementsAre(outer, outer, inner, inner));
  EXPECT_THAT(tops, ElementsAre(outer, outer, inner, outer));
}

TEST_F(ContentWalkerTest, LeavesAContainerAloneWhereTheVisitorStopsIt) {
  listener.onContainer = [this](PDEContainer) { walker.SetStop(true); };
  const PDPage page = OpenPage({Text("a"), Marked("P", "<</MCID 0>>", {Text("b")}), Text("c")});
  RecordingHost host;
  const test::HostSession session(host.Tables());
  walker.Walk(page);
  EXPECT_THAT(listener.events, ElementsAre("list", "text 0", "container 1", "open 0"));
  EXPECT_EQ(host.Count(Operation::PDEContainerGetContent), 0U);
  EXPECT_EQ(host.Count(Operation::PDEContainerSetContent), 0U);
  EXPECT_EQ(host.Count(Operation::PDPageSetPDEContent), 1U);
}

TEST_F(ContentWalkerTest, EndsAtOnceWhenAnElementStopsIt) {
  listener.onElement = [this](PDEElement&) { walker.SetStop(true); };
  walker.Walk(OpenPage({Marked("P", "<</MCID 0>>", {Text("b")}), Text("c")}));
  EXPECT_THAT(listener.events, ElementsAre("list", "container 0"));
}

TEST_F(ContentWalkerTest, EndsInsideAListWhoseVisitStopsIt) {
  listener.onContent = [this](PDEContent) { walker.SetStop(listener.events.size() > 1); };
  walker.Walk(OpenPage({Marked("P", "<</MCID 0>>", {Text("b")}), Text("c")}));
  EXPECT_THAT(listener.events, ElementsAre("list", "container 0", "open 0", "list"));
}

TEST_F(ContentWalkerTest, StartsFromRestAfterAStop) {
  listener.onContent = [this](PDEContent) { walker.SetStop(listener.events.size() == 1); };
  const PDPage page = OpenPage({Text("a")});
  walker.Walk(page);
  walker.Walk(page);
  EXPECT_THAT(listener.events, ElementsAre("list", "list", "text 0"));
}

TEST_F(ContentWalkerTest, IsAtRestAfterAReset) {
  walker.Walk(OpenPage({Text("a")}));
  walker.Reset();
  EXPECT_EQ(walker.CurrentContent(), nullptr);
  EXPECT_EQ(walker.CurrentIndex(), -1);
  EXPECT_FALSE(walker.IsInCurrentContent(nullptr));
}

TEST_F(ContentWalkerTest, KnowsWhatStandsInTheInnermostListAnywhere) {
  std::vector<bool> answers;
  listener.onElement = [&](PDEElement&) {
    if (walker.CurrentIndex() != 1) return;
    const PDEContent top = walker.TopContent();
    for (ASInt32 index = 0; index < PDEContentGetNumElems(top); ++index) {
      answers.push_back(walker.IsInCurrentContent(PDEContentGetElem(top, index)));
    }
    answers.push_back(walker.IsInCurrentContent(top));
  };
  walker.Walk(OpenPage({Text("a"), Image(2, 2), Text("b")}));
  EXPECT_THAT(answers, ElementsAre(true, true, true, false));
}

TEST_F(ContentWalkerTest, StopsCallingVisitorsForAHandleThatIsNotInTheList) {
  listener.onElement = [](PDEElement& element) { element = nullptr; };
  walker.Walk(OpenPage({Marked("P", "<</MCID 0>>", {Text("a")})}));
  EXPECT_THAT(listener.events, ElementsAre("list", "container 0", "open 0", "list", "text 0"))
      << "the element itself is in the list, and is opened";
}

const PDFEditReadTable& Embedded() { return *test::EmbeddedTables()->pdfEditRead; }

// Tables of a host that has groups, which the embedded one has not: its containers.
const HostTables* TablesWithGroups() {
  static PDFEditReadTable read = Embedded();
  static PDFEditWriteTable write = *test::EmbeddedTables()->pdfEditWrite;
  static HostTables tables = *test::EmbeddedTables();
  read.PDEObjectGetType = [](PDEObject object) {
    const ASInt32 type = Embedded().PDEObjectGetType(object);
    return type == kPDEContainer ? ASInt32{kPDEGroup} : type;
  };
  read.PDEGroupGetContent = Embedded().PDEContainerGetContent;
  write.PDEGroupSetContent = test::EmbeddedTables()->pdfEditWrite->PDEContainerSetContent;
  tables.pdfEditRead = &read;
  tables.pdfEditWrite = &write;
  return &tables;
}

TEST_F(ContentWalkerTest, EntersGroupsAndSetsTheirContentBack) {
  const PDPage page = OpenPage({Marked("P", "", {Text("a"), Marked("P", "", {Image(2, 2)})}), Text("b")});
  RecordingHost host(TablesWithGroups());
  const test::HostSession session(host.Tables());
  walker.Walk(page);
  EXPECT_THAT(listener.events,
              ElementsAre("list", "group 0", "open", "list", "text 0", "group 1", "open", "list", "image 0", "text 1"));
  EXPECT_EQ(host.Count(Operation::PDEGroupSetContent), 2U);
  EXPECT_EQ(host.Count(Operation::PDEContainerSetContent), 0U);
}

TEST_F(ContentWalkerTest, LeavesAGroupAloneWhereTheVisitorStopsIt) {
  listener.onGroup = [this](PDEGroup) { walker.SetStop(true); };
  const PDPage page = OpenPage({Marked("P", "", {Text("a")}), Text("b")});
  RecordingHost host(TablesWithGroups());
  const test::HostSession session(host.Tables());
  walker.Walk(page);
  EXPECT_THAT(listener.events, ElementsAre("list", "group 0", "open"));
  EXPECT_EQ(host.Count(Operation::PDEGroupGetContent), 0U);
  EXPECT_EQ(host.Count(Operation::PDEGroupSetContent), 0U);
}

TEST_F(ContentWalkerTest, DoesNotOpenARemovedGroup) {
  listener.onElement = [this](PDEElement&) { RemoveCurrent(); };
  const PDPage page = OpenPage({Marked("P", "", {Text("a")})});
  const test::HostSession session(TablesWithGroups());
  walker.Walk(page);
  EXPECT_THAT(listener.events, ElementsAre("list", "group 0"));
}

// A host in whose lists the content of a container stands in the place of the container.
TEST_F(ContentWalkerTest, EntersAListThatIsAnElementItself) {
  static PDFEditReadTable read = Embedded();
  static HostTables tables = *test::EmbeddedTables();
  read.PDEContentGetElem = [](PDEContent content, ASInt32 index) {
    const PDEElement element = Embedded().PDEContentGetElem(content, index);
    const bool isContainer = Embedded().PDEObjectGetType(element) == kPDEContainer;
    return isContainer ? Embedded().PDEContainerGetContent(element) : element;
  };
  tables.pdfEditRead = &read;
  const PDPage page = OpenPage({Marked("P", "<</MCID 0>>", {Text("a")}), Text("b")});
  RecordingHost host(&tables);
  const test::HostSession session(host.Tables());
  walker.Walk(page);
  EXPECT_THAT(listener.events, ElementsAre("list", "content 0", "list", "text 0", "text 1"));
  EXPECT_EQ(host.Count(Operation::PDEContainerSetContent), 0U);
}

TEST_F(ContentWalkerTest, KnowsTheMcidOfContainers) {
  walker.Walk(OpenPage({Marked("P", "<</MCID 12>>", {}), Marked("P", "<</MCID 1.5>>", {}), Marked("P", "<</MCID/Name>>", {}),
                        Marked("P", "<</Lang(de)>>", {}), Marked("P", "", {})}));
  EXPECT_THAT(listener.events,
              ElementsAre("list", "container 0", "open 12", "list", "container 1", "open -1", "list", "container 2",
                          "open -1", "list", "container 3", "open -1", "list", "container 4", "open -1", "list"));
}

// How often the host is asked for an element while a page is walked whose every image is removed.
std::size_t CallsFor(int images) {
  test::TestDocument doc;
  std::string operators;
  for (int image = 0; image < images; ++image) operators += "BI /W 1 /H 1 /CS /G /BPC 8 ID x EI\n";
  doc.AddPage().Add(test::Ops(operators));
  test::OpenDocument open(doc.Write());
  const test::RaisingHost host(test::EmbeddedTables(), 0);
  const test::HostSession session(host.Tables());
  ContentWalker walker;
  struct Remover : ContentVisitorBase {
    void VisitElement(PDEElement&) override { walker->RemoveElement(walker->TopContent(), walker->CurrentIndex()); }
    ContentWalker* walker = nullptr;
  } remover;
  remover.walker = &walker;
  walker.AddVisitor(&remover);
  walker.Walk(PDDocAcquirePage(open.Handle(), 0));
  return host.Calls();
}

TEST(ContentWalker, AsksTheHostInProportionToTheElementsThatItsVisitorRemoves) {
  EXPECT_LT(CallsFor(400), 5 * CallsFor(100));
}

TEST(ContentVisitorBase, DoesNothing) {
  ContentVisitorBase visitor;
  PDEElement element = nullptr;
  visitor.VisitElement(element);
  visitor.VisitContent(nullptr);
  visitor.VisitContainer(nullptr);
  visitor.VisitGroup(nullptr);
  EXPECT_EQ(element, nullptr);
}

}  // namespace
}  // namespace tgx
