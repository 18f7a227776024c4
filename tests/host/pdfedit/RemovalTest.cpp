#include "tests/host/pdfedit/ContentFixture.h"

namespace tgx::host {
namespace {

/// The saved content after the element at a path has been removed.
std::string Without(const PageSource& source, std::vector<int> path) {
  ContentDocument document(source);
  document.Remove(std::move(path));
  document.Commit();
  return document.Saved();
}

TEST(Removal, TakesOutWhatPaints) {
  EXPECT_EQ(Without("q /Im Do Q 1 0 0 rg", {0}), "q Q 1 0 0 rg");
  EXPECT_EQ(Without("/Sh1 sh 0 0 9 9 re f", {0}), "0 0 9 9 re f");
  EXPECT_EQ(Without("/Tag MP 0 0 9 9 re f", {0}), "0 0 9 9 re f");
  EXPECT_EQ(Without("1 g 0 0 m 9 9 l S 0 g", {0}), "1 g 0 g");
  EXPECT_EQ(Without("q BI /W 1 /H 1 /BPC 8 /CS /G ID x EI Q", {0}), "q Q");
}

TEST(Removal, CopiesTheRestByteForByte) {
  ContentDocument document("% a comment\n0.10  0 00 rg (x)%c\nTj/Im Do\r\n<</A[1 2]>>  frob ] 1 w");
  document.Remove({1});
  document.Commit();
  EXPECT_EQ(document.SavedRaw(), "% a comment\n0.10  0 00 rg (x)%c\nTj\r\n<</A[1 2]>>  frob ] 1 w");
}

TEST(Removal, KeepsStateThatIsStillInForce) {
  EXPECT_EQ(Without("/P BMC 1 0 0 rg 2 w /Im Do EMC 0 0 9 9 re f", {0}), "1 0 0 rg 2 w 0 0 9 9 re f");
}

TEST(Removal, TakesOutASaveAndRestoreThatPaintNothingAnyMore) {
  EXPECT_EQ(Without("1 w /P BMC q 1 0 0 rg 5 0 0 5 0 0 cm /Im Do q /Fm Do Q Q EMC 2 w", {0}), "1 w 2 w");
}

TEST(Removal, KeepsSavesAndRestoresInPairsAroundASaveInsideText) {
  EXPECT_EQ(Without("q 2 0 0 2 0 0 cm /P BMC q BT q 1 w (a) Tj ET Q Q EMC /Im Do Q", {0}),
            "q 2 0 0 2 0 0 cm q BT q 1 w ET Q Q /Im Do Q");
}

TEST(Removal, KeepsASaveThatIsRestoredOutside) {
  EXPECT_EQ(Without("/P BMC q 5 0 0 5 0 0 cm /Im Do EMC /Fm Do Q", {0}), "q 5 0 0 5 0 0 cm /Fm Do Q");
}

TEST(Removal, KeepsARestoreWhoseSaveStandsOutside) {
  EXPECT_EQ(Without("q /P BMC 1 w /Im Do Q 2 w EMC /Fm Do", {0}), "q 1 w Q 2 w /Fm Do");
}

TEST(Removal, LeavesTheClipOfARemovedPath) {
  EXPECT_EQ(Without("0 0 9 9 re W f /Im Do", {0}), "0 0 9 9 re W n /Im Do");
  EXPECT_EQ(Without("/P BMC 0 0 9 9 re W* n 1 1 2 2 re f EMC /Im Do", {0}), "0 0 9 9 re W* n /Im Do");
}

TEST(Removal, LeavesNothingOfAPathWithoutAClip) { EXPECT_EQ(Without("/P BMC 0 0 m 1 1 l h B EMC /Im Do", {0}), "/Im Do"); }

TEST(Removal, EndsAPathThatBeganOutside) {
  // Else the two paths would become one.
  EXPECT_EQ(Without("0 0 m /P BMC 1 1 l f EMC 2 2 m 3 3 l S", {0}), "0 0 m 1 1 l n 2 2 m 3 3 l S");
}

TEST(Removal, MakesGoodTheAdvanceOfARemovedShow) {
  EXPECT_EQ(Without("BT /F1 10 Tf 5 5 Td /P BMC (ab) Tj EMC (c) Tj ET", {0}), "BT /F1 10 Tf 5 5 Td [-1200] TJ (c) Tj ET");
}

TEST(Removal, AddsUpAdvancesOverSeveralShows) {
  EXPECT_EQ(Without("BT /F1 10 Tf /P BMC (a) Tj [(b) -100 (c)] TJ EMC (d) Tj ET", {0}), "BT /F1 10 Tf [-1900] TJ (d) Tj ET");
}

TEST(Removal, CountsSpacingAndScalingInTheAdvance) {
  // (6 + 2 + 3) and (6 + 2) points wide at 50 per cent; an adjustment is scaled as well.
  EXPECT_EQ(Without("BT /F1 10 Tf 2 Tc 3 Tw 50 Tz /P BMC ( a) Tj EMC (b) Tj ET", {0}),
            "BT /F1 10 Tf 2 Tc 3 Tw 50 Tz [-1900] TJ (b) Tj ET");
}

TEST(Removal, ForgetsTheAdvanceAtANewPosition) {
  EXPECT_EQ(Without("BT /F1 10 Tf /P BMC (a) Tj EMC 0 -12 Td (b) Tj ET", {0}), "BT /F1 10 Tf 0 -12 Td (b) Tj ET");
  EXPECT_EQ(Without("BT /F1 10 Tf /P BMC (a) Tj EMC (b) ' ET", {0}), "BT /F1 10 Tf (b) ' ET");
  EXPECT_EQ(Without("BT /F1 10 Tf /P BMC (a) Tj EMC ET BT (b) Tj ET", {0}), "BT /F1 10 Tf ET BT (b) Tj ET");
}

TEST(Removal, MovesBeforeTheFontChanges) {
  EXPECT_EQ(Without("BT /F1 10 Tf /P BMC (a) Tj EMC /F2 20 Tf <0041> Tj ET", {0}),
            "BT /F1 10 Tf [-600] TJ /F2 20 Tf <0041> Tj ET");
}

TEST(Removal, KeepsTheSpacingOfTextOfNoSize) {
  EXPECT_EQ(Without("BT /F1 0 Tf 3 Tc /P BMC (ab) Tj EMC /F1 10 Tf (c) Tj ET", {0}),
            "BT /F1 0 Tf 3 Tc /F1 1 Tf [-6000] TJ /F1 0 Tf /F1 10 Tf (c) Tj ET");
  EXPECT_EQ(Without("BT /F2 0 Tf 3 Tc 50 Tz /P BMC <0041> Tj EMC (c) Tj ET", {0}),
            "BT /F2 0 Tf 3 Tc 50 Tz /F2 1 Tf [-3000] TJ /F2 0 Tf (c) Tj ET");
}

TEST(Removal, LeavesTheLineMoveOfAQuote) {
  EXPECT_EQ(Without("BT /F1 10 Tf 12 TL /P BMC (a) ' EMC (b) Tj ET", {0}), "BT /F1 10 Tf 12 TL T* [-600] TJ (b) Tj ET");
  EXPECT_EQ(Without("BT /F1 10 Tf 12 TL /P BMC 1 2 (a) \" EMC (b) Tj ET", {0}),
            "BT /F1 10 Tf 12 TL 1 Tw 2 Tc T* [-800] TJ (b) Tj ET");
}

TEST(Removal, TakesOutAWholeTextObjectButItsState) {
  EXPECT_EQ(Without("/P BMC BT /F1 10 Tf 1 0 0 1 5 5 Tm 2 Tc (a) Tj 0 -3 Td (b) Tj T* (c) ' ET EMC BT (d) Tj ET", {0}),
            "/F1 10 Tf 2 Tc BT (d) Tj ET");
  EXPECT_EQ(Without("/P BMC BT 0 -3 TD (a) Tj 1 2 (c) \" ET EMC BT (d) Tj ET", {0}), "3 TL 1 Tw 2 Tc BT (d) Tj ET");
}

TEST(Removal, KeepsATextObjectThatGoesOnOutside) {
  EXPECT_EQ(Without("/P BMC BT 5 5 Td (a) Tj EMC 0 -12 Td (b) Tj ET", {0}), "BT 5 5 Td 0 -12 Td (b) Tj ET");
}

TEST(Removal, KeepsTextThatClips) {
  EXPECT_EQ(Without("BT /F1 10 Tf 4 Tr /P BMC (a) Tj EMC ET /Im Do", {0}), "BT /F1 10 Tf 4 Tr 7 Tr (a) Tj 4 Tr ET /Im Do");
  EXPECT_EQ(Without("BT 7 Tr /P BMC (a) Tj EMC ET /Im Do", {0}), "BT 7 Tr (a) Tj ET /Im Do");
  EXPECT_EQ(Without("/P BMC BT 5 Tr 3 3 Td (a) Tj ET EMC /Im Do", {0}), "BT 5 Tr 3 3 Td 7 Tr (a) Tj 5 Tr ET /Im Do");
}

TEST(Removal, TakesOutOneTextOfTextObjectWithState) {
  EXPECT_EQ(Without("BT /F1 10 Tf 5 5 Td (a) Tj 2 Tc (b) Tj ET (x) Tj", {0}),
            "BT /F1 10 Tf 5 5 Td 2 Tc [-1400] TJ ET (x) Tj");
}

TEST(Removal, KeepsThePositionThatTextBehindTheTextObjectTakesOver) {
  EXPECT_EQ(Without("BT /F1 10 Tf 5 5 Td /P BMC (a) Tj EMC ET (x) Tj", {0}), "BT /F1 10 Tf 5 5 Td [-600] TJ ET (x) Tj");
  EXPECT_EQ(Without("/P BMC BT /F1 10 Tf 5 5 Td (a) Tj ET EMC (x) Tj", {0}), "BT /F1 10 Tf 5 5 Td [-600] TJ ET (x) Tj");
  EXPECT_EQ(Without("/P BMC BT /F1 10 Tf 5 5 Td (a) Tj ET EMC 0 -9 Td (x) Tj", {0}),
            "BT /F1 10 Tf 5 5 Td ET 0 -9 Td (x) Tj");
  EXPECT_EQ(Without("/P BMC BT /F1 10 Tf 5 5 Td (a) Tj ET EMC 1 0 0 1 3 3 Tm (x) Tj", {0}),
            "/F1 10 Tf 1 0 0 1 3 3 Tm (x) Tj");
}

TEST(Removal, KeepsAPathThatIsPaintedBehindItsGraphicsState) {
  EXPECT_EQ(Without("/A BMC q 0 0 m 50 50 l Q EMC S", {0}), "q 0 0 m 50 50 l Q S");
}

TEST(Removal, LeavesAShowWithWrongOperandsWhereItIs) {
  EXPECT_EQ(Without("BT /F1 12 Tf /A BMC (x) (y) (hello) \" (a) \" EMC (b) Tj ET", {0}),
            "BT /F1 12 Tf (x) (y) (hello) \" (a) \" (b) Tj ET");
}

TEST(Removal, WorksAtAnyDepth) {
  EXPECT_EQ(Without("/A BMC /B BMC /C BMC /Im Do EMC /Fm Do EMC EMC", {0, 0, 0}), "/A BMC /B BMC /Fm Do EMC EMC");
  EXPECT_EQ(Without("/A BMC /B BMC /C BMC /Im Do EMC /Fm Do EMC EMC", {0, 0, 0, 0}),
            "/A BMC /B BMC /C BMC EMC /Fm Do EMC EMC");
}

TEST(Removal, OfAnUnclosedContainerReachesToTheEnd) { EXPECT_EQ(Without("1 w /A BMC /Im Do /B BMC 2 w", {0}), "1 w 2 w"); }

TEST(Removal, LeavesAStrayEndWhereItIs) { EXPECT_EQ(Without("EMC /A BMC /Im Do EMC EMC 1 w", {0}), "EMC EMC 1 w"); }

TEST(Removal, TakesBracketsThatAreTooDeepWithTheirContainer) {
  std::string content;
  for (int i = 0; i < 300; ++i) content += "/P BMC ";
  content += "/Im Do ";
  for (int i = 0; i < 300; ++i) content += "EMC ";
  EXPECT_EQ(Without(content + "1 w", {0}), "1 w");
}

TEST(Removal, ShrinksTheListAtOnce) {
  ContentDocument document("/Im Do /Fm Do /Ps Do");
  const PDEElement first = document.At({0});
  const PDEElement second = document.At({1});
  document.Remove({0});
  EXPECT_EQ(document.Tree(), "form ps");
  EXPECT_EQ(document.At({0}), second);
  EXPECT_EQ(ReadContent().PDEObjectGetType(first), kPDEImage);  // still alive
  ReadContent().PDERelease(first);
  EXPECT_EQ(ReadContent().PDEObjectGetType(first), kPDEImage);
}

TEST(Removal, RaisesForIndicesOutside) {
  ContentDocument document("/Im Do");
  const PDEContent root = document.Root();
  for (const ASInt32 index : {-1, 1, 0x7FFFFFFE}) {
    EXPECT_EQ(RaisedCode([&] { WriteContent().PDEContentRemoveElem(root, index); }), kASOutOfRange) << index;
  }
}

TEST(Removal, IsNotWrittenBeforeACommit) {
  ContentDocument document("/Im Do 1 w");
  document.Remove({0});
  EXPECT_EQ(document.Saved(), "/Im Do 1 w");
}

TEST(Removal, IsWrittenAsItWasCommitted) {
  ContentDocument document("/Im Do /Fm Do");
  document.Remove({0});
  document.Commit();
  document.Remove({0});
  EXPECT_EQ(document.Saved(), "/Fm Do");
  document.Commit();
  EXPECT_EQ(document.Saved(), "");
}

TEST(Removal, ShowsInTheContentsThatAreReadThroughCos) {
  ContentDocument document("/Im Do 1 w");
  document.Remove({0});
  document.Commit();
  const CosObj page = document.Host()->HandleOf(document.Dictionary());
  const CosObj contents = Cos().CosDictGetKeyString(page, "Contents");
  QPDFObjectHandle stream = ObjectOf(contents);
  const auto data = stream.getStreamData();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(data->getBuffer()), data->getSize()), " 1 w");
}

