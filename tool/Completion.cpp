#include "tool/Completion.h"

#include <CLI/CLI.hpp>

#include "tool/Steps.h"

namespace tgx::tool {
namespace {

/// What stands around the lists that are made from the commands and steps. Bash takes a colon for the end of a word, so that
/// the file of a step is a word of its own.
constexpr const char* kFunctions = R"(
_tgx_files() {
  local file
  compopt -o filenames 2>/dev/null
  while IFS= read -r file; do COMPREPLY+=("$file"); done < <(compgen -f -- "$1")
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

# The last of several step names with commas between them.
_tgx_step_list() {
  local before=
  case $1 in *,*) before=${1%,*}, ;; esac
  _tgx_words "${_tgx_step_names//:/}" "${1##*,}"
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
    _tgx_files ""
  elif [ "$previous" = : ]; then
    _tgx_files "$word"
  elif value=${_tgx_values[$command $previous]-} && [ -n "$value" ]; then
    case $value in
      steps) _tgx_step_list "$word" ;;
      files) _tgx_files "$word" ;;
    esac
  elif [ "${word:0:1}" = - ]; then
    _tgx_words "${_tgx_options[$command]-}" "$word"
  else
    if [ "$command" = run ]; then _tgx_steps "$word"; fi
    if [ "$command" != actions ]; then _tgx_files "$word"; fi
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

/// What kind of words an option is completed with.
const char* ValueOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  if (type.starts_with("STEP")) return "steps";
  return type == "TEXT" ? "nothing" : "files";
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
  return "# Completion of tgx for bash.\n\n_tgx_step_names=" + StepNames() + "\ndeclare -gA _tgx_options=(\n" + options +
         ")\ndeclare -gA _tgx_values=(\n" + values + ")\n" + kFunctions;
}

}  // namespace tgx::tool
