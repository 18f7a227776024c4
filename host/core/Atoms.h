#pragma once

#include <string_view>

#include <tgx/host.h>

namespace tgx::host {

/// The atom of a text, made if it is new. Equal bytes give equal atoms for the life of the process; the empty text is atom
/// 0.
ASAtom Intern(std::string_view text);

/// The zero-terminated text of an atom; the pointer never moves. Throws kASBadParameter for a value that is no atom.
const char* AtomText(ASAtom atom);
std::string_view AtomView(ASAtom atom);

}  // namespace tgx::host
