#include "tool/PageNumbers.h"

#include "tool/HostCalls.h"

namespace tgx::tool {

std::int32_t PageNumbers::NumberOf(CosObj page) {
  if (IsNull(page)) return 0;
  const auto [entry, isNew] = numbers_.emplace(KeyOf(page), 0);
  if (!isNew) return entry->second;
  try {
    const HostFrame frame;
    entry->second = PDPageNumFromCosObj(page) + 1;
  } catch (const HostFailure&) {
    entry->second = 0;
  }
  return entry->second;
}

}  // namespace tgx::tool
