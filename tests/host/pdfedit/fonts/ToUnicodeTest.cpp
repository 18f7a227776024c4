#include "host/pdfedit/fonts/ToUnicode.h"

#include <gtest/gtest.h>

namespace tgx::host {
namespace {

std::u16string TextAt(const ToUnicode& map, std::uint32_t code) {
  std::u16string text;
  map.Append(code, text);
  return text;
}

/// What `code` stands for in a map with these sections.
std::u16string Lookup(std::string_view sections, std::uint32_t code) { return TextAt(ToUnicode::Parse(sections), code); }

TEST(ToUnicode, ReadsAWholeMap) {
  const ToUnicode map = ToUnicode::Parse(R"(/CIDInit /ProcSet findresource begin
12 dict begin begincmap /CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def
/CMapName /Adobe-Identity-UCS def /CMapType 2 def
1 begincodespacerange <0000> <FFFF> endcodespacerange
2 beginbfchar <0003> <0020> <0005> <00660069> endbfchar
2 beginbfrange <0010> <0012> <0041> <0020> <0021> [<0061> <00620063>] endbfrange
endcmap CMapName currentdict /CMap defineresource pop end end)");
  EXPECT_EQ(TextAt(map, 3), u" ");
  EXPECT_EQ(TextAt(map, 5), u"fi");
  EXPECT_EQ(TextAt(map, 0x10), u"A");
  EXPECT_EQ(TextAt(map, 0x12), u"C");
  EXPECT_EQ(TextAt(map, 0x13), u"");
  EXPECT_EQ(TextAt(map, 0x20), u"a");
  EXPECT_EQ(TextAt(map, 0x21), u"bc");
}

TEST(ToUnicode, SurrogatePairsAreOneCharacter) {
  EXPECT_EQ(Lookup("1 beginbfchar <01> <D83DDE00> endbfchar", 1), u"\U0001F600");
  EXPECT_EQ(Lookup("1 beginbfrange <01> <03> <D83DDE00> endbfrange", 3), u"\U0001F602");
}

TEST(ToUnicode, RangesCarryPastTheLowByte) {
  EXPECT_EQ(Lookup("1 beginbfrange <0000> <FFFF> <0000> endbfrange", 0x1234), u"\u1234");
  EXPECT_EQ(Lookup("1 beginbfrange <10> <20> <00FE> endbfrange", 0x12), u"\u0100");
}

TEST(ToUnicode, OnlyTheLastCharacterOfALongTargetGoesUp) {
  EXPECT_EQ(Lookup("1 beginbfrange <10> <12> <00660069> endbfrange", 0x12), u"fk");
  EXPECT_EQ(Lookup("1 beginbfrange <10> <12> <0061D83DDE00> endbfrange", 0x11), u"a\U0001F601");
}

TEST(ToUnicode, LongTargetsKeepTheirCountWhenAnotherEntryCutsTheRange) {
  const ToUnicode map =
      ToUnicode::Parse("1 beginbfrange <10> <20> <00660069> endbfrange 1 beginbfchar <12> <0058> endbfchar");
  EXPECT_EQ(TextAt(map, 0x11), u"fj");
  EXPECT_EQ(TextAt(map, 0x12), u"X");
  EXPECT_EQ(TextAt(map, 0x13), u"fl");
}

TEST(ToUnicode, LengthOfCodesDoesNotCount) {
  EXPECT_EQ(Lookup("1 beginbfchar <0041> <0042> endbfchar", 0x41), u"B");
  EXPECT_EQ(Lookup("1 beginbfchar <00000041> <0042> endbfchar", 0x41), u"B");
  EXPECT_EQ(Lookup("1 begincodespacerange <00> <7F> endcodespacerange 1 beginbfchar <8041> <0042> endbfchar", 0x8041), u"B");
}

TEST(ToUnicode, LastOfSeveralEntriesHolds) {
  EXPECT_EQ(Lookup("2 beginbfchar <01> <0041> <01> <0042> endbfchar", 1), u"B");
  EXPECT_EQ(Lookup("2 beginbfchar <01> <00410042> <01> <0042> endbfchar", 1), u"B");
  EXPECT_EQ(Lookup("1 beginbfchar <01> <0041> endbfchar 1 beginbfrange <00> <05> <0061> endbfrange", 1), u"b");
}

TEST(ToUnicode, ZeroMeansNothing) { EXPECT_EQ(Lookup("1 beginbfchar <01> <0000> endbfchar", 1), u""); }

TEST(ToUnicode, ZerosInATextAreLeftOut) { EXPECT_EQ(Lookup("1 beginbfchar <01> <00000041> endbfchar", 1), u"A"); }

TEST(ToUnicode, WhatIsNoCharacterIsReplaced) {
  EXPECT_EQ(Lookup("1 beginbfchar <01> <D800> endbfchar", 1), u"\uFFFD");
  EXPECT_EQ(Lookup("1 beginbfchar <01> <0041D800> endbfchar", 1), u"A\uFFFD");
  EXPECT_EQ(Lookup("1 beginbfchar <01> <DC000041> endbfchar", 1), u"\uFFFDA");
  EXPECT_EQ(Lookup("1 beginbfchar <01> <FFFF> endbfchar", 1), u"\uFFFD");
}

TEST(ToUnicode, HexStringsMayBeSpacedShortOrOdd) {
  EXPECT_EQ(Lookup("1 beginbfchar < 0 0 0 1 > <00 41> endbfchar", 1), u"A");
  EXPECT_EQ(Lookup("1 beginbfchar <01> <41> endbfchar", 1), u"A");
  EXPECT_EQ(Lookup("1 beginbfchar <1> <041> endbfchar", 1), u"A");
  EXPECT_EQ(Lookup("1 beginbfchar <01> <0041004> endbfchar", 1), u"A");
  EXPECT_EQ(Lookup("1 beginbfchar<01><0041>endbfchar", 1), u"A");
}

TEST(ToUnicode, TargetsMayBeGlyphNames) {
  EXPECT_EQ(Lookup("2 beginbfchar <01> /adieresis <02> <0042> endbfchar", 1), u"\u00E4");
  EXPECT_EQ(Lookup("1 beginbfrange <01> <02> [/a /b] endbfrange", 2), u"b");
}

TEST(ToUnicode, CommentsAreSkipped) {
  EXPECT_EQ(Lookup("1 beginbfchar % <01> <0058>\n<01> <0041> % endbfchar\r<02> <0042> endbfchar", 2), u"B");
}

TEST(ToUnicode, CidOperatorsCountAsCharacters) {
  EXPECT_EQ(Lookup("1 begincidrange <0010> <0020> 65 endcidrange", 0x11), u"B");
  EXPECT_EQ(Lookup("1 begincidchar <10> 65 endcidchar", 0x10), u"A");
}

TEST(ToUnicode, WrongEntriesDoNotSpoilTheOthers) {
  EXPECT_EQ(Lookup("3 beginbfchar <> <0041> <02> <> <03> <0043> endbfchar", 3), u"C");
  EXPECT_EQ(Lookup("2 beginbfchar 12 <01> <0041> endbfchar", 1), u"A");
  EXPECT_EQ(Lookup("2 beginbfrange <05> <01> <0041> <06> <07> <0061> endbfrange", 7), u"b");
  EXPECT_EQ(Lookup("2 beginbfrange <05> <06> 12 <08> <09> <0061> endbfrange", 9), u"b");
  EXPECT_EQ(Lookup("2 beginbfchar <0102030405> <0041> <06> <0061> endbfchar", 6), u"a");
}

TEST(ToUnicode, ArraysMayBeTooLongOrTooShort) {
  const ToUnicode map = ToUnicode::Parse("2 beginbfrange <01> <02> [<0041> <0042> <0043>] <05> <07> [<0061>] endbfrange");
  EXPECT_EQ(TextAt(map, 2), u"B");
  EXPECT_EQ(TextAt(map, 3), u"");
  EXPECT_EQ(TextAt(map, 5), u"a");
  EXPECT_EQ(TextAt(map, 6), u"");
}

TEST(ToUnicode, SectionsMayBreakOff) {
  EXPECT_EQ(Lookup("2 beginbfchar <01> <0041> <02> <00", 1), u"A");
  EXPECT_EQ(Lookup("2 beginbfchar <01> <0041> <02> beginbfrange <05> <06> <0061> endbfrange", 6), u"b");
  EXPECT_EQ(Lookup("1 beginbfrange <01> <05> [<0041> <0042", 1), u"A");
  EXPECT_EQ(Lookup("1 beginbfchar <01> <0041 <02> <0042> endbfchar", 2), u"B");
}

TEST(ToUnicode, HugeRangesStayRanges) {
  EXPECT_EQ(Lookup("1 beginbfrange <00000000> <FFFFFFFF> <0041> endbfrange", 1), u"B");
  EXPECT_EQ(Lookup("1 beginbfrange <00000000> <FFFFFFFF> <0041> endbfrange", 0x7FFFFFFF), u"\uFFFD");
}

TEST(ToUnicode, TextOfACodeIsBounded) {
  const std::string target(100000, '5');
  EXPECT_EQ(Lookup("1 beginbfchar <01> <" + target + "> endbfchar", 1).size(), 256u);
}

TEST(ToUnicode, NonsenseGivesAnEmptyMap) {
  for (const char* text :
       {"", "\0\0", "beginbfchar", "endbfchar", "<<<<", "[[[", "(((", "%", "beginbfrange [ ] [", "/", "<"}) {
    EXPECT_TRUE(ToUnicode::Parse(text).IsEmpty()) << text;
  }
}

TEST(ToUnicode, RestsOnACollectionOfTheSystem) {
  EXPECT_EQ(Lookup("/Adobe-Japan1-UCS2 usecmap 1 beginbfchar <0001> <0058> endbfchar", 34), u"A");
  EXPECT_EQ(Lookup("/Adobe-Japan1-UCS2 usecmap 1 beginbfchar <0022> <0058> endbfchar", 34), u"X");
  EXPECT_TRUE(ToUnicode::Parse("/../../../../etc/passwd usecmap").IsEmpty());
}

}  // namespace
}  // namespace tgx::host
