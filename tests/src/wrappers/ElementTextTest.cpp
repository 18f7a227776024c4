#include "src/wrappers/ElementText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "src/wrappers/PDE_Container.h"
#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"

namespace tgx {
namespace {

using test::Element;
using test::HostSession;
using test::Marked;
using test::Operation;
using test::Page;
using test::RecordingHost;
using test::Text;

class ElementTextTest : public test::StructureTest {
 protected:
  std::string TextOfTop(bool recursive) {
    Open();
    const PDS_Element element(Top(), nullptr);
    std::vector<char> text;
    const std::size_t size = CollectElementText(&element, text, recursive);
    EXPECT_EQ(size, text.size());
    return Plain(text);
  }
  /// UTF-16BE without its zero bytes.
  static std::string Plain(const std::vector<char>& text) {
    std::string plain;
    for (const char byte : text) {
      if (byte != 0) plain += byte;
    }
    return plain;
  }

  Page& page = doc.AddPage();
};

TEST_F(ElementTextTest, GoesDownInTreeOrder) {
  doc.Tree({Element("P").Text(page, "one ").Add(Element("Span").Text(page, "two ")).Text(page, "three")});
  EXPECT_EQ(TextOfTop(true), "one two three");
}

TEST_F(ElementTextTest, TakesDirectContentAloneWhenTold) {
  doc.Tree({Element("P").Text(page, "one ").Add(Element("Span").Text(page, "two ")).Text(page, "three")});
  EXPECT_EQ(TextOfTop(false), "one three");
}

TEST_F(ElementTextTest, TakesContentFromThePageOfEachKid) {
  Page& second = doc.AddPage();
  doc.Tree({Element("P").Text(second, "second ").Text(page, "first")});
  EXPECT_EQ(TextOfTop(true), "second first");
}

TEST_F(ElementTextTest, AppendsToWhatIsThere) {
  doc.Tree({Element("P").Text(page, "a")});
  Open();
  const PDS_Element element(Top(), nullptr);
  std::vector<char> text = {'x'};
  EXPECT_EQ(CollectElementText(&element, text, true), 3U);
  EXPECT_EQ(text, (std::vector<char>{'x', 0, 'a'}));
}

TEST_F(ElementTextTest, GivesThePresentSizeForNoElement) {
  std::vector<char> text = {'x', 'y'};
  EXPECT_EQ(CollectElementText(nullptr, text, true), 2U);
}

TEST_F(ElementTextTest, PassesOverSequencesNestedInTheContent) {
  doc.Tree({Element("P").Mark(page, Marked("Span", "", {Text("nested")})).Text(page, "direct")});
  EXPECT_EQ(TextOfTop(true), "direct");
}

TEST_F(ElementTextTest, FindsContentInsideOtherSequences) {
  page.Add(Marked("Artifact", "", {Marked("P", "<</MCID 8>>", {Text("inside")})}));
  doc.Tree({Element("P").Mcid(page, 8)});
  EXPECT_EQ(TextOfTop(true), "inside");
}

TEST_F(ElementTextTest, HasNoneForObjectsAndMissingContent) {
  doc.Tree({Element("P").Object(page.Link("u")).Mcid(page, 99)});
  EXPECT_EQ(TextOfTop(true), "");
}

TEST_F(ElementTextTest, HasNoneForContentOfNoPage) {
  page.Mark("P", Text("text"));
  doc.Tree({Element("P").Set("Pg", "null").RawKid("0"), Element("P").Set("Pg", "$tree").RawKid("0")});
  EXPECT_EQ(TextOfTop(true), "");
  const PDS_Element second(Top(1), nullptr);
  std::vector<char> text;
  EXPECT_EQ(CollectElementText(&second, text, true), 0U);
}

TEST_F(ElementTextTest, TakesTheFirstOfTwoSequencesOfOneIdentifier) {
  page.Add(Marked("P", "<</MCID 3>>", {Text("first")})).Add(Marked("P", "<</MCID 3>>", {Text("second")}));
  doc.Tree({Element("P").Mcid(page, 3)});
  EXPECT_EQ(TextOfTop(true), "first");
}

TEST_F(ElementTextTest, ViewsAPageOnceInAPass) {
  Element paragraph("P");
  for (int i = 0; i < 20; ++i) paragraph.Text(page, "x");
  doc.AddPage();
  doc.Tree({paragraph});
  Open();
  const PDS_Element element(Top(), nullptr);
  RecordingHost recording;
  const HostSession session(recording.Tables());
  std::vector<char> text;
  CollectElementText(&element, text, true);
  EXPECT_EQ(Plain(text), std::string(20, 'x'));
  EXPECT_EQ(recording.Count(Operation::PDPageAcquirePDEContent), 1U);
}

class PageViewsTest : public ElementTextTest {
 protected:
  /// The views of the document after the container of the MCID was found, and its first element taken off the page.
  PageViews& ViewsAfterRemoval(ASInt32 mcid) {
    Open();
    views_ = std::make_unique<PageViews>(Opened().Handle());
    const PDPage handle = PDDocAcquirePage(Opened().Handle(), 0);
    cosPage = PDPageGetCosObj(handle);
    EXPECT_NE(views_->FindContainer(cosPage, mcid), nullptr);
    PDEContentRemoveElem(PDPageAcquirePDEContent(handle, ExtensionId()), 0);
    views_->Forget(cosPage, mcid);
    return *views_;
  }