TEST(Removal, OfEverythingInABigListIsFast) {
  std::string content;
  for (int i = 0; i < 100000; ++i) content += "0 0 1 1 re f ";
  ContentDocument document(content);
  const PDEContent root = document.Root();
  for (int i = 0; i < 100000; ++i) WriteContent().PDEContentRemoveElem(root, 0);
  document.Commit();
  EXPECT_EQ(document.Saved(), "");
}

TEST(WritingBack, LeavesAnUnchangedPageAsItIs) {
  ContentDocument document(std::vector<std::string>{"/P <</MCID 0>> BDC", "/Im Do EMC"});
  document.Properties(document.At({0}));
  document.Commit();
  WriteContent().PDEContainerSetContent(document.At({0}), document.ListAt({0}));
  document.Commit();
  HostDocument saved = document.Host().Reopened();
  QPDFObjectHandle contents = QPDFObjectHandle(saved->Pdf().getAllPages().at(0)).getKey("/Contents");
  ASSERT_TRUE(contents.isArray());
  EXPECT_EQ(contents.getArrayNItems(), 2);
}

TEST(WritingBack, GivesAPageAStreamOfItsOwn) {
  ContentDocument document("/Im Do 1 w");
  QPDF& pdf = document.Host()->Pdf();
  QPDFObjectHandle before = document.Dictionary().getKey("/Contents");
  document.Remove({0});
  document.Commit();
  document.Host()->Contents().WriteCommitted();
  QPDFObjectHandle after = document.Dictionary().getKey("/Contents");
  EXPECT_NE(before.getObjGen(), after.getObjGen());
  EXPECT_EQ(after.getDict().getKey("/Filter").unparse(), "/FlateDecode");
  const auto old = pdf.getObjectByObjGen(before.getObjGen()).getStreamData();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(old->getBuffer()), old->getSize()), "/Im Do 1 w");
}

