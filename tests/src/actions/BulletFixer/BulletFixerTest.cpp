#include "src/actions/BulletFixer/BulletFixer.h"

#include <gmock/gmock.h>

#include <cstring>
#include <string>
#include <vector>

#include "src/wrappers/PDE_Element.h"
#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"
#include "tests/support/Rendering.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::HostSession;
using test::Image;
using test::kSuccess;
using test::Marked;
using test::Operation;
using test::Ops;
using test::ReadBack;
using test::TestDocument;
using test::Text;
using testing::HasSubstr;
using testing::Not;

constexpr int kCutText = 3;

std::string Codes(PDEText text) {
  std::string codes;
  const ASInt32 count = PDETextGetNumChars(text);
  for (ASInt32 index = 0; index < count; ++index) {
    std::string code(static_cast<std::size_t>(PDETextGetNumBytes(text, kPDETextChar, index)), '\0');
    PDETextGetText(text, kPDETextChar, index, reinterpret_cast<ASUns8*>(code.data()));
    codes += code;
  }
  return codes;
}

/// A list as text: 'abc' for a text, [ ] around what a container holds, the number of the kind for anything else.
std::string Outline(PDEContent content) {
  std::string outline;
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 index = 0; index < count; ++index) {
    const PDEElement element = PDEContentGetElem(content, index);
    const ASInt32 kind = PDEObjectGetType(element);
    if (index > 0) outline += ' ';
    if (kind == kPDEText) {
      outline += "'" + Codes(element) + "'";
    } else if (kind == kPDEContainer) {
      outline += "[" + Outline(PDEContainerGetContent(element)) + "]";
    } else {
      outline += std::to_string(kind);
    }
  }
  return outline;
}

class BulletFixerTest : public test::StructureTest {
 protected:
  std::string Cut() {
    Open();
    EXPECT_EQ(Opened().Action(kCutText), kSuccess);
    std::string saved = Opened().Save();
    test::ExpectSound(saved);
    return saved;
  }
  /// What stands on the page afterwards, as the host has it.
  std::string OutlineAfter(int page = 1) {
    Cut();
    return Outline(PDPageAcquirePDEContent(PDDocAcquirePage(Opened().Handle(), page - 1), test::kTestExtension));
  }
};

TEST_F(BulletFixerTest, EmptiesAnElementOfOneCharacter) {
  doc.AddPage().Add(Text("a"));
  EXPECT_EQ(OutlineAfter(), "''");
}

TEST_F(BulletFixerTest, LeavesAnElementWithoutCharactersAlone) {
  doc.AddPage().Add(Text(""));
  EXPECT_EQ(OutlineAfter(), "''");
}

TEST_F(BulletFixerTest, CutsAnElementOfThreeCharactersToANewOneBehindTheLast) {
  doc.AddPage().Add(Text("abc")).Add(Image(2, 2));
  EXPECT_EQ(OutlineAfter(), "'' 3 'a'");
}

TEST_F(BulletFixerTest, TakesTheFirstCharacterOfAllRuns) {
  doc.AddPage().Add(Ops("BT /F1 12 Tf 72 700 Td [() (ab) -200 (cd)] TJ ET"));
  EXPECT_EQ(OutlineAfter(), "'' 'a'");
}

TEST_F(BulletFixerTest, DoesNotCutWhatItHasAdded) {
  doc.AddPage().Add(Text("abc")).Add(Text("def"));
  EXPECT_EQ(OutlineAfter(), "'' '' 'a' 'd'");
}

TEST_F(BulletFixerTest, AddsToTheListOfTheContainerThatHoldsTheText) {
  doc.AddPage().Add(Marked("P", "", {Marked("Span", "", {Text("abc")}), Image(2, 2)})).Add(Image(2, 2));
  EXPECT_EQ(OutlineAfter(), "[['' 'a'] 3] 3");
}

TEST_F(BulletFixerTest, AddsTextBehindAContainerToThatContainer) {
  doc.AddPage().Add(Marked("P", "", {Text("abc")})).Add(Text("def")).Add(Image(2, 2));
  EXPECT_EQ(OutlineAfter(), "['' 'a' 'd'] '' 3");
}

TEST_F(BulletFixerTest, AddsToTheRightListAgainInTheNextContainer) {
  doc.AddPage().Add(Marked("P", "", {Text("ab")})).Add(Text("cd")).Add(Marked("P", "", {Text("ef")}));
  EXPECT_EQ(OutlineAfter(), "['' 'a' 'c'] '' ['' 'e']");
}

TEST_F(BulletFixerTest, StartsEachPageWithItsOwnList) {
  doc.AddPage().Add(Marked("P", "", {Text("ab")}));
  doc.AddPage().Add(Text("cd"));
  EXPECT_EQ(OutlineAfter(1), "['' 'a']");
  EXPECT_EQ(OutlineAfter(2), "'' 'c'");
}

