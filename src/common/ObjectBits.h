#pragma once

#include <cstdint>

#include "src/api/HostBinding.h"

namespace tgx {

/// The value of an object as a number, to search sets and maps by: equal objects have equal values.
inline std::uint64_t BitsOf(CosObj object) { return static_cast<std::uint64_t>(object.b) << 32U | object.a; }

}  // namespace tgx
