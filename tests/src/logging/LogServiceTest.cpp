#include "src/logging/LogService.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "src/logging/FileLogger.h"
#include "tests/support/LogFolder.h"

namespace tgx {
namespace {

using test::AfternoonZone;
using test::LogFolder;
using test::ScopedVariable;
using testing::ElementsAre;
using testing::MatchesRegex;

const std::string kTime = "[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9] [0-9][0-9]:[0-9][0-9]:[0-9][0-9]";

class CollectingLogger : public LoggerBase {
 public:
  void Clear() override { lines.emplace_back("(cleared)"); }
  void Write(const LogMessage& message) override { lines.push_back(message.Format().substr(20)); }

  std::vector<std::string> lines;
};

TEST(LogMessage, HasTimeLevelAndText) {
  EXPECT_THAT(LogMessage("ApplyFix", LogMessage::kDebug).Format(), MatchesRegex(kTime + " DEBUG: ApplyFix"));
}

TEST(LogMessage, NamesEachLevel) {
  EXPECT_THAT(LogMessage("a", 0).Format(), MatchesRegex(kTime + " ERROR: a"));
  EXPECT_THAT(LogMessage("b", 1).Format(), MatchesRegex(kTime + " WARNING: b"));
  EXPECT_THAT(LogMessage("c", 2).Format(), MatchesRegex(kTime + " INFO: c"));
  EXPECT_THAT(LogMessage("d", 3).Format(), MatchesRegex(kTime + " DEBUG: d"));
}

TEST(LogMessage, LeavesTheWordOutForAnotherLevel) {
  EXPECT_THAT(LogMessage("text", 7).Format(), MatchesRegex(kTime + " : text"));
  EXPECT_THAT(LogMessage("text", -1).Format(), MatchesRegex(kTime + " : text"));
}

TEST(LogMessage, CountsTheHoursToTwentyFour) {
  const ScopedVariable zone("TZ", AfternoonZone().c_str());
  EXPECT_EQ(LogMessage("text", 0).Format().substr(11, 2), "15");
}

TEST(LogService, KeepsOneServiceAName) {
  LogService* first = LogService::Get("LogService.KeepsOneServiceAName.1");
  EXPECT_EQ(LogService::Get("LogService.KeepsOneServiceAName.1"), first);
  EXPECT_NE(LogService::Get("LogService.KeepsOneServiceAName.2"), first);
}

TEST(LogService, HandsEveryLevelToEachLogger) {
  CollectingLogger first;
  CollectingLogger second;
  LogService service;
  service.AddLogger(&first);
  service.AddLogger(&second);
  service.Clear();
  service.Error("a");
  service.Warning("b");
  service.Info("c");
  service.Debug("d");
  service.Write(LogMessage("e", 7));
  EXPECT_THAT(first.lines, ElementsAre("(cleared)", "ERROR: a", "WARNING: b", "INFO: c", "DEBUG: d", ": e"));
  EXPECT_EQ(second.lines, first.lines);
}

TEST(LogService, TakesALoggerOnce) {
  CollectingLogger logger;
  LogService service;
  service.AddLogger(&logger);
  service.AddLogger(&logger);
  service.Info("once");
  EXPECT_THAT(logger.lines, ElementsAre("INFO: once"));
}

TEST(LogService, IgnoresANullLogger) {
  LogService service;
  service.AddLogger(nullptr);
  service.Info("to nobody");
}

TEST(LogService, ForgetsRemovedLoggers) {
  CollectingLogger kept;
  CollectingLogger removed;
  LogService service;
  service.AddLogger(&kept);
  service.AddLogger(&removed);
  service.RemoveLogger(&removed);
  service.Info("one");
  service.RemoveAllLoggers();
  service.Info("two");
  EXPECT_THAT(kept.lines, ElementsAre("INFO: one"));
  EXPECT_TRUE(removed.lines.empty());
}

TEST(FileLogger, AppendsALineAMessage) {
  const LogFolder folder;
  const ScopedVariable tmp("TMP", folder.Path().c_str());
  FileLogger("some.log").Debug("first");
  FileLogger("some.log").Error("second");
  EXPECT_THAT(folder.Read("some.log"), MatchesRegex(kTime + " DEBUG: first\n" + kTime + " ERROR: second\n"));
}

TEST(FileLogger, EmptiesItsFileOnClear) {
  const LogFolder folder;
  const ScopedVariable tmp("TMP", folder.Path().c_str());
  FileLogger logger("some.log");
  logger.Info("gone");
  logger.Clear();
  EXPECT_EQ(folder.Read("some.log"), "");
  logger.Info("stays");
  EXPECT_THAT(folder.Read("some.log"), MatchesRegex(kTime + " INFO: stays\n"));
}

TEST(FileLogger, KeepsTheFolderItWasMadeIn) {
  const LogFolder folder;
  const ScopedVariable tmp("TMP", folder.Path().c_str());
  FileLogger logger("some.log");
  const ScopedVariable later("TMP", "/nowhere");
  logger.Info("text");
  EXPECT_NE(folder.Read("some.log"), "");
}

TEST(FileLogger, LosesMessagesWhereTheFolderIsMissing) {
  const LogFolder folder;
  const ScopedVariable tmp("TMP", (folder.Path() + "/missing").c_str());
  FileLogger logger("some.log");
  EXPECT_NO_THROW(logger.Clear());
  EXPECT_NO_THROW(logger.Info("lost"));
  EXPECT_FALSE(std::filesystem::exists(folder.Path() + "/missing"));
}

TEST(FileLogger, LosesMessagesWithoutTheVariable) {
  const ScopedVariable tmp("TMP", nullptr);
  FileLogger logger("tgx-file-logger-test.log");
  EXPECT_NO_THROW(logger.Clear());
  EXPECT_NO_THROW(logger.Info("lost"));
  EXPECT_FALSE(std::filesystem::exists("tgx-file-logger-test.log"));
  EXPECT_FALSE(std::filesystem::exists("/tgx-file-logger-test.log"));
}

}  // namespace
}  // namespace tgx
