#include "host/pdfedit/writing/Syntax.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "host/pdfedit/reading/Syntax.h"

namespace tgx::host {
namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

void AppendHexByte(char c, std::string& text) {
  const auto byte = static_cast<unsigned char>(c);
  text += kHexDigits[byte >> 4U];
  text += kHexDigits[byte & 0xFU];
}

}  // namespace

std::string FormatNumber(double value) {
  constexpr double kTiny = 1e-9;
  constexpr double kHuge = 1e15;
  constexpr int kDigits = 10;
  if (std::isnan(value) || std::abs(value) < kTiny) return "0";
  value = std::clamp(value, -kHuge, kHuge);
  const int magnitude = static_cast<int>(std::floor(std::log10(std::abs(value)))) + 1;
  std::array<char, 48> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed,
                                 std::clamp(kDigits - magnitude, 0, 18));
  std::string text(buffer.data(), end.ptr);
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

std::string FormatName(std::string_view name) {
  std::string text = "/";
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '#' || IsDelimiter(c) || byte <= ' ' || byte >= 0x7F) {
      text += '#';
      AppendHexByte(c, text);
    } else {
      text += c;
    }
  }
  return text;
}

std::string FormatHex(std::string_view bytes) {
  std::string text = "<";
  for (const char c : bytes) AppendHexByte(c, text);
  return text + ">";
}

}  // namespace tgx::host
