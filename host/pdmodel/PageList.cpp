#include "host/pdmodel/PageList.h"

#include "host/core/HostError.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {

PageList::PageList(Document& document) : document_(document) {
  for (const QPDFObjectHandle& dictionary : document.Pdf().getAllPages()) {
    indexOf_.emplace(dictionary.getObjectPtr(), static_cast<ASInt32>(pages_.size()));
    pages_.push_back({dictionary});
  }
}

Page& PageList::At(ASInt32 index) {
  if (index < 0 || index >= Count()) {
    throw HostError(kASOutOfRange, document_.Name() + ": no page " + std::to_string(index) + ", the document has " +
                                       std::to_string(Count()));
  }
  return pages_[static_cast<std::size_t>(index)];
}

Page& PageList::Of(PDPage handle) {
  const ASUns32 index = PageIndex(handle);
  if (index >= pages_.size()) throw HostError(kASBadParameter, document_.Name() + ": no page has this PDPage");
  return pages_[index];
}

ASInt32 PageList::IndexOf(const QPDFObjectHandle& dictionary) const {
  const auto known = indexOf_.find(dictionary.getObjectPtr());
  return known == indexOf_.end() ? -1 : known->second;
}

void PageList::AfterCosEdit(const QPDFObjectHandle&, std::string_view) {}

}  // namespace tgx::host
