#pragma once

#include <string>

#include <tgx/host.h>

namespace tgx::tool {

/// The text that marked content shows, in the order of the content, as UTF-8: what its fonts make of the codes. Forms and
/// "ActualText" are not looked at, and no space is added where only the place of the text makes one. Throws HostFailure.
std::string ShownText(PDEContainer container);

}  // namespace tgx::tool
