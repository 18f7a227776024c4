#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tool/Steps.h"

namespace tgx::tool {

/// A step of `tgx fix`.
struct FixStep {
  std::string_view name;
  bool byDefault;           ///< else only with --with
  std::string_view option;  ///< that gives its file, and without which it is left out; empty for a step without one
};

/// The steps of `tgx fix` in their order.
std::span<const FixStep> FixSteps();

/// What the command line of `tgx fix` says of the steps. Files that are not given are empty.
struct FixChoices {
  std::string styles, contents, tables, form;
  std::vector<std::string> skip, with;
};

/// The steps to run. Steps that this build does not have are left out unless they are asked for. Throws Failure for a name
/// that is none, for a step both skipped and asked for, and for one that is asked for and lacks its file or its worker.
std::vector<StepCall> PlanOfFix(const FixChoices& choices);

}  // namespace tgx::tool
