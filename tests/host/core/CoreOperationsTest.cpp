#include <string>

#include <gtest/gtest.h>

#include "host/core/Raise.h"
#include "tests/host/HostDocument.h"

namespace tgx::host {
namespace {

const CoreTable& Core() { return *Tables()->core; }

TEST(ExceptionFrame, NeedsARestoreProcedure) {
  EXPECT_EQ(RaisedCode([] { Core().ASPushExceptionFrame(nullptr, nullptr); }), kASBadParameter);
}

TEST(ExceptionFrame, MayBePoppedFromAnEmptyStack) {
  ASSERT_EQ(FrameDepth(), 0U);
  Core().ASPopExceptionFrame();
  EXPECT_EQ(FrameDepth(), 0U);
}

TEST(ExceptionFrame, IsGoneAfterThePop) {
  Core().ASPushExceptionFrame(nullptr, [] {});
  ASSERT_EQ(FrameDepth(), 1U);
  Core().ASPopExceptionFrame();
  EXPECT_EQ(FrameDepth(), 0U);
}

TEST(Atoms, AreEqualForEqualBytes) {
  const std::string text = "P [EMPTY]";
  EXPECT_EQ(Core().ASAtomFromString("P [EMPTY]"), Core().ASAtomFromString(text.c_str()));
  EXPECT_NE(Core().ASAtomFromString("p [EMPTY]"), Core().ASAtomFromString("P [EMPTY]"));
}

TEST(Atoms, HaveTheEmptyTextAsZero) {
  EXPECT_EQ(Core().ASAtomFromString(""), 0);
  EXPECT_STREQ(Core().ASAtomGetString(0), "");
}

TEST(Atoms, KeepTheirTextInPlace) {
  const ASAtom atom = Core().ASAtomFromString("stays");
  const char* const text = Core().ASAtomGetString(atom);
  for (int i = 0; i < 5000; ++i) Core().ASAtomFromString(("filler " + std::to_string(i)).c_str());
  EXPECT_EQ(Core().ASAtomGetString(atom), text);
  EXPECT_STREQ(text, "stays");
}

TEST(Atoms, TakeTextOfAnyLengthAndEveryByte) {
  std::string text(100000, 'x');
  for (int byte = 1; byte < 256; ++byte) text.push_back(static_cast<char>(byte));
  EXPECT_EQ(Core().ASAtomGetString(Core().ASAtomFromString(text.c_str())), text);
}

TEST(Atoms, RaiseForNullAndForUnknownValues) {
  EXPECT_EQ(RaisedCode([] { Core().ASAtomFromString(nullptr); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([] { Core().ASAtomGetString(ASAtomNull); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([] { Core().ASAtomGetString(0x7FFFFFFF); }), kASBadParameter);
}

TEST(Callbacks, AreTheProceduresOwnAddress) {
  int procedure = 0;
  const ASCallback callback = Core().ASCallbackCreate(nullptr, &procedure);
  EXPECT_EQ(callback, &procedure);
  Core().ASCallbackDestroy(callback);
  Core().ASCallbackDestroy(callback);
  Core().ASCallbackDestroy(nullptr);
}

TEST(Callbacks, RaiseForNull) {
  EXPECT_EQ(RaisedCode([] { Core().ASCallbackCreate(nullptr, nullptr); }), kASBadParameter);
}

}  // namespace
}  // namespace tgx::host
