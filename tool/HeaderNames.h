#pragma once

#include <cstddef>

#include <tgx/host.h>

namespace tgx::tool {

/// Takes out of the "Headers" of table cells the identifiers that no element has: a description of a table can name a header
/// cell that the table lacks. Gives their number. Throws HostFailure.
std::size_t DropUnknownHeaders(PDDoc document);

}  // namespace tgx::tool
