#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/Document.h"
#include "tool/Report.h"

namespace tgx::tool {

/// What the commands that change a document have in common.
struct WorkOptions {
  std::string input;
  std::string output;
  std::optional<std::string> password;
  std::string passwordFile;  ///< where the password came from; empty without one
  SaveChoices save;
  bool keepGoing = false;
  bool json = false;
  bool quiet = false;
  bool force = false;
};

/// What can be found wrong with the files before the document is touched. Throws Failure.
void CheckFiles(const WorkOptions& options, const std::vector<StepCall>& steps);

/// "step 3 of 20, toc"
std::string PlaceOf(std::size_t step, std::size_t count, const std::string& name);

/// Tells that a step failed and notes the exit status; `advice` ends the message.
void NoteFailure(const WorkOptions& options, const StepReport& step, const std::string& advice, Report& report);

/// Saves unless a failed step forbids it. A failure is told and noted, so that the report still comes.
void Save(Document& document, const WorkOptions& options, Report& report);

void PrintReport(const WorkOptions& options, const Report& report);

}  // namespace tgx::tool
