#include "src/wrappers/PageViews.h"

#include "src/wrappers/PDE_Container.h"

namespace tgx {
namespace {

// Containers before those in them, as a search goes.
void Index(const PDE_Content& content,  // NOLINT(misc-no-recursion): the host bounds the depth
           std::unordered_map<ASInt32, PDE_Container*>& containers) {
  for (ASInt32 index = 0; index < content.GetNumElems(); ++index) {
    auto* container = dynamic_cast<PDE_Container*>(content.GetElem(index));
    if (container == nullptr) continue;
    if (const auto mcid = container->FindMCID()) containers.emplace(*mcid, container);
    Index(*container->GetContent(), containers);
  }
}

}  // namespace

void PageViews::FindPages() {
  if (pagesFound_) return;
  const ASInt32 count = PDDocGetNumPages(document_);
  for (ASInt32 index = 0; index < count; ++index) {
    const PageReference page(PDDocAcquirePage(document_, index));
    indices_.emplace(KeyOf(PDPageGetCosObj(page.Get())), index);
  }
  pagesFound_ = true;
}

PageViews::View* PageViews::ViewOf(CosObj page) {
  FindPages();
  const auto index = indices_.find(KeyOf(page));
  if (index == indices_.end()) return nullptr;
  auto& view = views_[index->second];
  if (view == nullptr) {
    const PageReference reference(PDDocAcquirePage(document_, index->second));
    auto made = std::make_unique<View>(reference.Get());
    Index(*made->page.GetContent(), made->containers);
    view = std::move(made);
  }
  return view.get();
}

PDE_Container* PageViews::FindContainer(CosObj page, ASInt32 mcid) {
  const View* view = ViewOf(page);
  if (view == nullptr) return nullptr;
  const auto container = view->containers.find(mcid);
  return container == view->containers.end() ? nullptr : container->second;
}

void PageViews::Forget(CosObj page) {
  const auto index = indices_.find(KeyOf(page));
  if (index != indices_.end()) views_.erase(index->second);
}

}  // namespace tgx
