#include "tool/Manual.h"

#include <cstdio>

#include <CLI/CLI.hpp>

#include "tool/FixPlan.h"
#include "tool/HelpTexts.h"
#include "tool/Steps.h"

namespace tgx::tool {
namespace {

/// Plain text as it must stand in a page: backslashes and hyphens escaped, no line that starts with a control character.
std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    const bool atLineStart = escaped.empty() || escaped.back() == '\n';
    if (atLineStart && (c == '.' || c == '\'')) escaped += "\\&";
    if (c == '\\') {
      escaped += "\\e";
    } else if (c == '-') {
      escaped += "\\-";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string Bold(std::string_view text) { return "\\fB" + Escaped(text) + "\\fR"; }
std::string Italic(std::string_view text) { return "\\fI" + Escaped(text) + "\\fR"; }

std::string Entry(const std::string& head, const std::string& text) { return ".TP\n" + head + "\n" + text + "\n"; }
std::string Preformatted(std::string_view text) { return ".nf\n" + Escaped(text) + ".fi\n"; }

std::vector<const CLI::Option*> OptionsOf(const CLI::App& command, bool positional) {
  return command.get_options([positional](const CLI::Option* option) { return option->get_positional() == positional; });
}

std::string SynopsisOf(const CLI::App& command) {
  std::string line = ".B " + Escaped("tgx " + command.get_name()) + "\n";
  for (const CLI::Option* option : OptionsOf(command, false)) {
    if (option->get_required())
      line += Bold("-" + option->get_snames().front()) + " " + Italic(option->get_type_name()) + "\n";
  }
  line += "[" + Italic("options") + "]\n";
  for (const CLI::Option* option : OptionsOf(command, true)) {
    const bool many = option->get_items_expected_max() > 1;
    line += Italic(option->get_name(true)) + (many ? "...\n" : "\n");
  }
  return line;
}

std::string OptionEntry(const CLI::Option& option) {
  std::string head;
  for (const std::string& name : option.get_snames()) head += (head.empty() ? "" : ", ") + Bold("-" + name);
  for (const std::string& name : option.get_lnames()) head += (head.empty() ? "" : ", ") + Bold("--" + name);
  if (option.get_items_expected_max() > 0) head += " " + Italic(option.get_type_name());
  return Entry(head, Escaped(option.get_description()));
}

std::string PositionalEntry(const CLI::Option& option) {
  return Entry(Italic(option.get_name(true)), Escaped(option.get_description()));
}

std::string CommandSection(const CLI::App& command) {
  std::string section = ".SS " + Escaped("tgx " + command.get_name()) + "\n" + Escaped(command.get_description()) + ".\n";
  for (const CLI::Option* option : OptionsOf(command, true)) section += PositionalEntry(*option);
  for (const CLI::Option* option : OptionsOf(command, false)) section += OptionEntry(*option);
  return section;
}

/// The step as its number asks for it, in parentheses; nothing for a step without a number.
std::string NumberForm(const Step& step) {
  if (step.kind == StepKind::kTool) return "";
  if (step.kind == StepKind::kAction) return " (action=" + std::to_string(step.number) + ")";
  char mask[24];
  std::snprintf(mask, sizeof mask, " (fixups=0x%x)", step.number);
  return mask;
}

std::string StepEntry(const Step& step) {
  std::string head = Bold(step.name);
  if (!step.argument.empty()) head += ":" + Italic(step.argument);
  return Entry(head, Escaped(std::string(step.help) + NumberForm(step)));
}

std::string StepSection(const char* title, StepKind kind) {
  std::string section = std::string(".SS ") + title + "\n";
  for (const Step& step : Steps()) {
    if (step.kind == kind) section += StepEntry(step);
  }
  return section;
}

/// The steps of a repair in their order, those that are on or those that are off; steps with a file name its option.
std::string FixStepNames(bool byDefault) {
  std::string names;
  for (const FixStep& step : FixSteps()) {
    if (step.byDefault != byDefault) continue;
    names += (names.empty() ? "" : ",\n") + Bold(step.name);
    if (!step.option.empty()) names += " (with " + Bold(step.option) + ")";
  }
  return names;
}

constexpr const char* kRepair =
    "A step that finds nothing to change, or that can do nothing in the document, is told of in the report and is no "
    "failure.\n"
    "A step that fails ends the repair, and nothing is written; with\n"
    "\\fB\\-\\-keep\\-going\\fR the others are run and the result is saved, and the exit status still tells of the "
    "failure.\n"
    ".TP\nTexts of marks\n"
    "Before the first step, alternate texts and titles that hold marks are rewritten to UTF\\-16BE with a byte\\-order "
    "mark,\n"
    "and languages to plain text, since the library reads them in no other form.\n"
    ".TP\nWhat is visible stays\n"
    "A step that takes away from the page content more than it is meant to is undone for the whole document, and the "
    "report\n"
    "names the page and what it would have removed.\n"
    ".TP\nEmpty cells\n"
    "Empty cells that \\fBremove\\-empty\\-tags\\fR takes out of a row that stays are put back, so that columns keep their "
    "heads.\n"
    ".PP\nNone of this holds for \\fBtgx run\\fR, which does what it is told.\n";

std::string RepairSection() {
  return ".SH THE WHOLE REPAIR\n\\fBtgx fix\\fR runs these steps, in this order:\n" + FixStepNames(true) +
         ".\n.PP\nThese are off unless \\fB\\-\\-with\\fR asks for them, and have places of their own in that order:\n" +
         FixStepNames(false) + ".\n.PP\n" + kRepair;
}

struct Example {
  const char* what;
  const char* command;
};

constexpr Example kExamples[] = {
    {"Repairs a document, with the files that its exporter wrote beside it:",
     "tgx fix annual-report.pdf -o repaired.pdf \\\n        --styles annual-report.styles.xml --toc annual-report.toc.xml"},
    {"Repairs it, leaves two steps out, and reports to a program:",
     "tgx fix annual-report.pdf -o repaired.pdf --force --json \\\n        --skip double-bullets,role-map"},
    {"Shows the structure with the texts on the pages:", "tgx tree --text annual-report.pdf"},
    {"Runs three steps, two of them by number:",
     "tgx run annual-report.pdf -o other.pdf table-metadata action=14 fixups=0x3"},
};

std::string ExamplesSection() {
  std::string section = ".SH EXAMPLES\n";
  for (const Example& example : kExamples)
    section += std::string(".PP\n") + example.what + "\n.PP\n.nf\n    " + Escaped(example.command) + "\n.fi\n";
  return section;
}

/// What --help says of the exit status, without its title.
std::string_view ExitStatus() {
  const std::string_view text = kExitStatus;
  return text.substr(text.find('\n') + 1);
}

}  // namespace

std::string ManualPage(const CLI::App& app) {
  std::string page = ".TH TGX 1 \"\" \"" + std::string("tgx ") + TGX_VERSION + "\" \"User Commands\"\n";
  page += ".nh\n";  // names with hyphens must not be broken at further ones
  page += ".SH NAME\ntgx \\- repair tagged PDF documents\n.SH SYNOPSIS\n";
  const auto commands = app.get_subcommands([](const CLI::App*) { return true; });
  for (const CLI::App* command : commands) page += SynopsisOf(*command) + ".br\n";
  page +=
      ".SH DESCRIPTION\n"
      "Reads the private marks that a page\\-layout program's exporter leaves in a tagged PDF document, and the files that "
      "it\n"
      "writes beside it, and rewrites the document into plain tagged PDF. What is seen on the pages stays.\n";
  page += ".SH COMMANDS\n";
  for (const CLI::App* command : commands) page += CommandSection(*command);
  page += RepairSection();
  page += ".SH STEPS\n" + Preformatted(kStepForms);
  page += StepSection("Actions", StepKind::kAction) + StepSection("Fixes", StepKind::kFix);
  page += StepSection("Steps of the command's own", StepKind::kTool);
  page += ".SH EXIT STATUS\n" + Preformatted(ExitStatus()) + ExamplesSection();
  page += ".SH SEE ALSO\n.BR qpdf (1)\n";
  return page;
}

}  // namespace tgx::tool
