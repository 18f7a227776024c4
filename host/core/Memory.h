#pragma once

#include <cstddef>
#include <string_view>

namespace tgx::host {

/// A copy of `bytes` with `zeros` zero bytes behind, for the client to give back through ASfree. Aligned for any scalar.
void* GiveOut(std::string_view bytes, std::size_t zeros);

/// Frees what GiveOut gave out; anything else, null included, is left alone.
void TakeBack(void* memory) noexcept;

}  // namespace tgx::host
