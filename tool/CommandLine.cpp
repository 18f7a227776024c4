#include "tool/CommandLine.h"

#include <algorithm>
#include <string>

#include <CLI/CLI.hpp>

#include "tool/ActionsCommand.h"
#include "tool/Files.h"
#include "tool/FixCommand.h"
#include "tool/HelpTexts.h"
#include "tool/Messages.h"
#include "tool/RunCommand.h"
#include "tool/TreeCommand.h"

namespace tgx::tool {
namespace {

/// An empty name is a shell variable that was not set.
std::string IsNamed(const std::string& file) { return file.empty() ? "the name of the file is empty" : ""; }

/// A name as people write it behind a comma.
std::string WithoutBlanks(std::string name) { return CLI::detail::trim(name); }

struct PasswordOptions {
  std::string text;
  std::string file;
  CLI::Option* textGiven = nullptr;

  void AddTo(CLI::App& command) {
    textGiven = command.add_option("--password", text, "password of INPUT")->type_name("TEXT");
    command.add_option("--password-file", file, "file with the password in its first line")
        ->type_name("FILE")
        ->check(IsNamed)
        ->excludes(textGiven);
  }
  std::optional<std::string> Get() const {
    if (textGiven->count() > 0) return text;
    if (!file.empty()) return ReadFirstLine(file);
    return std::nullopt;
  }
  void SetIn(WorkOptions& options) const {
    options.password = Get();
    options.passwordFile = file;
  }
};

void AddFiles(CLI::App& command, WorkOptions& options) {
  command.add_option("INPUT", options.input, "the document")->required()->type_name("")->check(IsNamed);
  command.add_option("-o,--output", options.output, "where the result goes")->required()->type_name("OUTPUT");
}

/// The options that all commands have that change a document.
void AddWorkOptions(CLI::App& command, WorkOptions& options, PasswordOptions& password) {
  command.add_flag("--keep-going", options.keepGoing, "go on after a step that failed, and save");
  password.AddTo(command);
  command.add_flag("--json", options.json, "report as JSON");
  command.add_flag("--quiet", options.quiet, "no report, no progress, no warnings");
  command.add_flag("--linearize", options.save.linearize, "lay the file out for reading over a network");
  command.add_flag("--deterministic", options.save.deterministic, "same input, same bytes; not for encrypted output");
  command.add_flag("--decrypt", options.save.decrypt, "write without the encryption of INPUT, which is kept otherwise");
  command.add_flag("--force", options.force, "replace OUTPUT if it exists, also if it is INPUT");
}

CLI::App& AddRun(CLI::App& app, RunOptions& options, PasswordOptions& password) {
  CLI::App& command = *app.add_subcommand("run", "Run steps on a document, in the order given, and save the result");
  AddFiles(command, options);
  command.add_option("STEP", options.steps, "what to do")->required()->type_name("");
  AddWorkOptions(command, options, password);
  command.footer("\n" + std::string(kStepForms) + StepList() + "\n" + kExitStatus);
  return command;
}

/// The steps of a repair, a line each.
std::string FixStepList() {
  std::string list = "Steps, in this order:\n";
  for (const FixStep& step : FixSteps()) {
    list.append("  ").append(step.name);
    if (!step.option.empty()) list.append(" (with ").append(step.option).append(")");
    if (!step.byDefault) list.append(" (with --with)");
    list.append("\n");
  }
  return list;
}

CLI::App& AddFix(CLI::App& app, FixOptions& options, PasswordOptions& password) {
  CLI::App& command = *app.add_subcommand("fix", "Repair a document: all steps that apply, in the order that fits them");
  AddFiles(command, options);
  FixChoices& choices = options.choices;
  command.add_option("--styles", choices.styles, "the style names, for style-names")
      ->type_name("STYLES.xml")
      ->check(IsNamed);
  command.add_option("--toc", choices.contents, "the table of contents, for toc")->type_name("TOC.xml")->check(IsNamed);
  command.add_option("--tables", choices.tables, "the kinds of the tables, for layout-tables")
      ->type_name("TABLES.tsv")
      ->check(IsNamed);
  command.add_option("--forms", choices.form, "the form to take over from, for sync-forms")
      ->type_name("FORM.pdf")
      ->check(IsNamed);
  command.add_option("--skip", choices.skip, "steps to leave out")
      ->delimiter(',')
      ->transform(WithoutBlanks)
      ->type_name("STEP,...")
      ->allow_extra_args(false);
  command.add_option("--with", choices.with, "steps to add that are off otherwise")
      ->delimiter(',')
      ->transform(WithoutBlanks)
      ->type_name("STEP,...")
      ->allow_extra_args(false);
  AddWorkOptions(command, options, password);
  command.footer("\n" + FixStepList() + "\n" + kExitStatus);
  return command;
}

CLI::App& AddTree(CLI::App& app, TreeOptions& options, PasswordOptions& password) {
  CLI::App& command = *app.add_subcommand("tree", "Print the structure tree of a document");
  command.add_option("INPUT", options.input, "the document")->required()->type_name("")->check(IsNamed);
  command.add_flag("--json", options.json, "as JSON, not as an outline");
  command.add_flag("--text", options.text, "with the text of the marked content");
  command.add_flag("--quiet", options.quiet, "no warnings");
  password.AddTo(command);
  command.footer(std::string("\n") + kExitStatus);
  return command;
}

/// The commands and what the command line sets in them.
struct CommandLine {
  CLI::App app{"tgx repairs tagged PDF documents.", "tgx"};
  RunOptions runOptions;
  FixOptions fixOptions;
  TreeOptions treeOptions;
  PasswordOptions runPassword, fixPassword, treePassword;
  CLI::App& run = AddRun(app, runOptions, runPassword);
  CLI::App& fix = AddFix(app, fixOptions, fixPassword);
  CLI::App& tree = AddTree(app, treeOptions, treePassword);
  CLI::App& actions = *app.add_subcommand("actions", "List the actions and fixes: numbers, names, what each takes");

