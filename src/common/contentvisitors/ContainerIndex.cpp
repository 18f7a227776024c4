#include "src/common/contentvisitors/ContainerIndex.h"

#include "src/api/HostException.h"
#include "src/common/ContentUtils.h"

namespace tgx {

PDEContainer ContainerIndex::Find(PDPage page, ASInt32 mcid) {
  if (page == nullptr || mcid < 0) return nullptr;
  auto known = pages_.find(page);
  if (known == pages_.end()) {
    Page read;
    InExceptionFrame([&] { Collect(PDPageAcquirePDEContent(page, ExtensionId()), read); });
    known = pages_.emplace(page, std::move(read)).first;
  }
  const auto container = known->second.firstOf.find(mcid);
  return container == known->second.firstOf.end() ? known->second.last : container->second;
}

void ContainerIndex::Collect(PDEContent content, Page& page) {
  if (content == nullptr) return;
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 i = 0; i < count; ++i) {
    const PDEElement element = PDEContentGetElem(content, i);
    if (PDEObjectGetType(element) != kPDEContainer) continue;
    page.last = element;
    page.firstOf.emplace(GetContainerMCID(element), element);
    Collect(PDEContainerGetContent(element), page);
  }
}

}  // namespace tgx
