#include "tool/Roles.h"

#include "tool/HostCalls.h"

namespace tgx::tool {

Roles::Roles(PDDoc document) {
  PDSTreeRoot root = {};
  PDSRoleMap map = {};
  if (PDDocGetStructTreeRoot(document, &root) != 0 && PDSTreeRootGetRoleMap(root, &map) != 0) map_ = map;
}

ASAtom Roles::Resolve(ASAtom type) {
  const auto known = known_.find(type);
  return known != known_.end() ? known->second : FollowFrom(type);
}

ASAtom Roles::FollowFrom(ASAtom type) {
  std::vector<ASAtom> way;
  std::unordered_map<ASAtom, std::size_t> places;
  // What was met leads to the same end, but for the types of a circle: each of these ends at itself.
  const auto settle = [&](std::size_t count, ASAtom role) {
    for (std::size_t i = 0; i < way.size(); ++i) known_.emplace(way[i], i < count ? role : way[i]);
    return known_.at(type);
  };
  for (ASAtom role = type;;) {
    const auto known = known_.find(role);
    if (known != known_.end()) return settle(way.size(), known->second);
    const auto [place, isNew] = places.emplace(role, way.size());
    if (!isNew) return settle(place->second, role);
    way.push_back(role);
    const ASAtom next = map_ ? PDSRoleMapGetDirectMap(*map_, role) : ASAtomNull;
    if (next == ASAtomNull) return settle(way.size(), role);
    role = next;
  }
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
