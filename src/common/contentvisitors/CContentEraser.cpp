#include "src/common/contentvisitors/CContentEraser.h"

#include "src/api/HostException.h"

namespace tgx {

CContentEraser::CContentEraser() {
  dispatch_.Set(kPDEContent, &CContentEraser::VisitContent);
  dispatch_.Set(kPDEContainer, &CContentEraser::VisitContainer);
}

void CContentEraser::Reset() {
  mcid_ = -1;
  document_ = nullptr;
  page_ = nullptr;
  index_ = -1;
  restart_ = false;
  contents_.clear();
}

void CContentEraser::Erase(PDDoc document, PDPage page, std::int32_t mcid) {
  Reset();
  if (document == nullptr || page == nullptr || mcid < 0) return;
  document_ = document;
  page_ = page;
  mcid_ = mcid;
  InExceptionFrame([this] {
    const PDEContent content = PDPageAcquirePDEContent(page_, ExtensionId());
    if (content == nullptr) return;
    contents_.push_back(content);
    EraseFrom(content);
    contents_.pop_back();
    PDPageSetPDEContent(page_, ExtensionId());
    PDPageReleasePDEContent(page_, ExtensionId());
  });
}

void CContentEraser::EraseFrom(PDEContent content) {
  ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 i = 0; i < count; ++i) {
    index_ = i;
    dispatch_(*this, PDEContentGetElem(content, i));
    if (!restart_) continue;
    restart_ = false;
    count = PDEContentGetNumElems(content);
    i = 0;  // the search resumes at 1: the first element is not looked at again
  }
}

void CContentEraser::VisitContainer(PDEElement& container) {
  if (GetContainerMCID(container) == mcid_) {
    PDEContentRemoveElem(contents_.back(), index_);
    restart_ = true;
    return;
  }
  const PDEContent content = PDEContainerGetContent(container);
  if (content == nullptr) return;
  contents_.push_back(content);
  dispatch_(*this, content);
  contents_.pop_back();
}

void CContentEraser::VisitContent(PDEElement& content) { EraseFrom(content); }

}  // namespace tgx
