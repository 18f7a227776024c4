#pragma once

#include "tool/FixPlan.h"
#include "tool/Work.h"

namespace tgx::tool {

struct FixOptions : WorkOptions {
  FixChoices choices;
};

/// The whole repair: opens, runs the steps of the plan, undoes what takes away visible content, saves and reports; gives the
/// exit status. Throws Failure.
int RunFixCommand(const FixOptions& options);

}  // namespace tgx::tool
