#pragma once

#include <cstdint>
#include <unordered_map>

#include <tgx/host.h>

namespace tgx::tool {

/// Numbers of pages by their objects, counted from 1, each asked for once.
class PageNumbers {
 public:
  /// 0 for what is no page of the document.
  std::int32_t NumberOf(CosObj page);

 private:
  std::unordered_map<std::uint64_t, std::int32_t> numbers_;
};

}  // namespace tgx::tool
