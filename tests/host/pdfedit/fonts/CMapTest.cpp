#include "host/pdfedit/fonts/CMap.h"

#include <gtest/gtest.h>

#include <qpdf/QPDF.hh>

#include "host/pdfedit/fonts/FontParts.h"

namespace tgx::host {
namespace {

using namespace std::string_view_literals;

std::vector<int> Lengths(const CMap& cmap, std::string_view bytes) {
  std::vector<int> lengths;
  while (!bytes.empty()) {
    lengths.push_back(cmap.Next(bytes).length);
    bytes.remove_prefix(static_cast<std::size_t>(lengths.back()));
  }
  return lengths;
}

std::uint32_t CidOf(const CMap& cmap, std::string_view bytes) { return cmap.CidOf(cmap.Next(bytes)); }

TEST(CMap, IdentityHasCodesOfTwoBytes) {
  const auto cmap = CMap::Predefined("Identity-H");
  EXPECT_EQ(Lengths(*cmap, "abc"), (std::vector{2, 1}));
  EXPECT_EQ(CidOf(*cmap, "\x12\x34"), 0x1234u);
  EXPECT_FALSE(cmap->IsVertical());
  EXPECT_TRUE(CMap::Predefined("Identity-V")->IsVertical());
}

TEST(CMap, EmbeddedMapsGiveCids) {
  const auto cmap = CMap::Parse(R"(1 begincodespacerange <0000> <FFFF> endcodespacerange
    1 begincidchar <0041> 7 endcidchar
    2 begincidrange <0100> <01FF> 1000 <3000> <3000> 5 endcidrange
    1 beginnotdefrange <0000> <001F> 3 endnotdefrange)",
                                nullptr);
  EXPECT_EQ(CidOf(*cmap, "\0A"sv), 7u);
  EXPECT_EQ(CidOf(*cmap, "\1\x10"), 1016u);
  EXPECT_EQ(CidOf(*cmap, "0\0"sv), 5u);
  EXPECT_EQ(CidOf(*cmap, "\0\x05"sv), 3u);
  EXPECT_EQ(CidOf(*cmap, "\0\x30"sv), 0u);
}

TEST(CMap, CodeSpacesMixLengths) {
  const auto cmap =
      CMap::Parse("4 begincodespacerange <00> <80> <8140> <9FFC> <A0> <DF> <E040> <FCFC> endcodespacerange", nullptr);
  EXPECT_EQ(Lengths(*cmap, "a\x81\x40\xA1z\xE0\x80"), (std::vector{1, 2, 1, 1, 2}));
}

TEST(CMap, SecondByteOutsideItsRangeBelongsToTheCode) {
  const auto cmap = CMap::Parse("2 begincodespacerange <00> <80> <8140> <9FFC> endcodespacerange", nullptr);
  EXPECT_EQ(Lengths(*cmap, "\x81 a"), (std::vector{2, 1}));
}

TEST(CMap, ByteThatBeginsNoCodeStandsAlone) {
  const auto cmap = CMap::Parse("1 begincodespacerange <8140> <9FFC> endcodespacerange", nullptr);
  EXPECT_EQ(Lengths(*cmap, "a\x81\x40"), (std::vector{1, 2}));
}

TEST(CMap, LongCodesNeedEachOfTheirBytes) {
  const auto cmap = CMap::Parse(
      "4 begincodespacerange <00> <7F> <81308130> <FE39FE39> <8140> <FEFE> <C08080> <DFBFBF> endcodespacerange", nullptr);
  EXPECT_EQ(Lengths(*cmap, "a\x81\x30\x81\x30z"), (std::vector{1, 4, 1}));
  EXPECT_EQ(Lengths(*cmap, "\x81\x40z"), (std::vector{2, 1}));
  EXPECT_EQ(Lengths(*cmap, "\xC0\x80\x80z"), (std::vector{3, 1}));
  EXPECT_EQ(Lengths(*cmap, "\x81\x30"), (std::vector{2}));
}

TEST(CMap, WithoutCodeSpacesTheMappedCodesTellTheLength) {
  const auto cmap = CMap::Parse("1 begincidrange <0000> <00FF> 10 endcidrange", nullptr);
  EXPECT_EQ(Lengths(*cmap, "abc"), (std::vector{2, 1}));
  EXPECT_EQ(CidOf(*cmap, "\0\1"sv), 11u);
}

TEST(CMap, NonsenseIsIdentity) {
  const auto cmap = CMap::Parse("not a CMap", nullptr);
  EXPECT_EQ(CidOf(*cmap, "\x12\x34"), 0x1234u);
  EXPECT_EQ(CidOf(*FontParts().CMapOf(QPDFObjectHandle::newNull()), "\x12\x34"), 0x1234u);
  EXPECT_EQ(CidOf(*FontParts().CMapOf(QPDFObjectHandle::newName("/NoSuchMap")), "\x12\x34"), 0x1234u);
  EXPECT_TRUE(FontParts().CMapOf(QPDFObjectHandle::newName("/NoSuchMap-V"))->IsVertical());
}

TEST(CMap, RestsOnAnother) {
  const auto cmap = CMap::Parse("/GBK-EUC-H usecmap 1 begincidchar <40> 9999 endcidchar /WMode 1 def", nullptr);
  EXPECT_EQ(Lengths(*cmap, "a\xB0\xA1"), (std::vector{1, 2}));
  EXPECT_EQ(CidOf(*cmap, "@"), 9999u);
  EXPECT_TRUE(cmap->IsVertical());
}

TEST(CMap, StreamsNameTheirBaseAndWritingMode) {
  QPDF file;
  file.emptyPDF();
  QPDFObjectHandle base =
      file.newStream("1 begincodespacerange <00> <FF> endcodespacerange 1 begincidrange <00> <FF> 100 endcidrange");
  QPDFObjectHandle stream = file.newStream("1 begincidchar <41> 7 endcidchar");
  stream.getDict().replaceKey("/UseCMap", base);
  stream.getDict().replaceKey("/WMode", QPDFObjectHandle::newInteger(1));
  const auto cmap = FontParts().CMapOf(stream);
  EXPECT_EQ(CidOf(*cmap, "A"), 7u);
  EXPECT_EQ(CidOf(*cmap, "B"), 166u);
  EXPECT_TRUE(cmap->IsVertical());
}

TEST(CMap, StreamThatRestsOnItselfEnds) {
  QPDF file;
  file.emptyPDF();
  QPDFObjectHandle stream = file.newStream("1 begincodespacerange <00> <FF> endcodespacerange");
  stream.getDict().replaceKey("/UseCMap", stream);
  EXPECT_EQ(Lengths(*FontParts().CMapOf(stream), "ab"), (std::vector{1, 1}));
}

TEST(CMap, PredefinedMapsHaveTheirCodeLengths) {
  EXPECT_EQ(Lengths(*CMap::Predefined("GBK-EUC-H"), "a\xB0\xA1z"), (std::vector{1, 2, 1}));
  EXPECT_EQ(Lengths(*CMap::Predefined("90ms-RKSJ-H"), "a\x82\xA0\xB1"), (std::vector{1, 2, 1}));
  EXPECT_EQ(Lengths(*CMap::Predefined("UniJIS-UTF16-H"), "\x30\x42\xD8\x3D\xDE\x00"sv), (std::vector{2, 4}));
  EXPECT_EQ(Lengths(*CMap::Predefined("UniGB-UCS2-V"), "\x4E\x00"sv), (std::vector{2}));
  EXPECT_EQ(Lengths(*CMap::Predefined("UniKS-UTF8-H"), "a\xEA\xB0\x80\xF0\x9F\x98\x80"), (std::vector{1, 3, 4}));
  EXPECT_EQ(Lengths(*CMap::Predefined("GBK2K-H"), "a\x81\x30\x81\x30\xB0\xA1"), (std::vector{1, 4, 2}));
  EXPECT_EQ(Lengths(*CMap::Predefined("ETen-B5-H"), "a\xA4\x40"), (std::vector{1, 2}));
  EXPECT_EQ(Lengths(*CMap::Predefined("KSCms-UHC-H"), "a\x81\x41"), (std::vector{1, 2}));
  EXPECT_EQ(Lengths(*CMap::Predefined("EUC-H"), "a\x8E\xB1\xA4\xA2"), (std::vector{1, 2, 2}));
  EXPECT_EQ(Lengths(*CMap::Predefined("CNS-EUC-H"), "a\x8E\xA2\xA1\xA1\xA4\xA2"), (std::vector{1, 4, 2}));
}

TEST(CMap, PredefinedMapsKnowTheirWritingModeAndCollection) {
  EXPECT_FALSE(CMap::Predefined("90ms-RKSJ-H")->IsVertical());
  EXPECT_TRUE(CMap::Predefined("90ms-RKSJ-V")->IsVertical());
  EXPECT_TRUE(CMap::Predefined("V")->IsVertical());
  EXPECT_EQ(CMap::Predefined("90ms-RKSJ-V")->Collection(), "Adobe-Japan1");
  EXPECT_EQ(CMap::Predefined("NoSuchMap"), nullptr);
}

TEST(CMap, PredefinedMapsTakeCidsFromTheSystem) {
  EXPECT_EQ(CidOf(*CMap::Predefined("90ms-RKSJ-H"), "A"), 264u);
  EXPECT_EQ(CidOf(*CMap::Predefined("90ms-RKSJ-H"), "\x82\xA0"), 843u);
  EXPECT_EQ(CidOf(*CMap::Predefined("90ms-RKSJ-V"), "\x82\xA0"), 843u);
  EXPECT_EQ(CidOf(*CMap::Predefined("90ms-RKSJ-V"), "\x81\x41"), 7887u);
  EXPECT_EQ(CidOf(*CMap::Predefined("UniJIS-UTF16-H"), "\x30\x42"), 843u);
}

TEST(CMap, MapsInUseAreShared) {
  const auto cmap = CMap::Predefined("GBK-EUC-H");
  EXPECT_EQ(cmap, CMap::Predefined("GBK-EUC-H"));
}

TEST(CMap, UnicodeMapsKnowTheirCharacters) {
  auto character = [](const char* name, std::string_view bytes) {
    const auto cmap = CMap::Predefined(name);
    return cmap->CharacterOf(cmap->Next(bytes));
  };
  EXPECT_EQ(character("UniJIS-UTF16-H", "\x30\x42"), U'\u3042');
  EXPECT_EQ(character("UniJIS-UTF16-H", "\xD8\x3D\xDE\x00"sv), U'\U0001F600');
  EXPECT_EQ(character("UniGB-UCS2-H", "\x4E\x00"sv), U'\u4E00');
  EXPECT_EQ(character("UniKS-UTF8-H", "\xEA\xB0\x80"), U'\uAC00');
  EXPECT_EQ(character("UniKS-UTF8-H", "\xC3\xA4"), U'\u00E4');
  EXPECT_EQ(character("UniCNS-UTF32-H", "\x00\x01\xF6\x00"sv), U'\U0001F600');
  EXPECT_EQ(character("UniJIS-UTF16-H", "\x30"), U'\uFFFD');
  EXPECT_FALSE(CMap::Predefined("90ms-RKSJ-H")->HasUnicodeCodes());
}

}  // namespace
}  // namespace tgx::host
