#pragma once

#include <map>
#include <string>

#include "src/api/HostBinding.h"
#include "src/common/RoleCache.h"

namespace tgx {

/// What the table fixes have in common: a walk over the structure tree that hands each element, before its kids, to the
/// handler of its type after role mapping.
///
/// Kids that go away while their parent is walked end the walk of that parent at the kids that are left; kids that come in
/// are met if they stand below the count that the walk began with.
class RoleDispatchFixer {
 public:
  virtual ~RoleDispatchFixer() = default;
  /// An element of a type without a handler.
  virtual void handleOtherElement(const PDSElement& element);
  /// A kid that is no structure element.
  virtual void handleContentKid(const CosObj& kid);

  /// False for a null document and for one without a structure tree. A failure of the host leaves through the caller's
  /// handlers; what was changed until then stays.
  bool run(PDDoc document);

 protected:
  using Handler = void (RoleDispatchFixer::*)(const PDSElement&);

  /// Where a missing structure tree is reported from.
  struct Source {
    const char* file;
    int line;
  };

  explicit RoleDispatchFixer(Source source) : source_(source) {}

  template <typename Fixer>
  void SetHandler(const char* type, void (Fixer::*handler)(const PDSElement&)) {
    handlers_[type] = static_cast<Handler>(handler);
  }

  PDDoc Document() const { return document_; }
  void Walk(const PDSElement& element);

 private:
  virtual void Begin() = 0;
  /// All elements have been met.
  virtual void Finish() = 0;
  /// An element is about to be handled.
  virtual void BeforeElement(const PDSElement& /*element*/) {}
  /// An element and all below it have been handled; `hadTable` tells whether a table was open before it.
  virtual void AfterElement(bool /*hadTable*/) {}
  virtual bool HasTable() const = 0;

  bool WalkTree();
  void Dispatch(const PDSElement& element);

  Source source_;
  PDDoc document_ = nullptr;
  RoleCache roles_;
  std::map<std::string, Handler> handlers_;
};

}  // namespace tgx
