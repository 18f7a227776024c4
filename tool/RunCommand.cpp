#include "tool/RunCommand.h"

#include "tool/Messages.h"
#include "tool/Progress.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

void RunSteps(Document& document, const RunOptions& options, const std::vector<StepCall>& steps, Progress& progress,
              Report& report) {
  for (const StepCall& step : steps) {
    progress.At(PlaceOf(report.steps.size() + 1, steps.size(), step.name));
    StepReport& last = report.steps.emplace_back();
    last.call = step;
    last.result = document.Run(step);
    if (last.result.code == 0) continue;
    NoteFailure(options, last, "", report);
    if (!options.keepGoing) return;
  }
}

}  // namespace

int RunRunCommand(const RunOptions& options) {
  const std::vector<StepCall> steps = ParseSteps(options.steps);
  CheckFiles(options, steps);
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
    if (!options.quiet) document.TellWarnings();
  }
  PrintReport(options, report);
  return report.status;
}

}  // namespace tgx::tool
