#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace tgx {

/// Texts by texts, in the order in which they were first set.
class IDStyleMap {
 public:
  IDStyleMap() = default;
  IDStyleMap(const IDStyleMap&) = delete;
  IDStyleMap& operator=(const IDStyleMap&) = delete;
  virtual ~IDStyleMap() = default;

  void Clear();
  /// A key that is there already keeps its place and gets the new value.
  void Set(std::string_view key, std::string value);
  bool Contains(std::string_view key) const;
  /// The value of `key`; a key that is not there is added with an empty one.
  const std::string& Get(std::string_view key);

  auto begin() const { return pairs_.begin(); }
  auto end() const { return pairs_.end(); }

 private:
  std::deque<std::pair<std::string, std::string>> pairs_;
  std::unordered_map<std::string_view, std::pair<std::string, std::string>*> byKey_;  // the keys are those of pairs_
};

}  // namespace tgx
