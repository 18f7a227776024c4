#pragma once

#include <tgx/host.h>

namespace tgx::host {

/// The device colour space of a name, under the same handle for the life of the process. Throws kASBadParameter for a name
/// of another colour space.
PDEColorSpace ColorSpaceOfName(ASAtom name);

/// How many components the colours of a colour space have. Throws kASBadParameter, kASWrongType.
int ComponentsOf(PDEColorSpace space);

}  // namespace tgx::host
