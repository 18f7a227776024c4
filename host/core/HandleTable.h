#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "host/core/HostError.h"

namespace tgx::host {

/// Objects that are handed out as pointers of an opaque type. The pointer is a number, never an address, and no number is
/// given out twice: a handle of an object that was given back is recognised for good.
template <typename Handle, typename Object>
class HandleTable {
 public:
  /// `kind`, an odd number below 16, keeps the handles of one table apart from those of the others; `name` is what messages
  /// call the object.
  HandleTable(std::uintptr_t kind, const char* name) : next_(kFirst | kind), name_(name) {}

  Handle Add(std::unique_ptr<Object> object) {
    const std::uintptr_t number = next_;
    objects_.emplace(number, std::move(object));
    next_ += kStep;
    return reinterpret_cast<Handle>(number);  // NOLINT(performance-no-int-to-ptr): never followed
  }

  /// Throws kASBadParameter for null and for anything that is not alive.
  Object& Of(Handle handle) const {
    const auto found = objects_.find(reinterpret_cast<std::uintptr_t>(handle));
    if (found == objects_.end()) throw HostError(kASBadParameter, std::string("no living ") + name_ + " has this handle");
    return *found->second;
  }

  /// Ends the object; false when there is none.
  bool Remove(Handle handle) noexcept { return objects_.erase(reinterpret_cast<std::uintptr_t>(handle)) != 0; }

  std::size_t Size() const noexcept { return objects_.size(); }

 private:
  static constexpr std::uintptr_t kStep = 16;
  static constexpr std::uintptr_t kFirst = 16;

  std::uintptr_t next_;
  const char* name_;
  std::unordered_map<std::uintptr_t, std::unique_ptr<Object>> objects_;
};

}  // namespace tgx::host
