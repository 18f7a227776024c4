#pragma once

#include <vector>

#include "src/api/HostBinding.h"

namespace tgx {

/// A kid of a structure element on its way from one element to another.
struct StructureKid {
  PDSElement parent;
  CosObj kid;
  ASAtom kind;
  PDEContainer content;  ///< of a marked-content kid
  PDSMCInfo mcInfo;
  CosObj page;  ///< the null object where the host knows none
};

/// The kids of `parent` that follow `start`, up to `end`. With `end` before `start` these are all that follow `start`, and
/// where `start` stands in several places those behind each of them. Looks from `place` on, and with `isOnce` no further
/// than to `end`: that `start` stands nowhere else is known.
std::vector<StructureKid> KidsBetween(PDSElement& parent, PDSElement& start, PDSElement& end, ASInt32 place, bool isOnce);

/// Takes the kid out of its parent, or puts it behind the last kid of `element`; its page's content is committed with it.
/// Throws std::runtime_error for a kid of another kind than element, marked content and object reference.
void Detach(const StructureKid& kid, PDDoc document);
void Attach(const StructureKid& kid, PDSElement& element, PDDoc document);

}  // namespace tgx
