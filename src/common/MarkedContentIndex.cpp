#include "src/common/MarkedContentIndex.h"

#include <algorithm>

#include "src/common/ContentUtils.h"
#include "src/common/ObjectBits.h"

namespace tgx {

void PrefixCounts::Add(std::size_t index, std::size_t size) {
  if (index >= sums_.size()) sums_.resize(std::max(size, index + 1));
  for (std::size_t at = index; at < sums_.size(); at |= at + 1) ++sums_[at];
}

ASInt32 PrefixCounts::Before(std::size_t index) const {
  ASInt32 count = 0;
  for (std::size_t end = std::min(index, sums_.size()); end > 0; end &= end - 1) count += sums_[end - 1];
  return count;
}

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
    lists_.push_back({content, around_, {}});
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
  // Where it stands now, unless somebody else took something out of the list; then it is searched for from there.
  const auto index = static_cast<std::size_t>(container.index);
  const ASInt32 expected = std::clamp(container.index - list.removed.Before(index), 0, std::max(count - 1, 0));
  list.removed.Add(index, static_cast<std::size_t>(count));
  for (ASInt32 distance = 0; distance < count; ++distance) {
    for (const ASInt32 at : {expected + distance, expected - distance}) {
      if (at < 0 || at >= count || PDEContentGetElem(list.handle, at) != container.handle) continue;
      PDEContentRemoveElem(list.handle, at);
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
