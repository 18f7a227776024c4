#pragma once

#include <vector>

#include "src/wrappers/PDE_Element.h"

namespace tgx {

class PDE_Image : public PDE_Element {
 public:
  using PDE_Element::PDE_Element;

  void GetAttrs(PDEImageAttrs* attributes) const;
  /// The decoded samples; their number of bytes is the result.
  ASUns32 GetData(std::vector<char>& out) const;
};

}  // namespace tgx
