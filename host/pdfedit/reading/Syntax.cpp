#include "host/pdfedit/reading/Syntax.h"

#include <array>

#include "host/pdfedit/reading/Opcode.h"

namespace tgx::host {
namespace {

enum : std::uint8_t { kRegular = 0, kWhite = 1, kDelimiter = 2, kNumeric = 4 };

constexpr std::array<std::uint8_t, 256> MakeClasses() {
  std::array<std::uint8_t, 256> classes{};
  for (const char c : {'\0', '\t', '\n', '\f', '\r', ' '}) classes[static_cast<unsigned char>(c)] = kWhite;
  for (const char c : {'(', ')', '<', '>', '[', ']', '{', '}', '/', '%'})
    classes[static_cast<unsigned char>(c)] = kDelimiter;
  for (const char c : {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', '+', '-', '.'}) {
    classes[static_cast<unsigned char>(c)] = kNumeric;
  }
  return classes;
}

constexpr std::array<std::uint8_t, 256> kClasses = MakeClasses();

std::uint8_t ClassOf(char c) noexcept { return kClasses[static_cast<unsigned char>(c)]; }

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

int HexDigit(char c) noexcept {
  if (IsDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::size_t SkipSpace(std::string_view bytes, std::size_t at) noexcept {
  while (at < bytes.size()) {
    if (ClassOf(bytes[at]) == kWhite) {
      ++at;
    } else if (bytes[at] == '%') {
      while (at < bytes.size() && bytes[at] != '\n' && bytes[at] != '\r') ++at;
    } else {
      break;
    }
  }
  return at;
}

std::size_t EndOfString(std::string_view bytes, std::size_t at) noexcept {
  std::size_t depth = 0;
  for (; at < bytes.size(); ++at) {
    switch (bytes[at]) {
      case '\\':
        ++at;
        break;
      case '(':
        ++depth;
        break;
      case ')':
        if (--depth == 0) return at + 1;
        break;
      default:
        break;
    }
  }
  return bytes.size();
}

std::size_t EndOfHexString(std::string_view bytes, std::size_t at) noexcept {
  const std::size_t close = bytes.find('>', at);
  return close == std::string_view::npos ? bytes.size() : close + 1;
}

std::size_t EndOfRegular(std::string_view bytes, std::size_t at) noexcept {
  while (at < bytes.size() && (ClassOf(bytes[at]) & (kWhite | kDelimiter)) == 0) ++at;
  return at;
}

/// A number ends at its second dot and at a sign behind its digits, where the next number starts: content is written without
/// spaces there. A minus behind the dot is noise.
std::size_t EndOfNumber(std::string_view bytes, std::size_t at) noexcept {
  bool dot = false;
  bool digit = false;
  for (; at < bytes.size() && ClassOf(bytes[at]) == kNumeric; ++at) {
    const char c = bytes[at];
    if (IsDigit(c)) {
      digit = true;
    } else if (c == '.') {
      if (dot) break;
      dot = true;
    } else if (dot ? c == '+' : digit) {
      break;
    }
  }
  return at;
}

Token MakeToken(Token::Kind kind, std::size_t begin, std::size_t end) {
  return {kind, static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end)};
}

/// Any token but arrays and dictionaries, whose brackets come as strays.
Token NextSimpleToken(std::string_view bytes, std::size_t position) noexcept {
  const std::size_t at = SkipSpace(bytes, position);
  if (at >= bytes.size()) return MakeToken(Token::Kind::kEnd, bytes.size(), bytes.size());
  const char c = bytes[at];
  switch (ClassOf(c)) {
    case kNumeric:
      return MakeToken(Token::Kind::kNumber, at, EndOfNumber(bytes, at));
    case kRegular:
      return MakeToken(Token::Kind::kKeyword, at, EndOfRegular(bytes, at));
    default:
      break;
  }
  if (c == '/') return MakeToken(Token::Kind::kName, at, EndOfRegular(bytes, at + 1));
  if (c == '(') return MakeToken(Token::Kind::kString, at, EndOfString(bytes, at));
  if (c == '<' || c == '>') {
    if (at + 1 < bytes.size() && bytes[at + 1] == c) return MakeToken(Token::Kind::kStray, at, at + 2);
    if (c == '<') return MakeToken(Token::Kind::kHexString, at, EndOfHexString(bytes, at));
  }
  return MakeToken(Token::Kind::kStray, at, at + 1);
}

bool IsConstant(std::string_view keyword) { return keyword == "true" || keyword == "false" || keyword == "null"; }

/// From an opening bracket to the one that closes it. Brackets of the other kind inside count as well, so that neither a
/// deep nesting nor a crossed one costs more than a walk over the bytes.
std::size_t EndOfNesting(std::string_view bytes, const Token& open) noexcept {
  std::size_t depth = 1;
  std::size_t at = open.end;
  while (true) {
    const Token token = NextSimpleToken(bytes, at);
    if (token.kind == Token::Kind::kEnd) return at;
    if (token.kind == Token::Kind::kKeyword) {
      const std::string_view keyword = token.In(bytes);
      if (!IsConstant(keyword) && OpcodeOf(keyword) != Opcode::kUnknown) return at;
    }
    at = token.end;
    if (token.kind != Token::Kind::kStray) continue;
    const char bracket = bytes[token.begin];
    if (bracket == '[' || (bracket == '<' && token.end - token.begin == 2)) ++depth;
    if ((bracket == ']' || (bracket == '>' && token.end - token.begin == 2)) && --depth == 0) return at;
  }
}

}  // namespace

bool IsWhite(char c) noexcept { return ClassOf(c) == kWhite; }
bool IsDelimiter(char c) noexcept { return ClassOf(c) == kDelimiter; }

Token NextToken(std::string_view bytes, std::size_t position) {
  Token token = NextSimpleToken(bytes, position);
  if (token.kind != Token::Kind::kStray) return token;
  const char bracket = bytes[token.begin];
  if (bracket == '[') {
    token.kind = Token::Kind::kArray;
  } else if (bracket == '<') {
    token.kind = Token::Kind::kDictionary;
  } else {
    return token;
  }
  token.end = static_cast<std::uint32_t>(EndOfNesting(bytes, token));
  return token;
}

double NumberValue(std::string_view token) noexcept {
  // Digits go into an integer as long as it holds them all exactly; the rest of an over-long fraction changes nothing.
  constexpr std::uint64_t kFull = 100'000'000'000'000'000U;
  bool negative = false;
  std::uint64_t digits = 0;
  double large = 0;
  double scale = 1;
  bool fraction = false;
  bool overflown = false;
  for (std::size_t i = 0; i < token.size(); ++i) {
    const char c = token[i];
    if (c == '-' && i == 0) negative = true;
    if (c == '.') fraction = true;
    if (!IsDigit(c)) continue;
    if (digits < kFull) {
      digits = digits * 10 + static_cast<std::uint64_t>(c - '0');
      if (fraction) scale *= 10;
    } else if (!fraction) {
      if (!overflown) large = static_cast<double>(digits);
      overflown = true;
      large = large * 10 + (c - '0');
    }
  }
  const double value = (overflown ? large : static_cast<double>(digits)) / scale;
  return negative ? -value : value;
}

std::string NameValue(std::string_view token) {
  if (!token.empty() && token.front() == '/') token.remove_prefix(1);
  std::string name;
  name.reserve(token.size());
  for (std::size_t i = 0; i < token.size(); ++i) {
    if (token[i] == '#' && i + 2 < token.size() && HexDigit(token[i + 1]) >= 0 && HexDigit(token[i + 2]) >= 0) {
      const int code = HexDigit(token[i + 1]) * 16 + HexDigit(token[i + 2]);
      if (code != 0) {
        name += static_cast<char>(code);
        i += 2;
        continue;
      }
    }
    name += token[i];
  }
  return name;
}

namespace {

void AppendHex(std::string_view token, std::string& bytes) {
  int high = -1;
  for (const char c : token) {
    const int digit = HexDigit(c);
    if (digit < 0) continue;
    if (high < 0) {
      high = digit;
    } else {
      bytes += static_cast<char>(high * 16 + digit);
      high = -1;
    }
  }
  if (high >= 0) bytes += static_cast<char>(high * 16);
}

/// Handles the escape whose backslash stands at `at`; returns the position behind it.
std::size_t AppendEscape(std::string_view text, std::size_t at, std::string& bytes) {
  if (++at >= text.size()) return at;
  const char c = text[at++];
  switch (c) {
    case 'n':
      bytes += '\n';
      break;
    case 'r':
      bytes += '\r';
      break;
    case 't':
      bytes += '\t';
      break;
    case 'b':
      bytes += '\b';
      break;
    case 'f':
      bytes += '\f';
      break;
    case '\r':
      if (at < text.size() && text[at] == '\n') ++at;
      break;
    case '\n':
      break;
    default:
      if (c < '0' || c > '7') {
        bytes += c;
        break;
      }
      int code = c - '0';
      for (int i = 0; i < 2 && at < text.size() && text[at] >= '0' && text[at] <= '7'; ++i)
        code = code * 8 + (text[at++] - '0');
      bytes += static_cast<char>(code & 0xFF);
  }
  return at;
}

}  // namespace

void AppendStringValue(std::string_view token, std::string& bytes) {
  if (token.empty()) return;
  if (token.front() == '<') return AppendHex(token, bytes);
  token.remove_prefix(1);
  // The closing parenthesis is missing in a string that the end of the content cuts off.
  std::size_t depth = 1;
  for (std::size_t at = 0; at < token.size();) {
    const char c = token[at];
    if (c == '\\') {
      at = AppendEscape(token, at, bytes);
      continue;
    }
    ++at;
    if (c == '(') ++depth;
    if (c == ')' && --depth == 0) break;
    if (c == '\r') {
      if (at < token.size() && token[at] == '\n') ++at;
      bytes += '\n';
    } else {
      bytes += c;
    }
  }
}

}  // namespace tgx::host
