#pragma once

#include <tgx/host.h>

namespace tgx::tool {

/// Whether a field of the document's form is signed. A form too large to be looked through counts as not signed.
bool IsSigned(PDDoc document);

}  // namespace tgx::tool
