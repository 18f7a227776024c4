#include "src/common/contentvisitors/CContentFinder.h"

#include "src/api/HostException.h"

namespace tgx {

CContentFinder::CContentFinder() {
  dispatch_.Set(kPDEContent, &CContentFinder::VisitContent);
  dispatch_.Set(kPDEContainer, &CContentFinder::VisitContainer);
}

CContentFinder::~CContentFinder() { Reset(); }

void CContentFinder::Reset() {
  mcid_ = -1;
  found_ = false;
  document_ = nullptr;
  page_ = nullptr;
  if (container_ == nullptr) return;
  // The page has just been forgotten, so the host gets null here, and takes it for nothing to release.
  PDPageReleasePDEContent(page_, ExtensionId());
  container_ = nullptr;
}

PDEContainer CContentFinder::Find(PDDoc document, PDPage page, std::int32_t mcid) {
  Reset();
  if (document == nullptr || page == nullptr || mcid < 0) return container_;
  document_ = document;
  page_ = page;
  mcid_ = mcid;
  InExceptionFrame([this] {
    const PDEContent content = PDPageAcquirePDEContent(page_, ExtensionId());
    const ASInt32 count = PDEContentGetNumElems(content);
    for (ASInt32 i = 0; i < count && !found_; ++i) dispatch_(*this, PDEContentGetElem(content, i));
  });
  return container_;
}

void CContentFinder::VisitContainer(PDEElement& container) {
  if (found_) return;
  container_ = container;
  if (GetContainerMCID(container) == mcid_) {
    found_ = true;
    return;
  }
  if (const PDEContent content = PDEContainerGetContent(container)) dispatch_(*this, content);
}

void CContentFinder::VisitContent(PDEElement& content) {
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 i = 0; i < count && !found_; ++i) dispatch_(*this, PDEContentGetElem(content, i));
}

}  // namespace tgx
