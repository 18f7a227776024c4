#include "src/fixes/RoleMap/RoleMapFix.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "src/logging/LogService.h"
#include "tests/support/Hosts.h"
#include "tests/support/LogFolder.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::kSoftFailure;
using test::kSuccess;
using test::LogFolder;
using test::OpenDocument;
using test::Operation;
using test::ReadBack;
using test::ScopedVariable;
using test::TestDocument;
using testing::MatchesRegex;

constexpr std::uint32_t kRoleMap = 0x200;
constexpr char kLogFile[] = "tgxlib_tag93.log";
const std::string kLine = "[0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+ DEBUG: ApplyFix\n";

class RoleMapFixTest : public testing::Test {
 protected:
  std::string RoleMapAfter() {
    open_ = std::make_unique<OpenDocument>(doc.Write());
    EXPECT_EQ(open_->Fixups(kRoleMap), kSuccess);
    ReadBack saved(open_->Save());
    return test::RoleMapText(saved.Pdf());
  }

  TestDocument doc;
  LogFolder logs;

 private:
  ScopedVariable tmp_{"TMP", logs.Path().c_str()};
  std::unique_ptr<OpenDocument> open_;
};

TEST_F(RoleMapFixTest, RemovesTypesThatAreMappedToThemselves) {
  doc.Tree({Element("Foo").Text(doc.AddPage(), "text")}).RoleMap({{"Table", "Table"}, {"Foo", "P"}});
  EXPECT_EQ(RoleMapAfter(), "Foo -> P\n");
}

TEST_F(RoleMapFixTest, RemovesAllOfThem) {
  doc.Tree({Element("P").Text(doc.AddPage(), "text")}).RoleMap({{"A", "A"}, {"B", "B"}, {"C", "D"}, {"D", "D"}, {"E", "E"}});
  EXPECT_EQ(RoleMapAfter(), "C -> D\n");
}

TEST_F(RoleMapFixTest, KeepsLongerChainsAndCircles) {
  doc.Tree({Element("A").Text(doc.AddPage(), "text")}).RoleMap({{"A", "B"}, {"B", "C"}, {"C", "A"}});
  EXPECT_EQ(RoleMapAfter(), "A -> B\nB -> C\nC -> A\n");
}

TEST_F(RoleMapFixTest, LeavesAnEmptyRoleMapAlone) {
  doc.Tree({Element("P").Text(doc.AddPage(), "text")}).SetTree("RoleMap", "<<>>");
  EXPECT_EQ(RoleMapAfter(), "");
}

TEST_F(RoleMapFixTest, SucceedsWithoutARoleMap) {
  doc.Tree({Element("P").Text(doc.AddPage(), "text")});
  EXPECT_EQ(RoleMapAfter(), "");
  EXPECT_THAT(logs.Read(kLogFile), MatchesRegex(kLine));
}

TEST_F(RoleMapFixTest, FailsWithoutATreeAndStillWritesItsLine) {
  doc.AddPage();
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Fixups(kRoleMap), kSoftFailure);
  EXPECT_THAT(logs.Read(kLogFile), MatchesRegex(kLine));
}

TEST_F(RoleMapFixTest, FailsWithoutADocumentAndWritesNothing) {
  const test::HostSession session;
  EXPECT_FALSE(RoleMapFix().ApplyFix());
  EXPECT_EQ(logs.Read(kLogFile), "");
}

TEST_F(RoleMapFixTest, AppendsALineARun) {
  doc.Tree({Element("P").Text(doc.AddPage(), "text")});
  OpenDocument open(doc.Write());
  for (int run = 0; run < 3; ++run) EXPECT_EQ(open.Fixups(kRoleMap), kSuccess);
  EXPECT_THAT(logs.Read(kLogFile), MatchesRegex(kLine + kLine + kLine));
}

TEST_F(RoleMapFixTest, LeavesNothingInTheLogServiceThatCouldBeUsedAfterItsEnd) {
  doc.Tree({Element("P").Text(doc.AddPage(), "text")});
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Fixups(kRoleMap), kSuccess);
  const std::string log = logs.Read(kLogFile);
  LogService::Get("tag93")->Info("after the run");
  EXPECT_EQ(logs.Read(kLogFile), log);
}

TEST_F(RoleMapFixTest, NeedsNoFolderForItsLog) {
  const ScopedVariable unset("TMP", nullptr);
  doc.Tree({Element("P").Text(doc.AddPage(), "text")}).RoleMap({{"P", "P"}});
  EXPECT_EQ(RoleMapAfter(), "");
}

TEST_F(RoleMapFixTest, KeepsTheTextOfAHostFailureToItself) {
  doc.Tree({Element("P").Text(doc.AddPage(), "text")}).RoleMap({{"P", "P"}});
  OpenDocument open(doc.Write());
  const test::HookedHost host(test::EmbeddedTables(), [](const test::HostCall& call) {
    if (call.Is(Operation::PDSRoleMapUnMapSrc)) test::RaiseAsHost(kASInternalError, "not today");
  });
  const test::HostSession session(host.Tables());
  EXPECT_EQ(open.Fixups(kRoleMap), kSoftFailure);
}

TEST(PDFFix, FailsWhereASubclassAppliesNothing) {
  PDFFix fix;
  EXPECT_EQ(fix.GetDocument(), nullptr);
  EXPECT_FALSE(fix.ApplyFix());
}

}  // namespace
}  // namespace tgx
