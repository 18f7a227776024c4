#include "tests/host/pdfedit/ContentFixture.h"

namespace tgx::host {
namespace {

std::string TreeOf(const PageSource& source) { return ContentDocument(source).Tree(); }

TEST(ElementTree, HasAnElementForEverythingThatPaints) {
  EXPECT_EQ(TreeOf("BT /F1 12 Tf (a) Tj ET 0 0 m 9 9 l S /Im Do /Fm Do /Ps Do /Sh1 sh /Tag MP /Tag /Pr0 DP "
                   "BI /W 1 /H 1 /BPC 8 /CS /G ID x EI"),
            "text(a) path image form ps shading place place image");
}

TEST(ElementTree, HasAnXObjectForAMissingResource) { EXPECT_EQ(TreeOf("/Nobody Do"), "xobject"); }

TEST(ElementTree, HasNoElementForState) {
  EXPECT_EQ(TreeOf("q 1 0 0 1 0 0 cm 1 w /Gs gs 1 0 0 rg BT /F1 12 Tf ET Q frob"), "");
}

TEST(ElementTree, HasNoElementForAPathThatOnlyClips) {
  EXPECT_EQ(TreeOf("0 0 9 9 re W n 0 0 9 9 re W* n 0 0 5 5 re n"), "");
}

TEST(ElementTree, HasAnElementForAPathThatPaintsAndClips) { EXPECT_EQ(TreeOf("0 0 9 9 re W f"), "path"); }

TEST(ElementTree, TakesEveryPaintingOperator) {
  EXPECT_EQ(TreeOf("0 0 9 9 re S 0 0 9 9 re s 0 0 9 9 re f 0 0 9 9 re F 0 0 9 9 re f* 0 0 9 9 re B 0 0 9 9 re B* "
                   "0 0 9 9 re b 0 0 9 9 re b*"),
            "path path path path path path path path path");
}

TEST(ElementTree, HasNoElementForPaintingNothing) { EXPECT_EQ(TreeOf("f S B"), ""); }

TEST(ElementTree, NestsContainers) {
  EXPECT_EQ(TreeOf("/P <</MCID 0>> BDC /Span BMC BT (a) Tj ET EMC 0 0 9 9 re f EMC /Im Do"),
            "P#0[Span[text(a)] path] image");
}

TEST(ElementTree, ReadsPropertiesFromTheResources) { EXPECT_EQ(TreeOf("/P /Pr0 BDC EMC /P /Missing BDC EMC"), "P#7[] P[]"); }

TEST(ElementTree, EndsAnUnclosedContainerWithThePage) { EXPECT_EQ(TreeOf("/P BMC /Q BMC (a) Tj"), "P[Q[text(a)]]"); }

TEST(ElementTree, IgnoresAStrayEnd) { EXPECT_EQ(TreeOf("EMC (a) Tj EMC (b) Tj"), "text(a) text(b)"); }

TEST(ElementTree, HasOneTextForAllShowsOfATextObject) {
  EXPECT_EQ(TreeOf("BT (a) Tj 0 -12 Td (b) Tj [(c) -5 (d)] TJ (e) ' 1 2 (f) \" ET BT (g) Tj ET"),
            "text(a b c d e f) text(g)");
}

TEST(ElementTree, SplitsATextAtContainers) {
  EXPECT_EQ(TreeOf("BT (a) Tj /Span <<>> BDC (b) Tj EMC (c) Tj ET"), "text(a) Span[text(b)] text(c)");
}

TEST(ElementTree, SplitsATextAtOtherElements) { EXPECT_EQ(TreeOf("BT (a) Tj /Tag MP (b) Tj ET"), "text(a) place text(b)"); }

TEST(ElementTree, ReadsShowsOutsideOfTextObjects) { EXPECT_EQ(TreeOf("(a) Tj"), "text(a)"); }

TEST(ElementTree, IgnoresShowsOfWhatIsNoString) { EXPECT_EQ(TreeOf("BT /a Tj 5 Tj (a) TJ [ (b) ] Tj Tj ET"), ""); }

TEST(ElementTree, SurvivesUnbalancedBrackets) {
  EXPECT_EQ(TreeOf("Q Q BT BT (a) Tj Q ET ET q q EMC (b) Tj"), "text(a) text(b)");
}

TEST(ElementTree, ReadsSeveralStreamsAsOne) {
  const PageSource source(std::vector<std::string>{"/P <</MCID 0>> BDC BT (a)", "Tj ET", "EMC"});
  EXPECT_EQ(TreeOf(source), "P#0[text(a)]");
}

TEST(ElementTree, JoinsStreamsWithWhiteSpace) { EXPECT_EQ(TreeOf(std::vector<std::string>{"BT (a) T", "j ET"}), ""); }

TEST(ElementTree, IsEmptyWithoutContents) { EXPECT_EQ(TreeOf(std::vector<std::string>{}), ""); }

TEST(ElementTree, SkipsItemsOfContentsThatAreNoStreams) {
  ContentDocument document(PageSource("(a) Tj").Page("/Other 1"));
  QPDFObjectHandle page = document.Dictionary();
  QPDFObjectHandle contents = QPDFObjectHandle::newArray();
  contents.appendItem(QPDFObjectHandle::newNull());
  contents.appendItem(QPDFObjectHandle::newInteger(3));
  contents.appendItem(page.getKey("/Contents"));
  page.replaceKey("/Contents", contents);
  EXPECT_EQ(document.Tree(), "text(a)");
}

TEST(ElementTree, IsEmptyForContentsThatAreNoStream) {
  ContentDocument document("(a) Tj");
  document.Dictionary().replaceKey("/Contents", QPDFObjectHandle::newInteger(3));
  EXPECT_EQ(document.Tree(), "");
}

TEST(ElementTree, TakesResourcesFromThePageTree) {
  ContentDocument document("/Im Do");
  QPDFObjectHandle page = document.Dictionary();
  page.getKey("/Parent").replaceKey("/Resources", page.getKey("/Resources"));
  page.removeKey("/Resources");
  EXPECT_EQ(document.Tree(), "image");
}

TEST(ElementTree, SurvivesAPageTreeThatIsARing) {
  ContentDocument document("/Im Do");
  QPDFObjectHandle page = document.Dictionary();
  page.removeKey("/Resources");
  page.getKey("/Parent").replaceKey("/Parent", page.getKey("/Parent"));
  EXPECT_EQ(document.Tree(), "xobject");
}

TEST(ElementTree, KeepsWhatIsLeftOfADamagedStream) {
  ContentDocument document("0 0 m");
  QPDF& pdf = document.Host()->Pdf();
  std::string good;
  for (int i = 0; i < 5000; ++i) good += "(" + std::to_string(i * 7919) + ") Tj\n";
  HostDocument written = HostDocument::FromBytes([&] {
    QPDFObjectHandle stream = pdf.newStream(good);
    document.Dictionary().replaceKey("/Contents", stream);
    return document.SavedBytes();
  }());
  QPDFObjectHandle stream = QPDFObjectHandle(written->Pdf().getAllPages().at(0)).getKey("/Contents");
  const auto raw = stream.getRawStreamData();
  std::string half(reinterpret_cast<const char*>(raw->getBuffer()), raw->getSize() / 2);
  half += std::string(half.size(), '\xFF');
  stream.replaceStreamData(half, stream.getDict().getKey("/Filter"), QPDFObjectHandle::newNull());
  const std::string& bytes = written->Contents().Of(0).Bytes();
  EXPECT_GT(bytes.size(), good.size() / 3);
  EXPECT_EQ(bytes.substr(0, 1000), good.substr(0, 1000));
}

TEST(ElementTree, RaisesForContentOfWhichNothingIsLeft) {
  ContentDocument document("0 0 m");
  QPDFObjectHandle stream = document.Dictionary().getKey("/Contents");
  stream.replaceStreamData("garbage", QPDFObjectHandle::newName("/FlateDecode"), QPDFObjectHandle::newNull());
  EXPECT_EQ(RaisedCode([&] { document.Root(); }), kASDamagedDocument);
  EXPECT_EQ(RaisedCode([&] { document.Host()->Contents().ContainerOf(0, 1); }), kASDamagedDocument);
}

TEST(ElementTree, RaisesForAFilterThatCannotBeUndone) {
  ContentDocument document("0 0 m");
  QPDFObjectHandle stream = document.Dictionary().getKey("/Contents");
  stream.replaceStreamData("garbage", QPDFObjectHandle::newName("/JBIG2Decode"), QPDFObjectHandle::newNull());
  EXPECT_EQ(RaisedCode([&] { document.Root(); }), kASNotSupported);
}

TEST(ElementTree, NestsNoDeeperThanWalkersCanGo) {
  std::string content;
  for (int i = 0; i < 100000; ++i) content += "/P BMC ";
  content += "(a) Tj ";
  for (int i = 0; i < 100000; ++i) content += "EMC ";
  content += "(b) Tj";
  ContentDocument document(content);
  int depth = 0;
  PDEContent list = document.Root();
  while (ReadContent().PDEObjectGetType(ReadContent().PDEContentGetElem(list, 0)) == kPDEContainer) {
    list = ReadContent().PDEContainerGetContent(ReadContent().PDEContentGetElem(list, 0));
    ++depth;
  }
  EXPECT_EQ(depth, 256);
  EXPECT_EQ(ListText(list), "text(a)");
  EXPECT_EQ(ReadContent().PDEContentGetNumElems(document.Root()), 2);
}

TEST(ElementTree, IsTheSameAtEveryAcquisition) {
  ContentDocument document("/P BMC (a) Tj EMC");
  const PDEContent root = document.Root();
  const PDEElement container = document.At({0});
  PageContent().PDPageReleasePDEContent(document.Page(), nullptr);
  PageContent().PDPageReleasePDEContent(document.Page(), nullptr);
  EXPECT_EQ(document.Root(), root);
  EXPECT_EQ(document.At({0}), container);
  EXPECT_EQ(document.ListAt({0}), document.ListAt({0}));
}

TEST(ElementTree, CountsAcquisitionsDownToZero) {
  ContentDocument document("(a) Tj");
  EXPECT_EQ(PageContent().PDPageReleasePDEContent(document.Page(), nullptr), 0);
  document.Root();
  document.Root();
  EXPECT_EQ(PageContent().PDPageReleasePDEContent(document.Page(), nullptr), 1);
  EXPECT_EQ(PageContent().PDPageReleasePDEContent(document.Page(), nullptr), 0);
  EXPECT_EQ(PageContent().PDPageReleasePDEContent(document.Page(), nullptr), 0);
  EXPECT_EQ(PageContent().PDPageReleasePDEContent(nullptr, nullptr), 0);
}

TEST(ContainerOf, FindsTheFirstInDepthFirstOrder) {
  ContentDocument document("/A BMC /B <</MCID 1>> BDC EMC EMC /C <</MCID 1>> BDC EMC /D <</MCID 0>> BDC EMC");
  EXPECT_EQ(document.Host()->Contents().ContainerOf(0, 1), document.At({0, 0}));
  EXPECT_EQ(document.Host()->Contents().ContainerOf(0, 0), document.At({2}));
  EXPECT_EQ(document.Host()->Contents().ContainerOf(0, 2), nullptr);
  EXPECT_EQ(document.Host()->Contents().ContainerOf(0, -1), nullptr);
}

TEST(ContainerOf, GoesOnToTheNextWhenOneIsRemoved) {
  ContentDocument document("/A BMC /B <</MCID 1>> BDC EMC EMC /C <</MCID 1>> BDC EMC");
  const PDEElement second = document.At({1});
  EXPECT_EQ(document.Host()->Contents().ContainerOf(0, 1), document.At({0, 0}));
  document.Remove({0});
  EXPECT_EQ(document.Host()->Contents().ContainerOf(0, 1), second);
  document.Remove({0});
  EXPECT_EQ(document.Host()->Contents().ContainerOf(0, 1), nullptr);
}

TEST(ContainerOf, FollowsEditsOfTheIdentifier) {
  ContentDocument document("/A <</MCID 1>> BDC EMC /B <</MCID 2>> BDC EMC");
  PageContents& contents = document.Host()->Contents();
  EXPECT_EQ(contents.ContainerOf(0, 1), document.At({0}));
  Cos().CosDictPutKeyString(document.Properties(document.At({0})), "MCID", document.Host().Integer(5));
  EXPECT_EQ(contents.ContainerOf(0, 1), nullptr);
  EXPECT_EQ(contents.ContainerOf(0, 5), document.At({0}));
  EXPECT_EQ(contents.McidOf(document.At({0})), 5);
  Cos().CosDictRemoveKeyString(document.Properties(document.At({1})), "MCID");
  EXPECT_EQ(contents.ContainerOf(0, 2), nullptr);
  EXPECT_EQ(contents.McidOf(document.At({1})), -1);
}

TEST(ContainerOf, FollowsEditsOfASharedDictionary) {
  ContentDocument document("/A /Pr0 BDC EMC /B /Pr0 BDC EMC");
  PageContents& contents = document.Host()->Contents();
  EXPECT_EQ(contents.ContainerOf(0, 7), document.At({0}));
  Cos().CosDictPutKeyString(document.Properties(document.At({1})), "MCID", document.Host().Integer(3));
  EXPECT_EQ(contents.ContainerOf(0, 3), document.At({0}));
  EXPECT_EQ(contents.McidOf(document.At({1})), 3);
}

TEST(ContainerOf, TakesOnlyIntegersFromZeroUp) {
  ContentDocument document(
      "/A <</MCID -1>> BDC EMC /B <</MCID 1.0>> BDC EMC /C <</MCID /x>> BDC EMC /D <</MCID 99999999999>> BDC EMC");
  for (int i = 0; i < 4; ++i) EXPECT_EQ(document.Host()->Contents().McidOf(document.At({i})), -1) << i;
}

TEST(ContainerOf, TakesTheLastOfTwoEntries) {
  ContentDocument document("/A <</MCID 1/MCID 2/L<</MCID 3>>>> BDC EMC");
  EXPECT_EQ(document.Host()->Contents().McidOf(document.At({0})), 2);
}

TEST(ContainerOf, StaysFastWhenContainersGoOneByOne) {
  std::string content;
  for (int i = 0; i < 50000; ++i) content += "/P <</MCID 1>> BDC EMC\n";
  ContentDocument document(content);
  int found = 0;
  while (document.Host()->Contents().ContainerOf(0, 1) != nullptr) {
    document.Remove({0});
    ++found;
  }
  EXPECT_EQ(found, 50000);
}

TEST(McidOf, RaisesForWhatIsNoContainer) {
  ContentDocument document("(a) Tj");
  PageContents& contents = document.Host()->Contents();
  EXPECT_EQ(RaisedCode([&] { contents.McidOf(document.At({0})); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { contents.McidOf(nullptr); }), kASBadParameter);
}

TEST(DropUnchanged, ForgetsPagesThatNobodyEdited) {
  ContentDocument document("(a) Tj");
  document.Root();
  document.Host()->Contents().DropUnchanged();
  EXPECT_EQ(document.Host()->Contents().Find(0), nullptr);
  EXPECT_EQ(document.Tree(), "text(a)");
}

TEST(DropUnchanged, KeepsEditedPages) {
  ContentDocument document("(a) Tj /Im Do");
  document.Remove({0});
  document.Host()->Contents().DropUnchanged();
  EXPECT_EQ(document.Tree(), "image");
}

}  // namespace
}  // namespace tgx::host
