#include "src/common/contentvisitors/CContentEraser.h"

#include <utility>

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
  removals_ = 0;
  contents_.clear();
  searched_.clear();
}

void CContentEraser::Erase(PDDoc document, PDPage page, std::int32_t mcid) {
  Reset();
  if (document == nullptr || page == nullptr || mcid < 0) return;
  document_ = document;
  page_ = page;
  mcid_ = mcid;
  InExceptionFrame([this] {
    PDEContent content = PDPageAcquirePDEContent(page_, ExtensionId());
    if (content == nullptr) return;
    contents_.push_back(content);
    VisitContent(content);
    contents_.pop_back();
    PDPageSetPDEContent(page_, ExtensionId());
    PDPageReleasePDEContent(page_, ExtensionId());
  });
}

void CContentEraser::VisitContent(PDEElement& content) {
  const auto [list, isNew] = searched_.try_emplace(content);
  if (isNew) {
    SearchAll(content, list->second);
  } else {
    SearchAgain(content, list->second);
  }
}

void CContentEraser::SearchAll(PDEContent content, Unsettled& unsettled) {
  ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 i = 0; i < count; ++i) {
    const std::size_t removalsBefore = removals_;
    if (!RemovesAt(content, i)) {
      if (i > 0 && removals_ != removalsBefore) unsettled.push_back(PDEContentGetElem(content, i));
      continue;
    }
    count = PDEContentGetNumElems(content);
    if (i == 0) continue;  // the search resumes at 1: the element that has become the first is not looked at
    SearchUnsettled(unsettled);
    --i;
  }
}

/// Behind its first element the list holds nothing more to remove by now, but lists in it may.
void CContentEraser::SearchAgain(PDEContent content, Unsettled& unsettled) {
  if (PDEContentGetNumElems(content) == 0) return;
  RemovesAt(content, 0);
  if (PDEContentGetNumElems(content) == 0) return;
  // The first element has been searched just now, or has become the first and is not looked at; next time it is.
  std::erase(unsettled, PDEContentGetElem(content, 0));
  SearchUnsettled(unsettled);
}

void CContentEraser::SearchUnsettled(Unsettled& unsettled) {
  std::erase_if(unsettled, [this](PDEElement element) {
    const std::size_t removalsBefore = removals_;
    dispatch_(*this, element);
    return removals_ == removalsBefore;
  });
}

bool CContentEraser::RemovesAt(PDEContent content, ASInt32 index) {
  index_ = index;
  dispatch_(*this, PDEContentGetElem(content, index));
  return std::exchange(restart_, false);
}

void CContentEraser::VisitContainer(PDEElement& container) {
  if (GetContainerMCID(container) == mcid_) {
    PDEContentRemoveElem(contents_.back(), index_);
    restart_ = true;
    ++removals_;
    return;
  }
  const PDEContent content = PDEContainerGetContent(container);
  if (content == nullptr) return;
  contents_.push_back(content);
  dispatch_(*this, content);
  contents_.pop_back();
}

}  // namespace tgx
