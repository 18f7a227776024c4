#pragma once

#include <memory>

#include "src/api/HostBinding.h"

namespace tgx {

/// Memory that the host gave out for the caller to free.
struct HostMemoryDeleter {
  void operator()(void* memory) const { ASfree(memory); }
};
template <typename T>
using HostMemory = std::unique_ptr<T, HostMemoryDeleter>;

struct AsTextDeleter {
  void operator()(ASText text) const { ASTextDestroy(text); }
};
using OwnedAsText = std::unique_ptr<_t_ASText, AsTextDeleter>;

}  // namespace tgx
