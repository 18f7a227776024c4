#pragma once

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

/// The crop box of a page in its user space: "CropBox" cut to "MediaBox", which stands in when there is none or nothing is
/// left of it. Both are inherited, and normalised so that left is below right and bottom below top. A page without a usable
/// "MediaBox" is 612 by 792.
ASFixedRect CropBoxOf(const QPDFObjectHandle& page);

}  // namespace tgx::host
