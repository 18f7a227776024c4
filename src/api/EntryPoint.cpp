#include "src/api/EntryPoint.h"

#include <stdexcept>
#include <string>

#include "src/api/HostException.h"

namespace tgx {
namespace {

constexpr ASInt32 kHostTextSize = 500;  // bytes, the terminating zero included

std::string lastError;

/// The host's own text for the raise that it made last.
std::string HostErrorText() {
  char text[kHostTextSize] = {};
  ASGetErrorString(ASGetExceptionErrorCode(), text, kHostTextSize);
  return text;
}

}  // namespace

int RunEntryPoint(const std::function<int()>& operation) {
  lastError.clear();
  try {
    try {
      return InExceptionFrame(operation);
    } catch (const APDFLException::ASExceptionInfo&) {
      throw std::runtime_error(HostErrorText());
    }
  } catch (const std::exception& e) {
    lastError = e.what();
    return TGX_FAILED;
  }
}

const char* LastErrorText() noexcept { return lastError.c_str(); }

}  // namespace tgx
