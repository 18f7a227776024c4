#include "src/api/Dispatch.h"

#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/actions/PDFAction.h"
#include "src/api/EntryPoint.h"
#include "tests/support/Hosts.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::HostSession;
using test::kSuccess;
using test::OpenDocument;
using test::Outcome;
using test::RecordingHost;
using test::TestDocument;
using testing::ElementsAre;
using testing::IsEmpty;

const auto kDocument = reinterpret_cast<PDDoc>(0x1234);

std::vector<std::string>& Log() {
  static std::vector<std::string> log;
  return log;
}

/// A worker that logs its life and gives the verdict of its class.
template <bool kVerdict>
class LoggingWorker : public PDFAction {
 public:
  LoggingWorker() { Log() = {"made"}; }
  ~LoggingWorker() override {
    CosNewNull();  // seen by a recording host
    Log().emplace_back("destroyed");
  }
  bool Run() override {
    Log().emplace_back(GetDocument() == kDocument ? "run on the document" : "run on another document");
    return kVerdict;
  }
};

class WorkerWithoutRun : public PDFAction {};

TEST(RunWorker, BuildsSetsRunsAndDestroys) {
  const HostSession session;
  EXPECT_EQ(RunWorker<LoggingWorker<true>>(kDocument, ""), TGX_OK);
  EXPECT_THAT(Log(), ElementsAre("made", "run on the document", "destroyed"));
}

TEST(RunWorker, FalseIsAFailure) {
  const HostSession session;
  EXPECT_EQ(RunWorker<LoggingWorker<false>>(kDocument, ""), TGX_FAILED);
}

TEST(RunWorker, DestroysBeforeTheFrameIsPopped) {
  RecordingHost host;
  const HostSession session(host.Tables());
  EXPECT_EQ(RunEntryPoint([] { return RunWorker<LoggingWorker<false>>(kDocument, ""); }), TGX_FAILED);
  EXPECT_STREQ(LastErrorText(), "");
  EXPECT_THAT(host.Names(), ElementsAre("ASPushExceptionFrame", "CosNewNull", "ASPopExceptionFrame"));
}

TEST(RunWorker, WorkerWithoutARunFailsAsNotImplemented) {
  const HostSession session;
  EXPECT_EQ(RunEntryPoint([] { return RunWorker<WorkerWithoutRun>(kDocument, ""); }), TGX_FAILED);
  EXPECT_STREQ(LastErrorText(), "not implemented");
}

TEST(RunAction, HandsDocumentAndPathToTheRowOfTheNumber) {
  const ActionRow rows[] = {
      {3, [](PDDoc, const char*) { return 30; }},
      {5, [](PDDoc document, const char* path) { return document == kDocument && std::string(path) == "x" ? 50 : 0; }},
  };
  EXPECT_EQ(RunAction(rows, 5, kDocument, "x"), 50);
}

TEST(RunAction, NumberWithoutAWorkerIsUnknown) {
  for (int number = 0; number <= 18; ++number) EXPECT_EQ(RunAction({}, number, kDocument, ""), TGX_UNKNOWN_ACTION);
}

TEST(Actions, HaveTheNumbersFrom0To18InOrder) {
  std::vector<int> numbers;
  for (const ActionRow& row : Actions()) numbers.push_back(row.number);
  EXPECT_THAT(numbers, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18));
}

/// Fixes that log their bit; 0x4 fails.
bool FixOne(PDDoc) { return Log().emplace_back("0x1"), true; }
bool FixTwo(PDDoc) { return Log().emplace_back("0x2"), true; }
bool FixFour(PDDoc) { return Log().emplace_back("0x4"), false; }
bool FixSixteen(PDDoc document) { return Log().emplace_back(document == kDocument ? "0x10" : "no document"), true; }
constexpr FixRow kTestFixes[] = {{0x1, FixOne}, {0x2, FixTwo}, {0x4, FixFour}, {0x10, FixSixteen}};

TEST(RunFixes, StopsAtTheFirstFailureAndKeepsWhatRan) {
  Log().clear();
  EXPECT_EQ(RunFixes(kTestFixes, 0x17, kDocument), TGX_FAILED);
  EXPECT_THAT(Log(), ElementsAre("0x1", "0x2", "0x4"));
}

TEST(RunFixes, FailureOfAFixLeavesNoText) {
  const HostSession session;
  EXPECT_EQ(RunEntryPoint([] { return RunFixes(kTestFixes, 0x7, kDocument); }), TGX_FAILED);
  EXPECT_STREQ(LastErrorText(), "");
}

TEST(RunFixes, RunsTheSetBitsInTheOrderOfTheRows) {
  Log().clear();
  EXPECT_EQ(RunFixes(kTestFixes, 0x13, kDocument), TGX_OK);
  EXPECT_THAT(Log(), ElementsAre("0x1", "0x2", "0x10"));
}

TEST(RunFixes, IgnoresBitsWithoutAFix) {
  Log().clear();
  EXPECT_EQ(RunFixes(kTestFixes, 0xFFFFFFE8, kDocument), TGX_OK);
  EXPECT_THAT(Log(), IsEmpty());
}

TEST(Fixes, AreServedFromTheLowestBitUpAndNeverAtBit8) {
  std::vector<std::uint32_t> bits;
  for (const FixRow& row : Fixes()) bits.push_back(row.bit);
  EXPECT_THAT(bits, ElementsAre(0x1, 0x2, 0x4, 0x10, 0x20, 0x40, 0x80, 0x100, 0x200));
}

/// A small tagged document in which there is something to do.
std::string SmallDocument() {
  TestDocument doc;
  doc.Tree({test::Element("P").Text(doc.AddPage(), "text"), test::Element("P")});
  return doc.Write();
}

