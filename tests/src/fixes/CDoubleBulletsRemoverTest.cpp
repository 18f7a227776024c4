#include "src/fixes/RemoveDoubleBullet/CDoubleBulletsRemover.h"

#include <gtest/gtest.h>

#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"
#include "tests/support/TwoByteFont.h"

namespace tgx {
namespace {

using test::Element;
using test::OpenDocument;
using test::TestDocument;

constexpr std::uint32_t kDoubleBullets = 0x1;

/// A list whose bullets are shown in a font of two-byte codes: 1 is a bullet, 2 a dash.
class DoubleBullets : public testing::Test {
 protected:
  DoubleBullets() { test::AddTwoByteFont(document_, page_, {{"0001", "2022"}, {"0002", "2013"}}); }

  static test::Content Shown(const std::string& code) { return test::Ops("BT /F2 12 Tf 72 700 Td <" + code + "> Tj ET"); }

  /// A Span that shows a character, and one that names it as its text.
  Element Visible(const std::string& code = "0001") { return Element("Span").Title("visible").Mark(page_, Shown(code)); }
  Element Hidden(const std::string& actual = "FEFF2022") {
    const int mcid = 100 + hidden_++;
    page_.Add(
        test::Marked("Span", "<</MCID " + std::to_string(mcid) + "/ActualText<" + actual + ">>>", {test::Text("hidden")}));
    return Element("Span").Title("hidden").Mcid(page_, mcid);
  }

  void Repair(const std::vector<Element>& elements) {
    document_.Tree({Element("L")(elements)});
    OpenDocument open(document_.Write());
    EXPECT_EQ(open.Fixups(kDoubleBullets), test::kSuccess);
    saved_ = open.Save();
    test::ExpectSound(saved_);
  }

  /// How many of the Spans are left in the tree, and whether the hidden text is still painted.
  std::size_t Left(const std::string& title) const {
    const std::string tree = test::TreeText(saved_);
    std::size_t count = 0;
    for (auto at = tree.find(title); at != std::string::npos; at = tree.find(title, at + 1)) ++count;
    return count;
  }
  bool PaintsHidden() const { return test::ReadBack(saved_).Content(1).find("(hidden)") != std::string::npos; }

