#include "host/pdmodel/AtomicFile.h"

#include <csignal>
#include <cstdlib>

#include <sys/resource.h>
#include <unistd.h>

#include "host/core/HostError.h"
#include "tests/host/pdmodel/FileTest.h"

namespace tgx::host {
namespace {

/// With a temporary file that has no name, and with one that has.
class AtomicFiles : public FileTest, public testing::WithParamInterface<TemporaryName> {
 protected:
  std::string target_ = Put("target", "old");

  /// Is sent a signal while it writes.
  void InterruptedWrite(int signal) {
    const rlimit none = {0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    AtomicFile file(target_, GetParam());
    file.Write("new");
    ::raise(signal);
    file.Write("er");
  }
};

INSTANTIATE_TEST_SUITE_P(Names, AtomicFiles, testing::Values(TemporaryName::kLate, TemporaryName::kFromStart),
                         [](const auto& test) { return test.param == TemporaryName::kLate ? "Late" : "FromStart"; });

TEST_P(AtomicFiles, AppearsAtTheCommit) {
  AtomicFile file(target_, GetParam());
  file.Write("new");
  file.Write("er");
  EXPECT_EQ(Read(target_), "old");
  file.Commit();
  EXPECT_EQ(Read(target_), "newer");
  EXPECT_EQ(Listing(), "target\n");
}

TEST_P(AtomicFiles, MayBeNew) {
  AtomicFile file(Path("fresh"), GetParam());
  file.Write("new");
  EXPECT_FALSE(std::filesystem::exists(Path("fresh")));
  file.Commit();
  EXPECT_EQ(Read(Path("fresh")), "new");
}

TEST_P(AtomicFiles, MayBeEmpty) {
  AtomicFile(target_, GetParam()).Commit();
  EXPECT_EQ(Read(target_), "");
}

TEST_P(AtomicFiles, LeavesEverythingWithoutACommit) {
  { AtomicFile(target_, GetParam()).Write("new"); }
  EXPECT_EQ(Read(target_), "old");
  EXPECT_EQ(Listing(), "target\n");
}

TEST_P(AtomicFiles, LeavesEverythingAfterAFailure) {
  try {
    AtomicFile file(target_, GetParam());
    file.Write("new");
    throw HostError(kASInternalError, "somewhere else");
  } catch (const HostError&) {
  }
  EXPECT_EQ(Read(target_), "old");
  EXPECT_EQ(Listing(), "target\n");
}

TEST_P(AtomicFiles, GivesUpAtASignalAndLeavesNothing) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    EXPECT_EXIT(InterruptedWrite(signal), testing::KilledBySignal(signal), "");
    EXPECT_EQ(Read(target_), "old");
    EXPECT_EQ(Listing(), "target\n");
  }
}

TEST_P(AtomicFiles, SaysThatItWasInterrupted) {
  static volatile std::sig_atomic_t arrived;
  arrived = 0;
  const auto before = std::signal(SIGTERM, [](int) { arrived = 1; });
  std::string text;
  try {
    InterruptedWrite(SIGTERM);
  } catch (const HostError& error) {
    text = error.Text();
  }
  std::signal(SIGTERM, before);
  EXPECT_EQ(text, target_ + ": cannot be written: interrupted by a signal");
  EXPECT_EQ(arrived, 1);
  EXPECT_EQ(Listing(), "target\n");
}

TEST_P(AtomicFiles, GoesOnAtASignalThatIsIgnored) {
  const auto before = std::signal(SIGHUP, SIG_IGN);
  {
    AtomicFile file(target_, GetParam());
    ::raise(SIGHUP);
    file.Write("new");
    file.Commit();
  }
  std::signal(SIGHUP, before);
  EXPECT_EQ(Read(target_), "new");
}

TEST_P(AtomicFiles, LeavesTheSignalsAsTheyWere) {
  sigset_t before;
  sigset_t after;
  ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, nullptr, &before), 0);
  { const AtomicFile file(target_, GetParam()); }
  ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, nullptr, &after), 0);
  for (const int signal : {SIGINT, SIGTERM, SIGXFSZ}) EXPECT_EQ(sigismember(&after, signal), sigismember(&before, signal));
}

TEST_P(AtomicFiles, OfTheSameNameDoNotDisturbEachOther) {
  AtomicFile one(target_, GetParam());
  AtomicFile other(target_, GetParam());
  one.Write("one");
  other.Write("other");
  one.Commit();
  EXPECT_EQ(Read(target_), "one");
  other.Commit();
  EXPECT_EQ(Read(target_), "other");
  EXPECT_EQ(Listing(), "target\n");
}

}  // namespace
}  // namespace tgx::host
