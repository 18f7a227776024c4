#include "host/core/Atoms.h"
#include "tests/host/pdfedit/ContentFixture.h"

namespace tgx::host {
namespace {

int Chars(PDEText text) { return ReadContent().PDETextGetNumChars(text); }
int Runs(PDEText text) { return ReadContent().PDETextGetNumRuns(text); }

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

/// Behind a string that never ends nothing would be read.
TEST(NewText, StandsInFrontOfWhatIsCutOff) {
  for (const std::string rest : {"[(trunc", "(trunc", "1 2 /N", "<</A", "BI /W 9 ID abc"}) {
    ContentDocument document("BT /F1 10 Tf (a) Tj ET " + rest);
    NewText made;
    made.Add("x", FontOfFirst(document));
    WriteContent().PDEContentAddElem(document.Root(), 0x7FFFFFFE, made.text);
    document.Commit();
    EXPECT_EQ(document.Saved(), "BT /F1 10 Tf (a) Tj ET " + NewTextOperators("<78>") + " " + rest);
  }
}

TEST(NewText, StandsInFrontOfWhatIsCutOffInAContainerThatNeverEnds) {
  ContentDocument document("BT /F1 10 Tf (a) Tj ET /P BMC /Im Do (trunc");
  NewText made;
  made.Add("x", FontOfFirst(document));
  WriteContent().PDEContentAddElem(document.ListAt({1}), 0x7FFFFFFE, made.text);
  document.Commit();
  EXPECT_EQ(document.Saved(), "BT /F1 10 Tf (a) Tj ET /P BMC /Im Do " + NewTextOperators("<78>") + " (trunc");
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
