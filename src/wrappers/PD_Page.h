#pragma once

#include <memory>

#include "src/api/HostBinding.h"
#include "src/common/PageReference.h"
#include "src/wrappers/PDE_Content.h"
#include "src/wrappers/PD_Object.h"

namespace tgx {

/// A page with its whole content, read once. Holds a reference on the page and keeps its content acquired; writes nothing
/// back.
class PD_Page : public PD_Object, public PDF_ObjectRef<PDPage> {
 public:
  explicit PD_Page(PDPage page);
  ~PD_Page() override;

  void Refresh() override;
  void ClearKids() override;

  void GetCosObj(CosObj* object) const { *object = PDPageGetCosObj(GetHandle()); }
  PDE_Content* GetContent() const { return content_.get(); }

 private:
  PageReference reference_;
  std::unique_ptr<PDE_Content> content_;
};

}  // namespace tgx