  TestDocument document_;
  test::Page& page_ = document_.AddPage();
  int hidden_ = 0;
  std::string saved_;
};

TEST_F(DoubleBullets, RemovesTheCopyThatIsOnlyAText) {
  Repair({Element("LI")({Element("Lbl")({Hidden(), Visible()})})});
  EXPECT_EQ(Left("hidden"), 0U);
  EXPECT_EQ(Left("visible"), 1U);
  EXPECT_FALSE(PaintsHidden());
  EXPECT_NE(test::ReadBack(saved_).Content(1).find("<0001>"), std::string::npos) << "the visible bullet stays on the page";
}

TEST_F(DoubleBullets, RemovesTheCopyBehindTheVisibleOneToo) {
  Repair({Element("Lbl")({Visible(), Hidden()})});
  EXPECT_EQ(Left("hidden"), 0U);
  EXPECT_EQ(Left("visible"), 1U);
}

TEST_F(DoubleBullets, KeepsTwoVisibleBullets) {
  Repair({Element("Lbl")({Visible(), Visible()})});
  EXPECT_EQ(Left("visible"), 2U);
}

TEST_F(DoubleBullets, KeepsTwoHiddenBullets) {
  Repair({Element("Lbl")({Hidden(), Hidden()})});
  EXPECT_EQ(Left("hidden"), 2U);
}

TEST_F(DoubleBullets, KeepsADifferentText) {
  Repair({Element("Lbl")({Hidden("FEFF2013"), Visible()})});
  EXPECT_EQ(Left("hidden"), 1U);
}

TEST_F(DoubleBullets, KeepsATextInTheOtherByteOrder) {
  Repair({Element("Lbl")({Hidden("2220"), Visible()})});
  EXPECT_EQ(Left("hidden"), 1U);
}

TEST_F(DoubleBullets, KeepsATextThatIsOnlyAMark) {
  Repair({Element("Lbl")({Hidden("FEFF"), Visible()})});
  EXPECT_EQ(Left("hidden"), 1U);
}

TEST_F(DoubleBullets, KeepsALabelOfThreeKids) {
  Repair({Element("Lbl")({Hidden(), Visible(), Element("Span")})});
  EXPECT_EQ(Left("hidden"), 1U);
}

TEST_F(DoubleBullets, KeepsPairsOutsideLabels) {
  Repair({Element("LBody")({Hidden(), Visible()})});
  EXPECT_EQ(Left("hidden"), 1U);
}

TEST_F(DoubleBullets, KeepsPairsThatAreNoSpans) {
  document_.Tree({Element("Lbl")({Element("P").Mark(page_, Shown("0001")), Hidden()})});
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Fixups(kDoubleBullets), test::kSuccess);
  saved_ = open.Save();
  EXPECT_EQ(Left("hidden"), 1U);
}

TEST_F(DoubleBullets, GoesByTheRoleOfCustomTypes) {
  document_.RoleMap({{"Bullet", "Lbl"}, {"Glyph", "Span"}});
  const Element glyph = Element("Glyph").Title("visible").Mark(page_, Shown("0001"));
  Repair({Element("Bullet")({Hidden(), glyph})});
  EXPECT_EQ(Left("hidden"), 0U);
  EXPECT_EQ(Left("visible"), 1U);
}

TEST_F(DoubleBullets, KeepsATextBesideABulletOfOneByte) {
  document_.Stream("one", "<<>>",
                   "/CIDInit /ProcSet findresource begin 12 dict begin begincmap 1 begincodespacerange <00> <FF> "
                   "endcodespacerange 1 beginbfchar <01> <2022> endbfchar endcmap end end");
  page_.Resource("Font", "F3", "<</Type/Font/Subtype/TrueType/BaseFont/A/ToUnicode $one>>");
  const Element oneByte = Element("Span").Mark(page_, test::Ops("BT /F3 12 Tf 72 700 Td <01> Tj ET"));
  Repair({Element("Lbl")({Hidden(), oneByte})});
  EXPECT_EQ(Left("hidden"), 1U);
}

TEST_F(DoubleBullets, ReadsTheTextOfPropertiesThatStandInTheResources) {
  page_.Add(test::MarkedByResource("Span", "<</MCID 200/ActualText<FEFF2022>>>", {test::Text("hidden")}));
  Repair({Element("Lbl")({Element("Span").Title("hidden").Mcid(page_, 200), Visible()})});
  EXPECT_EQ(Left("hidden"), 0U);
  EXPECT_FALSE(PaintsHidden());
}

TEST_F(DoubleBullets, KeepsEverythingWhereTheContentIsNotOnThePage) {
  Repair({Element("Lbl")({Element("Span").Title("hidden").Mcid(page_, 77), Visible()})});
  EXPECT_EQ(Left("hidden"), 1U);
  EXPECT_EQ(Left("visible"), 1U);
}

TEST_F(DoubleBullets, KeepsEverythingOnPagesWithoutMarkedContent) {
  test::Page& bare = document_.AddPage().Add(test::Text("bare"));
  Repair({Element("Lbl")({Element("Span").Title("hidden").Mcr(bare, 0), Visible()})});
  EXPECT_EQ(Left("hidden"), 1U);
}

TEST_F(DoubleBullets, RemovesASpanOnceAndLeavesItsOtherContentOnThePage) {
  Element hidden = Hidden();
  page_.Add(test::Marked("Span", "<</MCID 200/ActualText<FEFF2022>>>", {test::Text("other")}));
  Repair({Element("Lbl")({hidden.Mcid(page_, 200), Visible()})});
  EXPECT_EQ(Left("hidden"), 0U);
  EXPECT_FALSE(PaintsHidden());
  EXPECT_NE(test::ReadBack(saved_).Content(1).find("(other)"), std::string::npos);
}

TEST_F(DoubleBullets, FailsWithoutADocument) { EXPECT_FALSE(CDoubleBulletsRemover().Run(nullptr)); }

TEST_F(DoubleBullets, KeepsPairsOnTopOfTheTree) {
  document_.Tree({Hidden(), Visible()});
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Fixups(kDoubleBullets), test::kSuccess);
  saved_ = open.Save();
  EXPECT_EQ(Left("hidden"), 1U);
}

TEST_F(DoubleBullets, ReachesOnlyPairsAmongTheFirstTenPiecesOfContent) {
  std::vector<Element> items;
  for (int i = 0; i < 12; ++i) items.push_back(Element("Lbl")({Hidden(), Visible()}));
  Repair(items);
  EXPECT_EQ(Left("visible"), 12U);
  EXPECT_EQ(Left("hidden"), 7U) << "five pairs are within reach";
}

