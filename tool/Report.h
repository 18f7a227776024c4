#pragma once

#include <string>
#include <vector>

#include "tool/Document.h"
#include "tool/Steps.h"

namespace tgx::tool {

struct StepReport {
  StepCall call;
  StepResult result;
};

/// What a run did.
struct Report {
  std::string input, output;
  std::vector<StepReport> steps;
  bool saved = false;
  int status = 0;  ///< exit status of the run
};

/// The report for programs, version 1, on one line. Keys are added, never changed.
std::string AsJson(const Report& report);

/// The report for people: a line a step, and whether the output was written.
std::string AsText(const Report& report);

}  // namespace tgx::tool
