#include "src/actions/ExtractMathML/FormulaKids.h"

#include <algorithm>
#include <cstddef>

#include "src/common/ObjectBits.h"

namespace tgx {

int FormulaKids::IndexOf(PDSElement parent, PDSElement kid) {
  return CosObjGetType(parent) == CosNull ? -1 : Of(parent).kids.FirstPlaceOf(BitsOf(kid));
}

std::vector<StructureKid> FormulaKids::Between(PDSElement& parent, PDSElement& start, PDSElement& end) {
  const KidSequence& kids = Of(parent).kids;
  const bool isOnce = kids.HasOnce(BitsOf(start));
  return KidsBetween(parent, start, end, isOnce ? kids.FirstPlaceOf(BitsOf(start)) : 0, isOnce);
}

void FormulaKids::Detach(const StructureKid& kid, PDDoc document) {
  Parent& parent = Of(kid.parent);
  const bool isContent = kid.kind == ASAtomFromString("MC");
  // The host takes the first of several that are the same.
  const bool isOnce = parent.kids.HasOnce(BitsOf(kid.kid)) && (!isContent || parent.boxes.CountOf(kid.content) == 1);
  tgx::Detach(kid, document);
  if (!isOnce) {
    parents_.erase(BitsOf(kid.parent));
    return;
  }
  parent.kids.Erase(static_cast<std::size_t>(parent.kids.FirstPlaceOf(BitsOf(kid.kid))));
  if (isContent) parent.boxes.Remove(kid.content);
}

void FormulaKids::InsertBehind(PDSElement parent, PDSElement kid, int place) {
  Parent& known = Of(parent);
  PDSElementInsertKid(parent, kid, place);
  known.kids.Insert(std::min(static_cast<std::size_t>(place) + 1, known.kids.Size()), BitsOf(kid));
}

void FormulaKids::NoteRemoval(PDSElement parent, int place) {
  const auto known = parents_.find(BitsOf(parent));
  if (known != parents_.end() && place >= 0) known->second.kids.Erase(static_cast<std::size_t>(place));
}

FormulaKids::Parent& FormulaKids::Of(PDSElement parent) {
  const ASInt32 count = PDSElementGetNumKids(parent);
  const auto known = parents_.find(BitsOf(parent));
  // A marker that holds other markers takes kids of theirs with it.
  if (known != parents_.end() && known->second.kids.Size() == static_cast<std::size_t>(count)) return known->second;
  const ASAtom markedContent = ASAtomFromString("MC");
  std::vector<std::uint64_t> kids;
  std::vector<KidBoxes::Kid> boxes;
  kids.reserve(static_cast<std::size_t>(count));
  for (ASInt32 i = 0; i < count; ++i) {
    CosObj kid = CosNewNull();
    void* pointer = nullptr;
    const ASAtom kind = PDSElementGetKid(parent, i, &kid, &pointer, nullptr);
    kids.push_back(BitsOf(kid));
    if (kind != markedContent || pointer == nullptr) continue;
    boxes.push_back({pointer, {}});
    PDEElementGetBBox(static_cast<PDEElement>(pointer), &boxes.back().box);
  }
  return parents_.insert_or_assign(BitsOf(parent), Parent{KidSequence(kids), KidBoxes(boxes)}).first->second;
}

}  // namespace tgx
