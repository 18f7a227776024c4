#include <gtest/gtest.h>

#include "src/api/HostBinding.h"
#include "src/common/contentvisitors/CActualTextExtractor.h"
#include "src/common/contentvisitors/CContentEraser.h"
#include "src/common/contentvisitors/CContentFinder.h"
#include "src/common/contentvisitors/CContentTextCounter.h"
#include "src/common/contentvisitors/CContentTextExtractor.h"
#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"
#include "tests/support/TwoByteFont.h"

namespace tgx {
namespace {

using test::Marked;
using test::TestDocument;
using test::Text;

/// A page with this content, open in the embedded host.
class ContentVisitors : public testing::Test {
 protected:
  void Open(const std::vector<test::Content>& contents) {
    for (const test::Content& content : contents) page_.Add(content);
    document_.Tree({});
    open_ = std::make_unique<test::OpenDocument>(document_.Write());
    pdPage_ = PDDocAcquirePage(open_->Handle(), 0);
    content_ = PDPageAcquirePDEContent(pdPage_, ExtensionId());
  }
  ~ContentVisitors() override { open_.reset(); }

  PDEElement Top(ASInt32 index) const { return PDEContentGetElem(content_, index); }

  TestDocument document_;
  test::Page& page_ = document_.AddPage();
  const test::HostSession session_;
  std::unique_ptr<test::OpenDocument> open_;
  PDPage pdPage_ = nullptr;
  PDEContent content_ = nullptr;
};

std::string Mcid(int mcid) { return "<</MCID " + std::to_string(mcid) + ">>"; }

TEST_F(ContentVisitors, CountIsOneLessThanTheRuns) {
  Open({Text("font"), Marked("P", Mcid(0), {test::Ops("BT /F1 9 Tf [(a)(b)(c)(d)(e)] TJ ET")})});
  EXPECT_EQ(CContentTextCounter().Count(Top(1)), 4);
}

TEST_F(ContentVisitors, CountOfAnEmptyContainerIsBelowZero) {
  Open({Marked("P", Mcid(0), {})});
  EXPECT_EQ(CContentTextCounter().Count(Top(0)), -1);
  EXPECT_EQ(CContentTextCounter().Count(nullptr), -1);
}

TEST_F(ContentVisitors, CountEntersNestedContainers) {
  Open({Marked("P", Mcid(0), {Text("a"), Marked("Span", "", {Text("b"), Text("c")})})});
  EXPECT_EQ(CContentTextCounter().Count(Top(0)), 2);
}

TEST_F(ContentVisitors, CountPassesOverWhatIsNoText) {
  Open({Marked("P", Mcid(0), {Text("a"), test::Image(2, 2), test::Ops("0 0 9 9 re f"), Text("b")})});
  EXPECT_EQ(CContentTextCounter().Count(Top(0)), 1);
}

TEST_F(ContentVisitors, CountStartsAnewWithEachContainer) {
  Open({Marked("P", Mcid(0), {Text("a"), Text("b")}), Marked("P", Mcid(1), {Text("c"), Text("d"), Text("e")})});
  CContentTextCounter counter;
  EXPECT_EQ(counter.Count(Top(0)), 1);
  EXPECT_EQ(counter.Count(Top(1)), 2);
}

TEST_F(ContentVisitors, FindGivesTheFirstContainerOfTheMcidDepthFirst) {
  Open({Marked("P", Mcid(0), {Marked("Span", Mcid(1), {})}), Marked("P", Mcid(1), {})});
  CContentFinder finder;
  EXPECT_EQ(finder.Find(open_->Handle(), pdPage_, 1), PDEContentGetElem(PDEContainerGetContent(Top(0)), 0));
  EXPECT_TRUE(finder.WasFound());
}

TEST_F(ContentVisitors, FindOfAnAbsentMcidGivesTheLastContainer) {
  Open({Marked("P", Mcid(0), {}), Marked("P", Mcid(1), {})});
  CContentFinder finder;
  EXPECT_EQ(finder.Find(open_->Handle(), pdPage_, 9), Top(1));
  EXPECT_FALSE(finder.WasFound());
}

TEST_F(ContentVisitors, FindDoesNothingForANegativeMcid) {
  Open({Marked("P", Mcid(0), {})});
  EXPECT_EQ(CContentFinder().Find(open_->Handle(), pdPage_, -1), nullptr);
  EXPECT_EQ(CContentFinder().Find(nullptr, pdPage_, 0), nullptr);
  EXPECT_EQ(CContentFinder().Find(open_->Handle(), nullptr, 0), nullptr);
}

TEST_F(ContentVisitors, FindOnAPageWithoutContainersGivesNothing) {
  Open({Text("bare")});
  EXPECT_EQ(CContentFinder().Find(open_->Handle(), pdPage_, 0), nullptr);
}

TEST_F(ContentVisitors, FindForgetsWhatItFoundBefore) {
  Open({Marked("P", Mcid(0), {}), Marked("P", Mcid(1), {})});
  CContentFinder finder;
  ASSERT_EQ(finder.Find(open_->Handle(), pdPage_, 1), Top(1));
  EXPECT_EQ(finder.Find(open_->Handle(), pdPage_, -1), nullptr);
  EXPECT_FALSE(finder.WasFound());
}

TEST_F(ContentVisitors, FindKeepsTheContentOfThePageUntilItLetsGoOfNoPage) {
  Open({Marked("P", Mcid(0), {}), Marked("P", Mcid(1), {})});
  std::vector<bool> releasedAPage;
  test::HookedHost host(test::EmbeddedTables(), [&](const test::HostCall& call) {
    if (call.Is(test::Operation::PDPageReleasePDEContent)) releasedAPage.push_back(call.values[0] != 0);
  });
  const test::HostSession hooked(host.Tables());
  {
    CContentFinder finder;
    finder.Find(open_->Handle(), pdPage_, 1);
    EXPECT_EQ(releasedAPage, std::vector<bool>{});
    finder.Find(open_->Handle(), pdPage_, 0);
    EXPECT_EQ(releasedAPage, std::vector<bool>{false});
  }
  EXPECT_EQ(releasedAPage, (std::vector<bool>{false, false}));
}

TEST_F(ContentVisitors, FindAndEraseTakeTheirFramesOffAgain) {
  Open({Marked("P", Mcid(0), {})});
  test::CountingHost host;
  const test::HostSession counted(host.Tables());
  CContentFinder().Find(open_->Handle(), pdPage_, 0);
  CContentEraser().Erase(open_->Handle(), pdPage_, 0);
  EXPECT_EQ(host.Open("frames"), 0);
}

TEST_F(ContentVisitors, EraseDoesNothingForANegativeMcid) {
  Open({Marked("P", "", {Text("kept")})});
  test::RecordingHost host;
  const test::HostSession recorded(host.Tables());
  CContentEraser().Erase(open_->Handle(), pdPage_, -1);
  CContentEraser().Erase(nullptr, pdPage_, 0);
  CContentEraser().Erase(open_->Handle(), nullptr, 0);
  EXPECT_EQ(host.Calls(), std::vector<std::string>{});
}

TEST_F(ContentVisitors, EraseTakesTheContainerOffThePage) {
  Open({Text("kept"), Marked("P", Mcid(3), {Text("gone")})});
  CContentEraser().Erase(open_->Handle(), pdPage_, 3);
  const std::string content = test::ReadBack(open_->Save()).Content(1);
  EXPECT_EQ(content.find("gone"), std::string::npos);
  EXPECT_NE(content.find("kept"), std::string::npos);
}

TEST_F(ContentVisitors, EraseEntersNestedContainers) {
  Open({Marked("Sect", "", {Text("kept"), Marked("P", Mcid(3), {Text("gone")})})});
  CContentEraser().Erase(open_->Handle(), pdPage_, 3);
  EXPECT_EQ(test::ReadBack(open_->Save()).Content(1).find("gone"), std::string::npos);
}

TEST_F(ContentVisitors, EraseKeepsASecondContainerThatHasBecomeTheFirst) {
  Open({Marked("P", Mcid(3), {Text("first")}), Marked("P", Mcid(3), {Text("second")}),
        Marked("P", Mcid(3), {Text("third")})});
  CContentEraser().Erase(open_->Handle(), pdPage_, 3);
  const std::string content = test::ReadBack(open_->Save()).Content(1);
  EXPECT_EQ(content.find("first"), std::string::npos);
  EXPECT_NE(content.find("second"), std::string::npos);
  EXPECT_EQ(content.find("third"), std::string::npos);
}

TEST_F(ContentVisitors, ActualTextComesFromOutsideIn) {
  Open({Marked("Span", "<</ActualText<FEFF0041>>>", {Marked("Span", "<</ActualText<FEFF0042>>>", {})})});
  CActualTextExtractor extractor;
  extractor.Extract(Top(0));
  EXPECT_EQ(extractor.Text(), (ByteVector{0, 'A', 0, 'B'}));
}

TEST_F(ContentVisitors, ActualTextOfAMarkAloneIsNone) {
  Open({Marked("Span", "<</ActualText<FEFF>>>", {})});
  CActualTextExtractor extractor;
  extractor.Extract(Top(0));
  EXPECT_FALSE(extractor.HasText());
}

TEST_F(ContentVisitors, ActualTextLosesTheFirstMarkWhereverItStands) {
  Open({Marked("Span", "<</ActualText<0041FEFF0042FEFF>>>", {})});
  CActualTextExtractor extractor;
  extractor.Extract(Top(0));
  EXPECT_EQ(extractor.Text(), (ByteVector{0, 'A', 0, 'B', 0xFE, 0xFF}));
}

TEST_F(ContentVisitors, ActualTextLosesAMarkBetweenTheBytesOfItsCharacters) {
  Open({Marked("Span", "<</ActualText<41FEFF42>>>", {})});
  CActualTextExtractor extractor;
  extractor.Extract(Top(0));
  EXPECT_EQ(extractor.Text(), (ByteVector{'A', 'B'}));
}

TEST_F(ContentVisitors, ActualTextIsAStringThatIsNotEmpty) {
  Open({Marked("Span", "<</ActualText/A>>", {Marked("Span", "<</ActualText()>>", {Marked("Span", "", {})})})});
  CActualTextExtractor extractor;
  extractor.Extract(Top(0));
  EXPECT_FALSE(extractor.HasText());
}

TEST_F(ContentVisitors, ActualTextOfNothingIsNone) {
  Open({Marked("Span", "<</ActualText(A)>>", {})});
  CActualTextExtractor extractor;
  extractor.Extract(Top(0));
  ASSERT_TRUE(extractor.HasText());
  extractor.Extract(nullptr);
  EXPECT_FALSE(extractor.HasText());
}

constexpr char kOneByteMap[] =
    "/CIDInit /ProcSet findresource begin 12 dict begin begincmap 1 begincodespacerange <00> <FF> endcodespacerange\n"
    "1 beginbfchar <41> <0042> endbfchar endcmap end end";

TEST_F(ContentVisitors, TextIsKeptApartByTheWidthOfItsCharacters) {
  test::AddTwoByteFont(document_, page_, {{"0001", "2022"}, {"0002", "0041"}, {"0003", "D83DDE00"}});
  document_.Stream("one", "<<>>", kOneByteMap);
  page_.Resource("Font", "F3", "<</Type/Font/Subtype/TrueType/BaseFont/A/ToUnicode $one>>");
  Open({Marked("P", Mcid(0),
               {test::Ops("BT /F2 9 Tf <00010003> Tj ET"), test::Ops("BT /F3 9 Tf (A) Tj ET"),
                Marked("Span", "", {test::Ops("BT /F2 9 Tf <0002> Tj ET")})})});
  CContentTextExtractor extractor;
  extractor.Extract(Top(0));
  EXPECT_EQ(extractor.SingleByte(), ByteVector{'A'}) << "a code of one byte is its own character";
  EXPECT_EQ(extractor.Utf16(), (ByteVector{0x20, 0x22, 0x00, 0x41})) << "as the host wrote them, not swapped";
  EXPECT_EQ(extractor.Utf32(), (ByteVector{0xD8, 0x3D, 0xDE, 0x00}));
  EXPECT_EQ(extractor.Raw(), (ByteVector{0, 1, 0, 3, 'A', 0, 2}));
  EXPECT_TRUE(extractor.HasSingleByte() && extractor.HasUtf16() && extractor.HasUtf32());
  extractor.Extract(nullptr);
  EXPECT_FALSE(extractor.HasSingleByte() || extractor.HasUtf16() || extractor.HasUtf32());
}

TEST_F(ContentVisitors, RawTextGrowsFromCallToCall) {
  Open({Marked("P", Mcid(0), {Text("ab")})});
  CContentTextExtractor extractor;
  extractor.Extract(Top(0));
  extractor.Extract(Top(0));
  EXPECT_EQ(extractor.Raw(), (ByteVector{'a', 'b', 'a', 'b'}));
  EXPECT_FALSE(extractor.HasSingleByte()) << "the font has no ToUnicode table";
}

}  // namespace
}  // namespace tgx
