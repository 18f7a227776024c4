#pragma once

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

#include "host/pdsedit/KidList.h"

namespace tgx::host {

/// What an item of "K" is. "Type" decides; where it is missing, as it may be, the keys that only one kind has.
KidKind KindOf(QPDFObjectHandle& item);

/// The type name that clients see for a kid: "StructElem", "MC", "OBJR"; for anything else its own "Type", or "Unknown".
ASAtom TypeNameOf(KidKind kind, QPDFObjectHandle& item);

/// The value of an integer object in 32 bits, saturating; `fallback` for an object of another type.
ASInt32 IntegerOr(QPDFObjectHandle object, ASInt32 fallback);

/// The atom of a name object, `fallback` for an object of another type.
ASAtom NameOr(QPDFObjectHandle object, ASAtom fallback);
QPDFObjectHandle NameObject(ASAtom atom);

}  // namespace tgx::host
