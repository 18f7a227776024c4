#include "host/cos/ObjectIndex.h"

#include <algorithm>
#include <cstddef>

namespace tgx::host {
namespace {

// A file may give its objects any numbers: those far above the count of objects would waste memory.
bool IsUsual(std::size_t number, std::size_t count) { return number != 0 && (number < 65536 || number / 16 < count); }

}  // namespace

ASUns32 ObjectIndex::Find(const QPDFObjectHandle& object) const {
  const QPDFObject* const address = object.getObjectPtr();
  const auto number = static_cast<std::size_t>(object.getObjectID());
  if (number < byNumber_.size() && byNumber_[number].address == address) return byNumber_[number].value;
  // Direct objects, those that had no number when they were entered, those with unusual numbers.
  const auto known = others_.find(address);
  return known == others_.end() ? kNone : known->second;
}

void ObjectIndex::Enter(const QPDFObjectHandle& object, ASUns32 value) {
  const auto number = static_cast<std::size_t>(object.getObjectID());
  const bool isUsual = IsUsual(number, ++count_);
  if (isUsual && number >= byNumber_.size()) {
    byNumber_.resize(std::max(number + 1, byNumber_.size() + byNumber_.size() / 2));
  }
  if (isUsual && byNumber_[number].address == nullptr) {
    byNumber_[number] = {object.getObjectPtr(), value};
  } else {
    others_.emplace(object.getObjectPtr(), value);
  }
}

void ObjectIndex::Remove(const QPDFObjectHandle& object) {
  const QPDFObject* const address = object.getObjectPtr();
  const auto number = static_cast<std::size_t>(object.getObjectID());
  if (number < byNumber_.size() && byNumber_[number].address == address) {
    byNumber_[number] = {};
  } else {
    others_.erase(address);
  }
}

}  // namespace tgx::host
