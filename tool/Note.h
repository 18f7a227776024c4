#pragma once

#include <cstdint>
#include <string>

namespace tgx::tool {

/// Something about the document that a repair tells people, beside its numbers.
struct Note {
  std::int32_t page;  ///< counted from 1; 0 where it is about no page in particular
  std::string text;
};

}  // namespace tgx::tool
