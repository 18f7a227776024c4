#include "tests/support/HostFailureSweep.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include "tests/support/Hosts.h"
#include "tests/support/TreeText.h"

namespace tgx::test {
namespace {

const std::string kFailure = "the host failed here";

using Kinds = std::set<std::string>;

/// Those of which not everything was given back.
Kinds LeftOpen(const CountingHost& counting) {
  Kinds kinds;
  for (const std::string& uneven : counting.Uneven()) kinds.insert(uneven.substr(0, uneven.rfind(' ')));
  kinds.erase("frames");  // a raise takes its frame off by itself, so frames are never even
  return kinds;
}

std::string SavedBytes(OpenDocument& document) {
  TGXHostSaveOptions options = {};
  options.size = sizeof options;
  options.deterministic = 1;
  return document.Save(&options);
}

/// One run with a failure at a call; gives the number of calls that were made (a failure ends the run, or is handled).
std::size_t RunOnce(const std::string& bytes, const std::function<Outcome(OpenDocument&)>& operation, std::size_t failAt,
                    const SweepOptions& options) {
  OpenDocument document(bytes);
  CountingHost counting;
  RaisingHost raising(counting.Tables(), failAt, kASInternalError, kFailure);
  Outcome outcome;
  {
    const HostSession session(raising.Tables());
    outcome = operation(document);
  }
  if (raising.HasRaised()) {
    SCOPED_TRACE("host failure at call " + std::to_string(failAt) + ", " + NameOf(raising.RaisedIn()));
    if (!options.mayHandleFailures || !outcome.text.empty()) {
      EXPECT_EQ(outcome, HardFailure(kFailure));
    }
    for (const std::string& kind : LeftOpen(counting)) {
      EXPECT_TRUE(options.staysOpen.count(kind) != 0 || options.mayStayOpen.count(kind) != 0) << kind << " stay open";
    }
    EXPECT_EQ(FileProblems(document.Save()), std::vector<std::string>());
  } else {
    EXPECT_EQ(outcome.text, "") << "without a host failure";
    EXPECT_EQ(LeftOpen(counting), options.staysOpen) << "without a host failure";
    OpenDocument untouched(bytes);
    EXPECT_EQ(SavedBytes(document) == SavedBytes(untouched), options.changesNothing);
  }
  return raising.Calls();
}

std::set<std::size_t> CallsToFail(std::size_t calls, const SweepOptions& options) {
  std::set<std::size_t> chosen;
  for (std::size_t call = 1; call <= std::min(calls, options.exhaustive); ++call) chosen.insert(call);
  if (calls > options.exhaustive) {
    const std::size_t rest = calls - options.exhaustive;
    const std::size_t samples = std::max<std::size_t>(1, std::min(rest, options.samples));
    for (std::size_t i = 1; i <= samples; ++i) chosen.insert(options.exhaustive + rest * i / samples);
  }
  return chosen;
}

}  // namespace

void SweepHostFailures(const std::string& documentBytes, const std::function<Outcome(OpenDocument&)>& operation,
                       const SweepOptions& options) {
  const std::size_t calls = RunOnce(documentBytes, operation, 0, options);
  ASSERT_GT(calls, 0U) << "the operation does not call the host";
  for (const std::size_t failAt : CallsToFail(calls, options)) {
    RunOnce(documentBytes, operation, failAt, options);
    if (testing::Test::HasFailure()) return;  // one failing call explains the bug; hundreds hide it
  }
  EXPECT_EQ(RunOnce(documentBytes, operation, calls + 1, options), calls);
}

}  // namespace tgx::test
