#include "host/pdmodel/HeldSignals.h"

#include <array>
#include <ctime>

namespace tgx::host {
namespace {

constexpr std::array<int, 4> kEndingSignals = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

bool IsPending(int signal) noexcept {
  sigset_t pending;
  return sigpending(&pending) == 0 && sigismember(&pending, signal) == 1;
}

// A signal that is held waits even if the program ignores it.
bool IsIgnored(int signal) noexcept {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

HeldSignals::HeldSignals() noexcept : hadFileSizeSignal_(IsPending(SIGXFSZ)) {
  sigset_t held;
  sigemptyset(&held);
  for (const int signal : kEndingSignals) sigaddset(&held, signal);
  sigaddset(&held, SIGXFSZ);
  pthread_sigmask(SIG_BLOCK, &held, &before_);
}

HeldSignals::~HeldSignals() {
  if (!hadFileSizeSignal_ && IsPending(SIGXFSZ)) {  // our own write caused it, and has reported it by its result
    sigset_t fileSize;
    sigemptyset(&fileSize);
    sigaddset(&fileSize, SIGXFSZ);
    const timespec noWait{};
    sigtimedwait(&fileSize, nullptr, &noWait);
  }
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

bool HeldSignals::IsInterrupted() const noexcept {
  sigset_t pending;
  if (sigpending(&pending) != 0) return false;
  for (const int signal : kEndingSignals) {
    if (sigismember(&pending, signal) == 1 && sigismember(&before_, signal) == 0 && !IsIgnored(signal)) return true;
  }
  return false;
}

}  // namespace tgx::host
