#pragma once

#include <vector>

#include <tgx/host.h>

#include "tool/Note.h"

namespace tgx::tool {

/// Takes marks out of the structure tree that their steps have left, since something is missing that belongs to them:
/// readers would read them out. `marks` are those whose steps were done. A mark that shows anything on a page stays. Tells
/// of all of them. Throws HostFailure.
std::vector<Note> RemoveLeftMarks(PDDoc document, unsigned marks);

}  // namespace tgx::tool
