#pragma once

#include <string>
#include <unordered_map>

#include <tgx/host.h>

namespace tgx::tool {

/// Gives the formulas that mathml makes an alternate text: their MathML as a line of text. The step leaves the MathML in an
/// annotation beside the formula, which few readers look at.
class FormulaTexts {
 public:
  /// What the marks say before the step. Throws HostFailure.
  explicit FormulaTexts(PDDoc document);

  /// Writes the texts on the formulas that have none. Throws HostFailure.
  void Write() const;

 private:
  PDDoc document_;
  std::unordered_map<std::string, std::string> lines_;  ///< UTF-8, by the contents of the annotations
};

}  // namespace tgx::tool
