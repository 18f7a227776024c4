#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tgx::host {

/// A token of a content stream or, for arrays and dictionaries, everything from the opening bracket to the closing one.
struct Token {
  enum class Kind : std::uint8_t { kEnd, kNumber, kName, kString, kHexString, kArray, kDictionary, kKeyword, kStray };
  Kind kind = Kind::kEnd;
  std::uint32_t begin = 0;
  std::uint32_t end = 0;

  std::string_view In(std::string_view bytes) const { return bytes.substr(begin, end - begin); }
  bool IsString() const { return kind == Kind::kString || kind == Kind::kHexString; }
};

bool IsWhite(char c) noexcept;
bool IsDelimiter(char c) noexcept;

/// The next token at or after `position`, of the end of the bytes when there is none. Comments are white space. What no
/// token can start with (an unmatched closing bracket, a brace) comes as a stray of one byte. An array or dictionary that is
/// never closed ends in front of the first operator inside it, a string that is never closed at the end.
Token NextToken(std::string_view bytes, std::size_t position);

/// The value of a number token, read as viewers read it: 0 for no digits, a second sign and signs in the middle are ignored.
double NumberValue(std::string_view token) noexcept;

/// A name without the slash, #-escapes resolved.
std::string NameValue(std::string_view token);

/// Appends the bytes of a string token: escapes, octal codes, line ends and hexadecimal digits resolved.
void AppendStringValue(std::string_view token, std::string& bytes);

}  // namespace tgx::host
