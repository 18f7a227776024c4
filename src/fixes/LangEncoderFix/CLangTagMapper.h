#pragma once

#include <cstdint>

#include "src/api/HostBinding.h"
#include "src/common/contentvisitors/ContainerIndex.h"

namespace tgx {

/// Rewrites "Lang" of the structure elements between the bracket form and the tag form. The languages are read without their
/// zero bytes, so the marks of a tag form are never found: mode 1 changes nothing, and is to stay so.
class CLangTagMapper {
 public:
  virtual ~CLangTagMapper() = default;

  enum Mode : std::int32_t { kToTags = 0, kToBrackets = 1 };

  /// One of the modes; another one changes nothing.
  void SetMode(std::int32_t mode) { mode_ = mode; }

  /// False for a null document and for one without a structure tree.
  bool Run(PDDoc document);

 protected:
  virtual void VisitElementUnused(PDSElement& element) { VisitElement(element); }
  virtual void VisitElement(PDSElement& element);
  /// Looks the content up on its page, and changes nothing.
  virtual void VisitMarkedContent(PDSElement& element, const PDSMCInfo& mcInfo);

 private:
  PDDoc document_ = nullptr;
  std::int32_t mode_ = kToTags;
  ContainerIndex containers_;
};

}  // namespace tgx
