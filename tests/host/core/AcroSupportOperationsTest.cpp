#include <array>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "host/core/Atoms.h"
#include "host/core/Paths.h"
#include "host/core/Raise.h"
#include "host/core/Streams.h"
#include "tests/host/HostDocument.h"

namespace tgx::host {
namespace {

const AcroSupportTable& Support() { return *Tables()->acroSupport; }

std::string ErrorString(ASErrorCode code, ASInt32 size = 500) {
  std::string buffer(600, '?');
  return Support().ASGetErrorString(code, buffer.data(), size);
}

void RaiseOnce(ASErrorCode code, const std::string& text) {
  RaisedCode([&] { Guarded([&] { throw HostError(code, text); }); });
}

TEST(ErrorString, IsTheLastRaisesOwnTextForItsCode) {
  RaiseOnce(kASNotFound, "page 12: no such thing");
  EXPECT_EQ(ErrorString(kASNotFound), "page 12: no such thing");
}

TEST(ErrorString, IsGenericForOtherCodes) {
  RaiseOnce(kASNotFound, "page 12: no such thing");
  EXPECT_EQ(ErrorString(kASNoError), "No error");
  EXPECT_EQ(ErrorString(kASBadParameter), "Bad parameter");
  EXPECT_EQ(ErrorString(kASInternalError), "Internal error of the PDF library");
}

TEST(ErrorString, SaysSoForUnknownCodes) {
  EXPECT_EQ(ErrorString(-1), "Unknown error");
  EXPECT_EQ(ErrorString(11), "Unknown error");
}

TEST(ErrorString, FitsTheBufferAndDoesNotEndInsideACharacter) {
  RaiseOnce(kASNotFound, "caf\xC3\xA9 closed");
  EXPECT_EQ(ErrorString(kASNotFound, 6), "caf\xC3\xA9");
  EXPECT_EQ(ErrorString(kASNotFound, 5), "caf");
  EXPECT_EQ(ErrorString(kASNotFound, 4), "caf");
  EXPECT_EQ(ErrorString(kASNotFound, 1), "");
}

TEST(ErrorString, WritesNothingBehindItsZero) {
  RaiseOnce(kASNotFound, "0123456789");
  std::array<char, 8> buffer{};
  buffer.fill('?');
  EXPECT_EQ(Support().ASGetErrorString(kASNotFound, buffer.data(), 6), buffer.data());
  EXPECT_EQ(std::string(buffer.data(), buffer.size()), std::string("01234\0??", 8));
}

TEST(ErrorString, IsEmptyWithoutABuffer) {
  EXPECT_STREQ(Support().ASGetErrorString(kASNotFound, nullptr, 500), "");
  char untouched = '?';
  EXPECT_STREQ(Support().ASGetErrorString(kASNotFound, &untouched, 0), "");
  EXPECT_STREQ(Support().ASGetErrorString(kASNotFound, &untouched, -1), "");
  EXPECT_EQ(untouched, '?');
}

TEST(ASfree, LeavesNullAndForeignMemoryAlone) {
  int foreign = 0;
  Support().ASfree(nullptr);
  Support().ASfree(&foreign);
}

TEST(ASfree, MayComeTwice) {
  HostDocument document;
  char* const copy = Tables()->cos->CosCopyStringValue(document.String("text"), nullptr);
  Support().ASfree(copy);
  Support().ASfree(copy);
}

TEST(PathName, HoldsTheBytesOfAPathThatNeedNotExist) {
  const std::string path = "/no/such/\xFF.pdf";
  const ASPathName name =
      Support().ASFileSysCreatePathName(Support().ASGetDefaultFileSys(), Intern("Cstring"), path.c_str(), nullptr);
  EXPECT_EQ(PathOf(name), path);
  Support().ASFileSysReleasePath(Support().ASGetDefaultFileSys(), name);
}

TEST(PathName, TakesNullForTheDefaultFileSystem) {
  const ASPathName name = Support().ASFileSysCreatePathName(nullptr, Intern("Cstring"), "a.pdf", nullptr);
  EXPECT_EQ(PathOf(name), "a.pdf");
  Support().ASFileSysReleasePath(nullptr, name);
}

TEST(PathName, RaisesForAnotherTypeAnotherFileSystemAndNull) {
  int thing = 0;
  const auto other = reinterpret_cast<ASFileSys>(&thing);
  const ASAtom type = Intern("Cstring");
  EXPECT_EQ(RaisedCode([&] { Support().ASFileSysCreatePathName(nullptr, Intern("DIPath"), "a", nullptr); }),
            kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Support().ASFileSysCreatePathName(other, type, "a", nullptr); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Support().ASFileSysCreatePathName(nullptr, type, nullptr, nullptr); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Support().ASFileSysCreatePathName(nullptr, ASAtomNull, "a", nullptr); }), kASBadParameter);
}

