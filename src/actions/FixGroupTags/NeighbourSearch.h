#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <optional>

#include "src/api/HostBinding.h"
#include "src/common/KidFinder.h"

namespace tgx {

/// Finds what a caption belongs to. Searches for one document after the other element: kids that an earlier search passed
/// over are not looked at again, so that many captions beside one another cost no more than the kids around them.
class NeighbourSearch {
 public:
  explicit NeighbourSearch(KidFinder& places) : places_(places) {}

  /// The element of that type that stands nearest after (`step` 1) or before (`step` -1) `element`: a later or earlier kid
  /// of the same parent, or the first such element inside one; where the parent has no other kid, a kid of the nearest
  /// ancestor that has. An element of the type is its own neighbour. The null object where there is none, where the search
  /// meets a kid that is no structure element, and where it would have to leave the top-level elements.
  PDSElement Find(PDSElement element, ASAtom type, int step);

  /// To be called when elements of that type have come into the tree with `element`: earlier searches may have passed over
  /// the place where it stands now.
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
  /// that the search goes towards: handling the elements in the order of the tree changes nothing there.
  struct Scan {
    int from;
    int to;             // -1: nothing up to the end
    CosObj kid;         // at `to`
    PDSElement answer;  // what the search ends with there
  };

  std::optional<Place> PlaceBesideOthers(PDSElement element);
  PDSElement SearchFrom(const Place& place, ASAtom type, int step);

  KidFinder& places_;
  std::map<ScanKey, Scan> scans_;
};

}  // namespace tgx
