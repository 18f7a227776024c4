#pragma once

#include <array>
#include <string>

#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

/// What an embedded font file itself says of its one-byte codes.
struct BuiltInEncoding {
  std::array<std::string, 256> names;  ///< empty where a code has no glyph, or its glyph no name
  bool isKnown = false;                ///< whether the file could be read and has an encoding
};

/// The font program of a font descriptor: the last of "FontFile", "FontFile2" and "FontFile3" that is a stream, null if none
/// is.
QPDFObjectHandle FontProgramOf(QPDFObjectHandle descriptor);

/// Reads the encoding of the font program in a font descriptor: the encoding vector
/// of Type 1 and CFF programs, the symbol or Macintosh character map with the glyph names of TrueType ones.
BuiltInEncoding ReadBuiltInEncoding(const QPDFObjectHandle& descriptor);

}  // namespace tgx::host