TEST_F(BulletFixerTest, LeavesAPageWithoutTextByteForByte) {
  doc.AddPage().Add(Image(2, 2)).Add(Ops("1 0 0 rg 10 10 20 20 re f"));
  const std::string before = ReadBack(doc.Write()).Content(1);
  EXPECT_EQ(ReadBack(Cut()).Content(1), before);
}

TEST_F(BulletFixerTest, PaintsTheNewElementBlackWhateverTheOldColour) {
  doc.AddPage().Add(Ops("1 0 0 rg BT /F1 200 Tf 72 300 Td (MM) Tj ET"));
  TestDocument black;
  black.AddPage().Add(Ops("BT /F1 200 Tf 72 300 Td (M) Tj ET"));
  const auto painted = test::RenderPages(Cut());
  const auto expected = test::RenderPages(black.Write());
  EXPECT_TRUE(test::Compare(painted.at(0), expected.at(0)).IsEmpty());
}

TEST_F(BulletFixerTest, PutsTheCharacterWhereItStood) {
  constexpr char kBefore[] = "q 1.5 0 0 1.2 30 40 cm BT /F1 30 Tf 80 Tz 5 Ts 2 0 0 1 50 300 Tm ";
  doc.AddPage().Add(Ops(kBefore + std::string("(QXY) Tj ET Q")));
  TestDocument first;
  first.AddPage().Add(Ops(kBefore + std::string("(Q) Tj ET Q")));
  const auto painted = test::RenderPages(Cut());
  const auto expected = test::RenderPages(first.Write());
  EXPECT_TRUE(test::Compare(painted.at(0), expected.at(0)).IsEmpty());
}

TEST_F(BulletFixerTest, GivesTheNewElementAPlainState) {
  doc.AddPage().Add(Ops("BT /F1 12 Tf 72 700 Td (ab) Tj ET"));
  Open();
  PDEGraphicState state = {};
  ASInt32 size = 0;
  std::uint64_t textState = 1;
  std::uint64_t strokeMatrix = 1;
  test::HookedHost host(test::EmbeddedTables(), [&](const test::HostCall& call) {
    if (!call.Is(Operation::PDETextAdd)) return;
    state = *reinterpret_cast<const PDEGraphicState*>(call.values[6]);
    size = static_cast<ASInt32>(call.values[7]);
    textState = call.values[8];
    strokeMatrix = call.values[11];
  });
  {
    const HostSession session(host.Tables());
    EXPECT_EQ(Opened().Action(kCutText), kSuccess);
  }
  PDEGraphicState expected = {};
  expected.fillColorSpec.space = PDEColorSpaceCreateFromName(ASAtomFromString("DeviceGray"));
  expected.strokeColorSpec.space = expected.fillColorSpec.space;
  expected.lineWidth = 0x10000;
  expected.miterLimit = 0xA0000;
  expected.flatness = 0x10000;
  EXPECT_EQ(std::memcmp(&state, &expected, sizeof(state)), 0);
  EXPECT_EQ(size, 232);
  EXPECT_EQ(textState, 0U);
  EXPECT_EQ(strokeMatrix, 0U);
}

TEST_F(BulletFixerTest, FailsWithoutATextForNoDocument) {
  EXPECT_FALSE(BulletFixer().Run(nullptr));
  const TGXActionParams params = {0, kCutText, {}};
  EXPECT_EQ(TGX_Action(nullptr, &params), TGX_FAILED);
  EXPECT_STREQ(TGX_GetLastError(), "");
}

TEST_F(BulletFixerTest, WritesBackWhatWasDoneWhenTheHostFails) {
  doc.AddPage().Add(Text("ab")).Add(Text("cd"));
  Open();
  int cuts = 0;
  test::HookedHost host(test::EmbeddedTables(), [&](const test::HostCall& call) {
    if (call.Is(Operation::PDETextRemove) && ++cuts == 2) test::RaiseAsHost(kASInternalError, "no more");
  });
  {
    const HostSession session(host.Tables());
    EXPECT_EQ(Opened().Action(kCutText), test::HardFailure("no more"));
  }
  const std::string content = ReadBack(Opened().Save()).Content(1);
  EXPECT_THAT(content, Not(HasSubstr("(ab)")));
  EXPECT_THAT(content, HasSubstr("(cd)"));
}

TEST_F(BulletFixerTest, EndsWithTheHostsRaiseForTextWithoutAFont) {
  doc.AddPage().Add(Ops("BT 72 700 Td (ab) Tj ET"));
  Open();
  const test::Outcome outcome = Opened().Action(kCutText);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
}

