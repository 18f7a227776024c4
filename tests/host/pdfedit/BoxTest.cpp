#include "tests/host/pdfedit/ContentFixture.h"

namespace tgx::host {
namespace {

TEST(Boxes, OfTextReachOverTheAdvance) {
  ContentDocument document("BT /F2 10 Tf 5 Tc 20 30 Td <00410042> Tj ET");
  std::istringstream box(BoxText(document.At({0})));
  double left = 0, bottom = 0, right = 0, top = 0;
  box >> left >> bottom >> right >> top;
  EXPECT_EQ(left, 20);
  EXPECT_EQ(right, 35);  // two codes of 5 and one spacing between them
  EXPECT_LT(bottom, 30);
  EXPECT_GT(top, 34);
}

TEST(Boxes, OfImagesAreTheUnitSquare) {
  ContentDocument document("q 10 0 0 20 5 6 cm /Im Do Q q 0 10 -10 0 50 50 cm BI /W 1 /H 1 /BPC 8 /CS /G ID x EI Q");
  EXPECT_EQ(BoxText(document.At({0})), "5 6 15 26");
  EXPECT_EQ(BoxText(document.At({1})), "40 50 50 60");
}

TEST(Boxes, OfFormsAreTheirBoxThroughBothMatrices) {
  ContentDocument document("2 0 0 2 1 1 cm /Fm Do");
  EXPECT_EQ(BoxText(document.At({0})), "1 1 21 41");
  QPDFObjectHandle form = document.Host()->Pdf().getObjectByID(11, 0);
  form.getDict().replaceKey("/Matrix", QPDFObjectHandle::parse("[1 0 0 1 100 0]"));
  EXPECT_EQ(BoxText(document.At({0})), "201 1 221 41");
}

TEST(Boxes, OfPathsHoldAllPoints) {
  ContentDocument document("2 0 0 1 0 0 cm 1 1 m 5 1 l 1 9 2 8 3 7 c S 10 10 -5 5 re f 1 1 m 2 20 3 3 v 4 4 5 -5 y S");
  EXPECT_EQ(BoxText(document.At({0})), "2 1 10 9");
  EXPECT_EQ(BoxText(document.At({1})), "10 10 20 15");
  EXPECT_EQ(BoxText(document.At({2})), "2 -5 10 20");
}

TEST(Boxes, OfShadingsAreThePages) {
  ContentDocument document("/Sh sh");
  EXPECT_EQ(BoxText(document.At({0})), "0 0 200 200");
  document.Dictionary().replaceKey("/CropBox", QPDFObjectHandle::parse("[10 20 150 900]"));
  EXPECT_EQ(BoxText(document.At({0})), "10 20 150 200");
}

TEST(Boxes, OfContainersAreTheUnionOfWhatIsNotEmpty) {
  ContentDocument document("/P BMC /T MP 0 0 m 5 5 l S /Q BMC 50 50 2 2 re f EMC EMC /R BMC EMC");
  EXPECT_EQ(BoxText(document.At({0})), "0 0 52 52");
  EXPECT_EQ(BoxText(document.At({1})), "0 0 0 0");
  document.Remove({0, 2});
  EXPECT_EQ(BoxText(document.At({0})), "0 0 5 5");
}

TEST(Boxes, OfEmptyThingsAreZero) {
  ContentDocument document("/T MP /Ps Do /Nobody Do BT /F1 9 Tf 5 5 Td () Tj ET");
  for (int i = 0; i < 4; ++i) EXPECT_EQ(BoxText(document.At({i})), "0 0 0 0") << i;
}

TEST(Boxes, SaturateBeyondTheFixedRange) {
  ContentDocument document("1000000 0 0 1000000 0 0 cm /Im Do");
  ASFixedRect box{};
  ReadContent().PDEElementGetBBox(document.At({0}), &box);
  EXPECT_EQ(box.right, 0x7FFFFFFF);
}

/// Where the text in the container begins that follows these operators in a text object.
int LeftBehind(const std::string& operators) {
  ContentDocument document("BT /F1 10 Tf 12 TL " + operators + " /P BMC (x) Tj EMC ET");
  const std::string box = BoxText(document.At({1}));
  return std::stoi(box.substr(0, box.find(' ')));
}

TEST(Boxes, OfTextBeginWhereTheShowsBeforeItLead) {
  EXPECT_EQ(LeftBehind("(ab) Tj"), 12);
  EXPECT_EQ(LeftBehind("(ab) Tj (cd) Tj"), 24);
  EXPECT_EQ(LeftBehind("(ab) Tj 5 Tc (cd) Tj 0 Tc"), 34) << "each show moves by the state that it meets";
  EXPECT_EQ(LeftBehind("(ab) Tj q 5 Tc (cd) Tj Q (e) Tj"), 40);
  EXPECT_EQ(LeftBehind("(ab) Tj 0 0 0 rg [(c) -1000 (d)] TJ"), 34);
  EXPECT_EQ(LeftBehind("(ab) Tj 2 0 0 1 0 0 cm"), 24);
}

TEST(Boxes, OfTextBeginWhereItsPositionWasLastSet) {
  EXPECT_EQ(LeftBehind("(ab) Tj 3 0 Td"), 3);
  EXPECT_EQ(LeftBehind("(ab) Tj 3 -4 TD"), 3);
  EXPECT_EQ(LeftBehind("(ab) Tj T*"), 0);
  EXPECT_EQ(LeftBehind("(ab) Tj 1 0 0 1 7 7 Tm"), 7);
  EXPECT_EQ(LeftBehind("(ab) Tj (c) '"), 6);
  EXPECT_EQ(LeftBehind("(ab) Tj 0 1 (c) \""), 7);
  EXPECT_EQ(LeftBehind("(ab) Tj ET BT"), 0);
}

TEST(Boxes, OfTextGoOnBehindOperatorsThatSetNoPosition) {
  EXPECT_EQ(LeftBehind("(ab) Tj /X 0 Td"), 12);
  EXPECT_EQ(LeftBehind("(ab) Tj 1 0 0 1 7 Tm"), 12);
  EXPECT_EQ(LeftBehind("(ab) Tj 7 '"), 12);
  EXPECT_EQ(LeftBehind("(ab) Tj (c) \""), 18) << "without its numbers it shows, but on the same line";
}

}  // namespace
}  // namespace tgx::host
