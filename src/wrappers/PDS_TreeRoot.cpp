#include "src/wrappers/PDS_TreeRoot.h"

namespace tgx {

PDS_TreeRoot::PDS_TreeRoot(PDSTreeRoot root) : PDS_Object(nullptr), PDF_ObjectRef(root) { PDS_TreeRoot::Refresh(); }

void PDS_TreeRoot::ClearKids() { kids_.clear(); }

void PDS_TreeRoot::Refresh() {
  PDS_TreeRoot::ClearKids();
  const ASInt32 count = PDSTreeRootGetNumKids(GetHandle());
  for (ASInt32 index = 0; index != count; ++index) {
    PDSElement element = CosNewNull();
    PDSTreeRootGetKid(GetHandle(), index, &element);
    kids_.push_back(std::make_shared<PDS_Element>(element, this));
  }
}

}  // namespace tgx
