#include "src/common/contentvisitors/CContentTextCounter.h"

namespace tgx {

CContentTextCounter::CContentTextCounter() {
  dispatch_.Set(kPDEContainer, &CContentTextCounter::VisitContainer);
  dispatch_.Set(kPDEContent, &CContentTextCounter::VisitContent);
  dispatch_.Set(kPDEText, &CContentTextCounter::VisitText);
  dispatch_.Set(kIgnoredElementKind, &CContentTextCounter::Ignore);
}

std::int32_t CContentTextCounter::Count(PDEContainer container) {
  count_ = -1;
  if (container == nullptr) return -1;
  const PDEContent content = PDEContainerGetContent(container);
  if (content == nullptr) return -1;
  dispatch_(*this, content);
  return count_;
}

void CContentTextCounter::VisitContainer(PDEElement& container) {
  if (const PDEContent content = PDEContainerGetContent(container)) dispatch_(*this, content);
}

void CContentTextCounter::VisitContent(PDEElement& content) {
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 i = 0; i < count; ++i) dispatch_(*this, PDEContentGetElem(content, i));
}

void CContentTextCounter::VisitText(PDEElement& text) { count_ += PDETextGetNumRuns(text); }

}  // namespace tgx
