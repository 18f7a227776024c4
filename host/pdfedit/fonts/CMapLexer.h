#pragma once

#include <cstddef>
#include <string_view>

namespace tgx::host {

/// Cuts the PostScript of a CMap into tokens, which are views on the text. Comments are skipped.
class CMapLexer {
 public:
  enum class Kind { kEnd, kHex, kNumber, kName, kArrayOpen, kArrayClose, kWord, kOther };
  struct Token {
    Kind kind = Kind::kEnd;
    std::string_view text;  ///< of a hexadecimal string what is between its brackets, of a name what follows the slash
  };

  explicit CMapLexer(std::string_view text) : text_(text) {}

  Token Next();

 private:
  void SkipSpace();
  Token HexString();
  Token LiteralString();
  std::string_view Regular();

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace tgx::host
