#pragma once

#include "src/api/HostBinding.h"
#include "src/wrappers/PDS_Element.h"
#include "src/wrappers/PDS_Object.h"

namespace tgx {

/// A document's structure tree, read once: its top-level elements with everything below them.
class PDS_TreeRoot : public PDS_Object, public PDF_ObjectRef<PDSTreeRoot> {
 public:
  explicit PDS_TreeRoot(PDSTreeRoot root);

  void Refresh() override;
  void ClearKids() override;

  ASInt32 GetNumKids() const { return static_cast<ASInt32>(kids_.size()); }
  /// Unchecked.
  PDS_Object* GetKid(int index) const { return kids_[static_cast<std::size_t>(index)].get(); }
  const PDS_Kids& GetKids() const { return kids_; }

 private:
  PDS_Kids kids_;
};

}  // namespace tgx
