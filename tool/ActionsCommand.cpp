#include "tool/ActionsCommand.h"

#include <algorithm>
#include <cstdio>

#include "tool/Steps.h"

namespace tgx::tool {
namespace {

std::string NumberOf(const Step& step) {
  if (step.kind == StepKind::kTool) return "-";
  char text[16];
  std::snprintf(text, sizeof text, step.kind == StepKind::kAction ? "%u" : "0x%x", step.number);
  return text;
}

std::string CallOf(const Step& step) {
  std::string call(step.name);
  if (!step.argument.empty()) call.append(":").append(step.argument);
  return call;
}

std::string Padded(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size()), ' ');
  return text;
}

std::string ListOf(StepKind kind, std::size_t width) {
  std::string list;
  for (const Step& step : Steps()) {
    if (step.kind != kind) continue;
    list.append("  ").append(Padded(NumberOf(step), 7)).append(Padded(CallOf(step), width + 2)).append(step.help);
    list.append("\n");
  }
  return list;
}

}  // namespace

std::string StepList() {
  std::size_t width = 0;
  for (const Step& step : Steps()) width = std::max(width, CallOf(step).size());
  return "Actions, by number or name:\n" + ListOf(StepKind::kAction, width) + "\nFixes, by bit or name:\n" +
         ListOf(StepKind::kFix, width) + "\nSteps of the command's own, by name:\n" + ListOf(StepKind::kTool, width);
}

}  // namespace tgx::tool
