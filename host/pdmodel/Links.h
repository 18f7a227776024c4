#pragma once

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

class Document;

/// "Border" of an annotation; without a usable one a solid line of width 1.
PDLinkAnnotBorder BorderOf(const QPDFObjectHandle& annotation);

/// The array that says the same. Throws kASBadParameter for a count of dashes outside 0 to 4.
QPDFObjectHandle BorderArray(const PDLinkAnnotBorder& border);

/// A destination array. `page` is a page's dictionary, or a page number for want of one; `rect` may be null for the fit
/// types that need no place. Throws kASBadParameter for an unknown fit type and a missing rectangle.
QPDFObjectHandle DestinationArray(const QPDFObjectHandle& page, ASAtom fitType, const ASFixedRect* rect, ASFixed zoom);

}  // namespace tgx::host
