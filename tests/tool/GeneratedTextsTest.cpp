// The manual page and the completion, which are made from the commands and steps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <CLI/CLI.hpp>

#include "tests/tool/RunTool.h"
#include "tool/CommandLine.h"
#include "tool/Completion.h"
#include "tool/FixPlan.h"
#include "tool/Manual.h"
#include "tool/Steps.h"

namespace tgx::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::string Generated(std::string (*make)(const CLI::App&)) {
  std::string text;
  tool::DescribeCommandLine([&](const CLI::App& app) { text = make(app); });
  return text;
}

/// The page as a terminal shows it, without the lines being broken.
ProcessResult ShownPage() {
  const TempFolder folder;
  const std::string page = folder.Write("tgx.1", Generated(tool::ManualPage));
  return Process({"groff", "-man", "-Tascii", "-P-cbou", "-ww", "-rLL=400n", page}).Run();
}

TEST(ManualPage, IsSoundAndListsEveryStepWithItsNumberAndHelp) {
  const ProcessResult page = ShownPage();
  EXPECT_EQ(page.status, 0);
  EXPECT_EQ(page.err, "");
  ASSERT_FALSE(tool::Steps().empty());
  for (const tool::Step& step : tool::Steps()) {
    EXPECT_THAT(page.out, HasSubstr("       " + std::string(step.name)));
    EXPECT_THAT(page.out, HasSubstr(std::string(step.help)));
  }
  EXPECT_THAT(page.out, AllOf(HasSubstr("layout-tables:TABLES.tsv"), HasSubstr("(action=9)"), HasSubstr("(fixups=0x200)")));
}

TEST(ManualPage, ListsEveryCommandAndEveryOption) {
  const std::string page = ShownPage().out;
  tool::DescribeCommandLine([&](const CLI::App& app) {
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
      EXPECT_THAT(page, HasSubstr("   tgx " + command->get_name() + "\n"));
      for (const CLI::Option* option : command->get_options([](const CLI::Option*) { return true; })) {
        for (const std::string& name : option->get_lnames()) EXPECT_THAT(page, HasSubstr("--" + name));
      }
    }
  });
  EXPECT_THAT(page, HasSubstr("EXIT STATUS"));
}

/// Where the words stand in the text, one behind the other.
void ExpectInOrder(const std::string& text, const std::vector<std::string>& words) {
  std::size_t from = 0;
  for (const std::string& word : words) {
    const std::size_t place = text.find(word, from);
    EXPECT_NE(place, std::string::npos) << word;
    if (place != std::string::npos) from = place + word.size();
  }
}

std::vector<std::string> FixStepNames(bool byDefault) {
  std::vector<std::string> names;
  for (const tool::FixStep& step : tool::FixSteps()) {
    if (step.byDefault == byDefault) names.emplace_back(step.name);
  }
  return names;
}

TEST(ManualPage, TellsTheOrderOfTheRepairAndWhatIsOff) {
  const std::string page = ShownPage().out;
  const std::size_t repair = page.find("THE WHOLE REPAIR"), off = page.find("These are off"), steps = page.find("\nSTEPS\n");
  ASSERT_TRUE(repair < off && off < steps && steps != std::string::npos);
  ExpectInOrder(page.substr(repair, off - repair), FixStepNames(true));
  ExpectInOrder(page.substr(off, steps - off), FixStepNames(false));
}

TEST(ManualPage, NamesItsExitStatusOnce) {
  const std::string page = ShownPage().out;
  EXPECT_THAT(page, HasSubstr("EXIT STATUS\n"));
  EXPECT_THAT(page, Not(HasSubstr("Exit status:")));
}

/// What bash offers for the last of the words.
std::vector<std::string> Offered(std::vector<std::string> words, const std::string& folder = "/") {
  const TempFolder scripts;
  const std::string script = scripts.Write("tgx", Generated(tool::BashCompletion));
  std::vector<std::string> command = {"bash", "-uc",
                                      "source \"$0\"; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _tgx tgx \"${@: -1}\" x;"
                                      "for word in \"${COMPREPLY[@]}\"; do echo \"$word\"; done",
                                      script};
  command.insert(command.end(), words.begin(), words.end());
  const ProcessResult result = Process(command).In(folder).Run();
  EXPECT_EQ(result.status, 0) << result.err;
  std::vector<std::string> offered;
  std::istringstream lines(result.out);
  for (std::string line; std::getline(lines, line);) offered.push_back(line);
  return offered;
}

