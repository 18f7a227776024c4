#include "host/pdfedit/fonts/SimpleEncoding.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <string_view>

#include "host/pdfedit/fonts/FontParts.h"
#include "host/pdfedit/fonts/GlyphNames.h"

namespace tgx::host {
namespace {

bool IsAlpha(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
bool IsAlnum(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; }
bool IsHexDigit(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }
bool IsHexLetter(char c) { return IsHexDigit(c) && IsAlpha(c); }

SimpleEncoding ToEncoding(const GlyphNames& names) {
  SimpleEncoding encoding;
  std::copy(names.begin(), names.end(), encoding.begin());
  return encoding;
}

SimpleEncoding BaseOf(QPDFObjectHandle font, QPDFObjectHandle entry, const std::optional<StandardFont>& standardFont,
                      FontParts& parts) {
  QPDFObjectHandle base = entry.isDictionary() ? entry.getKey("/BaseEncoding") : entry;
  if (base.isName()) {
    if (const GlyphNames* named = EncodingNamed(base.getName())) return ToEncoding(*named);
  }
  // A TrueType program knows names only for what its own map encodes, so it counts only where nothing else is said.
  const bool isTrueType = font.getKey("/Subtype").isNameAndEquals("/TrueType");
  if (!isTrueType || entry.isNull()) {
    const std::shared_ptr<const BuiltInEncoding> builtIn = parts.EncodingOf(font.getKey("/FontDescriptor"));
    if (builtIn->isKnown && !isTrueType) return builtIn->names;
    if (builtIn->isKnown) {
      SimpleEncoding encoding = ToEncoding(WinAnsiEncoding());
      for (std::size_t code = 0; code < encoding.size(); ++code) {
        std::u16string characters;
        if (AppendGlyphUnicode(builtIn->names[code], false, characters)) encoding[code] = builtIn->names[code];
      }
      return encoding;
    }
  }
  if (standardFont) return ToEncoding(standardFont->Encoding());
  return ToEncoding(isTrueType ? WinAnsiEncoding() : StandardEncoding());
}

void ApplyDifferences(QPDFObjectHandle differences, SimpleEncoding& encoding) {
  if (!differences.isArray()) return;
  long long code = 0;
  const int count = differences.getArrayNItems();
  for (int i = 0; i < count; ++i) {
    QPDFObjectHandle item = differences.getArrayItem(i);
    if (item.isInteger()) {
      code = item.getIntValue();
    } else if (item.isName()) {
      if (code >= 0 && code < 256) encoding[static_cast<std::size_t>(code)] = item.getName().substr(1);
      code += code < 256 ? 1 : 0;
    }
  }
}

/// "A1F" or "1F": two digits, at least one of them a letter, so that decimal numbers stay decimal.
bool LooksHexadecimal(std::string_view name) {
  if (name.size() == 3 && IsAlpha(name[0])) {
    return IsHexDigit(name[1]) && IsHexDigit(name[2]) && (IsHexLetter(name[1]) || IsHexLetter(name[2]));
  }
  return name.size() == 2 && IsHexDigit(name[0]) && IsHexDigit(name[1]) && IsHexLetter(name[1]);
}

/// The number in a name of at most two letters, digits, and what is neither; 0 if it is no such name.
char32_t NumberInName(std::string_view name, bool isHexadecimal) {
  if (isHexadecimal) {
    const auto length = static_cast<std::size_t>(std::find_if_not(name.begin(), name.end(), IsAlnum) - name.begin());
    if (length == 3 && IsAlpha(name[0])) {
      name.remove_prefix(1);
    } else if (length != 2) {
      return 0;
    }
  } else {
    for (int i = 0; i < 2 && !name.empty() && IsAlpha(name[0]); ++i) name.remove_prefix(1);
  }
  std::uint32_t number = 0;
  const char* end = name.data() + name.size();
  const auto result = std::from_chars(name.data(), end, number, isHexadecimal ? 16 : 10);
  const bool isWhole = result.ec == std::errc() && std::none_of(result.ptr, end, IsAlnum);
  return isWhole && number <= 0x10FFFF ? number : 0;
}

}  // namespace

SimpleEncoding ReadSimpleEncoding(QPDFObjectHandle font, const std::optional<StandardFont>& standardFont, FontParts& parts) {
  QPDFObjectHandle entry = font.getKey("/Encoding");
  SimpleEncoding encoding = BaseOf(font, entry, standardFont, parts);
  if (entry.isDictionary()) ApplyDifferences(entry.getKey("/Differences"), encoding);
  return encoding;
}

std::array<std::u16string, 256> CharactersOf(const SimpleEncoding& encoding, bool isZapfDingbats) {
  std::array<std::u16string, 256> characters;
  bool isHexadecimal = false;
  for (std::size_t code = 0; code < encoding.size(); ++code) {
    const std::string& name = encoding[code];
    if (name.empty() || name == ".notdef" || AppendGlyphUnicode(name, isZapfDingbats, characters[code])) continue;
    isHexadecimal = isHexadecimal || LooksHexadecimal(name);
  }
  for (std::size_t code = 0; code < encoding.size(); ++code) {
    if (!characters[code].empty() || encoding[code] == ".notdef") continue;
    if (const char32_t number = NumberInName(encoding[code], isHexadecimal)) AppendCodePoint(number, characters[code]);
  }
  return characters;
}

}  // namespace tgx::host
