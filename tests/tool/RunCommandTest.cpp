#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using Json = nlohmann::json;

std::string TinyDocument(const std::function<void(QPDFWriter&)>& configure = {}) {
  TestDocument document;
  document.Tree({Element("Document")({Element("P").Text(document.AddPage(), "Words")})});
  return document.Write(configure);
}

std::string EncryptedDocument() {
  return TinyDocument([](QPDFWriter& writer) {
    writer.setR6EncryptionParameters("open", "own", true, true, true, true, true, true, qpdf_r3p_full, true);
  });
}

/// A folder with in.pdf, and runs of the command on it.
class RunCommand : public testing::Test {
 protected:
  void SetUp() override { folder_.Write("in.pdf", TinyDocument()); }

  ProcessResult Run(std::vector<std::string> arguments, const std::string& output = "out.pdf") {
    arguments.insert(arguments.begin(), {"run", "in.pdf", "-o", output});
    return Tool(arguments).In(folder_.Path()).Run();
  }
  void ExpectRefused(const ProcessResult& result, const std::string& message) {
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, Message(message));
  }

  TempFolder folder_;
};

TEST_F(RunCommand, SavesASoundDocumentAndReportsTheSteps) {
  const ProcessResult result = Run({"reserved", "fixups=0x8"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "reserved: done\nfixups=0x8: done\nsaved out.pdf\n");
  EXPECT_EQ(result.err, "");
  ExpectSound(ReadFile(folder_ / "out.pdf"));
}

TEST_F(RunCommand, ReportsAsJsonOnRequest) {
  const ProcessResult result = Run({"--json", "reserved", "fixups=0x8"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, R"({"version":1,"input":"in.pdf","output":"out.pdf","steps":[)"
                        R"({"step":"reserved","action":18,"result":0,"error":""},)"
                        R"({"step":"fixups=0x8","fixups":8,"result":0,"error":""}],"saved":true})"
                        "\n");
}

TEST_F(RunCommand, QuietPrintsNothingWhenAllGoesWell) {
  const ProcessResult result = Run({"--quiet", "reserved"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(Exists(folder_ / "out.pdf"));
}

TEST_F(RunCommand, QuietStillTellsFailures) {
  const ProcessResult result = Run({"--quiet", "action=19"});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, Message("in.pdf: step action=19 failed with 3: there is no such action"));
}

TEST_F(RunCommand, FailedStepEndsTheRunWithItsResultAndNothingIsWritten) {
  const ProcessResult result = Run({"action=19", "reserved"});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.out, "action=19: failed with 3: there is no such action\nnothing was written\n");
  EXPECT_EQ(result.err, Message("in.pdf: step action=19 failed with 3: there is no such action"));
  EXPECT_THAT(folder_.Names(), ElementsAre("in.pdf"));
}

TEST_F(RunCommand, FailedStepLeavesAnOutputThatWasToBeReplaced) {
  folder_.Write("out.pdf", "precious");
  EXPECT_EQ(Run({"--force", "action=19"}).status, 3);
  EXPECT_EQ(ReadFile(folder_ / "out.pdf"), "precious");
}

TEST_F(RunCommand, FailedStepIsReportedAsJsonWithWhatRan) {
  const Json report = Json::parse(Run({"--json", "reserved", "action=-1", "reserved"}).out);
  EXPECT_EQ(report["saved"], false);
  ASSERT_EQ(report["steps"].size(), 2U);
  EXPECT_EQ(report["steps"][1]["action"], -1);
  EXPECT_EQ(report["steps"][1]["result"], 3);
}

TEST_F(RunCommand, KeepGoingRunsTheRestSavesAndGivesTheFirstFailure) {
  const ProcessResult result = Run({"--keep-going", "action=19", "reserved"});
  EXPECT_EQ(result.status, 3);
  EXPECT_THAT(result.out, HasSubstr("reserved: done\nsaved out.pdf\n"));
  ExpectSound(ReadFile(folder_ / "out.pdf"));
}

TEST_F(RunCommand, RefusesAnUnknownStepBeforeAnythingElse) {
  ExpectRefused(Tool({"run", "none.pdf", "-o", "out.pdf", "polish"}).In(folder_.Path()).Run(),
                "step polish: there is no such step; tgx actions lists them");
}

TEST_F(RunCommand, StepInBracketsIsNoList) {
  ExpectRefused(Run({"[reserved,reserved]"}), "step reserved: steps stand one by one, not in brackets");
}

TEST_F(RunCommand, RefusesAnExistingOutputWithoutForce) {
  folder_.Write("out.pdf", "precious");
  ExpectRefused(Run({"reserved"}), "out.pdf: exists already; --force replaces it");
  EXPECT_EQ(ReadFile(folder_ / "out.pdf"), "precious");
}

TEST_F(RunCommand, ReplacesAnExistingOutputWithForce) {
  folder_.Write("out.pdf", "worthless");
  EXPECT_EQ(Run({"--force", "reserved"}).status, 0);
  ExpectSound(ReadFile(folder_ / "out.pdf"));
}

TEST_F(RunCommand, RefusesTheInputAsOutputUnderAnyName) {
  std::filesystem::create_symlink("in.pdf", folder_ / "soft.pdf");
  std::filesystem::create_hard_link(folder_ / "in.pdf", folder_ / "hard.pdf");
  const std::string before = ReadFile(folder_ / "in.pdf");
  for (const std::string& name : {std::string("in.pdf"), std::string("./in.pdf"), std::string("soft.pdf"),
                                  std::string("hard.pdf"), folder_ / "in.pdf"}) {
    ExpectRefused(Run({"reserved"}, name), name + ": is the input; --force replaces it");
  }
  EXPECT_EQ(ReadFile(folder_ / "in.pdf"), before);
}

TEST_F(RunCommand, ReplacesTheInputWithForce) {
  EXPECT_EQ(Run({"--force", "--linearize", "reserved"}, "./in.pdf").status, 0);
  ExpectSound(ReadFile(folder_ / "in.pdf"));
  EXPECT_THAT(ReadFile(folder_ / "in.pdf"), HasSubstr("/Linearized"));
}

TEST_F(RunCommand, ReplacesTheFileBehindALinkAndKeepsTheLink) {
  std::filesystem::create_symlink("in.pdf", folder_ / "soft.pdf");
  EXPECT_EQ(Run({"--force", "--linearize", "reserved"}, "soft.pdf").status, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "soft.pdf"));
  EXPECT_THAT(ReadFile(folder_ / "in.pdf"), HasSubstr("/Linearized"));
}

TEST_F(RunCommand, NeverReplacesWhatIsNoRegularFile) {
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  ExpectRefused(Run({"--force", "reserved"}, "pipe"), "pipe: is not a regular file");
  ExpectRefused(Run({"--force", "reserved"}, "/dev/null"), "/dev/null: is not a regular file");
  ExpectRefused(Run({"--force", "reserved"}, "."), ".: is a folder");
}

TEST_F(RunCommand, NamesAFolderThatIsNotThere) {
  ExpectRefused(Run({"reserved"}, "no/where/out.pdf"), "no/where/out.pdf: there is no folder no/where");
  ExpectRefused(Run({"reserved"}, "in.pdf/out.pdf"), "in.pdf/out.pdf: in.pdf is not a folder");
}

TEST_F(RunCommand, LinearizesOnRequest) {
  EXPECT_EQ(Run({"--linearize", "reserved"}).status, 0);
  EXPECT_THAT(ReadFile(folder_ / "out.pdf"), HasSubstr("/Linearized"));
}

TEST_F(RunCommand, DeterministicRunsGiveTheSameBytes) {
  EXPECT_EQ(Run({"--deterministic", "reserved"}, "a.pdf").status, 0);
  EXPECT_EQ(Run({"--deterministic", "reserved"}, "b.pdf").status, 0);
  EXPECT_EQ(ReadFile(folder_ / "a.pdf"), ReadFile(folder_ / "b.pdf"));
}

TEST_F(RunCommand, DeterministicEncryptedOutputIsRefusedWithAClearText) {
  folder_.Write("in.pdf", EncryptedDocument());
  const ProcessResult result = Run({"--deterministic", "--password", "open", "reserved"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, StartsWith("tgx: "));
  EXPECT_THAT(result.err, HasSubstr("encrypted"));
  EXPECT_THAT(result.err, EndsWith("; --decrypt takes it away\n"));
  EXPECT_THAT(folder_.Names(), ElementsAre("in.pdf"));
}

TEST_F(RunCommand, KeepsEncryptionUnlessToldToDecrypt) {
  folder_.Write("in.pdf", EncryptedDocument());
  EXPECT_EQ(Run({"--password", "open", "reserved"}, "kept.pdf").status, 0);
  EXPECT_EQ(Run({"--password", "open", "--decrypt", "reserved"}, "open.pdf").status, 0);
  EXPECT_EQ(Process({"qpdf", "--is-encrypted", folder_ / "kept.pdf"}).Run().status, 0);
  EXPECT_EQ(Process({"qpdf", "--is-encrypted", folder_ / "open.pdf"}).Run().status, 2);
}

TEST_F(RunCommand, TakesThePasswordFromTheFirstLineOfAFile) {
  folder_.Write("in.pdf", EncryptedDocument());
  folder_.Write("password", "open\r\nsecond line\n");
  EXPECT_EQ(Run({"--password-file", "password", "reserved"}).status, 0);
}

TEST_F(RunCommand, NamesAPasswordFileThatCannotBeRead) {
  ExpectRefused(Run({"--password-file", "none", "reserved"}), "none: no such file");
  ExpectRefused(Run({"--password-file", ".", "reserved"}), ".: is a directory");
}

TEST_F(RunCommand, KeepsFileNamesOfEveryKind) {
  for (const char* name :
       {"with space.pdf", "#1.pdf", "[a].pdf", "%41.pdf", "\xC3\xA9t\xC3\xA9.pdf", "\xFF\x01.pdf", "a\nb.pdf"}) {
    folder_.Write(name, TinyDocument());
    const std::string output = std::string("out-") + name;
    const ProcessResult result = Tool({"run", "--json", name, "-o", output, "reserved"}).In(folder_.Path()).Run();
    EXPECT_EQ(result.status, 0) << name << result.err;
    EXPECT_TRUE(Exists(folder_ / output)) << name;
    EXPECT_EQ(Json::parse(result.out)["saved"], true) << name;
  }
}

}  // namespace
}  // namespace tgx::test
