#include "src/common/ContentWalker.h"

#include "src/common/ContentUtils.h"

namespace tgx {

void ContentWalker::Reset() {
  currentContent_ = nullptr;
  currentIndex_ = -1;
  stop_ = false;
  contentStack_.clear();
  removed_ = nullptr;
}

void ContentWalker::Walk(PDPage page) {
  Reset();
  const PDEContent content = PDPageAcquirePDEContent(page, ExtensionId());
  Reset();
  WalkContent(content);
  PDPageSetPDEContent(page, ExtensionId());
}

// As deep as containers are nested, which the host bounds.
void ContentWalker::WalkContent(PDEContent content) {  // NOLINT(misc-no-recursion)
  contentStack_.push_back(content);
  // Not set back when a nested list returns: what visitors of the rest of this list see is meant to be the nested list.
  currentContent_ = content;
  for (IContentVisitor* visitor : Visitors()) {
    visitor->VisitContent(content);
    // The list stays on the stack until the next reset.
    if (stop_) return;
  }
  ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 index = 0; index < count && !stop_; ++index) {
    const PDEElement element = PDEContentGetElem(content, index);
    currentIndex_ = index;
    WalkElement(element);
    const ASInt32 countNow = PDEContentGetNumElems(content);
    if (countNow == count) continue;
    count = countNow;
    index = index - 1 < count ? index - 1 : 0;
  }
  contentStack_.pop_back();
}

void ContentWalker::WalkElement(PDEElement element) {  // NOLINT(misc-no-recursion)
  removed_ = nullptr;
  PDEElement visited = element;
  for (IContentVisitor* visitor : Visitors()) {
    visitor->VisitElement(visited);
    if (stop_) return;
    if (!IsInCurrentContent(visited)) break;
  }
  if (!IsInCurrentContent(element)) return;
  switch (PDEObjectGetType(element)) {
    case kPDEContent:
      WalkContent(element);
      break;
    case kPDEContainer:
      WalkContainer(element);
      break;
    case kPDEGroup:
      WalkGroup(element);
      break;
    default:
      break;
  }
}

void ContentWalker::WalkContainer(PDEContainer container) {  // NOLINT(misc-no-recursion)
  for (IContentVisitor* visitor : Visitors()) {
    visitor->VisitContainer(container);
    if (stop_) return;
  }
  const PDEContent content = PDEContainerGetContent(container);
  WalkContent(content);
  PDEContainerSetContent(container, content);
}

void ContentWalker::WalkGroup(PDEGroup group) {  // NOLINT(misc-no-recursion)
  for (IContentVisitor* visitor : Visitors()) {
    visitor->VisitGroup(group);
    if (stop_) return;
  }
  const PDEContent content = PDEGroupGetContent(group);
  WalkContent(content);
  PDEGroupSetContent(group, content);
}

bool ContentWalker::IsInCurrentContent(PDEElement element) const {
  if (contentStack_.empty() || (removed_ != nullptr && element == removed_)) return false;
  const PDEContent content = contentStack_.back();
  const ASInt32 count = PDEContentGetNumElems(content);
  // Where it stood a moment ago: without this a page would cost the square of its elements.
  if (currentIndex_ >= 0 && currentIndex_ < count && PDEContentGetElem(content, currentIndex_) == element) return true;
  for (ASInt32 index = 0; index < count; ++index) {
    if (PDEContentGetElem(content, index) == element) return true;
  }
  return false;
}

void ContentWalker::RemoveElement(PDEContent content, ASInt32 index) {
  const PDEElement element = PDEContentGetElem(content, index);
  PDEContentRemoveElem(content, index);
  if (!contentStack_.empty() && content == contentStack_.back()) removed_ = element;
}

ASInt32 ContentWalker::GetMCID(PDEContainer container) { return GetContainerMCID(container); }

}  // namespace tgx
