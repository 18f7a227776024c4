#include "tests/support/Hosts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tgx/host.h>

#include "host/core/HostError.h"
#include "host/core/Raise.h"

namespace tgx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A host of a few operations that need no document.
ASText NewText() { return reinterpret_cast<ASText>(0x10); }
void DestroyText(ASText) {}
ASBool Equal(CosObj a, CosObj b) { return static_cast<ASBool>(a.a == b.a && a.b == b.b); }
ASInt32 TypeOf(CosObj) { return CosDict; }
CosObj Get(CosObj, const char*) { return {3, 1}; }
void Push(void*, ASRestoreProc restore) { host::PushFrame(restore); }

const HostTables* SmallHost() {
  static const CoreTable core = [] {
    CoreTable table = *EmbeddedTables()->core;
    table.ASPushExceptionFrame = Push;
    return table;
  }();
  static const CosTable cos = [] {
    CosTable table = *EmbeddedTables()->cos;
    table.CosObjEqual = Equal;
    table.CosObjGetType = TypeOf;
    table.CosDictGetKeyString = Get;
    return table;
  }();
  static const TextTable text = [] {
    TextTable table = *EmbeddedTables()->text;
    table.ASTextNew = NewText;
    table.ASTextDestroy = DestroyText;
    return table;
  }();
  static const HostTables tables = [] {
    HostTables all = *EmbeddedTables();
    all.core = &core;
    all.cos = &cos;
    all.text = &text;
    return all;
  }();
  return &tables;
}

TEST(RecordingHost, RecordsNamesAndArgumentsAndPassesTheCallOn) {
  RecordingHost host(SmallHost());
  EXPECT_EQ(host.Tables()->cos->CosDictGetKeyString({12, 1}, "Alt").a, 3U);
  host.Tables()->text->ASTextNew();
  EXPECT_THAT(host.Calls(), ElementsAre("CosDictGetKeyString(12:1, \"Alt\")", "ASTextNew()"));
  EXPECT_THAT(host.Names(), ElementsAre("CosDictGetKeyString", "ASTextNew"));
  EXPECT_EQ(host.Count(Operation::ASTextNew), 1U);
}

TEST(RaisingHost, RaisesOnceAtTheCallThatItIsTold) {
  RaisingHost host(SmallHost(), 2, kASNotFound, "nothing there");
  const CosTable& cos = *host.Tables()->cos;
  EXPECT_EQ(cos.CosObjGetType({1, 1}), CosDict);
  EXPECT_THROW(cos.CosObjGetType({1, 1}), host::HostError);
  EXPECT_TRUE(host.HasRaised());
  EXPECT_EQ(host.RaisedIn(), Operation::CosObjGetType);
  EXPECT_EQ(host::LastRaiseCode(), kASNotFound);
  EXPECT_EQ(host::LastRaiseText(), "nothing there");
  EXPECT_EQ(cos.CosObjGetType({1, 1}), CosDict);
}

TEST(RaisingHost, LeavesCallsThatNeverRaiseOutOfTheCount) {
  RaisingHost host(SmallHost(), 1);
  EXPECT_EQ(host.Tables()->cos->CosObjEqual({1, 1}, {1, 1}), 1);
  EXPECT_THROW(host.Tables()->cos->CosObjGetType({1, 1}), host::HostError);
}

struct Restored {};

TEST(RaisingHost, GoesThroughTheExceptionFrame) {
  RaisingHost host(SmallHost(), 2);
  const std::size_t depth = host::FrameDepth();
  host.Tables()->core->ASPushExceptionFrame(nullptr, [] { throw Restored(); });
  EXPECT_THROW(host.Tables()->cos->CosObjGetType({1, 1}), Restored);
  EXPECT_EQ(host::FrameDepth(), depth);
}

TEST(CountingHost, NamesWhatIsNotEven) {
  CountingHost host(SmallHost());
  const TextTable& text = *host.Tables()->text;
  ASText first = text.ASTextNew();
  text.ASTextNew();
  EXPECT_EQ(host.Open("texts"), 2);
  EXPECT_THAT(host.Uneven(), ElementsAre("texts +2"));
  text.ASTextDestroy(first);
  text.ASTextDestroy(nullptr);
  EXPECT_EQ(host.Open("texts"), 1);
  text.ASTextDestroy(first);
  EXPECT_THAT(host.Uneven(), IsEmpty());
}

TEST(HostDecorator, DecoratorsNest) {
  CountingHost counting(SmallHost());
  RecordingHost recording(counting.Tables());
  recording.Tables()->text->ASTextNew();
  EXPECT_EQ(counting.Open("texts"), 1);
  EXPECT_THAT(recording.Names(), ElementsAre("ASTextNew"));
}

TEST(HookedHost, MayRaiseByWhatItSees) {
  HookedHost host(SmallHost(), [](const HostCall& call) {
    if (call.Is(Operation::CosObjGetType) && call.values[0] == 0) RaiseAsHost(kASBadParameter, "null");
  });
  EXPECT_EQ(host.Tables()->cos->CosObjGetType({1, 1}), CosDict);
  EXPECT_THROW(host.Tables()->cos->CosObjGetType({0, 0}), host::HostError);
}

TEST(NeverRaises, HoldsForWhatDestructorsCall) {
  EXPECT_TRUE(NeverRaises(Operation::PDPageSetPDEContent));
  EXPECT_TRUE(NeverRaises(Operation::ASTextDestroy));
  EXPECT_FALSE(NeverRaises(Operation::PDDocAcquirePage));
}

}  // namespace
}  // namespace tgx::test