TEST(WritingBack, MarksTheDocumentChanged) {
  ContentDocument document("/Im Do");
  document.Root();
  document.Commit();
  EXPECT_FALSE(document.Host()->IsChanged());
  document.Remove({0});
  document.Commit();
  EXPECT_TRUE(document.Host()->IsChanged());
}

TEST(WritingBack, OfAPageThatWasNeverReadDoesNothing) {
  ContentDocument document("/Im Do");
  EXPECT_EQ(PageContent().PDPageSetPDEContent(document.Page(), nullptr), 1);
  EXPECT_EQ(document.Host()->Contents().Find(0), nullptr);
}

TEST(WritingBack, WorksAfterRelease) {
  ContentDocument document("/Im Do 1 w");
  document.Remove({0});
  PageContent().PDPageReleasePDEContent(document.Page(), nullptr);
  document.Commit();
  EXPECT_EQ(document.Saved(), "1 w");
}

TEST(Removal, LooksAheadForAShowOnceOnly) {
  std::string content = "BT /F1 10 Tf /P BMC (ab) Tj EMC";
  for (int i = 0; i < 100'000; ++i) content += " 100 Tz";
  ContentDocument document(content + " ET");
  document.Remove({0});
  document.Commit();
  EXPECT_EQ(document.SavedRaw().find("TJ"), std::string::npos);
}

}  // namespace
}  // namespace tgx::host
