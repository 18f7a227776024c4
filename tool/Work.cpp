#include "tool/Work.h"

#include "tool/Files.h"
#include "tool/Messages.h"
#include "tool/Signatures.h"
#include "tool/StepFiles.h"

namespace tgx::tool {

void CheckFiles(const WorkOptions& options, const std::vector<StepCall>& steps) {
  RequireReadable(options.input);
  for (const StepCall& step : steps) {
    RequireUsableFile(step);
    if (IsSameFile(step.path, options.output)) throw Failure(options.output, "is the file of step " + step.name);
  }
  if (IsSameFile(options.passwordFile, options.output)) throw Failure(options.output, "is the file of the password");
  RequireWritable(options.input, options.output, options.force);
}

std::string PlaceOf(std::size_t step, std::size_t count, const std::string& name) {
  return "step " + std::to_string(step) + " of " + std::to_string(count) + ", " + name;
}

void NoteFailure(const WorkOptions& options, const StepReport& step, const std::string& advice, Report& report) {
  std::string message = options.input + ": step " + step.call.name + " failed with " + std::to_string(step.result.code);
  if (!step.result.error.empty()) message += ": " + step.result.error;
  Warn(message + advice);
  if (report.status == 0) report.status = step.result.code;
}

void Save(Document& document, const WorkOptions& options, Report& report) {
  if (report.status != 0 && !options.keepGoing) return;
  try {
    document.Save(options.output, options.save);
    report.saved = true;
    if (!options.quiet && IsSigned(document.Handle())) {
      Warn("warning: " + options.input + ": is signed; the signatures do not hold for " + options.output);
    }
  } catch (const Failure& failure) {
    Warn(failure.what());
    report.status = failure.Status();
  }
}

void PrintReport(const WorkOptions& options, const Report& report) {
  if (options.json) {
    Print(AsJson(report));
  } else if (!options.quiet) {
    Print(AsText(report));
  }
}

}  // namespace tgx::tool
