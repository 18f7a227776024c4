#include "src/fixes/LangEncoderFix/LangForms.h"

#include <string_view>

namespace tgx {
namespace {

using std::string_view_literals::operator""sv;

constexpr auto kOpenBracket = "[Lang="sv;
constexpr auto kCloseBracket = "]"sv;
constexpr auto kByteOrderMark = "\xFE\xFF"sv;
constexpr auto kOpenMark = "\x00\x0E\x00\x7F"sv;
constexpr auto kCloseMark = "\x00\x0E\x00\x01"sv;
constexpr auto kCharacterPrefix = "\x00\x0E\x00"sv;

/// Overlapping occurrences count.
std::size_t Count(const std::string& bytes, std::string_view pattern) {
  std::size_t count = 0;
  for (auto at = bytes.find(pattern); at != std::string::npos; at = bytes.find(pattern, at + 1)) ++count;
  return count;
}

/// What is left without brackets, also without those that only come about where others were. No bracket overlaps another, so
/// one pass with a look back finds them all, in whatever order they would be taken.
std::string WithoutBrackets(const std::string& bytes) {
  std::string left;
  for (const char byte : bytes) {
    left += byte;
    for (const std::string_view bracket : {kOpenBracket, kCloseBracket}) {
      if (left.ends_with(bracket)) left.resize(left.size() - bracket.size());
    }
  }
  return left;
}

/// Removes the patterns in turn, again and again until a pass removes nothing. Here the order matters.
template <typename... Patterns>
void RemoveAll(std::string& bytes, Patterns... patterns) {
  const auto removeOne = [&bytes](std::string_view pattern) {
    bool removed = false;
    for (auto at = bytes.find(pattern); at != std::string::npos; at = bytes.find(pattern, at)) {
      bytes.erase(at, pattern.size());
      removed = true;
    }
    return removed;
  };
  bool removedAny = true;
  while (removedAny) {
    removedAny = false;
    ((removedAny |= removeOne(patterns)), ...);
  }
}

}  // namespace

bool IsTagForm(const std::string& bytes) {
  return Count(bytes, kByteOrderMark) == 1 && Count(bytes, kOpenMark) == 1 && Count(bytes, kCloseMark) == 1 &&
         bytes.find(kCloseMark) >= bytes.find(kOpenMark);
}

bool IsBracketForm(const std::string& bytes) {
  return !IsTagForm(bytes) && Count(bytes, kOpenBracket) == 1 && Count(bytes, kCloseBracket) == 1;
}

std::string BracketToTagForm(const std::string& bytes) {
  std::string tag(kByteOrderMark);
  tag += kOpenMark;
  for (const char character : WithoutBrackets(bytes)) {
    tag += kCharacterPrefix;
    tag += character;
  }
  return tag += kCloseMark;
}

std::string TagToBracketForm(std::string bytes) {
  RemoveAll(bytes, kByteOrderMark, kCloseMark, kOpenMark, kCharacterPrefix);
  return std::string(kOpenBracket) + bytes + std::string(kCloseBracket);
}

}  // namespace tgx
