#include "host/pdmodel/PageList.h"

#include "host/core/HostError.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/PageTree.h"

namespace tgx::host {

PageList::PageList(Document& document) : document_(document) { Read(); }

void PageList::Read() {
  tree_ = CheckedPageTree(document_.Pdf(), document_.Name());
  placeOf_.clear();
  for (Page& page : pages_) page.number = -1;
  for (const QPDFObjectHandle& dictionary : document_.Pdf().getAllPages()) {
    const auto [known, isNew] =
        placeOfDictionary_.try_emplace(dictionary.getObjectPtr(), static_cast<ASUns32>(pages_.size()));
    if (isNew) pages_.push_back({dictionary});
    pages_[known->second].number = static_cast<ASInt32>(placeOf_.size());
    placeOf_.push_back(known->second);
  }
}

void PageList::Refresh() {
  if (!isEdited_) return;
  CheckedPageTree(document_.Pdf(), document_.Name());
  document_.Pdf().updateAllPagesCache();
  Read();
  isEdited_ = false;
}

ASInt32 PageList::Count() {
  Refresh();
  return static_cast<ASInt32>(placeOf_.size());
}

Page& PageList::At(ASInt32 number) {
  if (number < 0 || number >= Count()) {
    throw HostError(kASOutOfRange, document_.Name() + ": no page " + std::to_string(number) + ", the document has " +
                                       std::to_string(placeOf_.size()));
  }
  return pages_[placeOf_[static_cast<std::size_t>(number)]];
}

Page& PageList::Of(PDPage handle) {
  const ASUns32 place = PageIndex(handle);
  if (place >= pages_.size()) throw HostError(kASBadParameter, document_.Name() + ": no page has this PDPage");
  return pages_[place];
}

PDPage PageList::HandleAt(ASInt32 number) {
  const Page& page = At(number);
  return PageHandle(document_, static_cast<ASUns32>(&page - pages_.data()));
}

ASInt32 PageList::NumberOf(PDPage handle) {
  Refresh();
  const ASInt32 number = Of(handle).number;
  if (number < 0) throw HostError(kASNotFound, document_.Name() + ": the page has been taken out of the document");
  return number;
}

ASInt32 PageList::IndexOf(const QPDFObjectHandle& dictionary) {
  Refresh();
  const auto known = placeOfDictionary_.find(dictionary.getObjectPtr());
  return known == placeOfDictionary_.end() ? -1 : pages_[known->second].number;
}

void PageList::AfterCosEdit(const QPDFObjectHandle& container, std::string_view key) {
  // The way from the catalog to the pages: the catalog's "Pages", a node's "Kids" and "Parent", an array of kids.
  const bool isWay = key.empty() || key == "Kids" || key == "Pages" || key == "Parent";
  if (!isWay || isEdited_) return;
  const QPDFObject* edited = container.getObjectPtr();
  isEdited_ = tree_.contains(edited) || (key == "Pages" && edited == document_.Pdf().getRoot().getObjectPtr());
}

}  // namespace tgx::host
