#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/Census.h"
#include "tool/Hindrances.h"
#include "tool/Note.h"
#include "tool/StepResult.h"
#include "tool/Steps.h"

namespace tgx::tool {

struct StepReport {
  StepCall call;
  StepResult result;
  std::optional<bool> changed;          ///< whether the document is another one after the step; where that was looked at
  std::optional<Hindrance> skippedFor;  ///< set where the step was undone, or had nothing that it could do
};

/// What a repair found and changed, as counted in the document.
struct RepairSummary {
  Census before, after;
  std::string languageBefore, languageAfter;  ///< of the document, as UTF-8; empty for none
  std::size_t rewrittenTexts = 0;
  std::size_t removedImages = 0;   ///< of one sample, from the pages
  std::size_t removedContent = 0;  ///< other things that pages painted
};

/// What a run did.
struct Report {
  std::string input, output;
  std::vector<StepReport> steps;
  bool saved = false;
  int status = 0;  ///< exit status of the run
  std::optional<RepairSummary> summary;
  std::vector<Note> notes;  ///< of a repair
};

/// The report for programs, version 1, on one line. Keys are added, never changed.
std::string AsJson(const Report& report);

/// The report for people: a line a step, what a repair changed, and whether the output was written.
std::string AsText(const Report& report);

}  // namespace tgx::tool
