#include "src/actions/FixGroupTags/NeighbourSearch.h"

#include "src/common/ObjectBits.h"
#include "src/common/TagStructureWalker.h"

namespace tgx {
namespace {

// What the search ends with at a kid; nothing where it goes on.
std::optional<PDSElement> AnswerAt(PDSElement parent, int index, ASAtom type, CosObj& kid) {
  if (PDSElementGetKid(parent, index, &kid, nullptr, nullptr) != ASAtomFromString("StructElem")) return CosNewNull();
  if (PDSElementGetType(kid) == type) return kid;
  const PDSElement found = TagStructureWalker::FindDescendantByType(kid, type);
  if (TagStructureWalker::IsNull(found)) return std::nullopt;
  return found;
}

// A place among kids, counted from the end that a search goes towards, and back.
int Mirrored(int place, ASInt32 count, int step) { return step > 0 ? count - 1 - place : place; }

}  // namespace

PDSElement NeighbourSearch::Find(PDSElement element, ASAtom type, int step) {
  if (PDSElementGetType(element) == type) return element;
  const std::optional<Place> place = PlaceBesideOthers(element);
  return place ? SearchFrom(*place, type, step) : CosNewNull();
}

void NeighbourSearch::ForgetSearchesPast(PDSElement element, ASAtom type) {
  PDSElement lower = element;
  PDSElement parent = TagStructureWalker::GetParentElement(lower);
  for (; !TagStructureWalker::IsNull(parent); parent = TagStructureWalker::GetParentElement(lower)) {
    for (const int step : {1, -1}) {
      const auto scan = scans_.find({BitsOf(parent), type, step});
      if (scan == scans_.end()) continue;
      const int at = Mirrored(places_.IndexOf(parent, lower), PDSElementGetNumKids(parent), step);
      if (scan->second.to <= at && at < scan->second.from) scans_.erase(scan);
    }
    lower = parent;
  }
}

std::optional<NeighbourSearch::Place> NeighbourSearch::PlaceBesideOthers(PDSElement element) {
  PDSElement lower = element;
  PDSElement parent = TagStructureWalker::GetParentElement(lower);
  while (!TagStructureWalker::IsNull(parent) && PDSElementGetNumKids(parent) < 2) {
    lower = parent;
    parent = TagStructureWalker::GetParentElement(lower);
  }
  if (TagStructureWalker::IsNull(parent)) return std::nullopt;
  return Place{parent, places_.IndexOf(parent, lower)};
}

// From here on the search stays among the kids of this parent: a kid that is not the answer is searched from in turn.
PDSElement NeighbourSearch::SearchFrom(const Place& place, ASAtom type, int step) {
  const ASInt32 count = PDSElementGetNumKids(place.parent);
  const auto mirrored = [&](int at) { return Mirrored(at, count, step); };
  const auto earlier = scans_.find({BitsOf(place.parent), type, step});
  const auto endsAsBefore = [&](int at) {
    if (earlier == scans_.end() || at >= earlier->second.from || at < earlier->second.to) return false;
    const int to = earlier->second.to;
    return to < 0 || CosObjEqual(TagStructureWalker::GetKidObject(place.parent, mirrored(to)), earlier->second.kid) != 0;
  };
  const int from = mirrored(place.index);
  Scan scan = {from, -1, CosNewNull(), CosNewNull()};
  for (int at = from - 1; at >= 0; --at) {
    if (endsAsBefore(at)) {
      scan = earlier->second;
      scan.from = from;
      break;
    }
    if (const std::optional<PDSElement> answer = AnswerAt(place.parent, mirrored(at), type, scan.kid)) {
      scan.to = at;
      scan.answer = *answer;
      break;
    }
  }
  scans_[{BitsOf(place.parent), type, step}] = scan;
  return scan.answer;
}

}  // namespace tgx
