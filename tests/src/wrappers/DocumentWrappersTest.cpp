#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/api/HostException.h"
#include "src/wrappers/PD_Doc.h"
#include "src/wrappers/PD_Page.h"
#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"

namespace tgx {
namespace {

using test::CountingHost;
using test::Element;
using test::HostSession;
using test::Operation;
using test::Page;
using test::RaisingHost;
using test::RecordingHost;
using testing::IsEmpty;

using DocumentWrappersTest = test::StructureTest;

TEST_F(DocumentWrappersTest, ViewTheTreeAndAllPagesInOrder) {
  Page& page = doc.AddPage();
  doc.AddPage();
  doc.Tree({Element("P").Text(page, "a")});
  Open();
  const PD_Doc view(Opened().Handle());
  ASSERT_NE(view.GetStructTreeRoot(), nullptr);
  EXPECT_EQ(view.GetStructTreeRoot()->GetNumKids(), 1);
  ASSERT_EQ(view.GetPages().size(), 2U);
  CosObj second = CosNewNull();
  view.GetPages()[1]->GetCosObj(&second);
  EXPECT_EQ(PageNumber(second), 2);
  EXPECT_EQ(view.GetKind(), -1);
}

TEST_F(DocumentWrappersTest, HaveNoRootWithoutAStructureTree) {
  doc.AddPage();
  Open();
  const PD_Doc view(Opened().Handle());
  EXPECT_EQ(view.GetStructTreeRoot(), nullptr);
  EXPECT_EQ(view.GetPages().size(), 1U);
}

TEST_F(DocumentWrappersTest, HaveNoPagesInADocumentWithout) {
  doc.Tree({Element("P")});
  Open();
  const PD_Doc view(Opened().Handle());
  EXPECT_THAT(view.GetPages(), IsEmpty());
  EXPECT_NE(view.GetStructTreeRoot(), nullptr);
}

TEST_F(DocumentWrappersTest, FindAPageByItsDictionary) {
  doc.AddPage();
  doc.AddPage();
  doc.Tree({Element("P")});
  Open();
  const PD_Doc view(Opened().Handle());
  CosObj object = CosNewNull();
  view.GetPages()[1]->GetCosObj(&object);
  EXPECT_EQ(view.GetPageByCos(object), view.GetPages()[1].get());
  EXPECT_EQ(view.GetPageByCos(Top()), nullptr);
  EXPECT_EQ(view.GetPageByCos(CosNewNull()), nullptr);
}

TEST_F(DocumentWrappersTest, StandSideBySideAndReleaseWhatTheyHold) {
  doc.AddPage().Add(test::Text("a")).Add(test::Marked("Span", "<</MCID 0>>", {test::Image(1, 1)}));
  doc.AddPage();
  Open();
  CountingHost counting;
  {
    const HostSession session(counting.Tables());
    const PD_Doc first(Opened().Handle());
    {
      const PD_Doc second(Opened().Handle());
      EXPECT_EQ(counting.Open("pages"), 4);
      EXPECT_EQ(counting.Open("contents"), 4);
      EXPECT_NE(first.GetPages()[0].get(), second.GetPages()[0].get());
    }
    EXPECT_EQ(counting.Open("pages"), 2);
    EXPECT_EQ(counting.Open("contents"), 2);
    EXPECT_EQ(counting.Open("elements"), 6);  // three lists; text, container and image
    EXPECT_EQ(first.GetPages()[0]->GetContent()->GetNumElems(), 2);
  }
  for (const char* kind : {"pages", "contents", "elements"}) EXPECT_EQ(counting.Open(kind), 0) << kind;
}

TEST_F(DocumentWrappersTest, ViewAPageAnewOnRefresh) {
  doc.AddPage().Add(test::Text("a")).Add(test::Text("b"));
  Open();
  PD_Page view(PDDocAcquirePage(Opened().Handle(), 0));
  EXPECT_EQ(view.GetContent()->GetParent(), nullptr);
  PDEContentRemoveElem(view.GetContent()->GetHandle(), 0);
  EXPECT_EQ(view.GetContent()->GetNumElems(), 2);
  view.Refresh();
  EXPECT_EQ(view.GetContent()->GetNumElems(), 1);
  view.ClearKids();
  EXPECT_EQ(view.GetContent(), nullptr);
}

TEST_F(DocumentWrappersTest, AcquireContentForTheClientAndWriteNothingBack) {
  doc.AddPage().Add(test::Text("a"));
  Open();
  const PDPage page = PDDocAcquirePage(Opened().Handle(), 0);
  RecordingHost recording;
  const HostSession session(recording.Tables());
  { const PD_Page view(page); }
  EXPECT_EQ(recording.Count(Operation::PDPageAcquirePDEContent), 1U);
  EXPECT_EQ(recording.Count(Operation::PDPageReleasePDEContent), 1U);
  EXPECT_EQ(recording.Count(Operation::PDPageSetPDEContent), 0U);
}

TEST_F(DocumentWrappersTest, ReleaseWhatTheyHoldWhenTheHostFails) {
  Page& page = doc.AddPage();
  page.Add(test::Text("a"));
  doc.Tree({Element("P").Text(page, "b")});
  Open();
  bool hasRaised = true;
  for (std::size_t failAt = 1; hasRaised; ++failAt) {
    ASSERT_LT(failAt, 1000U);
    CountingHost counting;
    RaisingHost raising(counting.Tables(), failAt);
    const HostSession session(raising.Tables());
    try {
      InExceptionFrame([&] { const PD_Doc view(Opened().Handle()); });
      hasRaised = false;
    } catch (const APDFLException::ASExceptionInfo&) {
    } catch (const std::exception&) {  // of the first call, which pushes the frame
    }
    for (const char* kind : {"pages", "contents", "elements"}) EXPECT_EQ(counting.Open(kind), 0) << kind << failAt;
  }
}

}  // namespace
}  // namespace tgx
