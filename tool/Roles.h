#pragma once

#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include <tgx/host.h>

namespace tgx::tool {

/// The role map of a document's structure tree.
class Roles {
 public:
  explicit Roles(PDDoc document);

  /// Where the map leads from a type, over as many entries as it takes; a circle ends where it closes.
  ASAtom Resolve(ASAtom type);

  std::vector<std::pair<ASAtom, ASAtom>> Entries() const;

 private:
  ASAtom FollowFrom(ASAtom type);

  std::optional<PDSRoleMap> map_;
  std::unordered_map<ASAtom, ASAtom> known_;
};

}  // namespace tgx::tool
