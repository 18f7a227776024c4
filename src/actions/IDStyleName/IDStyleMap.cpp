#include "src/actions/IDStyleName/IDStyleMap.h"

namespace tgx {

void IDStyleMap::Clear() {
  byKey_.clear();
  pairs_.clear();
}

void IDStyleMap::Set(std::string_view key, std::string value) {
  if (const auto found = byKey_.find(key); found != byKey_.end()) {
    found->second->second = std::move(value);
    return;
  }
  auto& pair = pairs_.emplace_back(key, std::move(value));
  byKey_.emplace(pair.first, &pair);
}

bool IDStyleMap::Contains(std::string_view key) const { return byKey_.contains(key); }

const std::string& IDStyleMap::Get(std::string_view key) {
  if (!Contains(key)) Set(key, "");
  return byKey_.at(key)->second;
}

}  // namespace tgx
