#pragma once

#include <cstddef>
#include <exception>
#include <optional>
#include <type_traits>
#include <utility>

#include "host/core/HostError.h"

namespace tgx::host {

/// The stack of exception frames: one restore procedure each.
void PushFrame(ASRestoreProc restore);
void PopFrame() noexcept;
std::size_t FrameDepth() noexcept;
/// Counts the outermost frames so far: what is done inside one of them is one piece of work of a client.
std::size_t OutermostFrames() noexcept;
/// Drops the frames above `depth`; an embedder calls it after each exported call of the library, whose own failures leave
/// frames behind.
void CutFrames(std::size_t depth) noexcept;

/// Code and text of the last raise; 0 and empty before the first.
ASErrorCode LastRaiseCode() noexcept;
const std::string& LastRaiseText() noexcept;

/// Stores the failure, takes the top frame off and calls its restore procedure, which throws. Throws `error` itself when
/// there is no frame left, or when the procedure returns.
[[noreturn]] void Raise(HostError error);

/// Carries an exception of a client's callback through the guard untouched.
struct CallbackException {
  std::exception_ptr exception;
};

/// Turns the exception being handled (qpdf's, the standard library's or the host's own) into a HostError.
HostError CurrentFailure() noexcept;

/// Runs `work` and turns each failure into a raise. The raise happens outside the handlers, so that the exception that the
/// restore procedure throws is not caught here.
template <typename Work>
std::invoke_result_t<Work> Guarded(Work&& work) {
  std::optional<HostError> failure;
  std::exception_ptr fromCallback;
  try {
    return std::forward<Work>(work)();
  } catch (const CallbackException& e) {
    fromCallback = e.exception;
  } catch (...) {
    failure.emplace(CurrentFailure());
  }
  if (fromCallback) std::rethrow_exception(std::move(fromCallback));
  Raise(std::move(*failure));
}

}  // namespace tgx::host
