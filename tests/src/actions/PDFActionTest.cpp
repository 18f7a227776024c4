#include "src/actions/PDFAction.h"

#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Hosts.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::CountingHost;
using test::Element;
using test::HookedHost;
using test::HostCall;
using test::HostSession;
using test::OpenDocument;
using test::Operation;
using test::RecordingHost;
using test::TestDocument;
using testing::ElementsAre;
using testing::IsEmpty;

/// Opens the protected operations to the tests.
class Action : public PDFAction {
 public:
  using PDFAction::AcquirePages;
  using PDFAction::AcquireRoleMap;
  using PDFAction::AcquireStructTreeRoot;
  using PDFAction::CommitPages;
  using PDFAction::Pages;
};

std::string TwoPages() {
  TestDocument doc;
  doc.AddPage();
  doc.AddPage();
  return doc.Write();
}

TEST(PDFAction, WithoutARunIsNotImplemented) {
  Action action;
  try {
    action.Run();
    FAIL() << "nothing was thrown";
  } catch (const std::runtime_error& e) {
    EXPECT_STREQ(e.what(), "not implemented");
  }
}

TEST(PDFAction, KeepsTheDocument) {
  Action action;
  EXPECT_EQ(action.GetDocument(), nullptr);
  action.SetDocument(reinterpret_cast<PDDoc>(0x42));
  EXPECT_EQ(action.GetDocument(), reinterpret_cast<PDDoc>(0x42));
}

TEST(PDFAction, AcquiresTheStructureRootThatIsThere) {
  TestDocument doc;
  doc.Tree({Element("P").Text(doc.AddPage(), "a")});
  OpenDocument document(doc.Write());
  RecordingHost host;
  const HostSession session(host.Tables());
  Action action;
  action.SetDocument(document.Handle());
  PDSTreeRoot root = {};
  EXPECT_EQ(action.AcquireStructTreeRoot(&root), &root);
  EXPECT_THAT(host.Names(), ElementsAre("PDDocGetStructTreeRoot"));
  EXPECT_EQ(PDSTreeRootGetNumKids(root), 1);
}

TEST(PDFAction, GivesADocumentWithoutStructureATree) {
  OpenDocument document(TwoPages());
  const HostSession session;
  Action action;
  action.SetDocument(document.Handle());
  PDSTreeRoot root = {};
  action.AcquireStructTreeRoot(&root);
  EXPECT_EQ(PDSTreeRootGetNumKids(root), 0);
  EXPECT_EQ(test::SavedTree(document), "");
}

TEST(PDFAction, AcquiresTheRoleMapThatIsThere) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({}).RoleMap({{"Custom", "P"}});
  OpenDocument document(doc.Write());
  const HostSession session;
  Action action;
  action.SetDocument(document.Handle());
  PDSRoleMap map = {};
  EXPECT_EQ(action.AcquireRoleMap(&map), &map);
  EXPECT_STREQ(ASAtomGetString(PDSRoleMapGetDirectMap(map, ASAtomFromString("Custom"))), "P");
}

TEST(PDFAction, GivesADocumentWithoutStructureTreeAndRoleMap) {
  OpenDocument document(TwoPages());
  RecordingHost host;
  const HostSession session(host.Tables());
  Action action;
  action.SetDocument(document.Handle());
  PDSRoleMap map = {};
  action.AcquireRoleMap(&map);
  EXPECT_THAT(host.Names(), ElementsAre("PDDocGetStructTreeRoot", "PDDocCreateStructTreeRoot", "PDSTreeRootGetRoleMap",
                                        "PDSTreeRootCreateRoleMap"));
  EXPECT_EQ(PDSRoleMapGetDirectMap(map, ASAtomFromString("Custom")), ASAtomNull);
}

TEST(PDFAction, AcquiresEveryPageInOrderAndAsksForTheCountEachTime) {
  OpenDocument document(TwoPages());
  RecordingHost host;
  const HostSession session(host.Tables());
  Action action;
  action.SetDocument(document.Handle());
  action.AcquirePages();
  EXPECT_THAT(host.Names(), ElementsAre("PDDocGetNumPages", "PDDocAcquirePage", "PDDocGetNumPages", "PDDocAcquirePage",
                                        "PDDocGetNumPages"));
  ASSERT_EQ(action.Pages().size(), 2U);
  EXPECT_EQ(PDPageGetNumber(action.Pages().front()), 0);
  EXPECT_EQ(PDPageGetNumber(action.Pages().back()), 1);
}

TEST(PDFAction, AcquiringPagesAgainReleasesNothing) {
  OpenDocument document(TwoPages());
  CountingHost host;
  const HostSession session(host.Tables());
  Action action;
  action.SetDocument(document.Handle());
  action.AcquirePages();
  action.AcquirePages();
  EXPECT_EQ(action.Pages().size(), 2U);
  EXPECT_EQ(host.Open("pages"), 4);
}

/// The embedded host with page content that is never there: only the order of the calls counts here.
const HostTables* HostWithoutContent() {
  static const PagePDEContentTable content = {
      sizeof(PagePDEContentTable), kHostTablesVersion, [](PDPage, ASExtension) { return PDEContent(); },
      [](PDPage, ASExtension) { return ASInt32{0}; }, [](PDPage, ASExtension) { return ASBool{1}; }};
  static const HostTables tables = [] {
    HostTables all = *test::EmbeddedTables();
    all.pagePDEContent = &content;
    return all;
  }();
  return &tables;
}

TEST(PDFAction, CommitWritesBackAndReleasesAndKeepsTheList) {
  OpenDocument document(TwoPages());
  RecordingHost host(HostWithoutContent());
  const HostSession session(host.Tables());
  Action action;
  action.SetDocument(document.Handle());
  action.AcquirePages();
  host.Clear();
  action.CommitPages();
  EXPECT_THAT(host.Names(), ElementsAre("PDPageSetPDEContent", "PDPageReleasePDEContent", "PDPageNotifyContentsDidChange",
                                        "PDPageRelease", "PDPageSetPDEContent", "PDPageReleasePDEContent",
                                        "PDPageNotifyContentsDidChange", "PDPageRelease"));
  EXPECT_EQ(action.Pages().size(), 2U);
}

TEST(PDFAction, CommitHandsTheClientsIdentityOn) {
  OpenDocument document(TwoPages());
  int asked = 0;
  HookedHost host(HostWithoutContent(), [&asked](const HostCall& call) {
    if (!call.Is(Operation::PDPageSetPDEContent) && !call.Is(Operation::PDPageReleasePDEContent)) return;
    EXPECT_EQ(call.values[1], reinterpret_cast<std::uint64_t>(test::kTestExtension));
    ++asked;
  });
  const HostSession session(host.Tables());
  Action action;
  action.SetDocument(document.Handle());
  action.AcquirePages();
  action.CommitPages();
  EXPECT_EQ(asked, 4);
}

TEST(PDFAction, DestructorCallsNoHost) {
  OpenDocument document(TwoPages());
  RecordingHost host;
  const HostSession session(host.Tables());
  {
    Action action;
    action.SetDocument(document.Handle());
    action.AcquirePages();
    host.Clear();
  }
  EXPECT_THAT(host.Names(), IsEmpty());
}

}  // namespace
}  // namespace tgx
