#pragma once

#include <tgx/host.h>

namespace tgx::tool {

/// Describes the link annotations of the structure tree that link-contents has left without a description ("Contents"): by
/// their title, else by the text of the element that holds them, else by its alternate text, else by their address. Throws
/// HostFailure.
void DescribeLinks(PDDoc document);

}  // namespace tgx::tool
