#include "tool/Completion.h"

#include <CLI/CLI.hpp>

#include "tool/FixPlan.h"
#include "tool/Steps.h"

namespace tgx::tool {
namespace {

/// What stands around the lists that are made from the commands and steps. Bash takes a colon for the end of a word, so that
/// the file of a step is a word of its own.
constexpr const char* kFunctions = R"(
# Files that end like $2, and the folders that they may be in.
_tgx_files() {
  local file
  compopt -o filenames 2>/dev/null
  while IFS= read -r file; do
    COMPREPLY+=("$file")
  done < <(compgen -f -X "!*$2" -- "$1"; [ -z "$2" ] || compgen -d -- "$1")
}

_tgx_words() {
  local word
  while IFS= read -r word; do COMPREPLY+=("$word"); done < <(compgen -W "$1" -- "$2")
}

# Steps that take a file end in a colon, behind which the file goes.
_tgx_steps() {
  _tgx_words "$_tgx_step_names" "$1"
  if [ "${#COMPREPLY[@]}" -eq 1 ] && [ "${COMPREPLY[0]: -1}" = : ]; then compopt -o nospace 2>/dev/null; fi
}

# The last of several names with commas between them.
_tgx_list() {
  local before=
  case $2 in *,*) before=${2%,*}, ;; esac
  _tgx_words "$1" "${2##*,}"
  COMPREPLY=("${COMPREPLY[@]/#/$before}")
}

_tgx() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command=${COMP_WORDS[1]} value
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    _tgx_words "${!_tgx_options[*]} --help --version" "$word"
    return
  fi
  if [ "$word" = : ]; then
    _tgx_files "" "${_tgx_step_files[$previous]-}"
  elif [ "$previous" = : ]; then
    _tgx_files "$word" "${_tgx_step_files[${COMP_WORDS[COMP_CWORD-2]}]-}"
  elif value=${_tgx_values[$command $previous]-} && [ -n "$value" ]; then
    case $value in
      skip) _tgx_list "$_tgx_fix_steps" "$word" ;;
      with) _tgx_list "$_tgx_extra_steps" "$word" ;;
      file*) _tgx_files "$word" "${value#file}" ;;
    esac
  elif [ "${word:0:1}" = - ]; then
    _tgx_words "${_tgx_options[$command]-}" "$word"
  else
    if [ "$command" = run ]; then _tgx_steps "$word"; fi
    if [ "$command" != actions ]; then _tgx_files "$word" ""; fi
  fi
}

complete -F _tgx tgx
)";

/// Names of steps, those that take a file with a colon, in the quotes of the shell.
std::string StepNames() {
  std::string names;
  for (const Step& step : Steps()) {
    names.append(names.empty() ? "'" : " ").append(step.name).append(step.argument.empty() ? "" : ":");
  }
  return names + "'";
}

/// Names of the steps of a repair, in the quotes of the shell: all, or those that only --with adds.
std::string FixStepNames(bool all) {
  std::string names = "'";
  for (const FixStep& step : FixSteps()) {
    if (all || !step.byDefault) names.append(names.size() == 1 ? "" : " ").append(step.name);
  }
  return names + "'";
}

/// How a file's name ends, from the form in which help shows the file: ".xml" of "TOC.xml".
std::string EndingOf(std::string_view shown) {
  const std::size_t dot = shown.rfind('.');
  return dot == std::string_view::npos ? "" : std::string(shown.substr(dot));
}

/// What the file ends in that a step takes, by the step's name.
std::string StepFiles() {
  std::string files;
  for (const Step& step : Steps()) {
    if (!step.argument.empty())
      files.append("  [").append(step.name).append("]=").append(EndingOf(step.argument)).append("\n");
  }
  return files;
}

/// What kind of words an option is completed with.
std::string ValueOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  if (type.starts_with("STEP")) return option.check_name("--with") ? "with" : "skip";
  return type == "TEXT" ? "nothing" : "file" + (type.starts_with("OUTPUT") ? "" : EndingOf(type));
}

std::vector<std::string> FlagsOf(const CLI::Option& option) {
  std::vector<std::string> flags;
  for (const std::string& name : option.get_snames()) flags.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) flags.push_back("--" + name);
  return flags;
}

void AddCommand(const CLI::App& command, std::string& options, std::string& values) {
  options += "  [" + command.get_name() + "]='";
  for (const CLI::Option* option : command.get_options([](const CLI::Option*) { return true; })) {
    for (const std::string& flag : FlagsOf(*option)) {
      options += flag + " ";
      if (option->get_items_expected_max() > 0)
        values += "  ['" + command.get_name() + " " + flag + "']=" + ValueOf(*option) + "\n";
    }
  }
  options += "'\n";
}

}  // namespace

std::string BashCompletion(const CLI::App& app) {
  std::string options, values;
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
    AddCommand(*command, options, values);
  return "# Completion of tgx for bash.\n\n_tgx_step_names=" + StepNames() + "\n_tgx_fix_steps=" + FixStepNames(true) +
         "\n_tgx_extra_steps=" + FixStepNames(false) + "\ndeclare -gA _tgx_step_files=(\n" + StepFiles() +
         ")\ndeclare -gA _tgx_options=(\n" + options + ")\ndeclare -gA _tgx_values=(\n" + values + ")\n" + kFunctions;
}

}  // namespace tgx::tool
