#include "tests/host/pdfedit/ContentFixture.h"

namespace tgx::host {
namespace {

std::string AfterRemoval(const std::string& content, ASUns32 flags, int index, int count) {
  ContentDocument document(content);
  WriteContent().PDETextRemove(document.At({0}), flags, index, count);
  document.Commit();
  return document.Tree() + " | " + document.Saved();
}

TEST(TextRemoval, OfCharactersKeepsTheOthersInPlace) {
  EXPECT_EQ(AfterRemoval("BT /F1 10 Tf (abcd) Tj ET", kPDETextChar, 1, 2), "text(ad) | BT /F1 10 Tf [<61>-1200<64>] TJ ET");
  EXPECT_EQ(AfterRemoval("BT /F1 10 Tf [(ab) 50 (cd)] TJ ET", kPDETextChar, 0, 1),
            "text(b cd) | BT /F1 10 Tf [-600<62>50(cd)] TJ ET");
}

TEST(TextRemoval, KeepsTheSpacingOfCharactersOfNoSize) {
  EXPECT_EQ(AfterRemoval("BT /F1 0 Tf 3 Tc [(abc) (d)] TJ /F1 10 Tf (e) Tj ET", kPDETextChar, 1, 1),
            "text(ac d e) | BT /F1 0 Tf 3 Tc [<61>] TJ /F1 1 Tf [-3000] TJ /F1 0 Tf [<63>(d)] TJ /F1 10 Tf [(e)] TJ ET");
}

TEST(TextRemoval, AtTheEndOwesTheMoveToTheNextShow) {
  EXPECT_EQ(AfterRemoval("BT /F1 10 Tf (ab) Tj (c) Tj ET", kPDETextChar, 1, 1),
            "text(a c) | BT /F1 10 Tf [<61>] TJ [-600(c)] TJ ET");
}

TEST(TextRemoval, OfRunsTakesThemWhole) {
  EXPECT_EQ(AfterRemoval("BT /F1 10 Tf [(ab) (cd) (ef)] TJ ET", kPDETextRun, 1, 1),
            "text(ab ef) | BT /F1 10 Tf [(ab)-1200(ef)] TJ ET");
}

TEST(TextRemoval, OfAllCharactersLeavesAnEmptyElement) {
  EXPECT_EQ(AfterRemoval("BT /F1 10 Tf 5 5 Td (ab) Tj () Tj (c) Tj ET", kPDETextChar, 0, 3),
            "text() | BT /F1 10 Tf 5 5 Td ET");
}

TEST(TextRemoval, OfNothingDoesNothing) {
  ContentDocument document("BT /F1 10 Tf (ab) Tj ET");
  WriteContent().PDETextRemove(document.At({0}), kPDETextChar, 2, 0);
  EXPECT_FALSE(document.Model().IsEdited());
}

TEST(TextRemoval, RaisesForARangeOutside) {
  ContentDocument document("BT /F1 10 Tf (ab) Tj ET");
  const PDEText text = document.At({0});
  for (const auto& [index, count] : {std::pair{-1, 1}, {0, 3}, {2, 1}, {0, -1}, {3, 0}, {1, 0x7FFFFFFF}}) {
    EXPECT_EQ(RaisedCode([&] { WriteContent().PDETextRemove(text, kPDETextChar, index, count); }), kASOutOfRange);
  }
  EXPECT_EQ(RaisedCode([&] { WriteContent().PDETextRemove(text, kPDETextRun, 1, 1); }), kASOutOfRange);
}

TEST(TextRemoval, CanBeRepeated) {
  ContentDocument document("BT /F1 10 Tf (abcdef) Tj ET");
  const PDEText text = document.At({0});
  WriteContent().PDETextRemove(text, kPDETextChar, 1, 1);  // b
  WriteContent().PDETextRemove(text, kPDETextChar, 3, 1);  // e
  WriteContent().PDETextRemove(text, kPDETextChar, 1, 2);  // c d
  EXPECT_EQ(document.Tree(), "text(af)");
  EXPECT_EQ(MatrixText(text, kPDETextChar, 1), "10 0 0 10 30 0");
  document.Commit();
  EXPECT_EQ(document.Saved(), "BT /F1 10 Tf [<61>-2400<66>] TJ ET");
}

TEST(TextRemoval, LeavesTheLineMoveOfAQuote) {
  EXPECT_EQ(AfterRemoval("BT /F1 10 Tf 9 TL (ab) ' ET", kPDETextChar, 0, 1),
            "text(b) | BT /F1 10 Tf 9 TL T* [-600<62>] TJ ET");
  EXPECT_EQ(AfterRemoval("BT /F1 10 Tf 9 TL 1 2 (ab) \" ET", kPDETextChar, 0, 1),
            "text(b) | BT /F1 10 Tf 9 TL 1 Tw 2 Tc T* [-800<62>] TJ ET");
}

TEST(TextRemoval, KeepsRemovedCharactersInTheClip) {
  EXPECT_EQ(AfterRemoval("BT /F1 10 Tf 4 Tr (ab) Tj ET", kPDETextChar, 0, 1),
            "text(b) | BT /F1 10 Tf 4 Tr 7 Tr [<61>] TJ 4 Tr [<62>] TJ ET");
}

}  // namespace
}  // namespace tgx::host
