#pragma once

#include <array>
#include <optional>
#include <string>

#include <qpdf/QPDFObjectHandle.hh>

#include "host/pdfedit/fonts/StandardFonts.h"

namespace tgx::host {

class FontParts;

/// The glyph name of each code of a simple font; empty where there is none.
using SimpleEncoding = std::array<std::string, 256>;

/// Reads a simple font's encoding: the base that "Encoding" names, else the embedded program's own, else the standard
/// font's, else the usual one of the font's type; with the "Differences" upon it.
SimpleEncoding ReadSimpleEncoding(QPDFObjectHandle font, const std::optional<StandardFont>& standardFont, FontParts& parts);

/// The text of each code by its glyph name. Names that the Adobe Glyph List does not know are read as numbers where they
/// look like some ("g65", "C0041"), as other readers do.
std::array<std::u16string, 256> CharactersOf(const SimpleEncoding& encoding, bool isZapfDingbats);

}  // namespace tgx::host
