#pragma once

#include <unordered_map>
#include <vector>

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

/// A number for each of many objects, which are known by the addresses of qpdf's own objects. Whoever enters an object keeps
/// it alive. Indirect objects are found by their object numbers, without a hash.
class ObjectIndex {
 public:
  static constexpr ASUns32 kNone = 0xFFFFFFFF;

  /// kNone for an object that has not been entered.
  ASUns32 Find(const QPDFObjectHandle& object) const;
  /// The object must not be there yet.
  void Enter(const QPDFObjectHandle& object, ASUns32 value);
  void Remove(const QPDFObjectHandle& object);

 private:
  struct Entry {
    const QPDFObject* address = nullptr;
    ASUns32 value = kNone;
  };

  std::vector<Entry> byNumber_;
  std::unordered_map<const QPDFObject*, ASUns32> others_;  ///< direct objects, and what has no place by its number
  ASUns32 count_ = 0;
};

}  // namespace tgx::host
