#pragma once

#include <optional>
#include <string_view>

#include "host/pdfedit/fonts/GlyphNames.h"

namespace tgx::host {

/// Metrics of one of the standard 14 fonts, which documents may use without widths, encoding or font file.
class StandardFont {
 public:
  enum class Family { kCourier, kHelvetica, kTimes, kSymbol, kZapfDingbats };

  StandardFont(Family family, bool isBold, bool isItalic) : family_(family), isBold_(isBold), isItalic_(isItalic) {}

  /// The font that a "BaseFont" name means, with the aliases in common use ("ArialMT", "TimesNewRoman,Bold", "Courier New").
  /// Spaces and a subset tag do not count. Takes the name with or without its slash.
  static std::optional<StandardFont> Named(std::string_view baseFont);

  /// Thousandths of the font size; nothing for a glyph that the font lacks.
  std::optional<int> Width(std::string_view glyphName) const;
  const GlyphNames& Encoding() const;
  double Ascent() const;
  double Descent() const;

 private:
  Family family_;
  bool isBold_;
  bool isItalic_;
};

}  // namespace tgx::host
