#include "host/core/Atoms.h"
#include "host/core/Fixed.h"
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

// Edits.

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

struct NewText {
  PDEText text = WriteContent().PDETextCreate();
  PDEGraphicState state{};

  NewText() {
    state.fillColorSpec.space = state.strokeColorSpec.space =
        WriteContent().PDEColorSpaceCreateFromName(Intern("DeviceGray"));
    state.lineWidth = 0x10000;
    state.miterLimit = 0xA0000;
    state.flatness = 0x10000;
  }

  void Add(const std::string& bytes, PDEFont font, int index = 0,
           ASFixedMatrix matrix = {0xA0000, 0, 0, 0xA0000, 0x50000, 0x60000}) {
    WriteContent().PDETextAdd(text, kPDETextRun, index, reinterpret_cast<const ASUns8*>(bytes.data()),
                              static_cast<ASInt32>(bytes.size()), font, &state, sizeof state, nullptr, 0, &matrix, nullptr);
  }
};

constexpr const char* kNewTextStart = "q ";
constexpr const char* kNewTextState =
    "0 g 0 G 1 w 10 M 1 i 0 J 0 j [] 0 d BT /F1 1 Tf 0 Tc 0 Tw 100 Tz 0 Ts 0 Tr 10 0 0 10 5 6 Tm ";
std::string NewTextOperators(const std::string& shown, const std::string& before = "") {
  return kNewTextStart + before + kNewTextState + "[" + shown + "] TJ ET Q";
}

PDEFont FontOfFirst(ContentDocument& document) { return ReadContent().PDETextGetFont(document.At({0}), kPDETextChar, 0); }

TEST(NewText, IsEmptyAndInNoList) {
  NewText made;
  EXPECT_EQ(ReadContent().PDEObjectGetType(made.text), kPDEText);
  EXPECT_EQ(Chars(made.text), 0);
  EXPECT_EQ(Runs(made.text), 0);
  EXPECT_EQ(BoxText(made.text), "0 0 0 0");
  ReadContent().PDERelease(made.text);
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEObjectGetType(made.text); }), kASBadParameter);
}

TEST(NewText, IsAddedBehindTheLast) {
  ContentDocument document("BT /F1 12 Tf (abc) Tj ET");
  NewText made;
  made.Add("x", FontOfFirst(document));
  WriteContent().PDEContentAddElem(document.Root(), kPDEAfterLast, made.text);
  EXPECT_EQ(document.At({1}), made.text);
  EXPECT_EQ(document.Tree(), "text(abc) text(x)");
  document.Commit();
  EXPECT_EQ(document.Saved(), "BT /F1 12 Tf (abc) Tj ET " + NewTextOperators("<78>"));
}

TEST(NewText, StandsWhereItsMatrixSays) {
  ContentDocument document("BT /F1 12 Tf (abc) Tj ET");
  NewText made;
  made.Add("xy", FontOfFirst(document));
  EXPECT_EQ(MatrixText(made.text, kPDETextChar, 0), "10 0 0 10 5 6");
  EXPECT_EQ(MatrixText(made.text, kPDETextChar, 1), "10 0 0 10 11 6");
}

TEST(NewText, UndoesTheMatrixInForce) {
  ContentDocument document("2 0 0 4 10 20 cm BT /F1 12 Tf (abc) Tj ET");
  NewText made;
  made.Add("x", FontOfFirst(document));
  WriteContent().PDEContentAddElem(document.Root(), kPDEAfterLast, made.text);
  document.Commit();
  EXPECT_EQ(document.Saved(),
            "2 0 0 4 10 20 cm BT /F1 12 Tf (abc) Tj ET " + NewTextOperators("<78>", "0.5 0 0 0.25 -5 -5 cm "));
}

TEST(NewText, CanStandInAContainer) {
  ContentDocument document("BT /F1 12 Tf (a) Tj ET /P BMC /Im Do EMC 1 w");
  NewText made;
  made.Add("x", FontOfFirst(document));
  WriteContent().PDEContentAddElem(document.ListAt({1}), kPDEAfterLast, made.text);
  document.Commit();
  EXPECT_EQ(document.Tree(), "text(a) P[image text(x)]");
  EXPECT_EQ(document.Saved(), "BT /F1 12 Tf (a) Tj ET /P BMC /Im Do " + NewTextOperators("<78>") + " EMC 1 w");
}

TEST(NewText, CanStandInFrontAndBetween) {
  ContentDocument document("BT /F1 12 Tf (a) Tj ET /Im Do");
  const PDEFont font = FontOfFirst(document);
  NewText first;
  first.Add("x", font);
  NewText second;
  second.Add("y", font);
  WriteContent().PDEContentAddElem(document.Root(), 0, second.text);
  WriteContent().PDEContentAddElem(document.Root(), kPDEBeforeFirst, first.text);
  EXPECT_EQ(document.Tree(), "text(x) text(a) text(y) image");
  document.Commit();
  const std::string saved = document.Saved();
  EXPECT_LT(saved.find("<78>"), saved.find("(a)"));
  EXPECT_LT(saved.find("(a)"), saved.find("<79>"));
  EXPECT_LT(saved.find("<79>"), saved.find("/Im"));
}

