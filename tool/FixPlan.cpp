#include "tool/FixPlan.h"

#include <algorithm>

#include "tool/Messages.h"

namespace tgx::tool {
namespace {

// The order matters: styles before all that goes by the names of types, tables while their descriptions and heads are there,
// frames before what looks at neighbours, languages before they are written in another form, empty elements late.
constexpr FixStep kOrder[] = {
    {"style-names", true, "--styles"},
    {"table-metadata", true, ""},
    {"layout-tables", true, "--tables"},
    {"mathml", true, ""},
    {"user-alt-text", true, ""},
    {"footnote-links", true, ""},
    {"reshuffle-frames-by-holder", false, ""},
    {"reshuffle-frames", true, ""},
    {"remove-frame-markers", true, ""},
    {"toc", true, "--toc"},
    {"group-tags", true, ""},
    {"end-notes", true, ""},
    {"double-bullets", true, ""},
    {"extra-paragraphs", true, ""},
    {"main-language", true, ""},
    {"language-tags", false, ""},
    {"language-brackets", false, ""},
    {"plain-languages", true, ""},
    {"table-headers-footers", true, ""},
    {"table-layout", false, ""},
    {"role-map", true, ""},
    {"sync-forms", true, "--forms"},
    {"button-widgets", false, ""},
    {"remove-dummy-images", true, ""},
    {"mark-empty-tags", false, ""},
    {"remove-empty-tags", true, ""},
    {"link-contents", true, ""},
    {"cut-text", false, ""},
};

bool Contains(const std::vector<std::string>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

void RequireSteps(const std::vector<std::string>& names, const char* option) {
  for (const std::string& name : names) {
    const bool isStep = std::any_of(std::begin(kOrder), std::end(kOrder), [&](const FixStep& s) { return s.name == name; });
    if (!isStep) throw Failure(std::string(option) + " " + name + ": fix has no such step; see tgx fix --help");
  }
}

const std::string& FileOf(const FixStep& step, const FixChoices& choices) {
  static const std::string none;
  if (step.option == "--styles") return choices.styles;
  if (step.option == "--toc") return choices.contents;
  if (step.option == "--tables") return choices.tables;
  return step.option == "--forms" ? choices.form : none;
}

/// Elements that are marked for being empty are there to be seen: they are not removed.
bool IsReplaced(const FixStep& step, const FixChoices& choices) {
  return step.name == "remove-empty-tags" && Contains(choices.with, "mark-empty-tags");
}

bool IsWanted(const FixStep& step, const FixChoices& choices) {
  const bool asked = Contains(choices.with, step.name);
  if (Contains(choices.skip, step.name)) {
    if (asked) throw Failure("step " + std::string(step.name) + ": cannot be both skipped and asked for");
    return false;
  }
  const bool lacksFile = !step.option.empty() && FileOf(step, choices).empty();
  if (asked && lacksFile) {
    throw Failure("step " + std::string(step.name) + ": needs a file, given with " + std::string(step.option));
  }
  if (asked) return true;
  return step.byDefault && !lacksFile && !IsReplaced(step, choices);
}

}  // namespace

std::span<const FixStep> FixSteps() { return kOrder; }

std::vector<StepCall> PlanOfFix(const FixChoices& choices) {
  RequireSteps(choices.skip, "--skip");
  RequireSteps(choices.with, "--with");
  std::vector<StepCall> plan;
  for (const FixStep& step : kOrder) {
    if (!IsWanted(step, choices)) continue;
    const std::string& file = FileOf(step, choices);
    plan.push_back(ParseStep(std::string(step.name) + (file.empty() ? "" : ":" + file)));
  }
  return plan;
}

}  // namespace tgx::tool
