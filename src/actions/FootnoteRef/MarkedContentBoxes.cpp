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

const std::vector<McMark>& MarkedContentBoxes::Of(CosObj page, std::int32_t mcid) const {
  static const std::vector<McMark> kNone;
  const auto known = marks_.find(Key(page, mcid));
  return known == marks_.end() ? kNone : known->second;
}

void MarkedContentBoxes::Fill(std::vector<McMark>& marks) const {
  for (McMark& mark : marks) {
    const auto& pieces = Of(mark.page, mark.mcid);
    if (!pieces.empty()) mark.rect = pieces.back().rect;
  }
}

}  // namespace tgx
