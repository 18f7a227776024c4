#include "src/common/TextEncoding.h"

#include <algorithm>
#include <cstring>

#include "src/common/HostTexts.h"

namespace tgx {
namespace {

int Base64Value(char character) {
  if (character >= 'A' && character <= 'Z') return character - 'A';
  if (character >= 'a' && character <= 'z') return character - 'a' + 26;
  if (character >= '0' && character <= '9') return character - '0' + 52;
  if (character == '+') return 62;
  if (character == '/') return 63;
  return -1;
}

int HexValue(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return -1;
}

template <typename Text>
void AppendHex(const ByteVector& bytes, Text& text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  text.reserve(text.size() + 2 * bytes.size());
  for (const std::uint8_t byte : bytes) {
    text.push_back(kDigits[byte >> 4U]);
    text.push_back(kDigits[byte & 0x0FU]);
  }
}

}  // namespace

ASText Utf16ToAsText(const ByteVector& utf16) {
  if (utf16.empty() || utf16.size() % 2 != 0) return nullptr;
  return ASTextFromSizedUnicode(reinterpret_cast<const ASUTF16Val*>(utf16.data()), kUTF16BigEndian,
                                static_cast<ASTArraySize>(utf16.size()));
}

void Utf16ToUtf8(const ByteVector& utf16, ByteVector& utf8) {
  utf8.clear();
  const OwnedAsText text(Utf16ToAsText(utf16));
  if (text == nullptr) return;
  const HostMemory<ASUTF16Val> copy(ASTextGetUnicodeCopy(text.get(), kUTF8));
  for (const auto* byte = reinterpret_cast<const std::uint8_t*>(copy.get()); *byte != 0; ++byte) utf8.push_back(*byte);
}

void Utf16BomToUtf8(const ByteVector& utf16, ByteVector& utf8) {
  ByteVector unmarked = utf16;
  DropFirstTwo(unmarked);
  Utf16ToUtf8(unmarked, utf8);
}

void Utf8ToUtf16(const std::string& utf8, ByteVector& utf16) {
  utf16.clear();
  const auto length = static_cast<ASTArraySize>(std::strlen(utf8.c_str()));
  const OwnedAsText text(ASTextFromSizedUnicode(reinterpret_cast<const ASUTF16Val*>(utf8.data()), kUTF8, length));
  const HostMemory<ASUTF16Val> copy(ASTextGetUnicodeCopy(text.get(), kUTF16BigEndian));
  for (const auto* unit = reinterpret_cast<const std::uint8_t*>(copy.get()); unit[0] != 0 || unit[1] != 0; unit += 2) {
    utf16.insert(utf16.end(), unit, unit + 2);
  }
}

void AppendUtf16Units(const ByteVector& utf16, std::u16string& units) {
  const bool swap = utf16.size() % 2 == 0;
  for (std::size_t at = 0; at + 1 < utf16.size(); at += 2) {
    const unsigned first = utf16[at];
    const unsigned second = utf16[at + 1];
    units.push_back(static_cast<char16_t>(swap ? first << 8U | second : second << 8U | first));
  }
}

void AppendUtf16Bytes(std::u16string_view units, ByteVector& utf16) {
  utf16.reserve(utf16.size() + 2 * units.size());
  for (const char16_t unit : units) {
    utf16.push_back(static_cast<std::uint8_t>(unit >> 8U));
    utf16.push_back(static_cast<std::uint8_t>(unit & 0xFFU));
  }
}

bool StripBom(ByteVector& text) {
  if (text.size() < 2) return false;
  const bool marked = (text[0] == 0xFE && text[1] == 0xFF) || (text[0] == 0xFF && text[1] == 0xFE);
  if (marked) text.erase(text.begin(), text.begin() + 2);
  return marked;
}

std::string StripZeroBytes(const ByteVector& text) {
  std::string stripped;
  std::copy_if(text.begin(), text.end(), std::back_inserter(stripped), [](std::uint8_t byte) { return byte != 0; });
  return stripped;
}

void Base64Decode(const char* text, std::size_t length, ByteVector& bytes) {
  bytes.clear();
  bytes.reserve(length / 4 * 3 + 3);
  std::uint32_t bits = 0;
  unsigned bitCount = 0;
  for (std::size_t index = 0; index < length; ++index) {
    const int value = Base64Value(text[index]);
    if (value < 0) continue;
    bits = (bits << 6U) | static_cast<std::uint32_t>(value);
    bitCount += 6;
    if (bitCount < 8) continue;
    bitCount -= 8;
    bytes.push_back(static_cast<std::uint8_t>(bits >> bitCount));
  }
}

void Base64Decode(const std::string& text, ByteVector& bytes) { Base64Decode(text.data(), text.size(), bytes); }

void HexDecode(std::string_view text, ByteVector& bytes) {
  bytes.assign((text.size() + 1) / 2, 0);
  std::size_t digits = 0;
  for (auto character = text.rbegin(); character != text.rend(); ++character) {
    const int value = HexValue(*character);
    if (value < 0) continue;
    std::uint8_t& byte = bytes[bytes.size() - 1 - digits / 2];
    byte = static_cast<std::uint8_t>(digits % 2 == 0 ? value : byte | value << 4);
    ++digits;
  }
}

void HexEncode(const ByteVector& bytes, ByteVector& text) {
  text.clear();
  AppendHex(bytes, text);
}

std::string HexEncode(const ByteVector& bytes) {
  std::string text;
  AppendHex(bytes, text);
  return text;
}

}  // namespace tgx
