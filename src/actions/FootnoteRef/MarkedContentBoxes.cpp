#include "src/actions/FootnoteRef/MarkedContentBoxes.h"

#include <algorithm>

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

void MarkedContentBoxes::Add(const McMark& piece) {
  const auto [known, isNew] = boxes_.try_emplace(Key(piece.page, piece.mcid), Boxes{piece.rect, piece.rect});
  if (isNew) return;
  known->second.last = piece.rect;
  Widen(known->second.around, piece.rect);
}

std::optional<McMark> MarkedContentBoxes::Around(CosObj page, std::int32_t mcid) const {
  const auto known = boxes_.find(Key(page, mcid));
  if (known == boxes_.end()) return std::nullopt;
  return McMark{page, mcid, known->second.around};
}

void MarkedContentBoxes::Fill(std::vector<McMark>& marks) const {
  for (McMark& mark : marks) {
    const auto known = boxes_.find(Key(mark.page, mark.mcid));
    if (known != boxes_.end()) mark.rect = known->second.last;
  }
}

}  // namespace tgx
