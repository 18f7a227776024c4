#include "src/common/MarkedContentIndex.h"

#include <algorithm>

#include "src/common/ContentUtils.h"
#include "src/common/ObjectBits.h"

namespace tgx {

PageContainers::PageContainers(PDPage page) {
  walker_.AddVisitor(this);
  walker_.Walk(page);
}

void PageContainers::VisitElement(PDEElement& /*element*/) {
  // A list that is entered for an element which is no container belongs to the container around the element.
  around_ = lists_[listOf_.at(walker_.TopContent())].around;
}

void PageContainers::VisitContent(PDEContent content) {
  if (listOf_.try_emplace(content, static_cast<std::uint32_t>(lists_.size())).second)
    lists_.push_back({content, around_, 0});
}

void PageContainers::VisitContainer(PDEContainer container) {
  around_ = static_cast<std::uint32_t>(containers_.size());
  containers_.push_back({container, listOf_.at(walker_.TopContent()), walker_.CurrentIndex(), kNone, false});
  ASInt32 mcid = 0;
  if (!FindContainerMCID(container, mcid)) return;
  const auto [last, isFirst] = lastOf_.try_emplace(mcid, around_);
  if (isFirst) {
    firstOf_.emplace(mcid, around_);
  } else {
    containers_[last->second].sameMcid = around_;
    last->second = around_;
  }
}

bool PageContainers::IsOnPage(const Container& container) const {
  const Container* at = &container;
  for (;;) {
    if (at->isRemoved) return false;
    const std::uint32_t around = lists_[at->list].around;
    if (around == kNone) return true;
    at = &containers_[around];
  }
}

void PageContainers::TakeOut(Container& container) {
  container.isRemoved = true;
  List& list = lists_[container.list];
  const ASInt32 count = PDEContentGetNumElems(list.handle);
  // Removals come mostly in the order of the list: the search begins where the container stands then, and widens from there.
  const ASInt32 expected = std::clamp(container.index - list.removed, 0, std::max(count - 1, 0));
  for (ASInt32 distance = 0; distance < count; ++distance) {
    for (const ASInt32 index : {expected + distance, expected - distance}) {
      if (index < 0 || index >= count || PDEContentGetElem(list.handle, index) != container.handle) continue;
      PDEContentRemoveElem(list.handle, index);
      ++list.removed;
      return;
    }
  }
}

void PageContainers::Remove(ASInt32 mcid) {
  const auto first = firstOf_.find(mcid);
  if (first == firstOf_.end()) return;
  while (first->second != kNone) {
    Container& container = containers_[first->second];
    first->second = container.sameMcid;
    if (!IsOnPage(container)) continue;
    TakeOut(container);
    return;
  }
}

void MarkedContentIndex::Remove(PDPage page, ASInt32 mcid) {
  pages_.try_emplace(BitsOf(PDPageGetCosObj(page)), page).first->second.Remove(mcid);
}

}  // namespace tgx
