#include "tool/HostCalls.h"

namespace tgx::tool {
namespace {

/// The restore procedure of the tool's frames.
[[noreturn]] void ThrowHostFailure() {
  char text[1000];
  const ASErrorCode code = ASGetExceptionErrorCode();
  throw HostFailure(code, ASGetErrorString(code, text, sizeof text));
}

}  // namespace

HostFrame::HostFrame() : depth_(TGXHost_FrameDepth()) { ASPushExceptionFrame(nullptr, &ThrowHostFailure); }

}  // namespace tgx::tool
