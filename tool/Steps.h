#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tgx::tool {

/// kTool: done by the tool itself, through the host.
enum class StepKind { kAction, kFix, kTool };

/// One row of the table of steps. Names and numbers are published: rows are added, never changed.
struct Step {
  StepKind kind;
  std::uint32_t number;       ///< of the action, or the bit of the fix; 0 for a step of the tool
  std::string_view name;      ///< what the command line calls it
  std::string_view argument;  ///< what its file is, empty for a step without one
  std::string_view help;      ///< one line
};

/// Every action by its number, then every fix by its bit, then the steps of the tool.
std::span<const Step> Steps();

const Step* FindStep(std::string_view name);
const Step* FindStep(StepKind kind, std::uint32_t number);

/// A step as the command line asks for it, ready to be handed to the library.
struct StepCall {
  StepKind kind;
  std::uint32_t number;  ///< an action, or a mask of fixes; 0 for a step of the tool
  std::string path;      ///< empty where none was given
  std::string name;      ///< the step's own name where it has one, else as it was given
};

/// Reads "action=N", "action=N:PATH", "fixups=MASK", "NAME" or "NAME:PATH". Throws Failure for anything else and for a
/// missing or needless path. Action numbers without a row pass: the library refuses them.
StepCall ParseStep(std::string_view text);
std::vector<StepCall> ParseSteps(const std::vector<std::string>& texts);

}  // namespace tgx::tool
