#pragma once

#include <string>
#include <unordered_map>

#include "src/api/HostBinding.h"

namespace tgx {

/// ResolveRole for walks that ask of every element: asks the host once for each type. The role map may not change meanwhile.
class RoleCache {
 public:
  explicit RoleCache(PDDoc document = nullptr) : document_(document) {}

  /// What the type of the element is mapped to, or the type itself; valid for as long as the cache.
  const std::string& RoleOf(PDSElement element);

 private:
  PDDoc document_;
  std::unordered_map<ASAtom, std::string> roles_;  // by type
};

}  // namespace tgx