class Exports : public testing::Test {
 protected:
  /// Runs a call that must do nothing but push and pop a frame, and gives its outcome.
  template <typename Call>
  Outcome RunsNothing(const Call& call) {
    OpenDocument document(SmallDocument());
    RecordingHost host;
    const HostSession session(host.Tables());
    Outcome outcome = call(document);
    EXPECT_THAT(host.Names(), ElementsAre("ASPushExceptionFrame", "ASPopExceptionFrame"));
    EXPECT_EQ(test::SavedTree(document), "P\n  mcid 0 page 1\nP\n");
    return outcome;
  }
};

TEST_F(Exports, Action18DoesNothingAndSucceeds) {
  EXPECT_EQ(RunsNothing([](OpenDocument& document) { return document.Action(18); }), kSuccess);
}

TEST_F(Exports, NumbersOutside0To18AreUnknown) {
  for (const int number : {19, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    EXPECT_EQ(RunsNothing([number](OpenDocument& document) { return document.Action(number); }),
              (Outcome{TGX_UNKNOWN_ACTION, ""}))
        << number;
  }
}

TEST_F(Exports, EmptyMaskSucceeds) {
  EXPECT_EQ(RunsNothing([](OpenDocument& document) { return document.Fixups(0); }), kSuccess);
}

TEST_F(Exports, MaskOfBit8DoesNothingAndSucceeds) {
  EXPECT_EQ(RunsNothing([](OpenDocument& document) { return document.Fixups(0x8); }), kSuccess);
}

TEST_F(Exports, UnknownBitsOfAMaskAreIgnored) {
  EXPECT_EQ(RunsNothing([](OpenDocument& document) { return document.Fixups(0xFFFFFC08); }), kSuccess);
}

/// What an action's row gives for a path whose address is null, which no record of a call can hold, and what it asked of the
/// host before.
std::pair<int, std::vector<std::string>> RowWithoutAPath(int number) {
  RecordingHost host;
  const HostSession session(host.Tables());
  const int result = RunAction(Actions(), number, kDocument, nullptr);
  return {result, host.Names()};
}

TEST(Actions, StyleNamesNeedThePath) { EXPECT_EQ(RowWithoutAPath(2), std::pair(4, std::vector<std::string>{})); }

TEST(Actions, FormsTakeTheFileSystemBeforeTheyMissThePath) {
  EXPECT_EQ(RowWithoutAPath(4), std::pair(4, std::vector<std::string>{"ASGetDefaultFileSys"}));
}

TEST(Actions, LayoutTablesHaveNothingToDoWithoutThePath) {
  EXPECT_EQ(RowWithoutAPath(9), std::pair(0, std::vector<std::string>{}));
}

TEST_F(Exports, FormsRunWithAnEmptyPath) {
  OpenDocument document(SmallDocument());
  RecordingHost host;
  const HostSession session(host.Tables());
  EXPECT_EQ(document.Action(4, "").result, TGX_FAILED) << "there is no such file";
  EXPECT_EQ(host.Count(test::Operation::PDDocOpen), 1U);
}

/// The embedded host, but that a document's structure tree is gone at the given asking, counted from 1.
class HostThatLosesTheTree {
 public:
  explicit HostThatLosesTheTree(std::size_t asking) {
    asked_ = 0, lostAt_ = asking;
    read_.PDDocGetStructTreeRoot = [](PDDoc document, PDSTreeRoot* root) -> ASBool {
      return ++asked_ == lostAt_ ? 0 : test::EmbeddedTables()->pdsEditRead->PDDocGetStructTreeRoot(document, root);
    };
    tables_.pdsEditRead = &read_;
  }
  const HostTables* Tables() const { return &tables_; }

 private:
  static inline std::size_t asked_ = 0;
  static inline std::size_t lostAt_ = 0;
  PDSEditReadTable read_ = *test::EmbeddedTables()->pdsEditRead;
  HostTables tables_ = *test::EmbeddedTables();
};

TEST_F(Exports, FixThatFailsKeepsWhatTheFixesBeforeItDid) {
  TestDocument doc;
  test::Page& page = doc.AddPage();
  doc.Tree({test::Element("P")({test::Element("Table").Lang("de")({test::Element("TR").Text(page, "cell")})})});
  const std::string written = doc.Write();
  std::size_t askings = 0;
  {
    OpenDocument document(written);
    RecordingHost host;
    const HostSession session(host.Tables());
    ASSERT_EQ(document.Fixups(0x3), kSuccess);
    askings = host.Count(test::Operation::PDDocGetStructTreeRoot);
  }
  OpenDocument document(written);
  {
    const HostThatLosesTheTree host(askings + 1);
    const HostSession session(host.Tables());
    EXPECT_EQ(document.Fixups(0x7), test::kSoftFailure);
  }
  EXPECT_EQ(test::SavedTree(document), "Table lang=\"de\"\n  TR\n    mcid 0 page 1\n");
}

TEST_F(Exports, BothLanguageBitsRunTheMapperTwice) {
  OpenDocument document(SmallDocument());
  RecordingHost host;
  const HostSession session(host.Tables());
  EXPECT_EQ(document.Fixups(0x30), kSuccess);
  EXPECT_EQ(host.Count(test::Operation::PDDocGetStructTreeRoot), 2U);
}

TEST(LastError, IsEmptyBeforeAnyCall) {
  // In a process of its own: another test may have left a text in this one.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(std::_Exit(std::string(TGX_GetLastError()).empty() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST_F(Exports, LastErrorIsEmptyAfterASuccess) {
  OpenDocument document(SmallDocument());
  ASSERT_NE(document.Action(4, "").text, "");
  document.Action(18);
  EXPECT_STREQ(TGX_GetLastError(), "");
}

}  // namespace
}  // namespace tgx