TEST(NewText, InsideATextObjectRestoresThePosition) {
  ContentDocument document("BT /F1 10 Tf 20 30 Td (ab) Tj /P BMC (c) Tj EMC (d) Tj ET");
  NewText made;
  made.Add("x", FontOfFirst(document));
  WriteContent().PDEContentAddElem(document.ListAt({1}), kPDEAfterLast, made.text);
  document.Commit();
  EXPECT_EQ(document.Saved(), "BT /F1 10 Tf 20 30 Td (ab) Tj /P BMC (c) Tj ET " + NewTextOperators("<78>") +
                                  " BT 1 0 0 1 20 30 Tm [-1800] TJ EMC (d) Tj ET");
}

/// F3 writes downwards, every code moves by its size.
PageSource WithVerticalFont(const std::string& content) {
  return PageSource(content)
      .Resources("/ExtGState<</Gs<</Font[20 0 R 10]>>>>")
      .Objects("20 0 obj\n<</Type/Font/Subtype/Type0/BaseFont/Tall/Encoding/Identity-V/DescendantFonts[7 0 R]>>\nendobj\n");
}

TEST(NewText, InsideVerticalTextRestoresThePosition) {
  ContentDocument document(WithVerticalFont("/Gs gs BT 20 30 Td <0041> Tj /P BMC <0042> Tj EMC <0043> Tj ET"));
  NewText made;
  made.Add(std::string("\0A", 2), FontOfFirst(document));
  WriteContent().PDEContentAddElem(document.ListAt({1}), kPDEAfterLast, made.text);
  document.Commit();
  EXPECT_NE(document.Saved().find("Q BT 1 0 0 1 20 30 Tm [2000] TJ EMC <0043> Tj ET"), std::string::npos)
      << document.Saved();
}

TEST(NewText, InsideVerticalTextBesideItsLineSetsThePositionItself) {
  ContentDocument document(
      WithVerticalFont("BT /F1 10 Tf 20 30 Td (ab) Tj /Gs gs <0041> Tj /P BMC <0042> Tj EMC <0043> Tj ET"));
  NewText made;
  made.Add("x", FontOfFirst(document));
  WriteContent().PDEContentAddElem(document.ListAt({1}), kPDEAfterLast, made.text);
  document.Commit();
  EXPECT_NE(document.Saved().find("Q BT 1 0 0 1 32 10 Tm EMC <0043> Tj ET"), std::string::npos) << document.Saved();
}

TEST(NewText, GetsANameInTheResourcesWhenItsFontHasNone) {
  ContentDocument document("/Gs gs BT (a) Tj ET");
  QPDFObjectHandle resources = document.Dictionary().getKey("/Resources");
  resources.replaceKey("/ExtGState", QPDFObjectHandle::parse(&document.Host()->Pdf(), "<</Gs<</Font[5 0 R 20]>>>>"));
  resources.removeKey("/Font");
  NewText made;
  made.Add("x", FontOfFirst(document));
  WriteContent().PDEContentAddElem(document.Root(), kPDEAfterLast, made.text);
  document.Commit();
  EXPECT_NE(document.Saved().find("/F0 1 Tf"), std::string::npos);
  EXPECT_FALSE(resources.hasKey("/Font"));  // shared, so the page has a copy of its own
  EXPECT_EQ(document.Dictionary().getKey("/Resources").getKey("/Font").getKey("/F0").getObjGen().getObj(), 5);
}

TEST(NewText, CanBeTakenOutAgain) {
  ContentDocument document("BT /F1 12 Tf (a) Tj ET");
  NewText made;
  made.Add("x", FontOfFirst(document));
  WriteContent().PDEContentAddElem(document.Root(), kPDEAfterLast, made.text);
  document.Commit();
  document.Remove({1});
  ReadContent().PDERelease(made.text);
  EXPECT_EQ(TextOf(made.text), "x");  // readable as long as the document is open
  document.Commit();
  EXPECT_EQ(document.Saved(), "BT /F1 12 Tf (a) Tj ET");
  WriteContent().PDEContentAddElem(document.Root(), kPDEAfterLast, made.text);
  EXPECT_EQ(document.Tree(), "text(a) text(x)");
}

TEST(NewText, StandsInOneListOnly) {
  ContentDocument document("BT /F1 12 Tf (a) Tj ET");
  NewText made;
  WriteContent().PDEContentAddElem(document.Root(), 0, made.text);
  EXPECT_EQ(RaisedCode([&] { WriteContent().PDEContentAddElem(document.Root(), 0, made.text); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { WriteContent().PDEContentAddElem(document.Root(), 0, document.At({0})); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { WriteContent().PDEContentAddElem(document.Root(), -2, NewText().text); }), kASOutOfRange);
}

TEST(NewText, CannotTakeFontsOfAnotherDocument) {
  ContentDocument document("BT /F1 12 Tf (a) Tj ET");
  ContentDocument other("BT /F1 12 Tf (a) Tj ET");
  NewText made;
  made.Add("x", FontOfFirst(other));
  EXPECT_EQ(RaisedCode([&] { WriteContent().PDEContentAddElem(document.Root(), 0, made.text); }), kASBadParameter);
}

TEST(NewText, LosesTheFontsOfADocumentThatEnds) {
  NewText made;
  {
    ContentDocument document("BT /F1 12 Tf (a) Tj ET");
    made.Add("x", FontOfFirst(document));
  }
  EXPECT_EQ(Chars(made.text), 0);
}

TEST(NewText, EndsWithTheDocumentThatItWasAddedTo) {
  NewText made;
  {
    ContentDocument document("BT /F1 12 Tf (a) Tj ET");
    WriteContent().PDEContentAddElem(document.Root(), 0, made.text);
  }
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEObjectGetType(made.text); }), kASBadParameter);
}