TEST_F(DoubleBullets, ReachesNoFurtherThanTheContentThatIsLeft) {
  const auto text = [this] { return Element("P").Text(page_, "text"); };
  Repair({text(), Element("Lbl")({Hidden(), Visible()})});
  EXPECT_EQ(Left("hidden"), 1U) << "of three pieces, two are left from the second on";
}

TEST_F(DoubleBullets, ReachesAPairWithEnoughContentBehindIt) {
  const auto text = [this] { return Element("P").Text(page_, "text"); };
  Repair({text(), Element("Lbl")({Hidden(), Visible()}), text()});
  EXPECT_EQ(Left("hidden"), 0U);
}

/// As many paragraphs, the elements, and as many paragraphs behind them.
std::vector<Element> Between(test::Page& page, int before, const std::vector<Element>& elements, int behind) {
  std::vector<Element> all;
  for (int i = 0; i < before; ++i) all.push_back(Element("P").Text(page, "text"));
  all.insert(all.end(), elements.begin(), elements.end());
  for (int i = 0; i < behind; ++i) all.push_back(Element("P").Text(page, "text"));
  return all;
}

TEST_F(DoubleBullets, ReachesAPairOfWhichOneIsTheTenthPiece) {
  Repair(Between(page_, 9, {Element("Lbl")({Hidden(), Visible()})}, 9));
  EXPECT_EQ(Left("hidden"), 0U);
}

TEST_F(DoubleBullets, ReachesAPairWhoseVisibleOneIsTheTenthPiece) {
  Repair(Between(page_, 9, {Element("Lbl")({Visible(), Hidden()})}, 9));
  EXPECT_EQ(Left("hidden"), 0U);
}

TEST_F(DoubleBullets, DoesNotReachThatPairWithLessContentBehindIt) {
  Repair(Between(page_, 9, {Element("Lbl")({Hidden(), Visible()})}, 8));
  EXPECT_EQ(Left("hidden"), 1U);
}

TEST_F(DoubleBullets, DoesNotReachAPairBehindTheTenthPiece) {
  Repair(Between(page_, 10, {Element("Lbl")({Hidden(), Visible()})}, 30));
  EXPECT_EQ(Left("hidden"), 1U);
}

TEST_F(DoubleBullets, RemovesASpanThatHoldsTheVisibleBulletToo) {
  Repair({Element("Lbl")({Hidden().Mark(page_, Shown("0001")), Element("Span").Title("other")})});
  EXPECT_EQ(Left("hidden"), 0U);
  EXPECT_EQ(Left("other"), 1U);
  EXPECT_NE(test::ReadBack(saved_).Content(1).find("<0001>"), std::string::npos) << "on the page, and in no element";
}

TEST_F(DoubleBullets, PassesOverContentThatBelongsToNoPage) {
  Repair({Element("P").RawKid("7"), Element("Lbl")({Hidden(), Visible()}), Element("P").Mark(page_, Shown("0002"))});
  EXPECT_EQ(Left("hidden"), 0U);
  EXPECT_EQ(Left("visible"), 1U);
}

TEST_F(DoubleBullets, ReadsContentOnceHoweverOftenItStandsInTheTree) {
  const auto textsRead = [](int times) {
    TestDocument document;
    test::Page& page = document.AddPage();
    page.Add(test::Marked("Span", "<</MCID 50/ActualText(a)>>", {test::Text("some text of many characters")}));
    Element often("Span");
    for (int i = 0; i < times; ++i) often.Mcid(page, 50);
    document.Tree({Element("Lbl")({often, Element("Span").Text(page, "a")})});
    OpenDocument open(document.Write());
    test::RecordingHost host;
    const test::HostSession session(host.Tables());
    EXPECT_EQ(open.Fixups(kDoubleBullets), test::kSuccess);
    return host.Count(test::Operation::PDETextGetText);
  };
  const std::size_t once = textsRead(1);
  EXPECT_GT(once, 0U);
  EXPECT_EQ(textsRead(20), once);
}

TEST_F(DoubleBullets, FailsWithoutATextForADocumentWithoutAStructureTree) {
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Fixups(kDoubleBullets), test::kSoftFailure);
}

}  // namespace
}  // namespace tgx
