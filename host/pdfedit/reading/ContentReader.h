#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <string_view>

#include "host/pdfedit/reading/InlineImage.h"
#include "host/pdfedit/reading/Opcode.h"
#include "host/pdfedit/reading/Syntax.h"

namespace tgx::host {

/// Reads content operator by operator, without allocating and without ever failing: what is no operator of PDF comes as
/// kUnknown, stray brackets are skipped.
class ContentReader {
 public:
  explicit ContentReader(std::string_view content, std::size_t position = 0) : content_(content), position_(position) {}

  /// Reads the next operator; false at the end. Operands that no operator follows belong to none.
  bool Next();

  /// Reads the next operator that ends at `offset` or in front of it; false when there is none. A reader of a part of the
  /// content: one that is given only that part may see other ends of inline images, since it lacks what follows them.
  bool NextUpTo(std::size_t offset) { return position_ < offset && Next() && end_ <= offset; }

  std::string_view Content() const { return content_; }
  Opcode Code() const { return code_; }
  std::size_t Begin() const { return begin_; }      ///< of the first operand, or of the keyword
  std::size_t Keyword() const { return keyword_; }  ///< where the keyword starts
  std::size_t End() const { return end_; }
  std::string_view Text() const { return content_.substr(begin_, end_ - begin_); }

  /// Operands are counted from the last `count` ones: an operator with too many takes those that stand nearest to it.
  bool Has(std::size_t count) const { return count_ >= count; }
  bool HasNumbers(std::size_t count) const;
  const Token& Operand(std::size_t index, std::size_t of) const { return At(count_ - of + index); }
  double Number(std::size_t index, std::size_t of) const { return NumberValue(Operand(index, of).In(content_)); }

  /// The parts of the inline image that was just read as kInlineImage.
  const InlineImage& Image() const { return image_; }

 private:
  /// More operands than any operator takes: of a longer row of them, the last count.
  static constexpr std::size_t kMostOperands = 64;

  const Token& At(std::size_t index) const { return operands_[index % kMostOperands]; }
  bool Finish(const Token& keyword);

  std::string_view content_;
  std::size_t position_;
  std::array<Token, kMostOperands> operands_{};
  std::size_t count_ = 0;
  Opcode code_ = Opcode::kUnknown;
  std::size_t begin_ = 0;
  std::size_t keyword_ = 0;
  std::size_t end_ = 0;
  InlineImage image_;
};

/// The items of an array operand, one call of `visit` each.
template <typename Visit>
void ForEachItem(std::string_view content, const Token& array, Visit&& visit) {
  const std::string_view upToEnd = content.substr(0, array.end);
  for (Token item = NextToken(upToEnd, array.begin + 1); item.kind != Token::Kind::kEnd;
       item = NextToken(upToEnd, item.end)) {
    visit(item);
  }
}

/// The entries of a dictionary operand at its own level: `visit(key token, value token)`.
template <typename Visit>
void ForEachEntry(std::string_view content, const Token& dictionary, Visit&& visit) {
  const std::string_view upToEnd = content.substr(0, dictionary.end);
  Token key;
  for (Token item = NextToken(upToEnd, dictionary.begin + 2); item.kind != Token::Kind::kEnd;
       item = NextToken(upToEnd, item.end)) {
    if (item.kind == Token::Kind::kStray) continue;
    if (key.kind != Token::Kind::kName) {
      key = item;
    } else {
      visit(key, item);
      key = {};
    }
  }
}

}  // namespace tgx::host
