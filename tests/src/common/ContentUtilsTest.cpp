#include "src/common/ContentUtils.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"

namespace tgx {
namespace {

using test::Marked;
using test::MarkedByResource;
using test::Page;
using testing::IsEmpty;

ByteVector Bytes(std::string_view text) { return {text.begin(), text.end()}; }

std::string ToUtf8(const ByteVector& utf16) {
  ByteVector utf8 = {'?'};
  Utf16ToUtf8(utf16, utf8);
  return {utf8.begin(), utf8.end()};
}

class ContentUtilsTest : public test::StructureTest {
 protected:
  PDEElement FirstElement(const test::Content& piece) {
    doc.AddPage().Add(piece);
    return ElementOf(0);
  }
  PDEElement ElementOf(ASInt32 index) {
    page = PDDocAcquirePage(Open(), 0);
    return PDEContentGetElem(PDPageAcquirePDEContent(page, nullptr), index);
  }

  PDPage page = nullptr;
  ByteVector single;
  std::vector<std::uint16_t> utf16;
  std::vector<std::uint32_t> utf32;
};

TEST_F(ContentUtilsTest, ReadsTheMcidOfAContainer) {
  EXPECT_EQ(GetContainerMCID(FirstElement(Marked("P", "<</MCID 7>>", {}))), 7);
}

TEST_F(ContentUtilsTest, ReadsTheMcidFromResources) {
  EXPECT_EQ(GetContainerMCID(FirstElement(MarkedByResource("P", "<</MCID 7>>", {}))), 7);
}

TEST_F(ContentUtilsTest, HasNoMcidWithoutAnInteger) {
  Page& onPage = doc.AddPage();
  for (const char* properties : {"", "<</Lang(de)>>", "<</MCID 7.5>>", "<</MCID/Seven>>"}) {
    onPage.Add(Marked("P", properties, {}));
  }
  const PDEContent content = PDPageAcquirePDEContent(PDDocAcquirePage(Open(), 0), nullptr);
  ASSERT_EQ(PDEContentGetNumElems(content), 4);
  for (ASInt32 index = 0; index < 4; ++index) EXPECT_EQ(GetContainerMCID(PDEContentGetElem(content, index)), -1) << index;
}

TEST_F(ContentUtilsTest, ReadsTheLanguageOfAContainer) {
  test::CountingHost host;
  const PDEElement container = FirstElement(Marked("P", "<</Lang(de\\000AT)>>", {}));
  const test::HostSession session(host.Tables());
  ByteVector lang = {'x'};
  GetContainerLang(container, lang);
  EXPECT_EQ(lang, Bytes(std::string_view("de\0AT", 5)));
  EXPECT_THAT(host.Uneven(), IsEmpty());
}

TEST_F(ContentUtilsTest, GivesNoLanguageThatIsNoString) {
  ByteVector lang = {'x'};
  GetContainerLang(FirstElement(Marked("P", "<</Lang/de>>", {})), lang);
  EXPECT_THAT(lang, IsEmpty());
}

TEST_F(ContentUtilsTest, NamesTheKindOfANullElement) {
  PDEElement element = nullptr;
  EXPECT_EQ(GetElementKind(&element), 35);
  element = FirstElement(test::Image(2, 2));
  EXPECT_EQ(GetElementKind(&element), kPDEImage);
}

TEST_F(ContentUtilsTest, AcquiresThePageOfADictionary) {
  doc.AddPage();
  doc.AddPage();
  const PDDoc document = Open();
  const PDPage second = PDDocAcquirePage(document, 1);
  EXPECT_EQ(AcquirePageOfCosPage(PDPageGetCosObj(second)), second);
  EXPECT_EQ(AcquirePageOfCosPage(CosNewNull()), nullptr);
}

TEST_F(ContentUtilsTest, ReadsCharacterCodes) {
  GetRawText(FirstElement(test::Text("ab")), single);
  EXPECT_EQ(single, Bytes("ab"));
}

TEST_F(ContentUtilsTest, ReadsNoCodesOfANullText) {
  single = {'x'};
  GetRawText(nullptr, single);
  EXPECT_THAT(single, IsEmpty());
}

TEST_F(ContentUtilsTest, GivesNothingOfOneByteCodesWithoutToUnicodeTable) {
  GetUnicodeText(FirstElement(test::Text("ab")), single, utf16, utf32);
  EXPECT_THAT(single, IsEmpty());
}

TEST_F(ContentUtilsTest, GivesNothingWithoutAFont) {
  doc.AddPage().Add(test::Ops("BT (ab) Tj ET"));
  utf16 = {1};
  GetUnicodeText(ElementOf(0), single, utf16, utf32);
  EXPECT_THAT(single, IsEmpty());
  EXPECT_THAT(utf16, IsEmpty());
}

TEST_F(ContentUtilsTest, MakesAContainerAnArtifact) {
  const PDEContainer container = FirstElement(Marked("P", "<</MCID 7/Lang(de)>>", {test::Text("a")}));
  MarkAsArtifact(&container);
  EXPECT_STREQ(ASAtomGetString(PDEContainerGetMCTag(container)), "Artifact");
  EXPECT_EQ(GetContainerMCID(container), -1);
  ByteVector lang;
  GetContainerLang(container, lang);
  EXPECT_EQ(lang, Bytes("de"));
}

TEST_F(ContentUtilsTest, MakesAContainerWithoutPropertiesAnArtifact) {
  const PDEContainer container = FirstElement(Marked("P", "", {test::Text("a")}));
  MarkAsArtifact(&container);
  EXPECT_STREQ(ASAtomGetString(PDEContainerGetMCTag(container)), "Artifact");
}

TEST_F(ContentUtilsTest, ConvertsUtf16ToUtf8) {
  EXPECT_EQ(ToUtf8({0x00, 0x41, 0x00, 0xE4}), "A\u00E4");
  EXPECT_EQ(ToUtf8({0xD8, 0x3D, 0xDE, 0x00}), "\U0001F600");
}

TEST_F(ContentUtilsTest, EndsUtf8AtTheFirstZeroUnit) { EXPECT_EQ(ToUtf8({0x00, 0x41, 0x00, 0x00, 0x00, 0x42}), "A"); }

TEST_F(ContentUtilsTest, KeepsTheMarkAsACharacter) { EXPECT_EQ(ToUtf8({0xFE, 0xFF, 0x00, 0x41}), "\uFEFFA"); }

TEST_F(ContentUtilsTest, ConvertsNothingOfAnOddNumberOfBytes) {
  EXPECT_EQ(ToUtf8({}), "");
  EXPECT_EQ(ToUtf8({0x00, 0x41, 0x00}), "");
  EXPECT_EQ(Utf16ToAsText({}), nullptr);
  EXPECT_EQ(Utf16ToAsText({0x00}), nullptr);
}

TEST_F(ContentUtilsTest, GivesBackWhatTheHostLentForAConversion) {
  test::CountingHost host;
  const test::HostSession session(host.Tables());
  EXPECT_EQ(ToUtf8({0x00, 0x41}), "A");
  EXPECT_THAT(host.Uneven(), IsEmpty());
}

TEST_F(ContentUtilsTest, DropsTwoBytesInFrontWhateverTheyAre) {
  ByteVector utf8;
  Utf16BomToUtf8({0xFE, 0xFF, 0x00, 0x41}, utf8);
  EXPECT_EQ(utf8, Bytes("A"));
  Utf16BomToUtf8({0x00, 0x41, 0x00, 0x42}, utf8);
  EXPECT_EQ(utf8, Bytes("B"));
  Utf16BomToUtf8({0xFE, 0xFF, 0x00}, utf8);
  EXPECT_THAT(utf8, IsEmpty());
}

TEST_F(ContentUtilsTest, ThrowsForATextThatIsNothingButItsMark) {
  ByteVector utf8;
  EXPECT_THROW(Utf16BomToUtf8({0xFE, 0xFF}, utf8), std::runtime_error);
}

}  // namespace
}  // namespace tgx
