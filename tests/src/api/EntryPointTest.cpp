#include "src/api/EntryPoint.h"

#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/api/HostException.h"
#include "tests/support/Hosts.h"

namespace tgx {
namespace {

using test::HookedHost;
using test::HostCall;
using test::HostSession;
using test::Operation;
using test::RaiseAsHost;
using test::RecordingHost;
using testing::ElementsAre;

/// Fails an operation that runs with the real host: there is no atom of that value.
int RaiseInTheHost() {
  ASAtomGetString(-1);
  return TGX_OK;
}

TEST(EntryPoint, GivesTheResultOfTheOperation) {
  const HostSession session;
  EXPECT_EQ(RunEntryPoint([] { return 4; }), 4);
  EXPECT_STREQ(LastErrorText(), "");
}

TEST(EntryPoint, ClearsTheTextBeforeTheOperationRuns) {
  const HostSession session;
  RunEntryPoint([]() -> int { throw std::runtime_error("earlier"); });
  std::string during = "not run";
  RunEntryPoint([&during] {
    during = LastErrorText();
    return TGX_OK;
  });
  EXPECT_EQ(during, "");
}

TEST(EntryPoint, ReportedFailureHasNoText) {
  const HostSession session;
  RunEntryPoint([]() -> int { throw std::runtime_error("earlier"); });
  EXPECT_EQ(RunEntryPoint([] { return TGX_FAILED; }), 2);
  EXPECT_STREQ(LastErrorText(), "");
}

TEST(EntryPoint, SuccessAfterAFailureLeavesNoText) {
  const HostSession session;
  EXPECT_EQ(RunEntryPoint([]() -> int { throw std::runtime_error("earlier"); }), 2);
  EXPECT_STREQ(LastErrorText(), "earlier");
  EXPECT_EQ(RunEntryPoint([] { return TGX_OK; }), 0);
  EXPECT_STREQ(LastErrorText(), "");
}

TEST(EntryPoint, OrdinaryWayOutPopsTheFrame) {
  RecordingHost host;
  const HostSession session(host.Tables());
  RunEntryPoint([] { return TGX_NO_PATH; });
  EXPECT_THAT(host.Calls(), ElementsAre("ASPushExceptionFrame(null, handle)", "ASPopExceptionFrame()"));
}

TEST(EntryPoint, HostFailureGivesTheHostsText) {
  const HostSession session;
  EXPECT_EQ(RunEntryPoint(RaiseInTheHost), 2);
  EXPECT_STREQ(LastErrorText(), "no atom has the value -1");
}

TEST(EntryPoint, HostFailureIsAskedForAndNothingIsPopped) {
  RecordingHost host;
  const HostSession session(host.Tables());
  RunEntryPoint(RaiseInTheHost);
  EXPECT_THAT(host.Names(),
              ElementsAre("ASPushExceptionFrame", "ASAtomGetString", "ASGetExceptionErrorCode", "ASGetErrorString"));
  EXPECT_EQ(host.Calls().back(), "ASGetErrorString(1, pointer, 500)");
}

TEST(EntryPoint, HostFailureConsumesItsFrame) {
  const HostSession session;
  const std::size_t depth = TGXHost_FrameDepth();
  RunEntryPoint(RaiseInTheHost);
  EXPECT_EQ(TGXHost_FrameDepth(), depth);
}

TEST(EntryPoint, HostFailureInANestedFrameLeavesTheOuterOne) {
  const HostSession session;
  const std::size_t depth = TGXHost_FrameDepth();
  EXPECT_EQ(RunEntryPoint([] { return InExceptionFrame(RaiseInTheHost); }), 2);
  EXPECT_EQ(TGXHost_FrameDepth(), depth + 1);
}

TEST(EntryPoint, HostTextIsCutAt499Bytes) {
  HookedHost host(test::EmbeddedTables(), [](const HostCall& call) {
    if (call.Is(Operation::ASAtomGetString)) RaiseAsHost(kASInternalError, std::string(498, 'a') + "bcdef");
  });
  const HostSession session(host.Tables());
  EXPECT_EQ(RunEntryPoint(RaiseInTheHost), 2);
  EXPECT_EQ(LastErrorText(), std::string(498, 'a') + "b");
}

TEST(EntryPoint, FailureToPushTheFrameIsAFailureWithItsText) {
  HookedHost host(test::EmbeddedTables(), [](const HostCall& call) {
    if (call.Is(Operation::ASPushExceptionFrame)) RaiseAsHost(kASNoMemory, "no room for a frame");
  });
  const HostSession session(host.Tables());
  EXPECT_EQ(RunEntryPoint([] { return TGX_OK; }), 2);
  EXPECT_STREQ(LastErrorText(), "no room for a frame");
}

TEST(EntryPoint, RuntimeErrorGivesExactlyItsText) {
  const HostSession session;
  EXPECT_EQ(RunEntryPoint([]() -> int { throw std::runtime_error("failed to acquire PDPage by CosPage"); }), 2);
  EXPECT_STREQ(LastErrorText(), "failed to acquire PDPage by CosPage");
}

TEST(EntryPoint, RuntimeErrorLeavesTheFrame) {
  RecordingHost host;
  const HostSession session(host.Tables());
  const std::size_t depth = TGXHost_FrameDepth();
  RunEntryPoint([]() -> int { throw std::runtime_error("wrong vector range"); });
  EXPECT_THAT(host.Names(), ElementsAre("ASPushExceptionFrame"));
  EXPECT_EQ(TGXHost_FrameDepth(), depth + 1);
}

TEST(EntryPoint, FailedAllocationIsAFailureWithItsText) {
  const HostSession session;
  EXPECT_EQ(RunEntryPoint([]() -> int { throw std::bad_alloc(); }), 2);
  EXPECT_STREQ(LastErrorText(), "std::bad_alloc");
}

TEST(EntryPoint, LetsOtherExceptionsPass) {
  const HostSession session;
  EXPECT_THROW(RunEntryPoint([]() -> int { throw 7; }), int);
}

TEST(ASExceptionInfo, IsWhatTheFrameCallbackThrows) {
  try {
    FrameCallback();
  } catch (const APDFLException::ASExceptionInfo& raised) {
    const APDFLException::ASExceptionInfo copy = raised;
    EXPECT_STREQ(copy.what(), "APDFLException");
    EXPECT_EQ(copy.code, 0);
    EXPECT_EQ(copy.data, 0);
    static_assert(std::is_base_of_v<std::exception, APDFLException::ASExceptionInfo>);
    return;
  }
  FAIL() << "nothing was thrown";
}

struct HostCallAtTheEnd {
  ~HostCallAtTheEnd() { CosNewNull(); }
};

TEST(InExceptionFrame, PopsAfterTheDestructorsOfTheRegion) {
  RecordingHost host;
  const HostSession session(host.Tables());
  InExceptionFrame([] { const HostCallAtTheEnd object; });
  EXPECT_THAT(host.Names(), ElementsAre("ASPushExceptionFrame", "CosNewNull", "ASPopExceptionFrame"));
}

}  // namespace
}  // namespace tgx
