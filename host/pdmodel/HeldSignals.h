#pragma once

#include <csignal>

namespace tgx::host {

/// Keeps the signals that end a program from arriving in this thread while a file is being written, so that a temporary file
/// can be removed first; they arrive when the guard ends. A write beyond the file size limit then fails with EFBIG.
class HeldSignals {
 public:
  HeldSignals() noexcept;
  ~HeldSignals();
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

  /// Whether a signal waits that would otherwise have arrived: the caller gives up soon.
  bool IsInterrupted() const noexcept;

 private:
  sigset_t before_;
  bool hadFileSizeSignal_;
};

}  // namespace tgx::host
