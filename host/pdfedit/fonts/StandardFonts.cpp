#include "host/pdfedit/fonts/StandardFonts.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace tgx::host {
namespace {

/// Widths in Helvetica, Helvetica-Bold, Times-Roman, -Bold, -Italic and -BoldItalic. Oblique Helvetica is as wide as
/// upright.
struct LatinWidths {
  std::string_view name;
  short widths[6];
};
struct GlyphWidth {
  std::string_view name;
  short width;
};

#include "host/pdfedit/fonts/data/standard_widths.inc"

template <typename Entry, std::size_t N>
const Entry* Find(const Entry (&table)[N], std::string_view name) {
  const Entry* found = std::lower_bound(std::begin(table), std::end(table), name,
                                        [](const Entry& entry, std::string_view key) { return entry.name < key; });
  return found != std::end(table) && found->name == name ? found : nullptr;
}

struct FamilyName {
  std::string_view name;
  StandardFont::Family family;
};
constexpr FamilyName kFamilyNames[] = {
    {"Helvetica", StandardFont::Family::kHelvetica},  {"Arial", StandardFont::Family::kHelvetica},
    {"Courier", StandardFont::Family::kCourier},      {"CourierNew", StandardFont::Family::kCourier},
    {"CourierNewPS", StandardFont::Family::kCourier}, {"Times", StandardFont::Family::kTimes},
    {"TimesNewRoman", StandardFont::Family::kTimes},  {"TimesNewRomanPS", StandardFont::Family::kTimes},
    {"Symbol", StandardFont::Family::kSymbol},        {"ZapfDingbats", StandardFont::Family::kZapfDingbats},
};

struct Style {
  std::string_view name;
  bool isBold;
  bool isItalic;
};
constexpr Style kStyles[] = {
    {"", false, false},      {"Roman", false, false},  {"Regular", false, false},   {"Bold", true, false},
    {"Italic", false, true}, {"Oblique", false, true}, {"BoldOblique", true, true}, {"BoldItalic", true, true},
};

/// Without slash, subset tag, spaces and the "MT" at the end.
std::string PlainName(std::string_view name) {
  if (name.starts_with('/')) name.remove_prefix(1);
  const bool hasTag = name.size() > 7 && name[6] == '+' &&
                      std::all_of(name.begin(), name.begin() + 6, [](char c) { return c >= 'A' && c <= 'Z'; });
  if (hasTag) name.remove_prefix(7);
  std::string plain(name.substr(0, 64));
  std::erase(plain, ' ');
  if (plain.ends_with("MT")) plain.resize(plain.size() - 2);
  return plain;
}

}  // namespace

std::optional<StandardFont> StandardFont::Named(std::string_view baseFont) {
  const std::string name = PlainName(baseFont);
  const std::size_t end = std::min(name.find_first_of(",-"), name.size());
  const std::string_view familyName = std::string_view(name).substr(0, end);
  const std::string_view styleName = std::string_view(name).substr(std::min(end + 1, name.size()));
  const auto* family = std::find_if(std::begin(kFamilyNames), std::end(kFamilyNames),
                                    [&](const FamilyName& entry) { return entry.name == familyName; });
  const auto* style =
      std::find_if(std::begin(kStyles), std::end(kStyles), [&](const Style& entry) { return entry.name == styleName; });
  if (family == std::end(kFamilyNames) || style == std::end(kStyles)) return std::nullopt;
  return StandardFont(family->family, style->isBold, style->isItalic);
}

std::optional<int> StandardFont::Width(std::string_view glyphName) const {
  if (family_ == Family::kSymbol || family_ == Family::kZapfDingbats) {
    const GlyphWidth* found =
        family_ == Family::kSymbol ? Find(kSymbolWidths, glyphName) : Find(kZapfDingbatsWidths, glyphName);
    return found == nullptr ? std::nullopt : std::optional<int>(found->width);
  }
  const LatinWidths* found = Find(kLatinWidths, glyphName);
  if (found == nullptr) return std::nullopt;
  if (family_ == Family::kCourier) return 600;
  const int column = family_ == Family::kHelvetica ? 0 : (isItalic_ ? 4 : 2);
  return found->widths[column + (isBold_ ? 1 : 0)];
}

const GlyphNames& StandardFont::Encoding() const {
  if (family_ == Family::kSymbol) return SymbolEncoding();
  return family_ == Family::kZapfDingbats ? ZapfDingbatsEncoding() : StandardEncoding();
}

// The "Ascender" and "Descender" of the metrics; of the two pi fonts, which have none, the font box.
double StandardFont::Ascent() const {
  switch (family_) {
    case Family::kCourier:
      return 0.629;
    case Family::kHelvetica:
      return 0.718;
    case Family::kTimes:
      return 0.683;
    case Family::kSymbol:
      return 1.010;
    case Family::kZapfDingbats:
      return 0.820;
  }
  return 0.95;
}

double StandardFont::Descent() const {
  switch (family_) {
    case Family::kCourier:
      return -0.157;
    case Family::kHelvetica:
      return -0.207;
    case Family::kTimes:
      return -0.217;
    case Family::kSymbol:
      return -0.293;
    case Family::kZapfDingbats:
      return -0.143;
  }
  return -0.35;
}

}  // namespace tgx::host
