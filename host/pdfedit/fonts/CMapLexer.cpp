#include "host/pdfedit/fonts/CMapLexer.h"

#include <algorithm>

namespace tgx::host {
namespace {

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\0'; }
bool IsDelimiter(char c) { return std::string_view("()<>[]{}/%").find(c) != std::string_view::npos; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

void CMapLexer::SkipSpace() {
  while (at_ < text_.size()) {
    if (text_[at_] == '%') {
      at_ = std::min(text_.find_first_of("\r\n", at_), text_.size());
    } else if (IsSpace(text_[at_])) {
      ++at_;
    } else {
      return;
    }
  }
}

CMapLexer::Token CMapLexer::HexString() {
  const std::size_t start = at_ + 1;
  const std::size_t end = std::min(text_.find_first_of("<>", start), text_.size());
  at_ = end < text_.size() && text_[end] == '>' ? end + 1 : end;  // an unclosed one ends where the next begins
  return {Kind::kHex, text_.substr(start, end - start)};
}

CMapLexer::Token CMapLexer::LiteralString() {
  const std::size_t start = at_;
  int depth = 0;
  for (; at_ < text_.size(); ++at_) {
    if (text_[at_] == '\\') {
      ++at_;
    } else if (text_[at_] == '(') {
      ++depth;
    } else if (text_[at_] == ')' && --depth == 0) {
      ++at_;
      break;
    }
  }
  at_ = std::min(at_, text_.size());
  return {Kind::kOther, text_.substr(start, at_ - start)};
}

std::string_view CMapLexer::Regular() {
  const std::size_t start = at_;
  while (at_ < text_.size() && !IsSpace(text_[at_]) && !IsDelimiter(text_[at_])) ++at_;
  return text_.substr(start, at_ - start);
}

CMapLexer::Token CMapLexer::Next() {
  SkipSpace();
  if (at_ >= text_.size()) return {};
  const char c = text_[at_];
  if (c == '<' && at_ + 1 < text_.size() && text_[at_ + 1] == '<') {
    at_ += 2;
    return {Kind::kOther, "<<"};
  }
  if (c == '<') return HexString();
  if (c == '(') return LiteralString();
  if (c == '/') {
    ++at_;
    return {Kind::kName, Regular()};
  }
  if (IsDelimiter(c)) {
    ++at_;
    const Kind kind = c == '[' ? Kind::kArrayOpen : c == ']' ? Kind::kArrayClose : Kind::kOther;
    return {kind, text_.substr(at_ - 1, 1)};
  }
  const std::string_view word = Regular();
  const std::size_t sign = word[0] == '-' || word[0] == '+' ? 1 : 0;
  const bool isNumber =
      word.size() > sign && std::all_of(word.begin() + static_cast<std::ptrdiff_t>(sign), word.end(), IsDigit);
  return {isNumber ? Kind::kNumber : Kind::kWord, word};
}

}  // namespace tgx::host
