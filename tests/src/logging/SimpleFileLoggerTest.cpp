#include "src/logging/SimpleFileLogger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/LogFolder.h"

namespace tgx {
namespace {

using test::AfternoonZone;
using test::LogFolder;
using test::ScopedVariable;
using testing::MatchesRegex;

const std::string kTime = "[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9] [0-9][0-9]:[0-9][0-9]:[0-9][0-9]";

TEST(SimpleFileLogger, FormatsInTheMannerOfPrintf) {
  const LogFolder folder;
  SimpleFileLogger logger(folder.Path() + "/some.log");
  logger.Info("%s has %d entries\n", "contents", 8);
  logger.Exception("code %d\n", 2);
  EXPECT_THAT(folder.Read("some.log"),
              MatchesRegex(kTime + " INFO: contents has 8 entries\n" + kTime + " EXCEPTION: code 2\n"));
}

TEST(SimpleFileLogger, AddsNoLineEnd) {
  const LogFolder folder;
  SimpleFileLogger logger(folder.Path() + "/some.log");
  logger.Info("one");
  logger.Info("two");
  EXPECT_THAT(folder.Read("some.log"), MatchesRegex(kTime + " INFO: one" + kTime + " INFO: two"));
}

TEST(SimpleFileLogger, CountsTheHoursToTwelveWithoutAMark) {
  const LogFolder folder;
  const ScopedVariable zone("TZ", AfternoonZone().c_str());
  SimpleFileLogger(folder.Path() + "/some.log").Info("text");
  EXPECT_THAT(folder.Read("some.log"), MatchesRegex(kTime + " INFO: text"));
  EXPECT_EQ(folder.Read("some.log").substr(11, 2), "03");
}

TEST(SimpleFileLogger, MakesItsFolder) {
  const LogFolder folder;
  SimpleFileLogger(folder.Path() + "/state/tgx/some.log").Info("text");
  EXPECT_NE(folder.Read("state/tgx/some.log"), "");
}

TEST(SimpleFileLogger, LosesEntriesWhereTheFileCannotBeOpened) {
  const LogFolder folder;
  SimpleFileLogger logger(folder.Path());
  EXPECT_NO_THROW(logger.Info("lost"));
  EXPECT_NO_THROW(SimpleFileLogger("").Info("lost"));
}

TEST(SimpleFileLogger, WritesTheSameInABurst) {
  const LogFolder folder;
  SimpleFileLogger logger(folder.Path() + "/state/some.log");
  logger.Info("before\n");
  {
    const SimpleFileLogger::Burst burst(logger);
    logger.Info("one\n");
    logger.Exception("two\n");
  }
  logger.Info("after\n");
  EXPECT_THAT(folder.Read("state/some.log"), MatchesRegex(kTime + " INFO: before\n" + kTime + " INFO: one\n" + kTime +
                                                          " EXCEPTION: two\n" + kTime + " INFO: after\n"));
}

TEST(SimpleFileLogger, WritesEachEntryOfABurstAtOnce) {
  const LogFolder folder;
  SimpleFileLogger logger(folder.Path() + "/state/some.log");
  const SimpleFileLogger::Burst burst(logger);
  logger.Info("one\n");
  EXPECT_THAT(folder.Read("state/some.log"), MatchesRegex(kTime + " INFO: one\n"));
}

TEST(SimpleFileLogger, LosesTheEntriesOfABurstWhereTheFileCannotBeOpened) {
  const LogFolder folder;
  SimpleFileLogger logger(folder.Path());
  const SimpleFileLogger::Burst burst(logger);
  EXPECT_NO_THROW(logger.Info("lost"));
}

TEST(SimpleFileLogger, HasOneInstance) { EXPECT_EQ(SimpleFileLogger::Instance(), SimpleFileLogger::Instance()); }

TEST(SimpleFileLogger, KeepsTheCommonLogInTheStateFolderOfTheUser) {
  const ScopedVariable home("HOME", "/home/someone");
  {
    const ScopedVariable state("XDG_STATE_HOME", "/var/state");
    EXPECT_EQ(SimpleFileLogger::DefaultPath(), "/var/state/tgx/tgxlib_common.log");
  }
  const ScopedVariable state("XDG_STATE_HOME", nullptr);
  EXPECT_EQ(SimpleFileLogger::DefaultPath(), "/home/someone/.local/state/tgx/tgxlib_common.log");
}

TEST(SimpleFileLogger, HasNoPathWithoutAStateFolder) {
  const ScopedVariable home("HOME", nullptr);
  const ScopedVariable state("XDG_STATE_HOME", "not/absolute");
  EXPECT_EQ(SimpleFileLogger::DefaultPath(), "");
}

}  // namespace
}  // namespace tgx
