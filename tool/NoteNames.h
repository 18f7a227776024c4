#pragma once

#include <tgx/host.h>

namespace tgx::tool {

/// Gives the notes of the structure tree that have no identifier ("ID") one, so that references can name them. Throws
/// HostFailure.
void NameNotes(PDDoc document);

}  // namespace tgx::tool
