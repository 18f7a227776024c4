#include "src/common/KidFinder.h"

#include <algorithm>
#include <vector>

#include "src/common/ObjectBits.h"
#include "src/common/StructureUtils.h"

namespace tgx {
namespace {

// Up to here asking for each kid costs less than remembering them.
constexpr ASInt32 kFewKids = 32;

CosObj KidAt(PDSElement parent, int index) {
  CosObj kid = CosNewNull();
  PDSElementGetKid(parent, index, &kid, nullptr, nullptr);
  return kid;
}

}  // namespace

int KidFinder::IndexOf(PDSElement parent, CosObj kid) {
  if (CosObjGetType(parent) == CosNull) return -1;
  const ASInt32 count = PDSElementGetNumKids(parent);
  const KidSequence* kids = KnownKids(parent);
  if (kids == nullptr && count <= kFewKids) return GetKidIndex(parent, kid);
  if (kids != nullptr && kids->Size() == static_cast<std::size_t>(count)) {
    const int place = kids->FirstPlaceOf(BitsOf(kid));
    // The host knows better if somebody else changed the kids.
    if (place >= 0 && CosObjEqual(KidAt(parent, place), kid) != 0) return place;
  }
  return ReadKids(parent, count).FirstPlaceOf(BitsOf(kid));
}

void KidFinder::Insert(PDSElement parent, PDSElement kid, ASInt32 insertAfter) {
  PDSElementInsertKid(parent, kid, insertAfter);
  if (KidSequence* const kids = KnownKids(parent)) {
    kids->Insert(std::min(static_cast<std::size_t>(std::int64_t{insertAfter} + 1), kids->Size()), BitsOf(kid));
  }
}

void KidFinder::Remove(PDSElement parent, CosObj kid) {
  KidSequence* const kids = KnownKids(parent);
  const int place = kids != nullptr ? IndexOf(parent, kid) : -1;
  PDSElementRemoveKid(parent, kid);
  if (place >= 0) kids->Erase(static_cast<std::size_t>(place));
}

void KidFinder::Replace(PDSElement parent, PDSElement oldKid, PDSElement newKid) {
  KidSequence* const kids = KnownKids(parent);
  const int place = kids != nullptr ? IndexOf(parent, oldKid) : -1;
  PDSElementReplaceKid(parent, oldKid, newKid);
  if (place < 0) return;
  kids->Erase(static_cast<std::size_t>(place));
  kids->Insert(static_cast<std::size_t>(place), BitsOf(newKid));
}

KidSequence* KidFinder::KnownKids(PDSElement parent) {
  const auto known = kids_.find(BitsOf(parent));
  return known == kids_.end() ? nullptr : &known->second;
}

KidSequence& KidFinder::ReadKids(PDSElement parent, ASInt32 count) {
  std::vector<std::uint64_t> kids;
  kids.reserve(static_cast<std::size_t>(count));
  for (ASInt32 index = 0; index < count; ++index) kids.push_back(BitsOf(KidAt(parent, index)));
  return kids_.insert_or_assign(BitsOf(parent), KidSequence(kids)).first->second;
}

}  // namespace tgx
