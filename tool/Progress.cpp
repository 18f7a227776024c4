#include "tool/Progress.h"

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <utility>

namespace tgx::tool {

Progress::Progress(bool wanted) {
  if (!wanted || isatty(STDERR_FILENO) == 0) return;
  // The host holds signals back in the thread that saves; none may arrive in this one instead.
  sigset_t all, before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  shower_ = std::thread([this] { Show(); });
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Progress::~Progress() {
  if (!shower_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    done_ = true;
  }
  changed_.notify_all();
  shower_.join();
}

void Progress::At(std::string what) {
  const std::lock_guard lock(mutex_);
  what_ = std::move(what);
}

void Progress::Show() {
  std::unique_lock lock(mutex_);
  const auto start = std::chrono::steady_clock::now();
  bool shown = false;
  while (!changed_.wait_for(lock, std::chrono::seconds(1), [this] { return done_; })) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start);
    std::fprintf(stderr, "\r\033[Ktgx: %s, %lld s", what_.c_str(), static_cast<long long>(seconds.count()));
    std::fflush(stderr);
    shown = true;
  }
  if (shown) std::fputs("\r\033[K", stderr);
}

}  // namespace tgx::tool
