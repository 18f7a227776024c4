#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace tgx::tool {

/// Shows on standard error what a long run is at, from its second second on and only on a terminal; wipes it away at the
/// end.
class Progress {
 public:
  explicit Progress(bool wanted);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void At(std::string what);

 private:
  void Show();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::string what_;
  bool done_ = false;
  std::thread shower_;
};

}  // namespace tgx::tool
