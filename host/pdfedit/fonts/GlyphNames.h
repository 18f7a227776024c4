#pragma once

#include <array>
#include <string>
#include <string_view>

namespace tgx::host {

/// The glyph name of each one-byte code; empty where a code has none.
using GlyphNames = std::array<std::string_view, 256>;

/// The encodings of ISO 32000-1 Annex D. WinAnsi shows a bullet for its unused codes, MacRoman has the additions of Mac OS.
const GlyphNames& StandardEncoding();
const GlyphNames& WinAnsiEncoding();
const GlyphNames& MacRomanEncoding();
const GlyphNames& MacExpertEncoding();
const GlyphNames& SymbolEncoding();
const GlyphNames& ZapfDingbatsEncoding();

/// The encoding that a "BaseEncoding" or "Encoding" name stands for (with its slash), null for every other name.
const GlyphNames* EncodingNamed(std::string_view name);

/// Appends the characters that a glyph name stands for by the rules of the Adobe Glyph List: the part before the first dot,
/// split at underscores, each looked up in the list or read as "uniXXXX..." or "uXXXX" to "uXXXXXX". The names of
/// ZapfDingbats count only in that font. Returns whether anything was appended.
bool AppendGlyphUnicode(std::string_view name, bool isZapfDingbats, std::u16string& text);

/// Appends a code point as UTF-16; U+FFFD for what is no character.
void AppendCodePoint(char32_t codePoint, std::u16string& text);

}  // namespace tgx::host
