#include "src/api/HostException.h"

namespace tgx {

APDFLException::ASExceptionInfo::~ASExceptionInfo() = default;

const char* APDFLException::ASExceptionInfo::what() const noexcept { return "APDFLException"; }

void FrameCallback() { throw APDFLException::ASExceptionInfo(); }

}  // namespace tgx
