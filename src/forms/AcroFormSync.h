#pragma once

#include <cstdint>
#include <memory>
#include <sstream>
#include <utility>
#include <vector>

#include "src/forms/AcroFormField.h"
#include "src/forms/CosDeepCopy.h"

namespace tgx::acroform {

class AcroFormTree;

/// Copies the settings, values and appearances of the form fields of one document to the fields of the same name of another.
class AcroFormSync {
 public:
  /// Room for large forms, fonts included, and half a gigabyte of data; a bound for those that refer to the same values
  /// again and again.
  static constexpr std::int64_t kMostCopies = 2'000'000;

  explicit AcroFormSync(std::int64_t mostCopies = kMostCopies) : budget_(mostCopies) {}

  /// Writes into `target` only. Fields without a partner stay as they are; none is added or removed.
  void Run(PDDoc target, PDDoc source);

 private:
  struct FieldPair {
    AcroFormField* source;
    AcroFormField* target;
  };

  void PairFields(const AcroFormTree& target, const AcroFormTree& source);
  /// Kids pair by position, and only where both fields have the same number of them.
  void PairKids(const AcroFormField& source, const AcroFormField& target);
  void SynchronisePair(const FieldPair& pair);

  CopyBudget budget_;
  std::vector<FieldPair> pairs_;
  std::vector<std::unique_ptr<AcroFormField>> kids_;  ///< the fields made for pairs of kids
  std::ostringstream log_;                            ///< what was copied for the pair at hand; nobody reads it
};

}  // namespace tgx::acroform
