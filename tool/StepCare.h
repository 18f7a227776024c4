#pragma once

#include <vector>

#include "tool/Document.h"
#include "tool/Note.h"
#include "tool/Report.h"

namespace tgx::tool {

/// Runs a step of the whole repair, `step.call`, and notes what became of it. What the step alone would lose or leave wrong
/// is kept and mended around it; a step that cannot do anything in the document, or would do harm, is noted as skipped.
/// Throws HostFailure.
void RunWithCare(Document& document, StepReport& step, std::vector<Note>& notes);

/// Takes away the marks that steps which were done have left. Throws HostFailure.
std::vector<Note> RemoveMarksLeftBy(const std::vector<StepReport>& steps, Document& document);

}  // namespace tgx::tool
