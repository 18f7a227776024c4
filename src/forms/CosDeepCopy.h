#pragma once

#include "src/api/HostBinding.h"

namespace tgx::acroform {

/// Copies of Cos values from one document into another. Indirect objects are copied anew at each reference, and nothing but
/// the skipped "P" guards against cycles: a cyclic value ends with the host's raise.

/// What to do with a key that the destination has already.
enum class KnownKeys { Keep, Overwrite };

/// Copies the entries of one dictionary into another, in ascending order of their atoms, at every depth without "P". Does
/// nothing unless both are dictionaries.
void DeepCopyDictionary(CosObj source, CosObj destination, KnownKeys knownKeys);

/// Appends copies of the items of one array to another. Does nothing unless both are arrays.
void DeepCopyArray(CosObj source, CosObj destination);

}  // namespace tgx::acroform
