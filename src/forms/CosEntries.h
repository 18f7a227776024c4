#pragma once

#include <map>

#include "src/api/HostBinding.h"

namespace tgx::acroform {

/// A snapshot of the entries of a dictionary, by ascending atom of the key; keys that are no names are left out.
std::multimap<ASAtom, CosObj> EntriesOf(CosObj dictionary);

}  // namespace tgx::acroform
