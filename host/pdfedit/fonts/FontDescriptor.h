#pragma once

#include <optional>

#include <qpdf/QPDFObjectHandle.hh>

#include "host/pdfedit/fonts/StandardFonts.h"

namespace tgx::host {

/// How far the glyphs of a font reach above the baseline and below it (negative), at size 1.
struct FontExtent {
  double ascent;
  double descent;
};

/// The extent from a font descriptor (or null): "Ascent" and "Descent" where they make sense, else "FontBBox" up to a usual
/// extent, else that of the standard font, else a usual one. Never empty, never larger than two ems.
FontExtent ReadFontExtent(QPDFObjectHandle descriptor, const std::optional<StandardFont>& standardFont);

/// Whether a rectangle is an array of four numbers, and then these, lower left first.
struct FontBox {
  double left, bottom, right, top;
};
std::optional<FontBox> ReadFontBox(QPDFObjectHandle array);

/// The value of a number that may be of either type; nothing for anything else, and for a value beyond reason.
std::optional<double> NumberIn(QPDFObjectHandle object);

/// The value of an integer entry, `fallback` if there is none or it is beyond reason.
long long IntegerIn(QPDFObjectHandle dictionary, const char* key, long long fallback);

}  // namespace tgx::host