TEST_F(BulletFixerTest, ReleasesWhatItAcquires) {
  doc.AddPage().Add(Text("ab")).Add(Marked("P", "", {Text("cd")}));
  Open();
  const test::CountingHost host;
  const HostSession session(host.Tables());
  EXPECT_EQ(Opened().Action(kCutText), kSuccess);
  EXPECT_THAT(host.Uneven(), testing::IsEmpty());
}

/// Says which handler an element comes to.
class RecordingFixer : public BulletFixer {
 public:
  std::string HandlerOf(PDEElement element) {
    called_ = "none";
    HandleElement(element);
    return called_;
  }

 protected:
  void HandleContent(PDEContent) override { called_ = "Content"; }
  void HandleText(PDEText) override { called_ = "Text"; }
  void HandlePath(PDEElement) override { called_ = "Path"; }
  void HandleImage(PDEElement) override { called_ = "Image"; }
  void HandleForm(PDEElement) override { called_ = "Form"; }
  void HandlePS(PDEElement) override { called_ = "PS"; }
  void HandleXObject(PDEElement) override { called_ = "XObject"; }
  void HandleClip(PDEElement) override { called_ = "Clip"; }
  void HandleFont(PDEElement) override { called_ = "Font"; }
  void HandleColorSpace(PDEElement) override { called_ = "ColorSpace"; }
  void HandleExtGState(PDEElement) override { called_ = "ExtGState"; }
  void HandlePlace(PDEElement) override { called_ = "Place"; }
  void HandleContainer(PDEContainer) override { called_ = "Container"; }
  void HandlePattern(PDEElement) override { called_ = "Pattern"; }
  void HandleDeviceNColors(PDEElement) override { called_ = "DeviceNColors"; }
  void HandleShading(PDEElement) override { called_ = "Shading"; }
  void HandleGroup(PDEElement) override { called_ = "Group"; }
  void HandleUnknown(PDEElement) override { called_ = "Unknown"; }
  void HandleBeginContainer(PDEElement) override { called_ = "BeginContainer"; }
  void HandleEndContainer(PDEElement) override { called_ = "EndContainer"; }
  void HandleBeginGroup(PDEElement) override { called_ = "BeginGroup"; }
  void HandleEndGroup(PDEElement) override { called_ = "EndGroup"; }
  void HandleXGroup(PDEElement) override { called_ = "XGroup"; }
  void HandleSoftMask(PDEElement) override { called_ = "SoftMask"; }
  void HandleDoc(PDEElement) override { called_ = "Doc"; }
  void HandlePage(PDEElement) override { called_ = "Page"; }
  void HandleReader(PDEElement) override { called_ = "Reader"; }
  void HandleWriter(PDEElement) override { called_ = "Writer"; }
  void HandleTextItem(PDEElement) override { called_ = "TextItem"; }
  void HandleImageFlate(PDEElement) override { called_ = "ImageFlate"; }
  void HandleImageJPX(PDEElement) override { called_ = "ImageJPX"; }

 private:
  std::string called_;
};

ASInt32 pretendedKind = 0;

/// Tables of a host to which every element is of the pretended kind.
const HostTables* TablesOfOneKind() {
  static PDFEditReadTable read = *test::EmbeddedTables()->pdfEditRead;
  static HostTables tables = *test::EmbeddedTables();
  read.PDEObjectGetType = [](PDEObject) { return pretendedKind; };
  tables.pdfEditRead = &read;
  return &tables;
}

TEST(BulletFixerHandlers, StandForTheKindsOfElements) {
  const HostSession session(TablesOfOneKind());
  // By kind.
  const std::vector<std::string> expected = {
      "Content",  "Text",       "Path",      "Image",          "Form",         "PS",         "XObject",  "Clip",
      "Font",     "ColorSpace", "ExtGState", "Place",          "Container",    "Unknown",    "Pattern",  "DeviceNColors",
      "Shading",  "Group",      "Unknown",   "BeginContainer", "EndContainer", "BeginGroup", "EndGroup", "XGroup",
      "SoftMask", "Unknown",    "Doc",       "Page",           "Reader",       "Writer",     "TextItem", "ImageFlate",
      "ImageJPX", "Unknown",    "Unknown",   "Unknown"};
  RecordingFixer fixer;
  for (std::size_t kind = 0; kind < expected.size(); ++kind) {
    pretendedKind = static_cast<ASInt32>(kind);
    EXPECT_EQ(fixer.HandlerOf(nullptr), expected[kind]) << "kind " << kind;
    const bool isSpeltOtherwise = expected[kind] == "DeviceNColors";
    if (expected[kind] == "Unknown" || isSpeltOtherwise) continue;
    EXPECT_EQ("PDE" + expected[kind] + " object", GetKindName(pretendedKind)) << "kind " << kind;
  }
  pretendedKind = -1;
  EXPECT_EQ(fixer.HandlerOf(nullptr), "Unknown");
}

}  // namespace
}  // namespace tgx
