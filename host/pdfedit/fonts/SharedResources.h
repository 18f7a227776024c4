#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace tgx::host {

/// Read-only things that are expensive to make: one in memory for each name however many users it has, for as long as it has
/// one.
template <typename Resource>
class SharedResources {
 public:
  template <typename Make>
  std::shared_ptr<const Resource> Get(std::string_view name, Make make) {
    const std::lock_guard lock(mutex_);
    std::weak_ptr<const Resource>& entry = resources_[std::string(name)];
    std::shared_ptr<const Resource> resource = entry.lock();
    if (resource == nullptr) entry = resource = make(name);
    return resource;
  }

 private:
  std::recursive_mutex mutex_;  // making one may ask for those that it rests on
  std::map<std::string, std::weak_ptr<const Resource>> resources_;
};

}  // namespace tgx::host
