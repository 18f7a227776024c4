#include "host/core/Memory.h"

#include <cstring>
#include <memory>
#include <unordered_map>

namespace tgx::host {
namespace {

std::unordered_map<const void*, std::unique_ptr<char[]>>& GivenOut() {
  static std::unordered_map<const void*, std::unique_ptr<char[]>> blocks;
  return blocks;
}

}  // namespace

void* GiveOut(std::string_view bytes, std::size_t zeros) {
  auto block = std::make_unique<char[]>(bytes.size() + zeros);  // filled with zero
  if (!bytes.empty()) std::memcpy(block.get(), bytes.data(), bytes.size());
  char* const memory = block.get();
  GivenOut().emplace(memory, std::move(block));
  return memory;
}

void TakeBack(void* memory) noexcept { GivenOut().erase(memory); }

}  // namespace tgx::host
