#include "src/wrappers/PageViews.h"

#include "src/wrappers/PDE_Container.h"

namespace tgx {

// Containers before those in them, as a search goes.
void PageViews::Index(const PDE_Content& content, Places& places) {  // NOLINT(misc-no-recursion): the host bounds the depth
  for (ASInt32 index = 0; index < content.GetNumElems(); ++index) {
    auto* container = dynamic_cast<PDE_Container*>(content.GetElem(index));
    if (container == nullptr) continue;
    if (const auto mcid = container->FindMCID()) {
      const auto [place, isFirst] = places.try_emplace(*mcid, Place{container, true});
      if (!isFirst) place->second.isOnlyOne = false;
    }
    Index(*container->GetContent(), places);
  }
}

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
    Index(*made->page.GetContent(), made->places);
    view = std::move(made);
  }
  return view.get();
}

PDE_Container* PageViews::FindContainer(CosObj page, ASInt32 mcid) {
  const View* view = ViewOf(page);
  if (view == nullptr) return nullptr;
  const auto place = view->places.find(mcid);
  return place == view->places.end() ? nullptr : place->second.container;
}

void PageViews::Forget(CosObj page, ASInt32 mcid) {
  const auto index = indices_.find(KeyOf(page));
  if (index == indices_.end()) return;
  const auto view = views_.find(index->second);
  if (view == views_.end()) return;
  Places& places = view->second->places;
  const auto place = places.find(mcid);
  if (place == places.end()) return;
  // Others of the MCID may come to the fore, and what stands in the container goes with it: then all is viewed anew.
  Places inside;
  Index(*place->second.container->GetContent(), inside);
  if (place->second.isOnlyOne && inside.empty()) {
    places.erase(place);
  } else {
    views_.erase(view);
  }
}

}  // namespace tgx
