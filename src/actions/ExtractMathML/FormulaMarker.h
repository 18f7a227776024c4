#pragma once

#include <optional>
#include <string>

#include "src/common/TextEncoding.h"

namespace tgx {

/// What the "Alt" of an element says of a formula:
///
///     MATHML_<id>_START, MATHML_<id>_END, MATHML_<id>_CONTENT_<name>:<text>
struct FormulaMarker {
  enum class Kind { Start, End, Content };

  int id;  ///< above 0
  Kind kind;
  std::string name;  ///< of a content
  std::string text;  ///< all behind the first colon
};

/// The marker in an alternate text, read without its byte-order mark and its zero bytes; none when it is none. A content
/// without a name counts for nothing.
std::optional<FormulaMarker> ParseFormulaMarker(ByteVector alt);

/// Whether the title, behind a byte-order mark, begins like that of the holder of the formula sources.
bool IsFormulaHolderTitle(ByteVector title);

}  // namespace tgx
