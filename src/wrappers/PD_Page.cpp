#include "src/wrappers/PD_Page.h"

namespace tgx {

PD_Page::PD_Page(PDPage page) : PDF_ObjectRef(page), reference_(PDPageAcquire(page)) { PD_Page::Refresh(); }

PD_Page::~PD_Page() { PD_Page::ClearKids(); }

void PD_Page::ClearKids() {
  if (content_ == nullptr) return;
  PDPageReleasePDEContent(GetHandle(), ExtensionId());
  content_.reset();
}

void PD_Page::Refresh() {
  PD_Page::ClearKids();
  const PDEContent content = PDPageAcquirePDEContent(GetHandle(), ExtensionId());
  try {
    content_ = std::make_unique<PDE_Content>(content, nullptr);
  } catch (...) {
    PDPageReleasePDEContent(GetHandle(), ExtensionId());
    throw;
  }
}

}  // namespace tgx
