#pragma once

#include <optional>

#include "src/api/HostBinding.h"
#include "src/wrappers/PDS_Object.h"

namespace tgx {

/// Marked content as a kid: the host's record of it.
class PDS_MC : public PDS_Object, public PDF_ObjectRef<PDSMCInfo> {
 public:
  PDS_MC(const PDSMCInfo& info, PDS_Object* parent) : PDS_Object(parent), PDF_ObjectRef(info) {}

  ASInt32 GetMCID() const { return GetHandle().mcid; }
  CosObj GetPage() const { return GetHandle().page; }  ///< the page's dictionary, or the null object

  /// The element among whose kids the host has the content; nothing once it was taken out. Not always the parent, since
  /// PDS_Element can move the wrapper alone.
  const std::optional<PDSElement>& GetHolder() const { return holder_; }
  void SetHolder(std::optional<PDSElement> holder) { holder_ = holder; }

 private:
  std::optional<PDSElement> holder_;
};

}  // namespace tgx
