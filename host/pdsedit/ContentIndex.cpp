#include "host/pdsedit/ContentIndex.h"

namespace tgx::host {

bool ContentIndex::IsReadyFor(NodeId element, const KidList& kids) {
  constexpr ASUns32 kOften = 16;
  if (element != element_) {
    element_ = element;
    questions_ = 0;
    isFilled_ = false;
    counts_ = {};
  }
  if (isFilled_) return true;
  if (++questions_ < kOften) return false;
  isFilled_ = true;
  counts_.reserve(kids.Size());
  for (ASUns32 i = 0; i < kids.Size(); ++i) Add(kids[i]);
  return true;
}

void ContentIndex::Add(const Kid& kid) {
  if (IsPageContent(kid)) ++counts_[KeyOf(kid.page, kid.mcid)];
}

void ContentIndex::Drop(const Kid& kid) {
  if (!IsPageContent(kid)) return;
  const auto count = counts_.find(KeyOf(kid.page, kid.mcid));
  if (count != counts_.end() && --count->second == 0) counts_.erase(count);
}

}  // namespace tgx::host
