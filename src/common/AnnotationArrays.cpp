#include "src/common/AnnotationArrays.h"

namespace tgx {
namespace {

CosObj ArrayOf(CosObj page) { return CosDictGetKeyString(page, "Annots"); }

std::uint64_t KeyOf(CosObj object) { return std::uint64_t{object.a} << 32U | object.b; }

}  // namespace

bool AnnotationArrays::IsNew(PDPage page) {
  const CosObj dictionary = PDPageGetCosObj(page);
  const CosObj array = ArrayOf(dictionary);
  if (CosObjIsIndirect(array) == 0) return true;
  if (firstPages_.emplace(KeyOf(array), dictionary).second) return true;
  others_.push_back({dictionary, KeyOf(array)});
  return false;
}

void AnnotationArrays::ShareWhatIsLeft() {
  for (const Page& page : others_) {
    const CosObj left = ArrayOf(firstPages_.at(page.array));
    if (KeyOf(left) != page.array) CosDictPutKeyString(page.dictionary, "Annots", left);
  }
}

}  // namespace tgx
