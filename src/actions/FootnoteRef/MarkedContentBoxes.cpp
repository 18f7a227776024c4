#include "src/actions/FootnoteRef/MarkedContentBoxes.h"

#include <algorithm>

#include "src/common/ObjectBits.h"

namespace tgx {

void Widen(ASFixedRect& rect, const ASFixedRect& by) {
  rect.left = std::min(rect.left, by.left);
  rect.top = std::max(rect.top, by.top);
  rect.right = std::max(rect.right, by.right);
  rect.bottom = std::min(rect.bottom, by.bottom);
}

ASFixedRect BoundingRect(const std::vector<McMark>& marks) {
  if (marks.empty()) return kEmptyRect;
  ASFixedRect rect = marks.front().rect;
  for (const McMark& mark : marks) {
    if (CosObjEqual(mark.page, marks.front().page) == 1) Widen(rect, mark.rect);
  }
  return rect;
}

void MarkedContentBoxes::Add(CosObj page, std::int32_t mcid, PDEContainer container) {
  pages_[BitsOf(page)][mcid].containers.push_back(container);
}

MarkedContentBoxes::Pieces* MarkedContentBoxes::Find(CosObj page, std::int32_t mcid) {
  const auto mcids = pages_.find(BitsOf(page));
  if (mcids == pages_.end()) return nullptr;
  const auto known = mcids->second.find(mcid);
  return known == mcids->second.end() ? nullptr : &known->second;
}

const MarkedContentBoxes::Pieces* MarkedContentBoxes::Measured(CosObj page, std::int32_t mcid) {
  Pieces* pieces = Find(page, mcid);
  if (pieces == nullptr || pieces->isMeasured) return pieces;
  pieces->around = kEmptyRect;
  for (const PDEContainer container : pieces->containers) {
    PDEElementGetBBox(container, &pieces->last);
    Widen(pieces->around, pieces->last);
  }
  pieces->isMeasured = true;
  return pieces;
}

std::optional<McMark> MarkedContentBoxes::Around(CosObj page, std::int32_t mcid) {
  const Pieces* pieces = Measured(page, mcid);
  if (pieces == nullptr) return std::nullopt;
  return McMark{page, mcid, pieces->around};
}

std::vector<PDEContainer> MarkedContentBoxes::ContainersOf(CosObj page, std::int32_t mcid) {
  const Pieces* pieces = Find(page, mcid);
  return pieces == nullptr ? std::vector<PDEContainer>() : pieces->containers;
}

void MarkedContentBoxes::Fill(std::vector<McMark>& marks) {
  for (McMark& mark : marks) {
    if (const Pieces* pieces = Measured(mark.page, mark.mcid)) mark.rect = pieces->last;
  }
}

}  // namespace tgx
