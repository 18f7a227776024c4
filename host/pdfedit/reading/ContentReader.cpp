#include "host/pdfedit/reading/ContentReader.h"

namespace tgx::host {

bool ContentReader::HasNumbers(std::size_t count) const {
  if (count_ < count) return false;
  for (std::size_t i = 0; i < count; ++i) {
    if (Operand(i, count).kind != Token::Kind::kNumber) return false;
  }
  return true;
}

bool ContentReader::Next() {
  count_ = 0;
  for (;;) {
    const Token token = NextToken(content_, position_);
    position_ = token.end;
    switch (token.kind) {
      case Token::Kind::kEnd:
        return false;
      case Token::Kind::kStray:
        break;
      case Token::Kind::kKeyword: {
        const std::string_view keyword = token.In(content_);
        if (keyword != "true" && keyword != "false" && keyword != "null") return Finish(token);
        [[fallthrough]];
      }
      default:
        if (count_ == 0) begin_ = token.begin;
        operands_[count_++ % kMostOperands] = token;
    }
  }
}

bool ContentReader::Finish(const Token& keyword) {
  code_ = OpcodeOf(keyword.In(content_));
  keyword_ = keyword.begin;
  if (count_ == 0) begin_ = keyword_;
  if (code_ == Opcode::kInlineImage) {
    if (const auto image = FindInlineImage(content_, keyword.end)) {
      image_ = *image;
      position_ = image_.end;
    } else {
      code_ = Opcode::kUnknown;
    }
  }
  end_ = position_;
  return true;
}

}  // namespace tgx::host
