#include "src/common/RoleCache.h"

#include "src/common/StructureUtils.h"

namespace tgx {

const std::string& RoleCache::RoleOf(PDSElement element) {
  const ASAtom type = PDSElementGetType(element);
  auto known = roles_.find(type);
  if (known == roles_.end()) known = roles_.emplace(type, ResolveRole(document_, ASAtomGetString(type))).first;
  return known->second;
}

}  // namespace tgx
