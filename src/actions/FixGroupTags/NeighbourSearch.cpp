#include "src/actions/FixGroupTags/NeighbourSearch.h"

#include <algorithm>

#include "src/common/ObjectBits.h"
#include "src/common/TagStructureWalker.h"

namespace tgx {
namespace {

// What the search ends with at a kid; nothing where it goes on.
std::optional<PDSElement> AnswerAt(PDSElement parent, int index, ASAtom type) {
  CosObj kid = CosNewNull();
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
  const ScanKey key = {BitsOf(place.parent), type, step};
  const auto earlier = scans_.find(key);
  const int from = Mirrored(place.index, count, step);
  Scan scan = {from, -1, CosNewNull()};
  for (int at = from - 1; at >= 0; --at) {
    if (earlier != scans_.end() && earlier->second.to <= at && at < earlier->second.from) {
      scan = earlier->second;
      scan.from = std::max(scan.from, from);
      break;
    }
    if (const std::optional<PDSElement> answer = AnswerAt(place.parent, Mirrored(at, count, step), type)) {
      scan.to = at;
      scan.answer = *answer;
      break;
    }
  }
  scans_[key] = scan;
  return scan.answer;
}

void NeighbourSearch::Insert(PDSElement parent, PDSElement kid, ASInt32 insertAfter) {
  places_.Insert(parent, kid, insertAfter);
  if (!HasScans(parent)) return;
  const ASInt32 count = PDSElementGetNumKids(parent);
  UpdateScans({parent, std::min(insertAfter + 1, count - 1)}, count, [](Scan& scan, int at) {
    if (at <= scan.to) {
      ++scan.to;
      ++scan.from;
    } else {
      // No search has looked at the new kid yet: what is known ends at it.
      scan.from = std::min(scan.from, at);
    }
    return true;
  });
}

void NeighbourSearch::Remove(PDSElement parent, PDSElement kid) {
  if (!HasScans(parent)) return places_.Remove(parent, kid);
  const int index = places_.IndexOf(parent, kid);
  const ASInt32 count = PDSElementGetNumKids(parent);
  places_.Remove(parent, kid);
  UpdateScans({parent, index}, count, [](Scan& scan, int at) {
    if (at < scan.to)
      --scan.to;
    else if (at == scan.to)
      return false;
    if (at < scan.from) --scan.from;
    return true;
  });
}

bool NeighbourSearch::HasScans(PDSElement parent) const {
  const auto scan = scans_.lower_bound({BitsOf(parent), ASAtom{}, -1});
  return scan != scans_.end() && scan->first.parent == BitsOf(parent);
}

void NeighbourSearch::UpdateScans(const Place& place, ASInt32 count, const std::function<bool(Scan&, int)>& stays) {
  auto scan = scans_.lower_bound({BitsOf(place.parent), ASAtom{}, -1});
  while (scan != scans_.end() && scan->first.parent == BitsOf(place.parent)) {
    const bool keep = stays(scan->second, Mirrored(place.index, count, scan->first.step));
    scan = keep ? std::next(scan) : scans_.erase(scan);
  }
}

}  // namespace tgx
