#pragma once

#include <cstdint>
#include <unordered_map>

#include "src/api/HostBinding.h"

namespace tgx {

/// Answers as GetKidIndex does, for many questions about the same parents while kids come and go: remembers where each kid
/// stood and asks the host whether it still stands there, and goes through the kids anew only when it does not.
class KidPlaces {
 public:
  int IndexOf(PDSElement parent, CosObj kid);

 private:
  using Places = std::unordered_map<std::uint64_t, int>;

  static Places Read(PDSElement parent);

  std::unordered_map<std::uint64_t, Places> parents_;
};

}  // namespace tgx
