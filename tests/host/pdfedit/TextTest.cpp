#include "tests/host/pdfedit/ContentFixture.h"

namespace tgx::host {
namespace {

int Chars(PDEText text) { return ReadContent().PDETextGetNumChars(text); }
int Runs(PDEText text) { return ReadContent().PDETextGetNumRuns(text); }

TEST(Text, HasARunForEachShownString) {
  ContentDocument document("BT /F1 10 Tf (ab) Tj () Tj [(c) 5 (d) (e)] TJ ET");
  EXPECT_EQ(document.Tree(), "text(ab  c d e)");
  EXPECT_EQ(Runs(document.At({0})), 5);
  EXPECT_EQ(Chars(document.At({0})), 5);
}

TEST(Text, HasAsManyRunsBeforeItIsLaidOutAsAfterwards) {
  ContentDocument document("BT /F1 10 Tf (a) Tj 7 Tj [(b) <</K (no)>> [(no)] (c)] TJ (d) (e) TJ 1 2 (f) \" ET");
  const int before = Runs(document.At({0}));
  EXPECT_EQ(before, 4);
  Chars(document.At({0}));
  EXPECT_EQ(Runs(document.At({0})), before);
}

TEST(Text, HasCodesAsLongAsItsFontSays) {
  ContentDocument document("BT /F1 10 Tf (ab) Tj /F2 10 Tf <00410042> Tj ET");
  const PDEText text = document.At({0});
  ASSERT_EQ(Chars(text), 4);
  EXPECT_EQ(ReadContent().PDETextGetNumBytes(text, kPDETextChar, 1), 1);
  EXPECT_EQ(ReadContent().PDETextGetNumBytes(text, kPDETextChar, 2), 2);
  EXPECT_EQ(ReadContent().PDETextGetNumBytes(text, kPDETextRun, 1), 4);
  ASUns8 buffer[10] = {};
  EXPECT_EQ(ReadContent().PDETextGetText(text, kPDETextChar, 3, buffer), 2);
  EXPECT_EQ(buffer[1], 0x42);
  EXPECT_EQ(buffer[2], 0);  // the slack stays as it was
}

TEST(Text, GivesOneHandleForEachFont) {
  ContentDocument document("BT /F1 10 Tf (a) Tj /F2 9 Tf <0041> Tj /F1 8 Tf (b) Tj ET");
  const PDEText text = document.At({0});
  const PDEFont first = ReadContent().PDETextGetFont(text, kPDETextChar, 0);
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(ReadContent().PDEObjectGetType(first), kPDEFont);
  EXPECT_NE(ReadContent().PDETextGetFont(text, kPDETextRun, 1), first);
  EXPECT_EQ(ReadContent().PDETextGetFont(text, kPDETextRun, 2), first);
}

TEST(Text, HasNoFontWhereNoneIsSetOrItsResourceIsMissing) {
  ContentDocument document("BT (a) Tj /Nobody 9 Tf (bc) Tj ET");
  const PDEText text = document.At({0});
  EXPECT_EQ(ReadContent().PDETextGetFont(text, kPDETextChar, 0), nullptr);
  EXPECT_EQ(ReadContent().PDETextGetFont(text, kPDETextChar, 2), nullptr);
  EXPECT_EQ(Chars(text), 3);
}

TEST(Text, TakesTheFontOfAnExtendedGraphicsState) {
  ContentDocument document(PageSource("/Gs gs BT (a) Tj ET").Resources("/ExtGState<</Gs<</Font[5 0 R 20]>>>>"));
  const PDEText text = document.At({0});
  ASSERT_NE(ReadContent().PDETextGetFont(text, kPDETextChar, 0), nullptr);
  EXPECT_EQ(MatrixText(text, kPDETextChar, 0), "20 0 0 20 0 0");
}

TEST(Text, RestoresItsStateWithTheGraphicsState) {
  ContentDocument document("/F1 10 Tf q /F2 20 Tf Q BT (a) Tj ET");
  EXPECT_EQ(MatrixText(document.At({0}), kPDETextChar, 0), "10 0 0 10 0 0");
}

TEST(TextMatrix, HoldsSizeScaleRiseTextMatrixAndCurrentMatrix) {
  ContentDocument document("2 0 0 2 5 6 cm BT /F1 10 Tf 50 Tz 3 Ts 1 0 0 1 20 30 Tm (ab) Tj ET");
  EXPECT_EQ(MatrixText(document.At({0}), kPDETextChar, 0), "10 0 0 20 45 72");
  EXPECT_EQ(MatrixText(document.At({0}), kPDETextChar, 1), "10 0 0 20 51 72");
  EXPECT_EQ(MatrixText(document.At({0}), kPDETextRun, 0), "10 0 0 20 45 72");
}

TEST(TextMatrix, FollowsSpacingAndAdjustments) {
  ContentDocument document("BT /F1 10 Tf 1 Tc 2 Tw [( a) 100 (b)] TJ ET");
  EXPECT_EQ(MatrixText(document.At({0}), kPDETextChar, 1), "10 0 0 10 9 0");
  EXPECT_EQ(MatrixText(document.At({0}), kPDETextChar, 2), "10 0 0 10 15 0");
}

TEST(TextMatrix, FollowsLines) {
  ContentDocument document("BT /F1 10 Tf 7 TL 1 2 Td (a) Tj T* (b) Tj 0 -5 TD (c) Tj (d) ' 3 1 (e) \" (f) Tj ET");
  const PDEText text = document.At({0});
  EXPECT_EQ(MatrixText(text, kPDETextChar, 0), "10 0 0 10 1 2");
  EXPECT_EQ(MatrixText(text, kPDETextChar, 1), "10 0 0 10 1 -5");
  EXPECT_EQ(MatrixText(text, kPDETextChar, 2), "10 0 0 10 1 -10");
  EXPECT_EQ(MatrixText(text, kPDETextChar, 3), "10 0 0 10 1 -15");
  EXPECT_EQ(MatrixText(text, kPDETextChar, 4), "10 0 0 10 1 -20");
  EXPECT_EQ(MatrixText(text, kPDETextChar, 5), "10 0 0 10 8 -20");
}

TEST(TextMatrix, IsTheSameInAnyOrderOfAsking) {
  std::string content = "BT /F1 10 Tf ";
  for (int i = 0; i < 3000; ++i) content += "/P BMC (a) Tj EMC ";
  ContentDocument document(content + "ET");
  const std::string last = MatrixText(document.At({2999, 0}), kPDETextChar, 0);
  EXPECT_EQ(last, "10 0 0 10 17994 0");
  EXPECT_EQ(MatrixText(document.At({1, 0}), kPDETextChar, 0), "10 0 0 10 6 0");
  EXPECT_EQ(MatrixText(document.At({1500, 0}), kPDETextChar, 0), "10 0 0 10 9000 0");
  EXPECT_EQ(MatrixText(document.At({2999, 0}), kPDETextChar, 0), last);
}

TEST(TextUnicode, IsBigEndianAndCut) {
  ContentDocument document("BT /F1 10 Tf (a) Tj ET");
  const PDEFont font = ReadContent().PDETextGetFont(document.At({0}), kPDETextChar, 0);
  const ASUns8 codes[] = {'a', 'b'};
  EXPECT_EQ(WriteContent().PDEFontTranslateGlyphIdsToUnicode(font, codes, 2, nullptr, 0), 4);
  ASUns8 unicode[4] = {9, 9, 9, 9};
  EXPECT_EQ(WriteContent().PDEFontTranslateGlyphIdsToUnicode(font, codes, 2, unicode, 3), 4);
  EXPECT_EQ(unicode[0], 0);
  EXPECT_EQ(unicode[1], 'a');
  EXPECT_EQ(unicode[2], 9);  // whole units only
  EXPECT_EQ(WriteContent().PDEFontTranslateGlyphIdsToUnicode(font, codes, 0, unicode, 4), 0);
}

TEST(TextUnicode, NeedsAMapWhereTheFontHasNone) {
  ContentDocument document("BT /F1 10 Tf (a) Tj ET");
  const PDEFont font = ReadContent().PDETextGetFont(document.At({0}), kPDETextChar, 0);
  EXPECT_EQ(WriteContent().PDEFontGetCreateNeedFlags(font), 0x20000U);
}

}  // namespace
}  // namespace tgx::host
