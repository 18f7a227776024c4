#include "tool/Steps.h"

#include <algorithm>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/api/Dispatch.h"
#include "tool/Messages.h"

namespace tgx::tool {
namespace {

using testing::HasSubstr;

std::string ParseFailure(const std::string& text) {
  try {
    ParseStep(text);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Status(), 1);
    return failure.what();
  }
  return "no failure";
}

TEST(Steps, PublishedNumbersAndNamesNeverChange) {
  const std::map<std::uint32_t, std::string> actions = {{0, "reshuffle-frames-by-holder"},
                                                        {1, "link-contents"},
                                                        {2, "style-names"},
                                                        {3, "cut-text"},
                                                        {4, "sync-forms"},
                                                        {5, "toc"},
                                                        {6, "remove-empty-tags"},
                                                        {7, "mark-empty-tags"},
                                                        {8, "user-alt-text"},
                                                        {9, "layout-tables"},
                                                        {10, "footnote-links"},
                                                        {11, "remove-frame-markers"},
                                                        {12, "table-metadata"},
                                                        {13, "remove-dummy-images"},
                                                        {14, "reshuffle-frames"},
                                                        {15, "end-notes"},
                                                        {16, "group-tags"},
                                                        {17, "mathml"},
                                                        {18, "reserved"}};
  const std::map<std::uint32_t, std::string> fixes = {
      {0x1, "double-bullets"}, {0x2, "extra-paragraphs"},   {0x4, "main-language"},
      {0x10, "language-tags"}, {0x20, "language-brackets"}, {0x40, "table-headers-footers"},
      {0x80, "table-layout"},  {0x100, "button-widgets"},   {0x200, "role-map"}};
  std::map<std::uint32_t, std::string> actionsOfTable, fixesOfTable;
  std::vector<std::string> ownSteps;
  for (const Step& step : Steps()) {
    if (step.kind == StepKind::kTool) {
      ownSteps.emplace_back(step.name);
    } else {
      (step.kind == StepKind::kAction ? actionsOfTable : fixesOfTable).emplace(step.number, step.name);
    }
  }
  EXPECT_THAT(ownSteps, testing::ElementsAre("plain-languages"));
  EXPECT_EQ(actionsOfTable, actions);
  EXPECT_EQ(fixesOfTable, fixes);
}

TEST(Steps, HaveOneRowEachAndAHelpOfOneLine) {
  EXPECT_EQ(Steps().size(), 29U);
  for (const Step& step : Steps()) {
    EXPECT_FALSE(step.help.empty()) << step.name;
    EXPECT_EQ(step.help.find('\n'), std::string_view::npos) << step.name;
  }
}

TEST(Steps, OnlyActionsTwoFourFiveAndNineTakeAFile) {
  std::vector<std::uint32_t> numbers;
  for (const Step& step : Steps()) {
    if (!step.argument.empty()) numbers.push_back(step.number);
  }
  EXPECT_THAT(numbers, testing::ElementsAre(2, 4, 5, 9));
}

bool IsDispatched(const Step& step) {
  if (step.kind == StepKind::kFix) {
    return std::ranges::any_of(Fixes(), [&](const FixRow& row) { return row.bit == step.number; });
  }
  return std::ranges::any_of(Actions(), [&](const ActionRow& row) { return row.number == static_cast<int>(step.number); });
}

TEST(Steps, AllHaveTheirWorkerInTheLibrary) {
  for (const Step& step : Steps()) {
    if (step.kind == StepKind::kTool) continue;
    EXPECT_TRUE(IsDispatched(step)) << step.name;
  }
}

TEST(Steps, NameEveryOperationOfTheLibrary) {
  for (const ActionRow& row : Actions()) {
    EXPECT_NE(FindStep(StepKind::kAction, static_cast<std::uint32_t>(row.number)), nullptr) << row.number;
  }
  for (const FixRow& row : Fixes()) EXPECT_NE(FindStep(StepKind::kFix, row.bit), nullptr) << row.bit;
}

TEST(ParseStep, TakesActionsByNumberAndByName) {
  for (const char* text : {"action=18", "reserved"}) {
    const StepCall call = ParseStep(text);
    EXPECT_EQ(call.kind, StepKind::kAction);
    EXPECT_EQ(call.number, 18U);
    EXPECT_EQ(call.name, "reserved");
    EXPECT_EQ(call.path, "");
  }
}

TEST(ParseStep, TakesMasksInDecimalAndHex) {
  EXPECT_EQ(ParseStep("fixups=8").number, 8U);
  EXPECT_EQ(ParseStep("fixups=0x8").number, 8U);
  EXPECT_EQ(ParseStep("fixups=0XfFfFf400").number, 0xFFFFF400U);
  EXPECT_EQ(ParseStep("fixups=0").number, 0U);
  EXPECT_EQ(ParseStep("fixups=0x8").kind, StepKind::kFix);
}

TEST(ParseStep, LetsUnknownActionNumbersThroughToTheLibrary) {
  EXPECT_EQ(ParseStep("action=19").number, 19U);
  EXPECT_EQ(static_cast<std::int32_t>(ParseStep("action=-1").number), -1);
}

TEST(ParseStep, NamesTheStepThatItDoesNotKnow) {
  EXPECT_EQ(ParseFailure("remove-tags"), "step remove-tags: there is no such step; tgx actions lists them");
}

TEST(ParseStep, RefusesWhatIsNoNumber) {
  EXPECT_EQ(ParseFailure("action="), "step action=: \"\" is no number of an action");
  EXPECT_EQ(ParseFailure("action=6x"), "step action=6x: \"6x\" is no number of an action");
  EXPECT_EQ(ParseFailure("action=99999999999"), "step action=99999999999: \"99999999999\" is no number of an action");
  EXPECT_EQ(ParseFailure("fixups=0x"), "step fixups=0x: \"0x\" is no mask of fixes");
  EXPECT_EQ(ParseFailure("fixups=-1"), "step fixups=-1: \"-1\" is no mask of fixes");
  EXPECT_EQ(ParseFailure("fixups=4294967296"), "step fixups=4294967296: \"4294967296\" is no mask of fixes");
}

TEST(ParseStep, RefusesAFileForAStepThatTakesNone) {
  EXPECT_EQ(ParseFailure("reserved:x"), "step reserved:x: reserved takes no file");
  EXPECT_EQ(ParseFailure("action=18:x"), "step action=18:x: reserved takes no file");
  EXPECT_EQ(ParseFailure("fixups=8:x"), "step fixups=8:x: fixes take no file");
}

TEST(ParseStep, WantsAFileWhereTheStepTakesOne) {
  for (const Step& step : Steps()) {
    if (step.argument.empty()) continue;
    const std::string name(step.name);
    EXPECT_EQ(ParseFailure(name), "step " + name + ": needs a file, as in " + name + ":" + std::string(step.argument));
    EXPECT_EQ(ParseFailure(name + ":"),
              "step " + name + ":: needs a file, as in " + name + ":" + std::string(step.argument));
    EXPECT_EQ(ParseStep(name + ":a:b").path, "a:b");
    EXPECT_EQ(ParseStep("action=" + std::to_string(step.number) + ":a:b").path, "a:b");
  }
}

}  // namespace
}  // namespace tgx::tool
