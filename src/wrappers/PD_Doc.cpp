#include "src/wrappers/PD_Doc.h"

namespace tgx {

PD_Doc::PD_Doc(PDDoc document) : PDF_ObjectRef(document) { PD_Doc::Refresh(); }

void PD_Doc::ClearKids() {
  root_.reset();
  pages_.clear();
}

void PD_Doc::Refresh() {
  PD_Doc::ClearKids();
  PDSTreeRoot root = CosNewNull();
  if (PDDocGetStructTreeRoot(GetHandle(), &root) != 0) root_ = std::make_unique<PDS_TreeRoot>(root);
  const ASInt32 count = PDDocGetNumPages(GetHandle());
  for (ASInt32 index = 0; index != count; ++index) {
    const PageReference page(PDDocAcquirePage(GetHandle(), index));
    pages_.push_back(std::make_unique<PD_Page>(page.Get()));
  }
}

PD_Page* PD_Doc::GetPageByCos(CosObj page) const {
  for (const auto& candidate : pages_) {
    CosObj object = CosNewNull();
    candidate->GetCosObj(&object);
    if (CosObjEqual(object, page) != 0) return candidate.get();
  }
  return nullptr;
}

}  // namespace tgx
