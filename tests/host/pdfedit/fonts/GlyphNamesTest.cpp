#include "host/pdfedit/fonts/GlyphNames.h"

#include <gtest/gtest.h>

namespace tgx::host {
namespace {

std::u16string CharactersOf(std::string_view name, bool isZapfDingbats = false) {
  std::u16string text;
  AppendGlyphUnicode(name, isZapfDingbats, text);
  return text;
}

TEST(GlyphNames, KnowsTheGlyphList) {
  EXPECT_EQ(CharactersOf("A"), u"A");
  EXPECT_EQ(CharactersOf("adieresis"), u"\u00E4");
  EXPECT_EQ(CharactersOf("Euro"), u"\u20AC");
  EXPECT_EQ(CharactersOf("zukatakana"), u"\u30BA");
}

TEST(GlyphNames, SomeNamesStandForSeveralCharacters) { EXPECT_EQ(CharactersOf("dalethatafpatah"), u"\u05D3\u05B2"); }

TEST(GlyphNames, UniNamesGiveEachGroupOfFourDigits) {
  EXPECT_EQ(CharactersOf("uni20AC"), u"\u20AC");
  EXPECT_EQ(CharactersOf("uni00660069"), u"fi");
}

TEST(GlyphNames, UniNamesTakeNoSurrogatesAndNoOddGroups) {
  EXPECT_EQ(CharactersOf("uniD83D"), u"");
  EXPECT_EQ(CharactersOf("uni20A"), u"");
  EXPECT_EQ(CharactersOf("uni20AC0"), u"");
  EXPECT_EQ(CharactersOf("uni20AG"), u"");
}

TEST(GlyphNames, UNamesHaveFourToSixDigits) {
  EXPECT_EQ(CharactersOf("u20AC"), u"\u20AC");
  EXPECT_EQ(CharactersOf("u1F600"), u"\U0001F600");
  EXPECT_EQ(CharactersOf("u10FFFD"), u"\U0010FFFD");
  EXPECT_EQ(CharactersOf("u110000"), u"");
  EXPECT_EQ(CharactersOf("u20A"), u"");
  EXPECT_EQ(CharactersOf("u0020AC0"), u"");
}

TEST(GlyphNames, NumericNamesMayBeLowerCase) { EXPECT_EQ(CharactersOf("uni20ac"), u"\u20AC"); }

TEST(GlyphNames, WhatFollowsADotDoesNotCount) {
  EXPECT_EQ(CharactersOf("a.sc"), u"a");
  EXPECT_EQ(CharactersOf("one.oldstyle.alt"), u"1");
  EXPECT_EQ(CharactersOf(".notdef"), u"");
}

TEST(GlyphNames, ComponentsAreJoined) {
  EXPECT_EQ(CharactersOf("f_f_i"), u"ffi");
  EXPECT_EQ(CharactersOf("T_h.liga"), u"Th");
  EXPECT_EQ(CharactersOf("Lcommaaccent_uni20AC0308_u1040C.alternate"), u"\u013B\u20AC\u0308\U0001040C");
}

TEST(GlyphNames, UnknownComponentsGiveNothing) {
  EXPECT_EQ(CharactersOf("foo"), u"");
  EXPECT_EQ(CharactersOf("f_foo_i"), u"fi");
}

TEST(GlyphNames, DingbatNamesCountInTheirFontAlone) {
  EXPECT_EQ(CharactersOf("a100", true), u"\u275E");
  EXPECT_EQ(CharactersOf("a100", false), u"");
  EXPECT_EQ(CharactersOf("space", true), u" ");
}

TEST(GlyphNames, EndlessNamesAreCut) {
  std::string name = "a";
  for (int i = 0; i < 100000; ++i) name += "_a";
  EXPECT_LE(CharactersOf(name).size(), 128u);
}

TEST(GlyphNames, EncodingsHaveTheirPeculiarities) {
  EXPECT_EQ(StandardEncoding()[0x27], "quoteright");
  EXPECT_EQ(StandardEncoding()[0xFB], "germandbls");
  EXPECT_EQ(WinAnsiEncoding()[0x27], "quotesingle");
  EXPECT_EQ(WinAnsiEncoding()[0x80], "Euro");
  EXPECT_EQ(WinAnsiEncoding()[0x81], "bullet");
  EXPECT_EQ(WinAnsiEncoding()[0xA0], "space");
  EXPECT_EQ(WinAnsiEncoding()[0xAD], "hyphen");
  EXPECT_EQ(MacRomanEncoding()[0xCA], "space");
  EXPECT_EQ(MacRomanEncoding()[0xAD], "notequal");
  EXPECT_EQ(MacExpertEncoding()[0x61], "Asmall");
  EXPECT_EQ(SymbolEncoding()[0x61], "alpha");
  EXPECT_EQ(ZapfDingbatsEncoding()[0x21], "a1");
}

TEST(GlyphNames, EveryNameOfAnEncodingHasCharacters) {
  for (const GlyphNames* names : {&StandardEncoding(), &WinAnsiEncoding(), &MacRomanEncoding(), &MacExpertEncoding(),
                                  &SymbolEncoding(), &ZapfDingbatsEncoding()}) {
    for (const std::string_view name : *names) {
      const bool isKnown = name.empty() || !CharactersOf(name, true).empty();
      EXPECT_TRUE(isKnown) << name;
    }
  }
}

TEST(GlyphNames, NamedEncodings) {
  EXPECT_EQ(EncodingNamed("/WinAnsiEncoding"), &WinAnsiEncoding());
  EXPECT_EQ(EncodingNamed("/Identity-H"), nullptr);
  EXPECT_EQ(EncodingNamed(""), nullptr);
}

}  // namespace
}  // namespace tgx::host
