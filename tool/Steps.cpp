#include "tool/Steps.h"

#include <charconv>
#include <optional>
#include <system_error>

#include "tool/Messages.h"

namespace tgx::tool {
namespace {

constexpr auto kAction = StepKind::kAction;
constexpr auto kFix = StepKind::kFix;
constexpr auto kTool = StepKind::kTool;

constexpr Step kSteps[] = {
    {kAction, 0, "reshuffle-frames-by-holder", "", "place anchored frames at their anchors, going by the holders"},
    {kAction, 1, "link-contents", "", "describe each link annotation by the text it covers and its target"},
    {kAction, 2, "style-names", "STYLES.xml", "put the style names of STYLES.xml in the place of style identifiers"},
    {kAction, 3, "cut-text", "", "cut every text element down to its first character, painted black"},
    {kAction, 4, "sync-forms", "FORM.pdf", "take over settings, values and appearances of form fields from FORM.pdf"},
    {kAction, 5, "toc", "TOC.xml", "build the table of contents"},
    {kAction, 6, "remove-empty-tags", "", "remove structure elements that hold nothing"},
    {kAction, 7, "mark-empty-tags", "", "add [EMPTY] to the type of structure elements that hold nothing"},
    {kAction, 8, "user-alt-text", "", "move alternate texts from link addresses to the figures"},
    {kAction, 9, "layout-tables", "TABLES.tsv", "turn the tables that TABLES.tsv says only lay out the page into divisions"},
    {kAction, 10, "footnote-links", "", "link footnotes and their references with each other"},
    {kAction, 11, "remove-frame-markers", "", "remove the marks around text frames, from the tree and the pages"},
    {kAction, 12, "table-metadata", "", "give tables their header cells, from the descriptions left in the document"},
    {kAction, 13, "remove-dummy-images", "", "remove images of 1 by 1 sample from the pages"},
    {kAction, 14, "reshuffle-frames", "", "place anchored frames at their anchors"},
    {kAction, 15, "end-notes", "", "map the type Endnote to Note"},
    {kAction, 16, "group-tags", "", "build captions, indexes and block quotes from paragraphs tagged as their parts"},
    {kAction, 17, "mathml", "", "attach to formulas their MathML"},
    {kAction, 18, "reserved", "", "does nothing"},
    {kFix, 0x1, "double-bullets", "", "remove the second copy of list bullets"},
    {kFix, 0x2, "extra-paragraphs", "", "remove paragraphs that hold a table and nothing else"},
    {kFix, 0x4, "main-language", "", "give the document the language of most of its text"},
    {kFix, 0x10, "language-tags", "", "write languages as binary tags"},
    {kFix, 0x20, "language-brackets", "", "write languages in brackets"},
    {kFix, 0x40, "table-headers-footers", "", "keep the first head and the last foot of tables that repeat them"},
    {kFix, 0x80, "table-layout", "", "dissolve tables that hold other elements than those of tables"},
    {kFix, 0x100, "button-widgets", "", "turn buttons and boxes of forms into stamps"},
    {kFix, 0x200, "role-map", "", "remove types that are mapped to themselves from the role map"},
    {kTool, 0, "plain-languages", "", "write languages in brackets the way that readers know: [Lang=de] becomes de"},
};

/// A whole number, decimal or with 0x in front; nothing before it and nothing after.
template <typename Number>
std::optional<Number> ParseNumber(std::string_view text, bool hexAllowed) {
  int base = 10;
  if (hexAllowed && (text.starts_with("0x") || text.starts_with("0X"))) {
    base = 16;
    text.remove_prefix(2);
  }
  Number value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

StepCall CallOf(const Step& step, std::string path, bool hasPath, std::string_view text) {
  if (step.argument.empty() && hasPath)
    throw Failure("step " + std::string(text) + ": " + std::string(step.name) + " takes no file");
  if (!step.argument.empty() && path.empty()) {
    throw Failure("step " + std::string(text) + ": needs a file, as in " + std::string(step.name) + ":" +
                  std::string(step.argument));
  }
  return {step.kind, step.number, std::move(path), std::string(step.name)};
}

StepCall ParseMask(std::string_view text, std::string_view value) {
  const auto mask = ParseNumber<std::uint32_t>(value, true);
  if (!mask) throw Failure("step " + std::string(text) + ": \"" + std::string(value) + "\" is no mask of fixes");
  return {kFix, *mask, "", std::string(text)};
}

}  // namespace

std::span<const Step> Steps() { return kSteps; }

const Step* FindStep(std::string_view name) {
  for (const Step& step : kSteps) {
    if (step.name == name) return &step;
  }
  return nullptr;
}

const Step* FindStep(StepKind kind, std::uint32_t number) {
  for (const Step& step : kSteps) {
    if (step.kind == kind && step.number == number) return &step;
  }
  return nullptr;
}

StepCall ParseStep(std::string_view text) {
  const std::size_t colon = text.find(':');
  const bool hasPath = colon != std::string_view::npos;
  const std::string_view head = text.substr(0, colon);
  std::string path(hasPath ? text.substr(colon + 1) : std::string_view());

  if (head.starts_with("fixups=")) {
    if (hasPath) throw Failure("step " + std::string(text) + ": fixes take no file");
    return ParseMask(text, head.substr(7));
  }
  if (head.starts_with("action=")) {
    const auto number = ParseNumber<std::int32_t>(head.substr(7), false);
    if (!number)
      throw Failure("step " + std::string(text) + ": \"" + std::string(head.substr(7)) + "\" is no number of an action");
    if (const Step* step = FindStep(kAction, static_cast<std::uint32_t>(*number))) return CallOf(*step, path, hasPath, text);
    return {kAction, static_cast<std::uint32_t>(*number), path, std::string(head)};
  }
  const Step* step = FindStep(head);
  if (step == nullptr) throw Failure("step " + std::string(text) + ": there is no such step; tgx actions lists them");
  return CallOf(*step, path, hasPath, text);
}

std::vector<StepCall> ParseSteps(const std::vector<std::string>& texts) {
  std::vector<StepCall> calls;
  calls.reserve(texts.size());
  for (const std::string& text : texts) calls.push_back(ParseStep(text));
  return calls;
}

}  // namespace tgx::tool
