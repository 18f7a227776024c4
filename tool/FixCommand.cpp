#include "tool/FixCommand.h"

#include <map>
#include <optional>

#include "tool/Census.h"
#include "tool/DocumentLanguage.h"
#include "tool/Files.h"
#include "tool/Guard.h"
#include "tool/HostCalls.h"
#include "tool/MarkTexts.h"
#include "tool/Messages.h"
#include "tool/Progress.h"
#include "tool/StepCare.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

void RequireStructureTree(const Document& document) {
  PDSTreeRoot root = {};
  if (PDDocGetStructTreeRoot(document.Handle(), &root) == 0)
    throw Failure(document.Path(), "has no structure tree: only tagged documents can be repaired");
}

/// The repair of one document. A step that took away visible content cannot be taken back by itself: the file is opened
/// anew, and the steps are run again without it. Steps do the same again each time, so this ends, and costs nothing as long
/// as all goes well.
class Repair {
 public:
  Repair(const FixOptions& options, const std::vector<StepCall>& plan, Progress& progress)
      : options_(options), plan_(plan), progress_(progress), version_(VersionOf(options.input)) {}

  Report Run() {
    while (!Attempt()) {
    }
    return std::move(report_);
  }

 private:
  /// False when a step had to be undone.
  bool Attempt() {
    report_ = Report();
    report_.input = options_.input;
    report_.output = options_.output;
    progress_.At("opening " + OneLine(options_.input));
    if (VersionOf(options_.input) != version_) throw Failure(options_.input, "was changed while it was being repaired");
    Document document(options_.input, options_.password);
    try {
      const HostFrame frame;
      return Attempt(document);
    } catch (const HostFailure& failure) {
      throw Failure(options_.input, failure.what());
    }
  }

  bool Attempt(Document& document) {
    RequireStructureTree(document);
    document.KeepContent();
    RepairSummary summary;
    summary.rewrittenTexts = RewriteMarkTexts(document.Handle());
    summary.before = TakeCensus(document.Handle());
    summary.languageBefore = DocumentLanguage::Of(document.Handle());
    Guard guard(document.Handle(), summary.before);
    if (!RunSteps(document, guard, summary.before)) {
      document.Close();
      return false;
    }
    NoteFailures();
    progress_.At("counting what changed");
    summary.after = TakeCensus(document.Handle());
    summary.languageAfter = DocumentLanguage::Of(document.Handle());
    summary.removedImages = guard.RemovedDummyImages();
    summary.removedContent = guard.RemovedOthers();
    report_.summary = std::move(summary);
    progress_.At("saving " + OneLine(options_.output));
    Save(document, options_, report_);
    if (!options_.quiet) document.TellWarnings();
    return true;
  }

  bool RunSteps(Document& document, Guard& guard, const Census& before) {
    StepCare care(document, before);
    const bool isWhole = RunSteps(guard, care);
    report_.notes = care.TakeNotes();
    return isWhole;
  }

  bool RunSteps(Guard& guard, StepCare& care) {
    bool marksAreGone = false;
    const auto removeMarks = [&] {
      if (!marksAreGone) care.RemoveLeftMarks(report_.steps);
      marksAreGone = true;
    };
    for (const StepCall& step : plan_) {
      // Before it is looked which elements hold nothing, and in any case.
      if (step.name == "mark-empty-tags" || step.name == "remove-empty-tags") removeMarks();
      progress_.At(PlaceOf(report_.steps.size() + 1, plan_.size(), step.name));
      StepReport& entry = report_.steps.emplace_back();
      entry.call = step;
      const auto undone = undone_.find(step.name);
      if (undone != undone_.end()) {
        entry.skippedFor = undone->second;
        continue;
      }
      care.Run(entry);
      if (const std::optional<Loss> loss = guard.Check(step.name)) {
        undone_.emplace(step.name, Hindrance{loss->page, loss->reason});
        return false;
      }
      if (entry.result.code != 0 && !options_.keepGoing) return true;
    }
    removeMarks();
    return true;
  }

  void NoteFailures() {
    for (const StepReport& step : report_.steps) {
      if (step.result.code == 0) continue;
      const std::string advice = "; --skip " + step.call.name + " leaves it out, --keep-going goes on after it";
      NoteFailure(options_, step, options_.keepGoing ? "" : advice, report_);
    }
  }

  const FixOptions& options_;
  const std::vector<StepCall>& plan_;
  Progress& progress_;
  FileVersion version_;
  Report report_;
  std::map<std::string, Hindrance> undone_;  ///< by the names of the steps
};

}  // namespace

int RunFixCommand(const FixOptions& options) {
  const std::vector<StepCall> plan = PlanOfFix(options.choices);
  CheckFiles(options, plan);
  Report report;
  {
    Progress progress(!options.quiet);
    report = Repair(options, plan, progress).Run();
  }
  PrintReport(options, report);
  return report.status;
}

}  // namespace tgx::tool
