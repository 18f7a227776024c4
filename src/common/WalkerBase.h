#pragma once

#include <set>

namespace tgx {

/// The visitors of a walker: not owned, each once, called in the order of their addresses.
template <typename Visitor>
class WalkerBase {
 public:
  WalkerBase() = default;
  WalkerBase(const WalkerBase&) = delete;
  WalkerBase& operator=(const WalkerBase&) = delete;
  virtual ~WalkerBase() = default;

  void AddVisitor(Visitor* visitor) { visitors_.insert(visitor); }

 protected:
  const std::set<Visitor*>& Visitors() const { return visitors_; }

 private:
  std::set<Visitor*> visitors_;
};

}  // namespace tgx
