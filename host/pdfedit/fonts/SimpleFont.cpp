#include "host/pdfedit/fonts/SimpleFont.h"

#include <cmath>
#include <optional>

#include "host/pdfedit/fonts/FontDescriptor.h"
#include "host/pdfedit/fonts/FontParts.h"
#include "host/pdfedit/fonts/SimpleEncoding.h"
#include "host/pdfedit/fonts/StandardFonts.h"

namespace tgx::host {
namespace {

using Advances = std::array<double, 256>;

bool IsType3(QPDFObjectHandle font) { return font.getKey("/Subtype").isNameAndEquals("/Type3"); }

std::string NameOf(QPDFObjectHandle font) {
  QPDFObjectHandle name = font.getKey("/BaseFont");
  return name.isName() ? name.getName() : std::string();
}

/// The standard font whose metrics stand in for a font that brings none, by the flags of its descriptor.
StandardFont Substitute(QPDFObjectHandle descriptor) {
  constexpr long long kFixedPitch = 1 << 0;
  constexpr long long kSerif = 1 << 1;
  constexpr long long kItalic = 1 << 6;
  constexpr long long kForceBold = 1 << 18;
  const long long flags = descriptor.isDictionary() ? IntegerIn(descriptor, "/Flags", 0) : 0;
  auto family = StandardFont::Family::kHelvetica;
  if ((flags & kSerif) != 0) family = StandardFont::Family::kTimes;
  if ((flags & kFixedPitch) != 0) family = StandardFont::Family::kCourier;
  return {family, (flags & kForceBold) != 0, (flags & kItalic) != 0};
}

/// `unit` is what a width of 1 means in text space.
Advances ReadWidths(QPDFObjectHandle font, QPDFObjectHandle widths, double unit) {
  Advances advances;
  QPDFObjectHandle descriptor = font.getKey("/FontDescriptor");
  const std::optional<double> missing =
      descriptor.isDictionary() ? NumberIn(descriptor.getKey("/MissingWidth")) : std::nullopt;
  advances.fill(missing.value_or(0) * unit);
  const long long first = IntegerIn(font, "/FirstChar", 0);
  const long long last = IntegerIn(font, "/LastChar", 255);
  const int count = widths.getArrayNItems();
  for (long long code = std::max(first, 0LL); code <= std::min(last, 255LL) && code - first < count; ++code) {
    const std::optional<double> width = NumberIn(widths.getArrayItem(static_cast<int>(code - first)));
    if (width) advances[static_cast<std::size_t>(code)] = *width * unit;
  }
  return advances;
}

Advances StandardAdvances(const StandardFont& font, const SimpleEncoding& encoding) {
  Advances advances = {};
  advances[' '] = font.Width("space").value_or(0) / 1000.0;  // also where the encoding has no space
  for (std::size_t code = 0; code < encoding.size(); ++code) {
    if (const std::optional<int> width = font.Width(encoding[code])) advances[code] = *width / 1000.0;
  }
  return advances;
}

struct GlyphSpace {
  double a = 0.001;  ///< horizontal unit in text space
  double d = 0.001;  ///< vertical unit
};

GlyphSpace GlyphSpaceOf(QPDFObjectHandle font) {
  GlyphSpace space;
  QPDFObjectHandle matrix = font.getKey("/FontMatrix");
  if (!IsType3(font) || !matrix.isArray() || matrix.getArrayNItems() < 6) return space;
  space.a = NumberIn(matrix.getArrayItem(0)).value_or(space.a);
  space.d = NumberIn(matrix.getArrayItem(3)).value_or(space.d);
  return space;
}

/// A Type 3 font has its glyphs in a space of its own, so its box counts, if it has one, and not the descriptor's numbers.
std::optional<FontExtent> Type3Extent(QPDFObjectHandle font, const GlyphSpace& space) {
  const std::optional<FontBox> box = ReadFontBox(font.getKey("/FontBBox"));
  if (!box || box->top <= box->bottom || space.d == 0) return std::nullopt;
  const double ascent = std::max(box->top * space.d, box->bottom * space.d);
  const double descent = std::min(box->top * space.d, box->bottom * space.d);
  return FontExtent{ascent, descent};
}

}  // namespace

SimpleFont::SimpleFont(QPDFObjectHandle dictionary, FontParts& parts) {
  const std::string name = NameOf(dictionary);
  const std::optional<StandardFont> standardFont = StandardFont::Named(name);
  QPDFObjectHandle descriptor = dictionary.getKey("/FontDescriptor");
  const SimpleEncoding encoding = ReadSimpleEncoding(dictionary, standardFont, parts);

  const GlyphSpace space = GlyphSpaceOf(dictionary);
  QPDFObjectHandle widths = dictionary.getKey("/Widths");
  if (widths.isArray()) {
    advances_ = ReadWidths(dictionary, widths, space.a);
  } else if (!IsType3(dictionary)) {
    advances_ = StandardAdvances(standardFont ? *standardFont : Substitute(descriptor), encoding);
  }

  FontExtent extent = ReadFontExtent(descriptor, standardFont);
  if (IsType3(dictionary)) extent = Type3Extent(dictionary, space).value_or(extent);
  ascent_ = extent.ascent;
  descent_ = extent.descent;

  QPDFObjectHandle toUnicode = dictionary.getKey("/ToUnicode");
  hasToUnicode_ = toUnicode.isStream();
  const std::shared_ptr<const ToUnicode> map = hasToUnicode_ ? parts.CharactersOf(toUnicode) : nullptr;
  const std::array<std::u16string, 256> named = CharactersOf(encoding, name.ends_with("ZapfDingbats"));
  for (std::uint32_t code = 0; code < spans_.size(); ++code) {
    const std::size_t start = characters_.size();
    if (map == nullptr || !map->Append(code, characters_)) characters_ += named[code];
    spans_[code] = {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(characters_.size() - start)};
  }
}

}  // namespace tgx::host
