#include "tool/Report.h"

#include <nlohmann/json.hpp>

#include "tool/Messages.h"

namespace tgx::tool {
namespace {

using Json = nlohmann::ordered_json;

Json AsJson(const StepReport& step) {
  Json object = Json::object();
  object["step"] = step.call.name;
  if (step.call.kind == StepKind::kAction) {
    object["action"] = static_cast<std::int32_t>(step.call.number);
  } else {
    object["fixups"] = step.call.number;
  }
  object["result"] = step.result.code;
  object["error"] = step.result.error;
  return object;
}

std::string AsText(const StepReport& step) {
  std::string line = step.call.name + ": ";
  line += step.result.code == 0 ? "done" : "failed with " + std::to_string(step.result.code);
  if (!step.result.error.empty()) line += ": " + step.result.error;
  return OneLine(line) + "\n";
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
  return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string AsText(const Report& report) {
  std::string text;
  for (const StepReport& step : report.steps) text += AsText(step);
  return text + OneLine(report.saved ? "saved " + report.output : "nothing was written") + "\n";
}

}  // namespace tgx::tool
