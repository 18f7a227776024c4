#include "host/pdfedit/fonts/StandardFonts.h"

#include <gtest/gtest.h>

namespace tgx::host {
namespace {

int WidthIn(std::string_view font, std::string_view glyph) {
  const std::optional<StandardFont> found = StandardFont::Named(font);
  return found ? found->Width(glyph).value_or(-1) : -2;
}

TEST(StandardFonts, HaveTheirMetrics) {
  EXPECT_EQ(WidthIn("/Helvetica", "A"), 667);
  EXPECT_EQ(WidthIn("/Helvetica-Oblique", "A"), 667);
  EXPECT_EQ(WidthIn("/Helvetica-Bold", "A"), 722);
  EXPECT_EQ(WidthIn("/Helvetica-BoldOblique", "A"), 722);
  EXPECT_EQ(WidthIn("/Times-Roman", "A"), 722);
  EXPECT_EQ(WidthIn("/Times-Italic", "A"), 611);
  EXPECT_EQ(WidthIn("/Times-Bold", "a"), 500);
  EXPECT_EQ(WidthIn("/Times-BoldItalic", "A"), 667);
  EXPECT_EQ(WidthIn("/Courier-Bold", "A"), 600);
  EXPECT_EQ(WidthIn("/Symbol", "alpha"), 631);
  EXPECT_EQ(WidthIn("/ZapfDingbats", "a1"), 974);
}

TEST(StandardFonts, AreKnownByTheirAliases) {
  EXPECT_EQ(WidthIn("ArialMT", "A"), 667);
  EXPECT_EQ(WidthIn("Arial,Bold", "A"), 722);
  EXPECT_EQ(WidthIn("Arial-BoldItalicMT", "A"), 722);
  EXPECT_EQ(WidthIn("Times New Roman,Italic", "A"), 611);
  EXPECT_EQ(WidthIn("TimesNewRomanPSMT", "A"), 722);
  EXPECT_EQ(WidthIn("TimesNewRomanPS-BoldMT", "A"), 722);
  EXPECT_EQ(WidthIn("CourierNewPS-ItalicMT", "A"), 600);
  EXPECT_EQ(WidthIn("SymbolMT", "alpha"), 631);
  EXPECT_EQ(WidthIn("/ABCDEF+Helvetica", "A"), 667);
}

TEST(StandardFonts, OtherFontsAreNone) {
  for (const char* name : {"", "/", "Arial-Black", "ArialNarrow", "HelveticaNeue-Light", "abcdef+Helvetica", "Times-Foo"}) {
    EXPECT_FALSE(StandardFont::Named(name)) << name;
  }
}

TEST(StandardFonts, UnknownGlyphsHaveNoWidth) {
  EXPECT_EQ(WidthIn("Courier", "alpha"), -1);
  EXPECT_EQ(WidthIn("Symbol", "A"), -1);
  EXPECT_EQ(WidthIn("Helvetica", ""), -1);
}

TEST(StandardFonts, EveryGlyphOfTheirEncodingHasAWidth) {
  for (const char* name : {"Helvetica", "Times-Roman", "Courier", "Symbol", "ZapfDingbats"}) {
    const std::optional<StandardFont> font = StandardFont::Named(name);
    ASSERT_TRUE(font) << name;
    for (const std::string_view glyph : font->Encoding()) {
      EXPECT_TRUE(glyph.empty() || font->Width(glyph)) << name << ' ' << glyph;
    }
  }
}

}  // namespace
}  // namespace tgx::host
