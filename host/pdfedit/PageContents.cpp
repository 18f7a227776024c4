#include "host/pdfedit/PageContents.h"

#include <algorithm>
#include <unordered_set>

#include "host/core/HostError.h"
#include "host/pdfedit/Handles.h"
#include "host/pdfedit/writing/Deflater.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/PageList.h"

namespace tgx::host {

PageContents::~PageContents() { CreatedText::ForgetFonts(&fonts_); }

PageModel* PageContents::Find(ASInt32 pageIndex) noexcept {
  const auto index = static_cast<std::size_t>(pageIndex);
  return index < pages_.size() ? pages_[index].get() : nullptr;
}

PageModel& PageContents::Of(ASInt32 pageIndex) {
  if (PageModel* known = Find(pageIndex)) return *known;
  auto page = std::make_unique<PageModel>(*this, pageIndex);
  const auto index = static_cast<std::size_t>(pageIndex);
  if (index >= pages_.size()) pages_.resize(std::max<std::size_t>(index + 1, document_.Pages().Count()));
  Remember(*page);
  return *(pages_[index] = std::move(page));
}

void PageContents::Remember(PageModel& page) {
  QPDFObjectHandle streams = page.Streams();
  if (streams.isArray()) streamArrays_.emplace(streams.getObjectPtr(), page.PageIndex());
}

void PageContents::Forget(ASInt32 pageIndex) {
  QPDFObjectHandle streams = Find(pageIndex)->Streams();
  streamArrays_.erase({streams.getObjectPtr(), pageIndex});
}

PDEContainer PageContents::ContainerOf(ASInt32 pageIndex, ASInt32 mcid) { return Of(pageIndex).ContainerOf(mcid); }

ASInt32 PageContents::McidOf(PDEContainer container) {
  const ElementRef found = ElementOf(container, kPDEContainer);
  return found.page->At(found.number).mcid;
}

void PageContents::Commit(PageModel& page) noexcept {
  try {
    page.Commit();
  } catch (...) {
    failed_.push_back(page.PageIndex());
  }
}

void PageContents::Waits(PageModel& page) {
  waiting_.push_back(page.PageIndex());
  document_.MarkChanged();
}

void PageContents::WriteCommitted() {
  while (!failed_.empty()) {
    if (PageModel* page = Find(failed_.back())) page->Commit();
    failed_.pop_back();
  }
  Deflater deflater;
  std::vector<PageModel*> pages;
  std::unordered_set<const PageModel*> seen;  // a page waits once for each of its commits
  for (auto pageIndex = waiting_.rbegin(); pageIndex != waiting_.rend(); ++pageIndex) {
    PageModel* page = Find(*pageIndex);
    if (page == nullptr || !page->IsWaiting() || !seen.insert(page).second) continue;
    deflater.Add(page->NewContent());
    pages.push_back(page);
  }
  const std::vector<std::shared_ptr<Buffer>> deflated = deflater.Finish();
  for (std::size_t i = 0; i < pages.size(); ++i) pages[i]->Put(deflated[i]);
  waiting_.clear();
}

void PageContents::BeforeCosRead(const QPDFObjectHandle& container, std::string_view key) {
  if (waiting_.empty() || (!key.empty() && key != "Contents" && key != "Resources")) return;
  const ASInt32 pageIndex = document_.Pages().IndexOf(container);
  PageModel* page = pageIndex < 0 ? nullptr : Find(pageIndex);
  if (page == nullptr || !page->IsWaiting()) return;
  page->Write();
  waiting_.erase(std::remove(waiting_.begin(), waiting_.end(), pageIndex), waiting_.end());
}

void PageContents::ContentReplaced(ASInt32 pageIndex) {
  PageModel* page = pageIndex < 0 ? nullptr : Find(pageIndex);
  if (page == nullptr) return;
  replaced_.reserve(replaced_.size() + 1);
  page->Detach();
  Forget(pageIndex);
  waiting_.erase(std::remove(waiting_.begin(), waiting_.end(), pageIndex), waiting_.end());
  failed_.erase(std::remove(failed_.begin(), failed_.end(), pageIndex), failed_.end());
  replaced_.push_back(std::move(pages_[static_cast<std::size_t>(pageIndex)]));
}

void PageContents::AfterCosEdit(const QPDFObjectHandle& container, std::string_view key) {
  if (key == "Contents") ContentReplaced(document_.Pages().IndexOf(container));
  const QPDFObject* object = QPDFObjectHandle(container).getObjectPtr();
  std::vector<ASInt32> pagesOfArray;
  for (auto page = streamArrays_.lower_bound({object, 0}); page != streamArrays_.end() && page->first == object; ++page) {
    pagesOfArray.push_back(page->second);
  }
  for (const ASInt32 page : pagesOfArray) {
    if (Find(page)->HasOwnStream()) continue;  // the array has left the page
    ContentReplaced(page);
  }
  auto watched = watched_.lower_bound({object, 0, 0});
  if (watched == watched_.end() || watched->dictionary != object) ++unknownEdits_;
  for (; watched != watched_.end() && watched->dictionary == object; ++watched) {
    if (PageModel* page = Find(watched->pageIndex)) page->PropertiesChanged(watched->properties);
  }
}

void PageContents::Watch(const QPDFObjectHandle& dictionary, ASInt32 pageIndex, std::uint32_t properties) {
  watched_.insert({QPDFObjectHandle(dictionary).getObjectPtr(), pageIndex, properties});
}

void PageContents::Unwatch(const QPDFObjectHandle& dictionary, ASInt32 pageIndex, std::uint32_t properties) noexcept {
  watched_.erase({QPDFObjectHandle(dictionary).getObjectPtr(), pageIndex, properties});
}

void PageContents::DropUnchanged() {
  const auto isUnchanged = [](const std::unique_ptr<PageModel>& page) { return !page->IsEdited(); };
  replaced_.erase(std::remove_if(replaced_.begin(), replaced_.end(), isUnchanged), replaced_.end());
  for (auto& page : pages_) {
    if (page == nullptr || page->IsEdited()) continue;
    Forget(page->PageIndex());
    page.reset();
  }
}

}  // namespace tgx::host
