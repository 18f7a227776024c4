#pragma once

#include <map>

#include "src/api/HostBinding.h"
#include "src/common/ContentUtils.h"

namespace tgx {

/// The small recursion of the content visitors: a table from the kind of an element to the visitor's operation for it. Kinds
/// without an operation are passed over.
template <typename Visitor>
class ContentDispatch {
 public:
  using Operation = void (Visitor::*)(PDEElement&);

  void Set(ASInt32 kind, Operation operation) { operations_[kind] = operation; }

  void operator()(Visitor& visitor, PDEElement element) const {
    const auto operation = operations_.find(GetElementKind(&element));
    if (operation != operations_.end()) (visitor.*operation->second)(element);
  }

 private:
  std::map<ASInt32, Operation> operations_;
};

/// A kind that two of the visitors name and do nothing for.
constexpr ASInt32 kIgnoredElementKind = 30;

}  // namespace tgx
