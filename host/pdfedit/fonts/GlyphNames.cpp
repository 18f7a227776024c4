#include "host/pdfedit/fonts/GlyphNames.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace tgx::host {
namespace {

#include "host/pdfedit/fonts/data/encodings.inc"

struct GlyphCharacters {
  std::string_view name;
  std::u16string_view characters;
};

constexpr GlyphCharacters kGlyphs[] = {
#include "host/pdfedit/fonts/data/glyph_names.inc"
};
constexpr GlyphCharacters kZapfDingbats[] = {
#include "host/pdfedit/fonts/data/zapf_dingbats_names.inc"
};

template <std::size_t N>
const GlyphCharacters* Find(const GlyphCharacters (&table)[N], std::string_view name) {
  const auto* found = std::lower_bound(std::begin(table), std::end(table), name,
                                       [](const GlyphCharacters& entry, std::string_view key) { return entry.name < key; });
  return found != std::end(table) && found->name == name ? found : nullptr;
}

std::optional<char32_t> HexNumber(std::string_view digits) {
  char32_t number = 0;
  for (const char digit : digits) {
    if (digit >= '0' && digit <= '9') {
      number = number * 16 + static_cast<char32_t>(digit - '0');
    } else if (digit >= 'A' && digit <= 'F') {
      number = number * 16 + static_cast<char32_t>(digit - 'A' + 10);
    } else if (digit >= 'a' && digit <= 'f') {  // not in the rules, but written
      number = number * 16 + static_cast<char32_t>(digit - 'a' + 10);
    } else {
      return std::nullopt;
    }
  }
  return number;
}

bool IsCharacter(char32_t codePoint) {
  const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  const bool isNoCharacter = (codePoint >= 0xFDD0 && codePoint <= 0xFDEF) || (codePoint & 0xFFFE) == 0xFFFE;
  return codePoint != 0 && codePoint <= 0x10FFFF && !isSurrogate && !isNoCharacter;
}

/// "uni" and one or more groups of four digits.
bool AppendUniName(std::string_view digits, std::u16string& text) {
  if (digits.empty() || digits.size() % 4 != 0) return false;
  std::u16string characters;
  for (; !digits.empty(); digits.remove_prefix(4)) {
    const std::optional<char32_t> codePoint = HexNumber(digits.substr(0, 4));
    if (!codePoint || !IsCharacter(*codePoint)) return false;
    characters.push_back(static_cast<char16_t>(*codePoint));
  }
  text += characters;
  return true;
}

bool AppendComponent(std::string_view name, bool isZapfDingbats, std::u16string& text) {
  const GlyphCharacters* known = isZapfDingbats ? Find(kZapfDingbats, name) : nullptr;
  if (known == nullptr) known = Find(kGlyphs, name);
  if (known != nullptr) {
    text += known->characters;
    return true;
  }
  if (name.size() >= 7 && name.starts_with("uni") && AppendUniName(name.substr(3), text)) return true;
  if (name.size() < 5 || name.size() > 7 || name[0] != 'u') return false;
  const std::optional<char32_t> codePoint = HexNumber(name.substr(1));
  if (!codePoint || !IsCharacter(*codePoint)) return false;
  AppendCodePoint(*codePoint, text);
  return true;
}

}  // namespace

const GlyphNames& StandardEncoding() { return kStandardEncoding; }
const GlyphNames& WinAnsiEncoding() { return kWinAnsiEncoding; }
const GlyphNames& MacRomanEncoding() { return kMacRomanEncoding; }
const GlyphNames& MacExpertEncoding() { return kMacExpertEncoding; }
const GlyphNames& SymbolEncoding() { return kSymbolEncoding; }
const GlyphNames& ZapfDingbatsEncoding() { return kZapfDingbatsEncoding; }

const GlyphNames* EncodingNamed(std::string_view name) {
  if (name == "/WinAnsiEncoding") return &kWinAnsiEncoding;
  if (name == "/MacRomanEncoding") return &kMacRomanEncoding;
  if (name == "/MacExpertEncoding") return &kMacExpertEncoding;
  if (name == "/StandardEncoding") return &kStandardEncoding;
  return nullptr;
}

bool AppendGlyphUnicode(std::string_view name, bool isZapfDingbats, std::u16string& text) {
  // A glyph stands for a few characters at most; a longer name is not worth its parts.
  constexpr std::size_t kLongestName = 256;
  name = name.substr(0, std::min(name.find('.'), kLongestName));
  bool any = false;
  while (!name.empty()) {
    const std::size_t end = std::min(name.find('_'), name.size());
    any |= AppendComponent(name.substr(0, end), isZapfDingbats, text);
    name.remove_prefix(std::min(end + 1, name.size()));
  }
  return any;
}

void AppendCodePoint(char32_t codePoint, std::u16string& text) {
  if (!IsCharacter(codePoint)) codePoint = 0xFFFD;
  if (codePoint > 0xFFFF) {
    text.push_back(static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10)));
    codePoint = 0xDC00 + ((codePoint - 0x10000) & 0x3FF);
  }
  text.push_back(static_cast<char16_t>(codePoint));
}

}  // namespace tgx::host
