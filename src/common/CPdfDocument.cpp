#include "src/common/CPdfDocument.h"

#include <utility>

namespace tgx {

CPdfDocument::~CPdfDocument() {
  if (document_ != nullptr) PDDocRelease(document_);
}

void CPdfDocument::SetDoc(PDDoc document) {
  if (document == nullptr) return;
  const PDDoc before = std::exchange(document_, PDDocAcquire(document));
  if (before != nullptr) PDDocRelease(before);
}

}  // namespace tgx
