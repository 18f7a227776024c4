#pragma once

#include <utility>
#include <vector>

#include "tool/Census.h"
#include "tool/Document.h"
#include "tool/Note.h"
#include "tool/Report.h"

namespace tgx::tool {

/// Runs the steps of a whole repair on one document. What a step alone would lose or leave wrong is kept and mended around
/// it; a step that can do nothing in the document, or would do harm, is skipped.
class StepCare {
 public:
  /// `before` tells what there is to care for; it must outlive this.
  StepCare(Document& document, const Census& before) : document_(document), before_(before) {}

  /// Runs `step.call` and notes what became of it. Throws HostFailure.
  void Run(StepReport& step);

  /// Takes away the marks that steps which were done have left. Throws HostFailure.
  void RemoveLeftMarks(const std::vector<StepReport>& steps);

  std::vector<Note> TakeNotes() { return std::move(notes_); }

 private:
  bool RunStep(StepReport& step);
  bool RunAlone(StepReport& step);
  bool RemoveEmptyTags(StepReport& step);
  bool SetMainLanguage(StepReport& step);
  bool PlaceFrames(StepReport& step);
  bool DescribeTables(StepReport& step);
  bool MakeFormulas(StepReport& step);
  bool MakeFootnoteLinks(StepReport& step);
  bool MapEndNotes(StepReport& step);
  bool DescribeLinks(StepReport& step);
  bool TakeOverForms(StepReport& step);
  void Append(const std::vector<Note>& notes) { notes_.insert(notes_.end(), notes.begin(), notes.end()); }

  Document& document_;
  const Census& before_;
  std::vector<Note> notes_;
  bool madeLinks_ = false;
};

}  // namespace tgx::tool
