#include "host/pdfedit/fonts/FontFile.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_FONT_FORMATS_H

#include <string_view>

#include "host/pdfedit/StreamData.h"
#include "host/pdfedit/fonts/GlyphNames.h"

namespace tgx::host {
namespace {

constexpr std::size_t kLargestFontFile = std::size_t{64} << 20;

class FontFace {
 public:
  explicit FontFace(const std::string& program) {
    if (FT_Init_FreeType(&library_) != 0) return;
    const auto* bytes = reinterpret_cast<const FT_Byte*>(program.data());
    if (FT_New_Memory_Face(library_, bytes, static_cast<FT_Long>(program.size()), 0, &face_) != 0) face_ = nullptr;
  }
  ~FontFace() {
    if (face_ != nullptr) FT_Done_Face(face_);
    if (library_ != nullptr) FT_Done_FreeType(library_);
  }
  FontFace(const FontFace&) = delete;
  FontFace& operator=(const FontFace&) = delete;

  FT_Face Get() const { return face_; }

 private:
  FT_Library library_ = nullptr;
  FT_Face face_ = nullptr;
};

std::string GlyphName(FT_Face face, FT_UInt glyph) {
  char name[128] = "";
  if (glyph == 0 || FT_Get_Glyph_Name(face, glyph, name, sizeof name) != 0) return {};
  return name == std::string_view(".notdef") ? std::string() : std::string(name);
}

/// The character map that a simple font's codes go through, null if there is none.
FT_CharMap EncodingMap(FT_Face face) {
  FT_CharMap best = nullptr;
  for (int i = 0; i < face->num_charmaps; ++i) {
    FT_CharMap map = face->charmaps[i];
    switch (map->encoding) {
      case FT_ENCODING_ADOBE_CUSTOM:
      case FT_ENCODING_ADOBE_STANDARD:
      case FT_ENCODING_ADOBE_EXPERT:
      case FT_ENCODING_MS_SYMBOL:
        return map;
      case FT_ENCODING_APPLE_ROMAN:
        best = map;
        break;
      default:
        break;
    }
  }
  return best;
}

}  // namespace

QPDFObjectHandle FontProgramOf(QPDFObjectHandle descriptor) {
  QPDFObjectHandle program = QPDFObjectHandle::newNull();
  if (!descriptor.isDictionary()) return program;
  for (const char* key : {"/FontFile", "/FontFile2", "/FontFile3"}) {
    QPDFObjectHandle file = descriptor.getKey(key);
    if (file.isStream()) program = file;
  }
  return program;
}

BuiltInEncoding ReadBuiltInEncoding(const QPDFObjectHandle& descriptor) {
  BuiltInEncoding encoding;
  const std::string program = DecodeStream(FontProgramOf(descriptor), kLargestFontFile).bytes;
  if (program.empty()) return encoding;

  const FontFace holder(program);
  FT_Face face = holder.Get();
  if (face == nullptr || !FT_HAS_GLYPH_NAMES(face)) return encoding;
  FT_CharMap map = EncodingMap(face);
  if (map == nullptr || FT_Set_Charmap(face, map) != 0) return encoding;

  encoding.isKnown = true;
  for (FT_ULong code = 0; code < encoding.names.size(); ++code) {
    FT_UInt glyph = FT_Get_Char_Index(face, code);
    // The codes of a symbol font stand in the private area, by one of these offsets.
    if (glyph == 0 && map->encoding == FT_ENCODING_MS_SYMBOL) glyph = FT_Get_Char_Index(face, 0xF000 + code);
    encoding.names[code] = GlyphName(face, glyph);
  }
  // CFF programs of some producers leave gaps where they mean the standard encoding.
  if (FT_Get_Font_Format(face) == std::string_view("CFF")) {
    for (std::size_t code = 0; code < encoding.names.size(); ++code) {
      if (encoding.names[code].empty()) encoding.names[code] = StandardEncoding()[code];
    }
  }
  return encoding;
}

}  // namespace tgx::host