TEST(NewText, TakesRunsInOrder) {
  ContentDocument document("BT /F1 12 Tf (a) Tj ET");
  const PDEFont font = FontOfFirst(document);
  NewText made;
  made.Add("x", font, 0);
  made.Add("z", font, 1);
  made.Add("y", font, 1);
  EXPECT_EQ(Runs(made.text), 3);
  EXPECT_EQ(TextOf(made.text), "xyz");
  WriteContent().PDETextRemove(made.text, kPDETextChar, 1, 1);
  EXPECT_EQ(TextOf(made.text), "xz");
  EXPECT_EQ(RaisedCode([&] { made.Add("x", font, 3); }), kASOutOfRange);
  EXPECT_EQ(RaisedCode([&] { made.Add("x", font, -1); }), kASOutOfRange);
}

TEST(NewText, LosesCharactersAndKeepsTheOthersInPlace) {
  ContentDocument document("BT /F1 12 Tf (a) Tj ET");
  NewText made;
  made.Add("xyz", FontOfFirst(document));
  WriteContent().PDEContentAddElem(document.Root(), kPDEAfterLast, made.text);
  WriteContent().PDETextRemove(made.text, kPDETextChar, 1, 1);
  EXPECT_EQ(MatrixText(made.text, kPDETextChar, 1), "10 0 0 10 17 6");
  document.Commit();
  EXPECT_EQ(document.Saved(), "BT /F1 12 Tf (a) Tj ET " + NewTextOperators("<78>-600<7A>"));
}

TEST(NewText, RefusesWhatItCannotBeMadeOf) {
  ContentDocument document("BT /F1 12 Tf (a) Tj ET");
  const PDEFont font = FontOfFirst(document);
  NewText made;
  const ASUns8 byte = 'x';
  const ASFixedMatrix matrix{0x10000, 0, 0, 0x10000, 0, 0};
  const auto add = [&](ASUns32 flags, PDEFont useFont, ASInt32 size) {
    return RaisedCode([&] {
      WriteContent().PDETextAdd(made.text, flags, 0, &byte, 1, useFont, &made.state, size, nullptr, 0, &matrix, nullptr);
    });
  };
  EXPECT_EQ(add(kPDETextRun, nullptr, 232), kASBadParameter);
  EXPECT_EQ(add(kPDETextRun, font, 231), kASBadParameter);
  EXPECT_EQ(add(kPDETextChar, font, 232), kASNotSupported);
  EXPECT_EQ(add(kPDETextRun, made.text, 232), kASWrongType);
  EXPECT_EQ(Chars(made.text), 0);
}

TEST(AddedRuns, CanStandBetweenRunsOfThePage) {
  ContentDocument document("BT /F1 10 Tf 20 30 Td [(a) 5 (b)] TJ (c) Tj ET");
  NewText made;
  const ASFixedMatrix matrix{0xA0000, 0, 0, 0xA0000, 0x50000, 0x60000};
  const ASUns8 byte = 'x';
  WriteContent().PDETextAdd(document.At({0}), kPDETextRun, 1, &byte, 1, FontOfFirst(document), &made.state,
                            sizeof made.state, nullptr, 0, &matrix, nullptr);
  EXPECT_EQ(document.Tree(), "text(a x b c)");
  document.Commit();
  EXPECT_EQ(document.Saved(), "BT /F1 10 Tf 20 30 Td [(a)] TJ ET " + NewTextOperators("<78>") +
                                  " BT 1 0 0 1 20 30 Tm [-595] TJ [(b)] TJ [(c)] TJ ET");
}

TEST(ColorSpaces, HaveOneHandleEach) {
  const PDEColorSpace gray = WriteContent().PDEColorSpaceCreateFromName(Intern("DeviceGray"));
  EXPECT_EQ(ReadContent().PDEObjectGetType(gray), kPDEColorSpace);
  EXPECT_EQ(WriteContent().PDEColorSpaceCreateFromName(Intern("DeviceGray")), gray);
  EXPECT_NE(WriteContent().PDEColorSpaceCreateFromName(Intern("DeviceRGB")), gray);
  EXPECT_EQ(RaisedCode([] { WriteContent().PDEColorSpaceCreateFromName(Intern("CalGray")); }), kASBadParameter);
}

}  // namespace
}  // namespace tgx::host
