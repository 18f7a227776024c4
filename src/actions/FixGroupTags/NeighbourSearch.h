#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include "src/api/HostBinding.h"
#include "src/common/KidFinder.h"

namespace tgx {

/// Finds what a caption belongs to. Searches for one document after the other element: kids that an earlier search passed
/// over are not looked at again, so that many captions beside one another cost no more than the kids around them. What
/// becomes of the kids of elements of the tree in the meantime has to go through here.
class NeighbourSearch {
 public:
  explicit NeighbourSearch(KidFinder& places) : places_(places) {}

  /// The element of that type that stands nearest after (`step` 1) or before (`step` -1) `element`: a later or earlier kid
  /// of the same parent, or the first such element inside one; where the parent has no other kid, a kid of the nearest
  /// ancestor that has. An element of the type is its own neighbour. The null object where there is none, where the search
  /// meets a kid that is no structure element, and where it would have to leave the top-level elements.
  PDSElement Find(PDSElement element, ASAtom type, int step);

  /// PDSElementInsertKid and PDSElementRemoveKid.
  void Insert(PDSElement parent, PDSElement kid, ASInt32 insertAfter);
  void Remove(PDSElement parent, PDSElement kid);

  /// To be called when `element`, with elements of that type in it, has come to its place or is about to leave it: earlier
  /// searches may have passed over that place, or ended there.
  void ForgetSearchesPast(PDSElement element, ASAtom type);

 private:
  struct Place {
    PDSElement parent;
    int index;
  };
  struct ScanKey {
    std::uint64_t parent;
    ASAtom type;
    int step;
    auto operator<=>(const ScanKey&) const = default;  // NOLINT(modernize-use-nullptr): takes its zero for a pointer
  };
  /// The kids of a parent between `from` and `to`, neither included, hold no element of the type. Both count from the end
  /// that the search goes towards.
  struct Scan {
    int from;
    int to;             // -1: nothing up to the end
    PDSElement answer;  // what the search ends with there
  };
  using Scans = std::map<ScanKey, Scan>;

  std::optional<Place> PlaceBesideOthers(PDSElement element);
  PDSElement SearchFrom(const Place& place, ASAtom type, int step);
  bool HasScans(PDSElement parent) const;
  /// Hands `stays` each scan of the parent, with the place as that scan counts it, and drops those that do not stay.
  void UpdateScans(const Place& place, ASInt32 count, const std::function<bool(Scan&, int)>& stays);

  KidFinder& places_;
  Scans scans_;
};

}  // namespace tgx
