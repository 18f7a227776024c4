#include "src/common/PageFinder.h"

#include <stdexcept>

#include "src/common/PageReference.h"

namespace tgx {
namespace {

std::uint64_t KeyOf(CosObj page) { return std::uint64_t{page.a} << 32U | page.b; }

}  // namespace

PDPage AcquirePageByCos(CosObj page) { return PageFinder().Acquire(page); }

PDPage PageFinder::Acquire(CosObj page) {
  const PDDoc document = PDDocFromCosDoc(CosObjGetDoc(page));
  if (document == nullptr || document != document_) GoThrough(document);
  const auto number = numbers_.find(KeyOf(page));
  if (number == numbers_.end()) throw std::runtime_error("failed to acquire PDPage by CosPage");
  return PDDocAcquirePage(document, number->second);
}

void PageFinder::GoThrough(PDDoc document) {
  document_ = nullptr;
  numbers_.clear();
  const ASInt32 count = PDDocGetNumPages(document);
  for (ASInt32 index = 0; index < count; ++index) {
    const PageReference page(PDDocAcquirePage(document, index));
    numbers_.emplace(KeyOf(PDPageGetCosObj(page.Get())), index);
  }
  document_ = document;
}

}  // namespace tgx