TEST(PathName, IsRecognisedAsReleasedForGood) {
  const ASPathName first = Support().ASFileSysCreatePathName(nullptr, Intern("Cstring"), "a.pdf", nullptr);
  Support().ASFileSysReleasePath(nullptr, first);
  const ASPathName second = Support().ASFileSysCreatePathName(nullptr, Intern("Cstring"), "a.pdf", nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(RaisedCode([&] { Support().ASFileSysReleasePath(nullptr, first); }), kASBadParameter);
  Support().ASFileSysReleasePath(nullptr, second);
}

TEST(PathName, MayBeNullWhenReleased) { Support().ASFileSysReleasePath(nullptr, nullptr); }

class StreamReading : public testing::Test {
 protected:
  static ASStm Open(std::string_view bytes) {
    auto buffer = std::make_shared<Buffer>(bytes.size());
    bytes.copy(reinterpret_cast<char*>(buffer->getBuffer()), bytes.size());
    return OpenStream(buffer);
  }
  std::array<char, 16> buffer_{};
};

TEST_F(StreamReading, GivesWholeItemsOnly) {
  const ASStm stream = Open("0123456");
  EXPECT_EQ(Support().ASStmRead(buffer_.data(), 3, 5, stream), 2);
  EXPECT_STREQ(buffer_.data(), "012345");
  EXPECT_EQ(Support().ASStmRead(buffer_.data(), 3, 5, stream), 0);
  EXPECT_EQ(Support().ASStmRead(buffer_.data(), 1, 5, stream), 1);
  EXPECT_EQ(buffer_[0], '6');
  Support().ASStmClose(stream);
}

TEST_F(StreamReading, GoesOnWhereItStopped) {
  const ASStm stream = Open("0123456");
  EXPECT_EQ(Support().ASStmRead(buffer_.data(), 1, 2, stream), 2);
  EXPECT_EQ(Support().ASStmRead(buffer_.data(), 1, 2, stream), 2);
  EXPECT_STREQ(buffer_.data(), "23");
  Support().ASStmClose(stream);
}

TEST_F(StreamReading, EndsAtOnceInAnEmptyStream) {
  const ASStm stream = Open("");
  EXPECT_EQ(Support().ASStmRead(buffer_.data(), 1, 2, stream), 0);
  Support().ASStmClose(stream);
}

TEST_F(StreamReading, RaisesForBadSizesAndAMissingBuffer) {
  const ASStm stream = Open("0123456");
  EXPECT_EQ(RaisedCode([&] { Support().ASStmRead(buffer_.data(), 0, 1, stream); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Support().ASStmRead(buffer_.data(), 1, -1, stream); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Support().ASStmRead(nullptr, 1, 1, stream); }), kASBadParameter);
  Support().ASStmClose(stream);
}

TEST_F(StreamReading, RaisesForClosedAndForeignHandles) {
  const ASStm stream = Open("0123456");
  Support().ASStmClose(stream);
  EXPECT_EQ(RaisedCode([&] { Support().ASStmRead(buffer_.data(), 1, 1, stream); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Support().ASStmClose(stream); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Support().ASStmClose(nullptr); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Support().ASStmClose(reinterpret_cast<ASStm>(buffer_.data())); }), kASBadParameter);
}

}  // namespace
}  // namespace tgx::host
