#include "src/actions/ReshuffleAnchoredFrames/KidPlaces.h"

#include "src/common/ObjectBits.h"

namespace tgx {

int KidPlaces::IndexOf(PDSElement parent, CosObj kid) {
  if (CosObjGetType(parent) == CosNull) return -1;
  Places& places = parents_[BitsOf(parent)];
  const auto known = places.find(BitsOf(kid));
  if (known != places.end() && known->second < PDSElementGetNumKids(parent)) {
    CosObj object = CosNewNull();
    PDSElementGetKid(parent, known->second, &object, nullptr, nullptr);
    if (CosObjEqual(object, kid) != 0) return known->second;
  }
  places = Read(parent);
  const auto place = places.find(BitsOf(kid));
  return place == places.end() ? -1 : place->second;
}

KidPlaces::Places KidPlaces::Read(PDSElement parent) {
  Places places;
  const ASInt32 count = PDSElementGetNumKids(parent);
  for (ASInt32 index = 0; index < count; ++index) {
    CosObj object = CosNewNull();
    PDSElementGetKid(parent, index, &object, nullptr, nullptr);
    places.emplace(BitsOf(object), index);  // the first place counts
  }
  return places;
}

}  // namespace tgx
