#pragma once

#include "src/api/HostBinding.h"

namespace tgx {

/// The element of that type that stands nearest after (`step` 1) or before (`step` -1) `element`: a later or earlier kid of
/// the same parent, or the first such element inside one; where the parent has no other kid, a kid of the nearest ancestor
/// that has. An element of the type is its own neighbour. The null object where there is none, where the search meets a kid
/// that is no structure element, and where it would have to leave the top-level elements.
PDSElement FindNeighbour(PDSElement element, ASAtom type, int step);

}  // namespace tgx
