#include "tool/StepCare.h"

#include <string_view>
#include <utility>

#include "tool/DocumentLanguage.h"
#include "tool/EmptyElements.h"
#include "tool/FormAppearances.h"
#include "tool/FormulaTexts.h"
#include "tool/FrameHolders.h"
#include "tool/Hindrances.h"
#include "tool/Leftovers.h"
#include "tool/LinkTexts.h"
#include "tool/Marks.h"

namespace tgx::tool {
namespace {

/// Runs the step alone. Gives whether that changed anything.
bool Run(Document& document, StepReport& step) {
  const std::size_t edits = document.Edits();
  step.result = document.Run(step.call);
  return document.Edits() != edits;
}

void Append(const std::vector<Note>& more, std::vector<Note>& notes) { notes.insert(notes.end(), more.begin(), more.end()); }

/// Runs the step with what belongs around it. Gives whether the step itself changed anything.
bool RunPrepared(Document& document, StepReport& step, std::vector<Note>& notes) {
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
  if (step.call.name == "reshuffle-frames") {
    const FrameHolders holders(document.Handle());
    const bool changed = Run(document, step);
    Append(holders.PutBack(), notes);
    return changed;
  }
  if (step.call.name == "mathml") {
    const FormulaTexts texts(document.Handle());
    const bool changed = Run(document, step);
    texts.Write();
    return changed;
  }
  const bool changed = Run(document, step);
  if (step.call.name == "link-contents") DescribeLinks(document.Handle());
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

void RunWithCare(Document& document, StepReport& step, std::vector<Note>& notes) {
  step.changed = false;
  step.skippedFor = FindHarm(document.Handle(), step.call);
  if (step.skippedFor) return;
  const std::size_t edits = document.Edits();
  const bool changed = RunPrepared(document, step, notes);
  step.changed = document.Edits() != edits;
  if (step.result.code != 0) LookForHindrance(document, changed, step);
}

std::vector<Note> RemoveMarksLeftBy(const std::vector<StepReport>& steps, Document& document) {
  constexpr std::pair<std::string_view, unsigned> kMarks[] = {
      {"table-metadata", kTableData},
      {"mathml", kFormula},
      {"reshuffle-frames", kAnchor | kFrameStart | kFrameEnd},
      {"reshuffle-frames-by-holder", kAnchor | kFrameStart | kFrameEnd},
      {"remove-frame-markers", kTextFrame},
      {"toc", kContentsFrame},
  };
  unsigned marks = 0;
  for (const StepReport& step : steps) {
    if (step.result.code != 0 || step.skippedFor) continue;
    for (const auto& [name, ofStep] : kMarks) marks |= name == step.call.name ? ofStep : 0;
  }
  return RemoveLeftMarks(document.Handle(), marks);
}

}  // namespace tgx::tool