TEST(BashCompletion, OffersTheCommands) {
  EXPECT_THAT(Offered({"tgx", ""}), AllOf(Contains("run"), Contains("tree"), Contains("actions"), Contains("--version")));
}

TEST(BashCompletion, OffersEveryStepWithAColonWhereItTakesAFile) {
  const std::vector<std::string> offered = Offered({"tgx", "run", ""});
  for (const tool::Step& step : tool::Steps())
    EXPECT_THAT(offered, Contains(std::string(step.name) + (step.argument.empty() ? "" : ":")));
}

TEST(BashCompletion, OffersOnlyWhatStartsLikeTheWord) {
  EXPECT_THAT(Offered({"tgx", "run", "remove-e"}), ElementsAre("remove-empty-tags"));
}

TEST(BashCompletion, OffersTheOptionsOfTheCommand) {
  EXPECT_THAT(Offered({"tgx", "run", "--"}), AllOf(Contains("--keep-going"), Contains("--deterministic")));
  EXPECT_THAT(Offered({"tgx", "tree", "--"}), AllOf(Contains("--json"), Not(Contains("--keep-going"))));
}

TEST(BashCompletion, OffersFilesBehindAnOptionThatTakesOneAndBehindTheColonOfAStep) {
  const TempFolder folder;
  folder.Write("contents of it.xml", "");
  EXPECT_THAT(Offered({"tgx", "run", "--password-file", "con"}, folder.Path()), ElementsAre("contents of it.xml"));
  EXPECT_THAT(Offered({"tgx", "run", "toc", ":", "con"}, folder.Path()), ElementsAre("contents of it.xml"));
  EXPECT_THAT(Offered({"tgx", "run", "toc", ":"}, folder.Path()), ElementsAre("contents of it.xml"));
}

TEST(BashCompletion, OffersStepsOfTheRepairToSkipAndStepsThatAreOffToAdd) {
  EXPECT_THAT(
      Offered({"tgx", "fix", "--skip", "toc,r"}),
      testing::UnorderedElementsAre("toc,reshuffle-frames-by-holder", "toc,reshuffle-frames", "toc,remove-frame-markers",
                                    "toc,role-map", "toc,remove-dummy-images", "toc,remove-empty-tags"));
  EXPECT_THAT(Offered({"tgx", "fix", "--with", ""}), testing::UnorderedElementsAreArray(FixStepNames(false)));
}

TEST(BashCompletion, OffersFoldersAndFilesOfTheKindThatIsWanted) {
  const TempFolder folder;
  for (const char* name : {"a.xml", "a.pdf", "a.tsv"}) folder.Write(name, "");
  ASSERT_EQ(mkdir((folder / "a").c_str(), 0700), 0);
  EXPECT_THAT(Offered({"tgx", "fix", "--toc", "a"}, folder.Path()), testing::UnorderedElementsAre("a", "a.xml"));
  EXPECT_THAT(Offered({"tgx", "fix", "--forms", "a."}, folder.Path()), ElementsAre("a.pdf"));
  EXPECT_THAT(Offered({"tgx", "run", "layout-tables", ":", "a."}, folder.Path()), ElementsAre("a.tsv"));
  EXPECT_THAT(Offered({"tgx", "run", "layout-tables", ":"}, folder.Path()), testing::UnorderedElementsAre("a", "a.tsv"));
}

TEST(BashCompletion, OffersNothingForAPassword) {
  const TempFolder folder;
  folder.Write("file", "");
  EXPECT_THAT(Offered({"tgx", "run", "--password", ""}, folder.Path()), testing::IsEmpty());
}

}  // namespace
}  // namespace tgx::test
