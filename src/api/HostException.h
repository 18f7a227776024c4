#pragma once

#include <cstdint>
#include <exception>
#include <type_traits>
#include <utility>

#include "src/api/HostBinding.h"

namespace tgx {
namespace APDFLException {

/// A host's raise as a C++ exception. It does not carry the host's code: whoever catches it asks the host.
class ASExceptionInfo : public std::exception {
 public:
  ASExceptionInfo() = default;
  ASExceptionInfo(const ASExceptionInfo&) = default;
  ASExceptionInfo& operator=(const ASExceptionInfo&) = default;
  ~ASExceptionInfo() override;
  /// The same for every raise; it never gets out of the library, which puts the host's text in its place.
  const char* what() const noexcept override;

  /// Always zero.
  std::int32_t code = 0;
  std::int64_t data = 0;
};

}  // namespace APDFLException

/// The restore procedure of every exception frame of the library: throws ASExceptionInfo.
[[noreturn]] void FrameCallback();

/// Runs `work` inside an exception frame of its own. The frame is popped when `work` returns, after the destructors of what
/// it has built; an exception leaves it: a raise has consumed it, and the library's own exceptions pop nothing.
template <typename Work>
std::invoke_result_t<Work> InExceptionFrame(Work&& work) {
  ASPushExceptionFrame(nullptr, FrameCallback);
  if constexpr (std::is_void_v<std::invoke_result_t<Work>>) {
    std::forward<Work>(work)();
    ASPopExceptionFrame();
  } else {
    auto result = std::forward<Work>(work)();
    ASPopExceptionFrame();
    return result;
  }
}

}  // namespace tgx
