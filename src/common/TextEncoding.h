#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "src/api/HostBinding.h"

namespace tgx {

/// The bytes of a text as the document stores them; "Alt" and titles are normally UTF-16BE with a byte-order mark.
using ByteVector = std::vector<std::uint8_t>;

/// A new host text with the UTF-16BE units of `utf16`, a mark among them kept as U+FEFF; null for no bytes or an odd number.
/// The caller destroys it.
ASText Utf16ToAsText(const ByteVector& utf16);
/// UTF-8 of UTF-16BE bytes up to the first zero unit; empty for no bytes or an odd number.
void Utf16ToUtf8(const ByteVector& utf16, ByteVector& utf8);
/// The same without the first two bytes, whatever they are. Throws std::runtime_error for fewer than three bytes.
void Utf16BomToUtf8(const ByteVector& utf16, ByteVector& utf8);
/// UTF-16BE bytes of UTF-8 up to the first zero byte; no mark.
void Utf8ToUtf16(const std::string& utf8, ByteVector& utf16);
/// Appends UTF-16BE bytes as units in the processor's order. An odd number of bytes is not swapped: its pairs are taken as
/// they lie, without the last byte.
void AppendUtf16Units(const ByteVector& utf16, std::u16string& units);
/// Appends the bytes of the units as UTF-16BE.
void AppendUtf16Bytes(std::u16string_view units, ByteVector& utf16);

/// Takes a leading FE FF or FF FE off and says whether there was one.
bool StripBom(ByteVector& text);
/// The bytes that are not zero: the cheap way from UTF-16 to ASCII.
std::string StripZeroBytes(const ByteVector& text);

/// Skips every character outside the alphabet, "=" among them; bits that do not fill a byte are dropped.
void Base64Decode(const char* text, std::size_t length, ByteVector& bytes);
void Base64Decode(const std::string& text, ByteVector& bytes);

/// Half as many bytes as `text` has characters, rounded up, filled from the end: the last digit is the low half of the last
/// byte. Characters that are no digits are skipped and leave zero bytes at the front.
void HexDecode(std::string_view text, ByteVector& bytes);
/// Two lower-case digits a byte.
void HexEncode(const ByteVector& bytes, ByteVector& text);
std::string HexEncode(const ByteVector& bytes);

/// Takes the first two bytes off. Throws std::runtime_error where no byte would stay.
template <typename Byte>
void DropFirstTwo(std::vector<Byte>& text) {
  if (text.size() < 3) throw std::runtime_error("wrong vector range");
  text.erase(text.begin(), text.begin() + 2);
}

}  // namespace tgx