  CommandLine() {
    app.set_version_flag("--version", std::string("tgx ") + TGX_VERSION);
    app.require_subcommand(1);
    app.footer(std::string("\ntgx COMMAND --help tells more of a command.\n\n") + kExitStatus);
  }

  int Run() {
    if (run.parsed()) {
      runPassword.SetIn(runOptions);
      return RunRunCommand(runOptions);
    }
    if (fix.parsed()) {
      fixPassword.SetIn(fixOptions);
      return RunFixCommand(fixOptions);
    }
    if (tree.parsed()) {
      treeOptions.password = treePassword.Get();
      return RunTreeCommand(treeOptions);
    }
    Print(StepList());
    return 0;
  }
};

/// What is wrong with the arguments, and where to read on.
std::string Complaint(const CLI::App& app, const CLI::ParseError& error, int argc, char** argv) {
  const auto commands = app.get_subcommands();
  if (!commands.empty()) return std::string(error.what()) + "; see tgx " + commands.front()->get_name() + " --help";
  if (argc < 2) return "no command given; see tgx --help";
  const std::string word = argv[1];
  return word + ": there is no such " + (word.starts_with("-") ? "option" : "command") + "; see tgx --help";
}

/// The parser takes an argument in brackets for a list of steps; a step must stand as it was given.
void RequireVerbatim(const std::vector<std::string>& steps, int argc, char** argv) {
  for (const std::string& step : steps) {
    if (std::find(argv, argv + argc, step) == argv + argc)
      throw Failure("step " + step + ": steps stand one by one, not in brackets");
  }
}

}  // namespace

int RunCommandLine(int argc, char** argv) {
  CommandLine line;
  try {
    line.app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    Print(line.app.help());
    return 0;
  } catch (const CLI::CallForVersion& version) {
    Print(std::string(version.what()) + "\n");
    return 0;
  } catch (const CLI::ParseError& error) {
    throw Failure(Complaint(line.app, error, argc, argv));
  }
  RequireVerbatim(line.runOptions.steps, argc, argv);
  return line.Run();
}

void DescribeCommandLine(const std::function<void(const CLI::App&)>& describe) {
  const CommandLine line;
  describe(line.app);
}

}  // namespace tgx::tool
