#include "src/common/KidFinder.h"

#include <algorithm>

#include "src/common/ObjectBits.h"

namespace tgx {
namespace {

bool StandsAt(PDSElement parent, int index, CosObj kid) {
  CosObj object = CosNewNull();
  PDSElementGetKid(parent, index, &object, nullptr, nullptr);
  return CosObjEqual(object, kid) != 0;
}

}  // namespace

int KidFinder::IndexOf(PDSElement parent, CosObj kid) {
  if (CosObjGetType(parent) == CosNull) return -1;
  const ASInt32 count = PDSElementGetNumKids(parent);
  int& last = lastPlaces_[BitsOf(parent)];
  int behind = std::min<int>(last, count);
  int before = behind - 1;
  while (before >= 0 || behind < count) {
    if (behind < count && StandsAt(parent, behind, kid)) return last = behind;
    if (before >= 0 && StandsAt(parent, before, kid)) return last = before;
    ++behind;
    --before;
  }
  return -1;
}

}  // namespace tgx
