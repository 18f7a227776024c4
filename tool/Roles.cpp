#include "tool/Roles.h"

#include <set>

#include "tool/HostCalls.h"

namespace tgx::tool {

Roles::Roles(PDDoc document) {
  PDSTreeRoot root = {};
  PDSRoleMap map = {};
  if (PDDocGetStructTreeRoot(document, &root) != 0 && PDSTreeRootGetRoleMap(root, &map) != 0) map_ = map;
}

ASAtom Roles::Resolve(ASAtom type) {
  const auto known = known_.find(type);
  if (known != known_.end()) return known->second;
  ASAtom role = type;
  std::set<ASAtom> seen;
  while (map_ && seen.insert(role).second) {
    const ASAtom next = PDSRoleMapGetDirectMap(*map_, role);
    if (next == ASAtomNull) break;
    role = next;
  }
  return known_.emplace(type, role).first->second;
}

std::vector<std::pair<ASAtom, ASAtom>> Roles::Entries() const {
  std::vector<std::pair<ASAtom, ASAtom>> entries;
  if (!map_) return entries;
  const auto add = [](CosObj key, CosObj value, void* data) -> ASBool {
    if (CosObjGetType(value) == CosName) {
      static_cast<std::vector<std::pair<ASAtom, ASAtom>>*>(data)->emplace_back(CosNameValue(key), CosNameValue(value));
    }
    return 1;
  };
  CosObjEnum(*map_, add, &entries);
  return entries;
}

}  // namespace tgx::tool
