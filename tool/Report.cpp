#include "tool/Report.h"

#include <nlohmann/json.hpp>

#include "tool/Messages.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

using Json = nlohmann::ordered_json;

Json AsJson(const StepReport& step) {
  Json object = Json::object();
  object["step"] = step.call.name;
  if (step.call.kind == StepKind::kAction) {
    object["action"] = static_cast<std::int32_t>(step.call.number);
  } else if (step.call.kind == StepKind::kFix) {
    object["fixups"] = step.call.number;
  }
  object["result"] = step.result.code;
  object["error"] = step.result.error;
  if (step.changed) object["changed"] = *step.changed;
  if (step.skippedFor) {
    Json& skipped = object["skipped"] = Json::object();
    if (step.skippedFor->page != 0) skipped["page"] = step.skippedFor->page;
    skipped["reason"] = step.skippedFor->reason;
  }
  return object;
}

Json AsJson(const Note& note) {
  Json object = Json::object();
  if (note.page != 0) object["page"] = note.page;
  object["text"] = note.text;
  return object;
}

std::string AsText(const Note& note) {
  return OneLine("note: " + (note.page == 0 ? "" : "page " + std::to_string(note.page) + ": ") + note.text) + "\n";
}

std::string AsText(const StepReport& step) {
  std::string line = step.call.name + ": ";
  if (step.skippedFor) {
    line += "skipped: ";
    if (step.skippedFor->page != 0) line += "page " + std::to_string(step.skippedFor->page) + ": ";
    line += step.skippedFor->reason;
  } else if (step.result.code != 0) {
    line += "failed with " + std::to_string(step.result.code);
  } else {
    line += step.changed.value_or(true) ? "done" : "nothing to do";
  }
  if (!step.result.error.empty()) line += ": " + step.result.error;
  return OneLine(line) + "\n";
}

void AddSummary(const RepairSummary& summary, Json& object) {
  const ElementChanges changes = Compare(summary.before, summary.after);
  object["changes"] = {{"tagsRemoved", changes.removed},           {"tagsAdded", changes.added},
                       {"tagsRenamed", changes.renamed},           {"imagesRemoved", summary.removedImages},
                       {"contentRemoved", summary.removedContent}, {"textsRewritten", summary.rewrittenTexts}};
  Json counts = Json::object();
  for (const CountName& name : kCountNames) {
    counts[std::string(name.key)] = {{"before", summary.before[name.what]}, {"after", summary.after[name.what]}};
  }
  object["counts"] = std::move(counts);
  const auto orNull = [](const std::string& language) { return language.empty() ? Json() : Json(language); };
  object["language"] = {{"before", orNull(summary.languageBefore)}, {"after", orNull(summary.languageAfter)}};
}

std::string Line(std::string_view what, const std::string& value) { return "  " + std::string(what) + ": " + value + "\n"; }

std::string AsText(const RepairSummary& summary) {
  const ElementChanges changes = Compare(summary.before, summary.after);
  std::string text;
  const auto tell = [&text](std::string_view what, std::size_t number) {
    if (number != 0) text += Line(what, std::to_string(number));
  };
  tell("tags removed", changes.removed);
  tell("tags added", changes.added);
  tell("tags renamed", changes.renamed);
  tell("images of 1 by 1 sample removed from the pages", summary.removedImages);
  tell("other content of marks removed from the pages", summary.removedContent);
  tell("texts of marks and languages written anew", summary.rewrittenTexts);
  for (const CountName& name : kCountNames) {
    const std::size_t before = summary.before[name.what];
    const std::size_t after = summary.after[name.what];
    if (before != after) text += Line(name.text, std::to_string(before) + " before, " + std::to_string(after) + " now");
  }
  if (summary.languageBefore != summary.languageAfter) {
    const auto orNone = [](const std::string& language) { return language.empty() ? "none" : language; };
    text += Line("language of the document",
                 orNone(summary.languageBefore) + " before, " + orNone(summary.languageAfter) + " now");
  }
  return text.empty() ? "nothing had to be changed\n" : "what changed:\n" + text;
}

}  // namespace

std::string AsJson(const Report& report) {
  Json object = Json::object();
  object["version"] = 1;
  object["input"] = report.input;
  object["output"] = report.output;
  object["steps"] = Json::array();
  for (const StepReport& step : report.steps) object["steps"].push_back(AsJson(step));
  object["saved"] = report.saved;
  if (report.summary) {
    AddSummary(*report.summary, object);
    object["notes"] = Json::array();
    for (const Note& note : report.notes) object["notes"].push_back(AsJson(note));
  }
  return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string AsText(const Report& report) {
  std::string text;
  for (const StepReport& step : report.steps) text += AsText(step);
  if (report.summary && report.saved) {
    text += AsText(*report.summary);
    for (const Note& note : report.notes) text += AsText(note);
  }
  return text + OneLine(report.saved ? "saved " + report.output : "nothing was written") + "\n";
}

}  // namespace tgx::tool
