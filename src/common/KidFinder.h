#pragma once

#include <cstdint>
#include <unordered_map>

#include "src/api/HostBinding.h"
#include "src/common/KidSequence.h"

namespace tgx {

/// GetKidIndex, and the edits of kids, for workers that ask for many kids of one parent in any order and change them on the
/// way: of a parent with many kids it remembers where they stand. What becomes of the kids of a parent that was asked about
/// has to go through here.
class KidFinder {
 public:
  /// The first place of `kid` among the kids of `parent`; -1 if it is none of them or `parent` is null.
  int IndexOf(PDSElement parent, CosObj kid);

  /// PDSElementInsertKid, PDSElementRemoveKid and PDSElementReplaceKid.
  void Insert(PDSElement parent, PDSElement kid, ASInt32 insertAfter);
  void Remove(PDSElement parent, CosObj kid);
  void Replace(PDSElement parent, PDSElement oldKid, PDSElement newKid);

 private:
  KidSequence* KnownKids(PDSElement parent);
  KidSequence& ReadKids(PDSElement parent, ASInt32 count);

  std::unordered_map<std::uint64_t, KidSequence> kids_;  // by parent
};

}  // namespace tgx
