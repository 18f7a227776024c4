#include "tool/FixPlan.h"

#include <algorithm>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tool/Messages.h"

namespace tgx::tool {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

std::vector<std::string> NamesOf(const std::vector<StepCall>& plan) {
  std::vector<std::string> names;
  for (const StepCall& step : plan) names.push_back(step.name);
  return names;
}

FixChoices AllFiles() {
  FixChoices choices;
  choices.styles = "styles.xml";
  choices.contents = "toc.xml";
  choices.tables = "tables.tsv";
  choices.form = "form.pdf";
  return choices;
}

std::string FailureOf(const FixChoices& choices) {
  try {
    PlanOfFix(choices);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "no failure";
}

TEST(FixPlan, HasThePublishedOrder) {
  std::vector<std::string> names;
  for (const FixStep& step : FixSteps()) {
    if (step.byDefault) names.emplace_back(step.name);
  }
  EXPECT_THAT(names,
              ElementsAre("style-names", "table-metadata", "layout-tables", "mathml", "user-alt-text", "footnote-links",
                          "reshuffle-frames", "remove-frame-markers", "toc", "group-tags", "end-notes", "double-bullets",
                          "extra-paragraphs", "main-language", "plain-languages", "table-headers-footers", "role-map",
                          "sync-forms", "remove-dummy-images", "remove-empty-tags", "link-contents"));
}

TEST(FixPlan, LeavesOffWhatThrowsSomethingAwayThatMostDocumentsNeed) {
  std::vector<std::string> names;
  for (const FixStep& step : FixSteps()) {
    if (!step.byDefault) names.emplace_back(step.name);
  }
  EXPECT_THAT(names, testing::UnorderedElementsAre("cut-text", "table-layout", "button-widgets", "mark-empty-tags",
                                                   "reshuffle-frames-by-holder", "language-tags", "language-brackets"));
}

TEST(FixPlan, NamesEveryStepOfTheCommandButTheReservedOne) {
  for (const Step& step : Steps()) {
    const auto named =
        std::count_if(FixSteps().begin(), FixSteps().end(), [&](const FixStep& own) { return own.name == step.name; });
    EXPECT_EQ(named, step.name == "reserved" ? 0 : 1) << step.name;
  }
}

TEST(FixPlan, WithAllFilesIsAllThatIsOn) {
  std::vector<std::string> names;
  for (const FixStep& step : FixSteps()) {
    if (step.byDefault) names.emplace_back(step.name);
  }
  EXPECT_THAT(NamesOf(PlanOfFix(AllFiles())), ElementsAreArray(names));
}

TEST(FixPlan, LeavesOutTheStepsWhoseFilesAreNotGiven) {
  const std::vector<std::string> names = NamesOf(PlanOfFix({}));
  for (const char* name : {"style-names", "layout-tables", "toc", "sync-forms"}) {
    EXPECT_THAT(names, testing::Not(testing::Contains(name)));
  }
}

TEST(FixPlan, HandsEachStepItsFile) {
  std::map<std::string, std::string> files;
  for (const StepCall& step : PlanOfFix(AllFiles())) files[step.name] = step.path;
  EXPECT_EQ(files["style-names"], "styles.xml");
  EXPECT_EQ(files["layout-tables"], "tables.tsv");
  EXPECT_EQ(files["sync-forms"], "form.pdf");
  EXPECT_EQ(files["toc"], "toc.xml");
  EXPECT_EQ(files["mathml"], "");
}

TEST(FixPlan, KeepsColonsInTheNamesOfFiles) {
  FixChoices choices;
  choices.styles = "C:my:styles.xml";
  EXPECT_EQ(PlanOfFix(choices).front().path, "C:my:styles.xml");
}

TEST(FixPlan, SkipLeavesStepsOut) {
  FixChoices choices = AllFiles();
  choices.skip = {"mathml", "style-names"};
  const std::vector<std::string> names = NamesOf(PlanOfFix(choices));
  EXPECT_THAT(names, testing::Not(testing::Contains("mathml")));
  EXPECT_THAT(names, testing::Not(testing::Contains("style-names")));
  EXPECT_THAT(names, testing::Contains("table-metadata"));
}

TEST(FixPlan, WithAddsStepsAtTheirPlaces) {
  FixChoices choices;
  choices.with = {"button-widgets", "table-layout"};
  const std::vector<std::string> names = NamesOf(PlanOfFix(choices));
  const auto place = [&](const char* name) { return std::find(names.begin(), names.end(), name) - names.begin(); };
  EXPECT_EQ(place("table-layout"), place("table-headers-footers") + 1);
  EXPECT_EQ(place("button-widgets"), place("role-map") + 1);
}

TEST(FixPlan, MarkingEmptyElementsTakesThePlaceOfRemovingThem) {
  FixChoices choices;
  choices.with = {"mark-empty-tags"};
  const std::vector<std::string> names = NamesOf(PlanOfFix(choices));
  EXPECT_THAT(names, testing::Contains("mark-empty-tags"));
  EXPECT_THAT(names, testing::Not(testing::Contains("remove-empty-tags")));
}

TEST(FixPlan, RefusesNamesThatAreNoSteps) {
  FixChoices choices;
  choices.skip = {"polish"};
  EXPECT_EQ(FailureOf(choices), "--skip polish: fix has no such step; see tgx fix --help");
  choices.skip = {};
  choices.with = {"reserved"};
  EXPECT_EQ(FailureOf(choices), "--with reserved: fix has no such step; see tgx fix --help");
}

TEST(FixPlan, RefusesAStepThatIsBothSkippedAndAskedFor) {
  FixChoices choices;
  choices.skip = choices.with = {"table-layout"};
  EXPECT_EQ(FailureOf(choices), "step table-layout: cannot be both skipped and asked for");
}

TEST(FixPlan, WantsTheFileOfAStepThatIsAskedFor) {
  FixChoices choices;
  choices.with = {"style-names"};
  EXPECT_EQ(FailureOf(choices), "step style-names: needs a file, given with --styles");
}

}  // namespace
}  // namespace tgx::tool
