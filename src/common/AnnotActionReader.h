#pragma once

#include <string>
#include <string_view>

#include "src/api/HostBinding.h"

namespace tgx {

/// Tells where a link annotation leads, for actions of the types "URI" and "Launch".
class AnnotActionReader {
 public:
  /// Appends the target in parentheses. Nothing for another annotation, for another action or none, and for an action that
  /// is damaged: a host's raise while it is read ends here.
  void Describe(CosObj annotation, std::u16string& output) const;

 private:
  using Reader = std::u16string (*)(CosObj annotation);

  static std::string_view ActionType(CosObj annotation);
  static Reader ReaderFor(std::string_view type);
};

}  // namespace tgx
