#include "tool/StepCare.h"

#include "tool/DocumentLanguage.h"
#include "tool/EmptyElements.h"
#include "tool/FormAppearances.h"
#include "tool/Hindrances.h"

namespace tgx::tool {
namespace {

/// Runs the step alone. Gives whether that changed anything.
bool Run(Document& document, StepReport& step) {
  const std::size_t edits = document.Edits();
  step.result = document.Run(step.call);
  return document.Edits() != edits;
}

/// Runs the step with what belongs around it. Gives whether the step itself changed anything.
bool RunPrepared(Document& document, StepReport& step) {
  if (step.call.name == "remove-empty-tags") {
    const EmptyElements elements(document.Handle());
    const bool changed = Run(document, step);
    elements.PutBack();
    return changed;
  }
  if (step.call.name == "main-language") {
    const DocumentLanguage language(document.Handle());
    const bool changed = Run(document, step);
    language.KeepForKids();
    return changed;
  }
  const bool changed = Run(document, step);
  if (step.call.name == "sync-forms" && step.result.code == 0) KeepCopiedAppearances(document.Handle(), step.call.path);
  return changed;
}

/// A step that failed before it changed anything, for a reason that lies in the document, does not apply to it.
void LookForHindrance(const Document& document, bool changed, StepReport& step) {
  const std::optional<Hindrance> hindrance = FindHindrance(document.Handle(), step.call.name);
  if (!hindrance) return;
  if (changed) {
    step.result.error += (step.result.error.empty() ? "" : "; ") + hindrance->reason;
  } else {
    step.skippedFor = hindrance;
    step.result = StepResult();
  }
}

}  // namespace

void RunWithCare(Document& document, StepReport& step) {
  step.changed = false;
  step.skippedFor = FindHarm(document.Handle(), step.call);
  if (step.skippedFor) return;
  const std::size_t edits = document.Edits();
  const bool changed = RunPrepared(document, step);
  step.changed = document.Edits() != edits;
  if (step.result.code != 0) LookForHindrance(document, changed, step);
}

}  // namespace tgx::tool
