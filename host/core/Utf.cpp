#include "host/core/Utf.h"

#include <algorithm>
#include <array>

namespace tgx::host {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
unsigned Byte(char c) { return static_cast<unsigned char>(c); }

struct Decoded {
  char32_t code;
  std::size_t length;  // bytes used, at least one
  bool wellFormed;
};

/// The lowest and highest second byte that may follow a lead byte, and the number of bytes that follow it.
struct LeadByte {
  unsigned trail, low, high;
};

LeadByte Classify(unsigned lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return {1, 0x80, 0xBF};
  if (lead == 0xE0) return {2, 0xA0, 0xBF};
  if (lead == 0xED) return {2, 0x80, 0x9F};  // no surrogates
  if (lead >= 0xE1 && lead <= 0xEF) return {2, 0x80, 0xBF};
  if (lead == 0xF0) return {3, 0x90, 0xBF};
  if (lead >= 0xF1 && lead <= 0xF3) return {3, 0x80, 0xBF};
  if (lead == 0xF4) return {3, 0x80, 0x8F};
  return {0, 0, 0};
}

/// The first character of a text that is not empty. An ill-formed sequence is as long as the part of it that could still
/// have become a character.
Decoded DecodeFirst(std::string_view text) {
  const unsigned lead = Byte(text[0]);
  if (lead < 0x80) return {lead, 1, true};
  const LeadByte kind = Classify(lead);
  if (kind.trail == 0) return {kReplacement, 1, false};
  char32_t code = lead & (0x3FU >> kind.trail);
  for (std::size_t i = 1; i <= kind.trail; ++i) {
    const unsigned low = i == 1 ? kind.low : 0x80;
    const unsigned high = i == 1 ? kind.high : 0xBF;
    if (i >= text.size() || Byte(text[i]) < low || Byte(text[i]) > high) return {kReplacement, i, false};
    code = (code << 6) | (Byte(text[i]) & 0x3F);
  }
  return {code, kind.trail + 1U, true};
}

void AppendUtf16(std::u16string& units, char32_t code) {
  if (code < 0x10000) {
    units.push_back(static_cast<char16_t>(code));
  } else {
    units.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
    units.push_back(static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF)));
  }
}

void AppendUtf8(std::string& text, char32_t code) {
  const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  const auto putTrail = [&put](char32_t bits) { put(0x80 | (bits & 0x3F)); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | (code >> 6));
    putTrail(code);
  } else if (code < 0x10000) {
    put(0xE0 | (code >> 12));
    putTrail(code >> 6);
    putTrail(code);
  } else {
    put(0xF0 | (code >> 18));
    putTrail(code >> 12);
    putTrail(code >> 6);
    putTrail(code);
  }
}

/// The codes of PDFDocEncoding that differ from Latin-1 (ISO 32000-1, annex D.2): 0x18 to 0x1F, and 0x7F to 0xAD.
char16_t PdfDocUnit(unsigned code) {
  static constexpr std::array<char16_t, 8> kAccents = {0x02D8, 0x02C7, 0x02C6, 0x02D9, 0x02DD, 0x02DB, 0x02DA, 0x02DC};
  static constexpr std::array<char16_t, 34> kHigh = {0xFFFD, 0x2022, 0x2020, 0x2021, 0x2026, 0x2014, 0x2013, 0x0192, 0x2044,
                                                     0x2039, 0x203A, 0x2212, 0x2030, 0x201E, 0x201C, 0x201D, 0x2018, 0x2019,
                                                     0x201A, 0x2122, 0xFB01, 0xFB02, 0x0141, 0x0152, 0x0160, 0x0178, 0x017D,
                                                     0x0131, 0x0142, 0x0153, 0x0161, 0x017E, 0xFFFD, 0x20AC};
  if (code >= 0x18 && code <= 0x1F) return kAccents[code - 0x18];
  if (code >= 0x7F && code <= 0xA0) return kHigh[code - 0x7F];
  return code == 0xAD ? static_cast<char16_t>(kReplacement) : static_cast<char16_t>(code);
}

}  // namespace

std::u16string Utf8ToUtf16(std::string_view text) {
  std::u16string units;
  units.reserve(text.size());
  while (!text.empty()) {
    const Decoded first = DecodeFirst(text);
    AppendUtf16(units, first.code);
    text.remove_prefix(first.length);
  }
  return units;
}

std::string Utf16ToUtf8(std::u16string_view units) {
  std::string text;
  text.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t unit = units[i];
    if (IsHighSurrogate(unit) && i + 1 < units.size() && IsLowSurrogate(units[i + 1])) {
      ++i;
      AppendUtf8(text, 0x10000 + ((unit - 0xD800U) << 10) + (units[i] - 0xDC00U));
    } else {
      AppendUtf8(text, IsHighSurrogate(unit) || IsLowSurrogate(unit) ? kReplacement : unit);
    }
  }
  return text;
}

std::u16string Utf16FromBigEndian(std::string_view bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    units[i] = static_cast<char16_t>((Byte(bytes[2 * i]) << 8) | Byte(bytes[2 * i + 1]));
  }
  return units;
}

std::string Utf16ToBigEndian(std::u16string_view units) {
  std::string bytes;
  bytes.reserve(2 * units.size());
  for (const char16_t unit : units) {
    bytes.push_back(static_cast<char>(unit >> 8));
    bytes.push_back(static_cast<char>(unit & 0xFF));
  }
  return bytes;
}

std::u16string PdfDocToUtf16(std::string_view bytes) {
  std::u16string units(bytes.size(), u'\0');
  std::transform(bytes.begin(), bytes.end(), units.begin(), [](char c) { return PdfDocUnit(Byte(c)); });
  return units;
}

std::size_t Utf8SequenceLength(std::string_view text) {
  if (text.empty()) return 0;
  const Decoded first = DecodeFirst(text);
  return first.wellFormed ? first.length : 0;
}

std::string_view CutUtf8(std::string_view text, std::size_t size) {
  if (text.size() <= size) return text;
  while (size > 0 && (Byte(text[size]) & 0xC0) == 0x80) --size;
  return text.substr(0, size);
}

std::string WellFormedUtf8(std::string text) {
  std::string_view rest = text;
  while (!rest.empty()) {
    const std::size_t length = Utf8SequenceLength(rest);
    if (length == 0) return Utf16ToUtf8(Utf8ToUtf16(text));
    rest.remove_prefix(length);
  }
  return text;
}

}  // namespace tgx::host
