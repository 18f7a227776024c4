#include "tool/StepCare.h"

#include <string>
#include <string_view>
#include <utility>

#include "tool/AnnotationOrder.h"
#include "tool/DocumentLanguage.h"
#include "tool/EmptyElements.h"
#include "tool/FormAppearances.h"
#include "tool/FormulaTexts.h"
#include "tool/FrameHolders.h"
#include "tool/HeaderNames.h"
#include "tool/Hindrances.h"
#include "tool/Leftovers.h"
#include "tool/LinkTexts.h"
#include "tool/Marks.h"
#include "tool/NoteNames.h"

namespace tgx::tool {
namespace {

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

void StepCare::Run(StepReport& step) {
  step.changed = false;
  step.skippedFor = FindHarm(document_.Handle(), step.call);
  if (step.skippedFor) return;
  const std::size_t edits = document_.Edits();
  const bool changed = RunStep(step);
  step.changed = document_.Edits() != edits;
  if (step.result.code != 0) LookForHindrance(document_, changed, step);
}

/// Gives whether the step itself changed anything, as do all that it calls.
bool StepCare::RunStep(StepReport& step) {
  using Way = bool (StepCare::*)(StepReport&);
  static constexpr std::pair<std::string_view, Way> kWays[] = {
      {"table-metadata", &StepCare::DescribeTables},
      {"mathml", &StepCare::MakeFormulas},
      {"footnote-links", &StepCare::MakeFootnoteLinks},
      {"reshuffle-frames", &StepCare::PlaceFrames},
      {"end-notes", &StepCare::MapEndNotes},
      {"main-language", &StepCare::SetMainLanguage},
      {"sync-forms", &StepCare::TakeOverForms},
      {"remove-empty-tags", &StepCare::RemoveEmptyTags},
      {"link-contents", &StepCare::DescribeLinks},
  };
  for (const auto& [name, way] : kWays) {
    if (name == step.call.name) return (this->*way)(step);
  }
  return RunAlone(step);
}

bool StepCare::RunAlone(StepReport& step) {
  const std::size_t edits = document_.Edits();
  step.result = document_.Run(step.call);
  return document_.Edits() != edits;
}

bool StepCare::RemoveEmptyTags(StepReport& step) {
  const EmptyElements elements(document_.Handle());
  const bool changed = RunAlone(step);
  elements.PutBack();
  return changed;
}

bool StepCare::SetMainLanguage(StepReport& step) {
  const DocumentLanguage language(document_.Handle());
  const bool changed = RunAlone(step);
  language.KeepForKids();
  return changed;
}

bool StepCare::PlaceFrames(StepReport& step) {
  if ((before_.marks & (kAnchor | kFrameStart | kFrameEnd | kFrameHolder)) == 0) return RunAlone(step);
  const FrameHolders holders(document_.Handle());
  const bool changed = RunAlone(step);
  Append(holders.PutBack());
  return changed;
}

bool StepCare::DescribeTables(StepReport& step) {
  const bool changed = RunAlone(step);
  const std::size_t dropped = changed ? DropUnknownHeaders(document_.Handle()) : 0;
  if (dropped == 1) notes_.push_back({0, "a mention of a header cell that does not exist was taken out of a table cell"});
  if (dropped > 1) {
    notes_.push_back(
        {0, std::to_string(dropped) + " mentions of header cells that do not exist were taken out of table cells"});
  }
  return changed;
}

bool StepCare::MakeFormulas(StepReport& step) {
  if ((before_.marks & kFormula) == 0) return RunAlone(step);
  const FormulaTexts texts(document_.Handle());
  const AnnotationOrder order(document_.Handle());
  const bool changed = RunAlone(step);
  texts.Write();
  order.SetWhereNew();
  return changed;
}

bool StepCare::MakeFootnoteLinks(StepReport& step) {
  const AnnotationOrder order(document_.Handle());
  const bool changed = RunAlone(step);
  if (!changed) return false;
  madeLinks_ = true;
  order.SetWhereNew();
  return true;
}

bool StepCare::MapEndNotes(StepReport& step) {
  const bool changed = RunAlone(step);
  if (changed) NameNotes(document_.Handle());
  return changed;
}

bool StepCare::DescribeLinks(StepReport& step) {
  const bool changed = RunAlone(step);
  // Whoever reads the descriptions must know their language.
  const bool hasLinks = madeLinks_ || before_[Counted::kLinks] != 0;
  if (hasLinks && !DocumentLanguage::Of(document_.Handle()).empty()) tool::DescribeLinks(document_.Handle());
  return changed;
}

bool StepCare::TakeOverForms(StepReport& step) {
  const bool changed = RunAlone(step);
  if (step.result.code == 0) KeepCopiedAppearances(document_.Handle(), step.call.path);
  return changed;
}

void StepCare::RemoveLeftMarks(const std::vector<StepReport>& steps) {
  static constexpr std::pair<std::string_view, unsigned> kMarks[] = {
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
  if ((marks & before_.marks) != 0) Append(tool::RemoveLeftMarks(document_.Handle(), marks));
}

}  // namespace tgx::tool
