#include "tool/TextString.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace tgx::tool {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// PDFDocEncoding where it differs from Latin-1; 0 is a code without a character.
constexpr char16_t kFrom18[] = {0x02D8, 0x02C7, 0x02C6, 0x02D9, 0x02DD, 0x02DB, 0x02DA, 0x02DC};
constexpr char16_t kFrom80[] = {0x2022, 0x2020, 0x2021, 0x2026, 0x2014, 0x2013, 0x0192, 0x2044, 0x2039, 0x203A, 0x2212,
                                0x2030, 0x201E, 0x201C, 0x201D, 0x2018, 0x2019, 0x201A, 0x2122, 0xFB01, 0xFB02, 0x0141,
                                0x0152, 0x0160, 0x0178, 0x017D, 0x0131, 0x0142, 0x0153, 0x0161, 0x017E, 0,      0x20AC};

void Append(std::string& utf8, char32_t c) {
  if (c < 0x80) {
    utf8 += static_cast<char>(c);
  } else if (c < 0x800) {
    utf8 += static_cast<char>(0xC0 | c >> 6);
    utf8 += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    utf8 += static_cast<char>(0xE0 | c >> 12);
    utf8 += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    utf8 += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    utf8 += static_cast<char>(0xF0 | c >> 18);
    utf8 += static_cast<char>(0x80 | (c >> 12 & 0x3F));
    utf8 += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    utf8 += static_cast<char>(0x80 | (c & 0x3F));
  }
}

char32_t FromPDFDocEncoding(unsigned char byte) {
  char32_t c = byte;
  if (byte >= 0x18 && byte <= 0x1F) c = kFrom18[byte - 0x18];
  if (byte >= 0x80 && byte <= 0xA0) c = kFrom80[byte - 0x80];
  if (byte == 0x7F || byte == 0xAD) c = 0;
  return c == 0 && byte != 0 ? kReplacement : c;
}

std::string DecodePDFDocEncoding(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (const char byte : bytes) Append(utf8, FromPDFDocEncoding(static_cast<unsigned char>(byte)));
  return utf8;
}

/// `high` is the place of the high byte within a pair: 0 or 1.
std::string DecodeUtf16(std::string_view bytes, std::size_t high) {
  const auto unit = [&](std::size_t i) -> char32_t {
    return static_cast<char32_t>(static_cast<unsigned char>(bytes[i + high])) << 8 |
           static_cast<unsigned char>(bytes[i + 1 - high]);
  };
  std::string utf8;
  utf8.reserve(bytes.size());
  std::size_t i = 0;
  for (; i + 1 < bytes.size(); i += 2) {
    char32_t c = unit(i);
    if (c >= 0xD800 && c <= 0xDBFF && i + 3 < bytes.size() && unit(i + 2) >= 0xDC00 && unit(i + 2) <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (unit(i + 2) - 0xDC00);
      i += 2;
    } else if (c >= 0xD800 && c <= 0xDFFF) {
      c = kReplacement;
    }
    Append(utf8, c);
  }
  if (i < bytes.size()) Append(utf8, kReplacement);
  return utf8;
}

/// The length of the well-formed UTF-8 character that `text` begins with, 0 if there is none.
std::size_t Utf8Length(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  const bool overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
  const bool surrogate = first == 0xED && byte(1) >= 0xA0;
  const bool tooLarge = first == 0xF4 && byte(1) >= 0x90;
  return overlong || surrogate || tooLarge ? 0 : length;
}

std::string RepairUtf8(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  while (!bytes.empty()) {
    const std::size_t length = Utf8Length(bytes);
    if (length == 0) {
      Append(utf8, kReplacement);
    } else {
      utf8 += bytes.substr(0, length);
    }
    bytes.remove_prefix(length == 0 ? 1 : length);
  }
  return utf8;
}

/// Escapes a C0 or C1 control character, the delete character and a bidirectional control; gives nothing for all others.
std::string EscapedControl(std::string_view character) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(character[i]); };
  if (character == "\n") return "\\n";
  if (character == "\t") return "\\t";
  char32_t c = 0;
  if (character.size() == 1) c = byte(0);
  if (character.size() == 2) c = static_cast<char32_t>(byte(0) & 0x1F) << 6 | (byte(1) & 0x3F);
  if (character.size() == 3) {
    c = static_cast<char32_t>(byte(0) & 0x0F) << 12 | static_cast<char32_t>(byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
  }
  const bool control = c < 0x20 || (c >= 0x7F && c < 0xA0);
  const bool bidirectional = (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
  if (character.size() > 3 || (!control && !bidirectional)) return "";
  char escaped[12];
  std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
  return escaped;
}

}  // namespace

std::string DecodeTextString(std::string_view bytes) {
  if (bytes.starts_with("\xFE\xFF")) return DecodeUtf16(bytes.substr(2), 0);
  if (bytes.starts_with("\xFF\xFE")) return DecodeUtf16(bytes.substr(2), 1);
  if (bytes.starts_with("\xEF\xBB\xBF")) return RepairUtf8(bytes.substr(3));
  return DecodePDFDocEncoding(bytes);
}

std::string DecodeName(std::string_view bytes) { return IsUtf8(bytes) ? std::string(bytes) : DecodePDFDocEncoding(bytes); }

std::string EncodeUtf16(std::string_view utf8) {
  std::string bytes = "\xFE\xFF";
  const auto put = [&bytes](char32_t unit) {
    bytes += static_cast<char>(unit >> 8);
    bytes += static_cast<char>(unit & 0xFF);
  };
  while (!utf8.empty()) {
    const std::size_t length = std::max<std::size_t>(Utf8Length(utf8), 1);
    const auto first = static_cast<unsigned char>(utf8[0]);
    char32_t c = length == 1 ? first : first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) c = c << 6 | (static_cast<unsigned char>(utf8[i]) & 0x3F);
    if (c >= 0x10000) {
      put(0xD800 + ((c - 0x10000) >> 10));
      put(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
      put(c);
    }
    utf8.remove_prefix(length);
  }
  return bytes;
}

bool IsUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t length = Utf8Length(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

std::string OneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = Utf8Length(text);
    const auto byte = static_cast<unsigned char>(text[0]);
    if (length == 0 || byte < 0x20 || byte == 0x7F) {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\x%02X", byte);
      line += escaped;
    } else {
      const std::string escaped = EscapedControl(text.substr(0, length));
      line += escaped.empty() ? text.substr(0, length) : std::string_view(escaped);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return line;
}

std::string ForTerminal(std::string_view utf8, std::size_t limit) {
  std::string text;
  for (std::size_t count = 0; !utf8.empty(); ++count) {
    if (count == limit) return text + "\u2026";
    const std::size_t length = Utf8Length(utf8) == 0 ? 1 : Utf8Length(utf8);
    const std::string_view character = utf8.substr(0, length);
    const std::string escaped = EscapedControl(character);
    text += escaped.empty() ? character : std::string_view(escaped);
    utf8.remove_prefix(length);
  }
  return text;
}

}  // namespace tgx::tool
