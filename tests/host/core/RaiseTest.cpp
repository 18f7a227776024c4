#include "host/core/Raise.h"

#include <cerrno>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFSystemError.hh>

#include "host/core/Tables.h"

namespace tgx::host {
namespace {

/// What the restore procedures of these tests throw, as a client's would.
struct ClientException {
  int frame;
};

std::vector<std::string> events;

void ThrowOne() {
  events.push_back("frame 1, code " + std::to_string(LastRaiseCode()) + ", depth " + std::to_string(FrameDepth()));
  throw ClientException{1};
}
void ThrowTwo() {
  events.push_back("frame 2, code " + std::to_string(LastRaiseCode()) + ", depth " + std::to_string(FrameDepth()));
  throw ClientException{2};
}
void Return() { events.emplace_back("returned"); }

class Raise : public testing::Test {
 protected:
  Raise() { events.clear(); }
  void TearDown() override { CutFrames(0); }

  static const CoreTable& Core() { return *Tables()->core; }
  /// A call that raises kASBadParameter.
  static void Fail() { Core().ASAtomGetString(-1); }
};

TEST_F(Raise, StoresTheCodeAndTakesTheFrameOffBeforeTheProcedureRuns) {
  Core().ASPushExceptionFrame(nullptr, ThrowOne);
  EXPECT_THROW(Fail(), ClientException);
  EXPECT_EQ(events, std::vector<std::string>{"frame 1, code 1, depth 0"});
}

TEST_F(Raise, UsesTheTopFrameAndLeavesTheOthers) {
  Core().ASPushExceptionFrame(nullptr, ThrowOne);
  Core().ASPushExceptionFrame(nullptr, ThrowTwo);
  EXPECT_THROW(Fail(), ClientException);
  EXPECT_THROW(Fail(), ClientException);
  EXPECT_EQ(events, (std::vector<std::string>{"frame 2, code 1, depth 1", "frame 1, code 1, depth 0"}));
}

TEST_F(Raise, ThrowsTheHostsOwnExceptionWithNoFrameLeft) {
  try {
    Fail();
    FAIL() << "no raise";
  } catch (const HostError& error) {
    EXPECT_EQ(error.Code(), kASBadParameter);
    EXPECT_EQ(error.Text(), "no atom has the value -1");
    EXPECT_STREQ(error.what(), error.Text().c_str());
  }
}

TEST_F(Raise, ThrowsTheHostsOwnExceptionWhenTheProcedureReturns) {
  Core().ASPushExceptionFrame(nullptr, Return);
  EXPECT_THROW(Fail(), HostError);
  EXPECT_EQ(events, std::vector<std::string>{"returned"});
  EXPECT_EQ(FrameDepth(), 0U);
}

TEST_F(Raise, IsMadeOnceThoughTheClientsExceptionIsAStandardOne) {
  Core().ASPushExceptionFrame(nullptr, ThrowOne);
  Core().ASPushExceptionFrame(nullptr, [] { throw std::runtime_error("client"); });
  EXPECT_THROW(Fail(), std::runtime_error);
  EXPECT_EQ(FrameDepth(), 1U);
}

TEST_F(Raise, LeavesFramesThatEmbeddersCutBack) {
  const std::size_t before = FrameDepth();
  Core().ASPushExceptionFrame(nullptr, ThrowOne);
  Core().ASPushExceptionFrame(nullptr, ThrowTwo);
  CutFrames(before);
  EXPECT_EQ(FrameDepth(), before);
  EXPECT_THROW(Fail(), HostError);
}

TEST_F(Raise, KeepsItsCodeUntilTheNextOne) {
  EXPECT_THROW(Fail(), HostError);
  Core().ASAtomFromString("a call that succeeds");
  EXPECT_EQ(Core().ASGetExceptionErrorCode(), kASBadParameter);
  EXPECT_THROW(Guarded([] { throw HostError(kASNotFound, "gone"); }), HostError);
  EXPECT_EQ(Core().ASGetExceptionErrorCode(), kASNotFound);
}

TEST_F(Raise, PassesTheExceptionOfACallbackUntouched) {
  Core().ASPushExceptionFrame(nullptr, ThrowOne);
  const auto work = [] {
    try {
      throw ClientException{7};
    } catch (...) {
      throw CallbackException{std::current_exception()};
    }
  };
  try {
    Guarded(work);
    FAIL() << "nothing thrown";
  } catch (const ClientException& exception) {
    EXPECT_EQ(exception.frame, 7);
  }
  EXPECT_EQ(FrameDepth(), 1U);
  EXPECT_TRUE(events.empty());
}

template <typename Exception>
HostError Translated(const Exception& exception) {
  try {
    throw exception;
  } catch (...) {
    return CurrentFailure();
  }
}

TEST(CurrentFailure, GivesTheCodeThatFitsTheException) {
  const auto code = [](qpdf_error_code_e kind) { return Translated(QPDFExc(kind, "a.pdf", "", 0, "wrong")).Code(); };
  EXPECT_EQ(code(qpdf_e_damaged_pdf), kASDamagedDocument);
  EXPECT_EQ(code(qpdf_e_password), kASBadPassword);
  EXPECT_EQ(code(qpdf_e_unsupported), kASNotSupported);
  EXPECT_EQ(code(qpdf_e_system), kASFileError);
  EXPECT_EQ(code(qpdf_e_internal), kASInternalError);
  EXPECT_EQ(Translated(QPDFSystemError("open a.pdf", ENOENT)).Code(), kASFileError);
  EXPECT_EQ(Translated(QPDFSystemError("read", ENOMEM)).Code(), kASNoMemory);
  EXPECT_EQ(Translated(std::bad_alloc()).Code(), kASNoMemory);
  EXPECT_EQ(Translated(std::logic_error("wrong")).Code(), kASInternalError);
  EXPECT_EQ(Translated(std::range_error("too large")).Code(), kASDamagedDocument);
  EXPECT_EQ(Translated(42).Code(), kASInternalError);
}

TEST(CurrentFailure, PutsThePlaceInFrontAndTheFileBehind) {
  EXPECT_EQ(Translated(QPDFExc(qpdf_e_damaged_pdf, "a.pdf", "object 5 0", 123, "too short")).Text(),
            "object 5 0: too short (a.pdf, offset 123)");
  EXPECT_EQ(Translated(QPDFExc(qpdf_e_damaged_pdf, "a.pdf", "", 0, "too short")).Text(), "too short (a.pdf)");
  EXPECT_EQ(Translated(QPDFExc(qpdf_e_damaged_pdf, "", "object 5 0", 0, "too short")).Text(), "object 5 0: too short");
  EXPECT_EQ(Translated(QPDFExc(qpdf_e_damaged_pdf, "", "", 9, "too short")).Text(), "too short (offset 9)");
}

TEST(HostErrorText, IsCutAfter499BytesAndNotInsideACharacter) {
  EXPECT_EQ(HostError(kASNotFound, std::string(600, 'x')).Text(), std::string(499, 'x'));
  EXPECT_EQ(HostError(kASNotFound, std::string(498, 'x') + "\xC3\xA9").Text(), std::string(498, 'x'));
  EXPECT_EQ(HostError(kASNotFound, std::string(497, 'x') + "\xC3\xA9").Text(), std::string(497, 'x') + "\xC3\xA9");
}

TEST(HostErrorText, IsWellFormedWhateverAFileIsCalled) {
  EXPECT_EQ(HostError(kASNotFound, "no \xE9 here").Text(), "no \xEF\xBF\xBD here");
}

}  // namespace
}  // namespace tgx::host
