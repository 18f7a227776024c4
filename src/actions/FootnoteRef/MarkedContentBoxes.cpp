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

void MarkedContentBoxes::Add(const McMark& piece, PDEContainer container) {
  Boxes& boxes = pages_[BitsOf(piece.page)].try_emplace(piece.mcid, Boxes{piece.rect, piece.rect, {}}).first->second;
  boxes.last = piece.rect;
  Widen(boxes.around, piece.rect);
  boxes.containers.push_back(container);
}

const MarkedContentBoxes::Boxes* MarkedContentBoxes::Find(CosObj page, std::int32_t mcid) const {
  const auto mcids = pages_.find(BitsOf(page));
  if (mcids == pages_.end()) return nullptr;
  const auto known = mcids->second.find(mcid);
  return known == mcids->second.end() ? nullptr : &known->second;
}

std::optional<McMark> MarkedContentBoxes::Around(CosObj page, std::int32_t mcid) const {
  const Boxes* boxes = Find(page, mcid);
  if (boxes == nullptr) return std::nullopt;
  return McMark{page, mcid, boxes->around};
}

std::vector<PDEContainer> MarkedContentBoxes::ContainersOf(CosObj page, std::int32_t mcid) const {
  const Boxes* boxes = Find(page, mcid);
  return boxes == nullptr ? std::vector<PDEContainer>() : boxes->containers;
}

void MarkedContentBoxes::Fill(std::vector<McMark>& marks) const {
  for (McMark& mark : marks) {
    if (const Boxes* boxes = Find(mark.page, mark.mcid)) mark.rect = boxes->last;
  }
}

}  // namespace tgx
