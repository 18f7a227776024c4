#pragma once

#include <vector>

#include "host/pdfedit/model/TextLayout.h"

namespace tgx::host {

/// The runs of a text as it stands on the page: each its own, whole.
std::vector<EditedRun> UneditedRuns(const TextLayout& original);

/// Takes characters out of the runs that `layout` was made of. A run that loses its last one goes, and runs without any go
/// when no character is left at all.
void RemoveChars(std::vector<EditedRun>& runs, const TextLayout& layout, int first, int count);

/// What the arguments of the operation that adds text ask for. Throws kASBadParameter, kASNotSupported, kASWrongType.
AddedRun MakeAddedRun(std::string_view bytes, PDEFont font, const PDEGraphicState* state, ASInt32 stateSize,
                      const void* textState, const ASFixedMatrix* matrix);

}  // namespace tgx::host
