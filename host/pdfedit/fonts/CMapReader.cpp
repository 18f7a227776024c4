#include "host/pdfedit/fonts/CMapReader.h"

#include <array>
#include <charconv>
#include <optional>

#include "host/pdfedit/fonts/CMapLexer.h"

namespace tgx::host {
namespace {

using Token = CMapLexer::Token;
using Kind = CMapLexer::Kind;

int DigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

/// An odd number of digits is read as a number, as if a zero stood in front.
CMapCode CodeOf(const Token& token) {
  CMapCode code;
  if (token.kind != Kind::kHex) return code;
  int digits = 0;
  for (const char c : token.text) {
    const int digit = DigitValue(c);
    if (digit < 0) continue;
    if (++digits > 8) return {};
    code.value = code.value << 4 | static_cast<std::uint32_t>(digit);
  }
  code.length = (digits + 1) / 2;
  return code;
}

std::optional<std::uint32_t> NumberOf(const Token& token) {
  std::uint32_t number = 0;
  if (token.kind != Kind::kNumber) return std::nullopt;
  const char* end = token.text.data() + token.text.size();
  const auto result = std::from_chars(token.text.data(), end, number);
  return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

/// The UTF-16 units of a hexadecimal string; up to four digits are one unit. A text for one code has 512 bytes at most.
class Text {
 public:
  explicit Text(const Token& token) {
    int digits = 0;
    char32_t unit = 0;
    for (const char c : token.text) {
      const int digit = DigitValue(c);
      if (digit < 0) continue;
      unit = unit << 4 | static_cast<char32_t>(digit);
      if (++digits % 4 != 0) continue;
      if (length_ == units_.size()) return;
      units_[length_++] = static_cast<char16_t>(unit);
      unit = 0;
    }
    if (length_ == 0 && digits > 0) units_[length_++] = static_cast<char16_t>(unit);
  }
  std::u16string_view View() const { return {units_.data(), length_}; }

 private:
  std::array<char16_t, 256> units_;  // only what was written is read
  std::size_t length_ = 0;
};

class Reader {
 public:
  Reader(std::string_view text, CMapEvents& events) : lexer_(text), events_(events) {}

  void Run() {
    std::string_view lastName;
    for (Advance(); token_.kind != Kind::kEnd;) {
      if (token_.kind == Kind::kWord && ReadSection()) continue;
      if (token_.kind == Kind::kWord && token_.text == "usecmap" && !lastName.empty()) events_.OnUseCMap(lastName);
      if (token_.kind == Kind::kName) lastName = token_.text;
      const bool isWMode = token_.kind == Kind::kName && token_.text == "WMode";
      Advance();
      if (isWMode && NumberOf(token_)) events_.OnWMode(*NumberOf(token_) == 1 ? 1 : 0);
    }
  }

 private:
  void Advance() { token_ = lexer_.Next(); }
  Token Take() {
    const Token taken = token_;
    Advance();
    return taken;
  }

  /// Reads what stands between a "begin..." and the next operator, which is the current token afterwards.
  bool ReadSection() {
    void (Reader::*entry)() = nullptr;
    if (token_.text == "begincodespacerange") entry = &Reader::ReadCodeSpace;
    if (token_.text == "beginbfchar") entry = &Reader::ReadUnicodeChar;
    if (token_.text == "beginbfrange") entry = &Reader::ReadUnicodeRange;
    if (token_.text == "begincidchar" || token_.text == "beginnotdefchar") entry = &Reader::ReadCidChar;
    if (token_.text == "begincidrange" || token_.text == "beginnotdefrange") entry = &Reader::ReadCidRange;
    if (entry == nullptr) return false;
    isNotDef_ = token_.text.starts_with("beginnotdef");
    for (Advance(); token_.kind != Kind::kEnd && token_.kind != Kind::kWord;) {
      if (token_.kind == Kind::kHex) {
        (this->*entry)();
      } else {
        Advance();  // what cannot begin an entry
      }
    }
    return true;
  }

  void ReadCodeSpace() {
    const CMapCode first = CodeOf(Take());
    if (token_.kind != Kind::kHex) return;
    const CMapCode last = CodeOf(Take());
    if (first.length > 0 && first.length == last.length) events_.OnCodeSpace(first, last);
  }

  void ReadCidChar() {
    const CMapCode code = CodeOf(Take());
    EmitCids(code, code);
  }

  void ReadCidRange() {
    const CMapCode first = CodeOf(Take());
    if (token_.kind != Kind::kHex) return;
    EmitCids(first, CodeOf(Take()));
  }

  void EmitCids(CMapCode first, CMapCode last) {
    const std::optional<std::uint32_t> cid = NumberOf(token_);
    if (!cid) return;
    Advance();
    if (!IsRange(first, last)) return;
    if (isNotDef_) {
      events_.OnNotDefs(first, last, *cid);
    } else {
      events_.OnCids(first, last, *cid);
    }
  }

  void ReadUnicodeChar() {
    const CMapCode code = CodeOf(Take());
    EmitUnicode(code, code);
  }

  void ReadUnicodeRange() {
    CMapCode code = CodeOf(Take());
    if (token_.kind != Kind::kHex) return;
    const CMapCode last = CodeOf(Take());
    if (token_.kind != Kind::kArrayOpen) return EmitUnicode(code, last);
    bool isInside = IsRange(code, last);
    for (Advance(); token_.kind == Kind::kHex || token_.kind == Kind::kName || token_.kind == Kind::kOther;) {
      if (isInside) {
        EmitUnicode(code, code);
      } else {
        Advance();
      }
      isInside = isInside && code.value < last.value;
      ++code.value;
    }
    if (token_.kind == Kind::kArrayClose) Advance();
  }

  /// The current token is what the codes stand for.
  void EmitUnicode(CMapCode first, CMapCode last) {
    if (token_.kind == Kind::kWord || token_.kind == Kind::kEnd) return;
    const Token target = Take();
    if (!IsRange(first, last)) return;
    if (target.kind == Kind::kName && first.value == last.value) events_.OnGlyphName(first, target.text);
    if (target.kind != Kind::kHex) return;
    const Text text(target);
    if (!text.View().empty()) events_.OnUnicode(first, last, text.View());
  }

  static bool IsRange(CMapCode first, CMapCode last) {
    return first.length > 0 && last.length > 0 && first.value <= last.value;
  }

  CMapLexer lexer_;
  CMapEvents& events_;
  Token token_;
  bool isNotDef_ = false;
};

}  // namespace

void ReadCMap(std::string_view text, CMapEvents& events) { Reader(text, events).Run(); }

}  // namespace tgx::host
