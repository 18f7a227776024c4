#pragma once

#include <cstdint>

#include "src/api/HostBinding.h"

namespace tgx::acroform {

/// Copies of Cos values from one document into another. Indirect objects are copied anew at each reference, and nothing but
/// the skipped "P" guards against cycles: a cyclic value ends with the host's raise.

/// How many values may still be copied. A few dozen objects that refer to each other twice each would otherwise become more
/// copies than any machine holds.
class CopyBudget {
 public:
  explicit CopyBudget(std::int64_t values) : left_(values) {}

  /// Throw std::runtime_error when nothing is left.
  void Spend(std::int64_t values);
  /// For the bytes of a string or a stream: so many of them weigh as much as a value.
  void SpendData(std::int64_t bytes) { Spend(bytes / kBytesOfAValue); }

 private:
  static constexpr std::int64_t kBytesOfAValue = 256;

  std::int64_t left_;
};

/// What to do with a key that the destination has already.
enum class KnownKeys { Keep, Overwrite };

/// Copies the entries of one dictionary into another, in ascending order of their atoms, at every depth without "P". Does
/// nothing unless both are dictionaries.
void DeepCopyDictionary(CosObj source, CosObj destination, KnownKeys knownKeys, CopyBudget& budget);

/// Appends copies of the items of one array to another. Does nothing unless both are arrays.
void DeepCopyArray(CosObj source, CosObj destination, CopyBudget& budget);

}  // namespace tgx::acroform
