#pragma once

#include <vector>

#include "src/wrappers/PDE_Element.h"

namespace tgx {

class PDE_Text : public PDE_Element {
 public:
  using PDE_Element::PDE_Element;

  /// The text in UTF-16BE without a mark, among it the bare codes of the characters that have no Unicode value or no font.
  /// The number of bytes is the result.
  ASUns32 GetText(std::vector<char>& out) const;
};

}  // namespace tgx
