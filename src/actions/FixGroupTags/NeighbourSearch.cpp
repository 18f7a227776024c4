#include "src/actions/FixGroupTags/NeighbourSearch.h"

#include "src/common/TagStructureWalker.h"

namespace tgx {

PDSElement FindNeighbour(PDSElement element, ASAtom type, int step) {
  if (PDSElementGetType(element) == type) return element;
  PDSElement parent = TagStructureWalker::GetParentElement(element);
  if (TagStructureWalker::IsNull(parent)) return parent;
  int index = TagStructureWalker::IndexOfKid(parent, element);
  while (PDSElementGetNumKids(parent) < 2) {
    const PDSElement lower = parent;
    parent = TagStructureWalker::GetParentElement(lower);
    if (TagStructureWalker::IsNull(parent)) return parent;
    index = TagStructureWalker::IndexOfKid(parent, lower);
  }
  // From here on the search stays among the kids of this parent: a kid that is not the answer is searched from in turn.
  const ASInt32 count = PDSElementGetNumKids(parent);
  for (index += step; index >= 0 && index < count; index += step) {
    CosObj kid = CosNewNull();
    if (PDSElementGetKid(parent, index, &kid, nullptr, nullptr) != ASAtomFromString("StructElem")) return CosNewNull();
    if (PDSElementGetType(kid) == type) return kid;
    const PDSElement found = TagStructureWalker::FindDescendantByType(kid, type);
    if (!TagStructureWalker::IsNull(found)) return found;
  }
  return CosNewNull();
}

}  // namespace tgx
