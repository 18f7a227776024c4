#include "bench/Utf.h"

#include <cstdio>

namespace tgx::bench {

std::u32string CharactersOf(const std::string& utf8) {
  std::u32string characters;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto first = static_cast<unsigned char>(utf8[i]);
    const int length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    char32_t character = length == 1 ? first : first & (0x7F >> length);
    for (int k = 1; k < length; ++k) character = character << 6 | (static_cast<unsigned char>(utf8.at(i + k)) & 0x3F);
    characters += character;
    i += length;
  }
  return characters;
}

std::string Utf16Of(const std::string& utf8, bool mark) {
  std::string bytes = mark ? "\xFE\xFF" : "";
  const auto append = [&](char32_t unit) {
    bytes += static_cast<char>(unit >> 8);
    bytes += static_cast<char>(unit & 0xFF);
  };
  for (const char32_t character : CharactersOf(utf8)) {
    if (character < 0x10000) {
      append(character);
    } else {
      append(0xD800 + ((character - 0x10000) >> 10));
      append(0xDC00 + ((character - 0x10000) & 0x3FF));
    }
  }
  return bytes;
}

std::string HexOf(const std::string& bytes) {
  std::string hex;
  char digits[4];
  for (const char byte : bytes) {
    std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    hex += digits;
  }
  return hex;
}

std::string Base64Of(const std::string& bytes) {
  static const char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    unsigned group = 0;
    for (std::size_t k = 0; k < 3; ++k)
      group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0);
    for (std::size_t k = 0; k < 4; ++k) text += i + k <= bytes.size() ? kDigits[group >> (18 - 6 * k) & 0x3F] : '=';
  }
  return text;
}

}  // namespace tgx::bench