  CosObj cosPage = {};

 private:
  std::unique_ptr<PageViews> views_;
};

TEST_F(PageViewsTest, GiveTheSameContainerEachTime) {
  page.Add(Marked("P", "<</MCID 0>>", {})).Add(Marked("P", "<</MCID 1>>", {}));
  PageViews& views = ViewsAfterRemoval(0);
  EXPECT_NE(views.FindContainer(cosPage, 1), nullptr);
  EXPECT_EQ(views.FindContainer(cosPage, 1), views.FindContainer(cosPage, 1));
}

TEST_F(PageViewsTest, ForgetAContainerThatWasRemoved) {
  page.Add(Marked("P", "<</MCID 0>>", {})).Add(Marked("P", "<</MCID 1>>", {}));
  PageViews& views = ViewsAfterRemoval(0);
  EXPECT_EQ(views.FindContainer(cosPage, 0), nullptr);
  EXPECT_NE(views.FindContainer(cosPage, 1), nullptr);
}

TEST_F(PageViewsTest, ForgetWhatStoodInAContainerThatWasRemoved) {
  page.Add(Marked("P", "<</MCID 0>>", {Marked("Span", "<</MCID 1>>", {})}));
  EXPECT_EQ(ViewsAfterRemoval(0).FindContainer(cosPage, 1), nullptr);
}

TEST_F(PageViewsTest, FindTheNextContainerOfAnMcidWhoseFirstWasRemoved) {
  page.Add(Marked("P", "<</MCID 0>>", {})).Add(Marked("P", "<</MCID 0>>", {Text("second")}));
  const PDE_Container* second = ViewsAfterRemoval(0).FindContainer(cosPage, 0);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->GetContent()->GetNumElems(), 1);
}

TEST_F(PageViewsTest, ForgetNothingOfPagesThatWereNotViewed) {
  page.Add(Marked("P", "<</MCID 0>>", {}));
  Open();
  PageViews views(Opened().Handle());
  views.Forget(CosNewNull(), 0);
  views.Forget(PDPageGetCosObj(PDDocAcquirePage(Opened().Handle(), 0)), 0);
  EXPECT_NE(views.FindContainer(PDPageGetCosObj(PDDocAcquirePage(Opened().Handle(), 0)), 0), nullptr);
}

}  // namespace
}  // namespace tgx
