#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestDocument.h"
#include "tests/tool/RunTool.h"
#include "tool/Steps.h"

namespace tgx::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string TinyDocument() {
  TestDocument document;
  document.Tree({Element("Document")({Element("P").Text(document.AddPage(), "Words")})});
  return document.Write();
}

TEST(CommandLine, VersionIsOneLineOnStandardOutput) {
  const ProcessResult result = RunTool({"--version"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, testing::MatchesRegex("tgx [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  EXPECT_EQ(result.err, "");
}

TEST(CommandLine, HelpNamesTheCommandsAndTheExitStatuses) {
  const ProcessResult result = RunTool({"--help"});
  EXPECT_EQ(result.status, 0);
  for (const char* word : {"  run ", "  tree ", "  actions ", "Exit status:", "2, 3, 4"})
    EXPECT_THAT(result.out, HasSubstr(word));
  EXPECT_EQ(result.err, "");
}

TEST(CommandLine, HelpOfRunListsEveryStepAndOption) {
  const ProcessResult result = RunTool({"run", "--help"});
  EXPECT_EQ(result.status, 0);
  for (const tool::Step& step : tool::Steps()) EXPECT_THAT(result.out, HasSubstr(std::string(step.name)));
  for (const char* option : {"--output", "--keep-going", "--password", "--password-file", "--json", "--quiet", "--linearize",
                             "--deterministic", "--decrypt", "--force", "Exit status:"}) {
    EXPECT_THAT(result.out, HasSubstr(option));
  }
}

TEST(CommandLine, HelpOfTreeTellsTheExitStatuses) {
  const ProcessResult result = RunTool({"tree", "--help"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr("Exit status:"));
}

TEST(CommandLine, ActionsListsEveryStepWithItsNumberAndItsFile) {
  const ProcessResult result = RunTool({"actions"});
  EXPECT_EQ(result.status, 0);
  for (const char* part : {"\n  6      remove-empty-tags ", "\n  9      layout-tables:TABLES.tsv ", "\n  0x200  role-map ",
                           "\n  18     reserved "}) {
    EXPECT_THAT(result.out, HasSubstr(part));
  }
}

TEST(CommandLine, WrongUseIsOneLineOnStandardErrorAndStatusOne) {
  const std::vector<std::vector<std::string>> wrong = {{},
                                                       {"repair"},
                                                       {"run"},
                                                       {"run", "in.pdf"},
                                                       {"run", "in.pdf", "reserved"},
                                                       {"run", "in.pdf", "-o", "out.pdf"},
                                                       {"run", "in.pdf", "-o", "out.pdf", "--loud", "reserved"},
                                                       {"tree"},
                                                       {"tree", "a.pdf", "b.pdf"},
                                                       {"tree", "in.pdf", "--password", "a", "--password-file", "b"},
                                                       {"actions", "now"}};
  for (const std::vector<std::string>& arguments : wrong) {
    const ProcessResult result = RunTool(arguments);
    EXPECT_EQ(result.status, 1) << testing::PrintToString(arguments);
    EXPECT_EQ(result.out, "") << testing::PrintToString(arguments);
    EXPECT_THAT(result.err, StartsWith("tgx: ")) << testing::PrintToString(arguments);
    EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
  }
}

TEST(CommandLine, WrongUseSaysWhatIsWrongAndWhereToReadOn) {
  const std::pair<std::vector<std::string>, std::string> wrong[] = {
      {{}, "no command given; see tgx --help"},
      {{"repair"}, "repair: there is no such command; see tgx --help"},
      {{"--versio"}, "--versio: there is no such option; see tgx --help"},
      {{"run", "in.pdf", "-o", "out.pdf"}, "STEP is required; see tgx run --help"},
      {{"fix", "in.pdf"}, "--output is required; see tgx fix --help"}};
  for (const auto& [arguments, message] : wrong) EXPECT_EQ(RunTool(arguments).err, Message(message));
}

TEST(CommandLine, FullStandardOutputIsAFailure) {
  const ProcessResult result = Tool({"actions"}).OutputTo("/dev/full").Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, Message("standard output: no space left on device"));
}

TEST(CommandLine, ClosedStandardOutputIsAFailure) {
  const ProcessResult result = Tool({"actions"}).CloseOutput().Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, Message("standard output: bad file descriptor"));
}

TEST(CommandLine, ReaderThatWentAwayIsToldByTheStatusOnly) {
  const ProcessResult result = Tool({"actions"}).BreakOutput().Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "");
}

TEST(CommandLine, ReportThatCannotBePrintedIsAFailureAfterTheOutputIsSaved) {
  const TempFolder folder;
  const std::string input = folder.Write("in.pdf", TinyDocument());
  const ProcessResult result = Tool({"run", input, "-o", folder / "out.pdf", "reserved"}).OutputTo("/dev/full").Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, Message("standard output: no space left on device"));
  EXPECT_TRUE(Exists(folder / "out.pdf"));
}

TEST(CommandLine, OutputIsNotTakenForClosedStandardOutput) {
  const TempFolder folder;
  const std::string input = folder.Write("in.pdf", TinyDocument());
  const ProcessResult result = Tool({"run", input, "-o", folder / "out.pdf", "reserved"}).CloseOutput().Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(ReadFile(folder / "out.pdf"), StartsWith("%PDF-"));
  EXPECT_THAT(ReadFile(folder / "out.pdf"), testing::EndsWith("%%EOF\n"));
}

}  // namespace
}  // namespace tgx::test
