#include "tool/RunCommand.h"

#include "tool/Files.h"
#include "tool/Messages.h"
#include "tool/Progress.h"
#include "tool/Report.h"
#include "tool/StepFiles.h"

namespace tgx::tool {
namespace {

/// Everything that can be found wrong before the document is touched.
std::vector<StepCall> CheckedSteps(const RunOptions& options) {
  std::vector<StepCall> steps = ParseSteps(options.steps);
  RequireReadable(options.input);
  for (const StepCall& step : steps) RequireUsableFile(step);
  RequireWritable(options.input, options.output, options.force);
  return steps;
}

void WarnOfFailure(const RunOptions& options, const StepReport& step) {
  std::string message = options.input + ": step " + step.call.name + " failed with " + std::to_string(step.result.code);
  if (!step.result.error.empty()) message += ": " + step.result.error;
  Warn(message);
}

void RunSteps(Document& document, const RunOptions& options, const std::vector<StepCall>& steps, Progress& progress,
              Report& report) {
  for (const StepCall& step : steps) {
    progress.At("step " + std::to_string(report.steps.size() + 1) + " of " + std::to_string(steps.size()) + ", " +
                step.name);
    report.steps.push_back({step, document.Run(step)});
    const StepReport& last = report.steps.back();
    if (last.result.code == 0) continue;
    WarnOfFailure(options, last);
    if (report.status == 0) report.status = last.result.code;
    if (!options.keepGoing) return;
  }
}

/// Saves unless a failed step forbids it. A failure is told and noted, so that the report still comes.
void Save(Document& document, const RunOptions& options, Report& report) {
  if (report.status != 0 && !options.keepGoing) return;
  try {
    document.Save(options.output, options.save);
    report.saved = true;
  } catch (const Failure& failure) {
    Warn(failure.what());
    report.status = failure.Status();
  }
}

}  // namespace

int RunRunCommand(const RunOptions& options) {
  const std::vector<StepCall> steps = CheckedSteps(options);
  Report report;
  report.input = options.input;
  report.output = options.output;
  {
    Progress progress(!options.quiet);
    progress.At("opening " + OneLine(options.input));
    Document document(options.input, options.password);
    RunSteps(document, options, steps, progress, report);
    progress.At("saving " + OneLine(options.output));
    Save(document, options, report);
  }
  if (options.json) {
    Print(AsJson(report));
  } else if (!options.quiet) {
    Print(AsText(report));
  }
  return report.status;
}

}  // namespace tgx::tool
