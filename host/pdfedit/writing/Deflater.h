#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <qpdf/Buffer.hh>

namespace tgx::host {

std::shared_ptr<Buffer> Deflate(const std::string& content);

/// Compresses contents, on threads of its own once there is enough of them, while the caller goes on to the next. What comes
/// out does not depend on the number of threads.
class Deflater {
 public:
  Deflater() = default;
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;
  ~Deflater();

  void Add(std::string content);

  /// The compressed contents, in the order in which they were added. Throws the first failure. Nothing can be added after.
  std::vector<std::shared_ptr<Buffer>> Finish();

 private:
  struct Job {
    std::string content;
    std::shared_ptr<Buffer> packed;
  };

  void StartWorkers();
  void Work();
  /// Compresses the next content that nobody has begun; false when there is none. Takes the lock held, and gives it back so.
  bool WorkOnNext(std::unique_lock<std::mutex>& lock);
  void Stop();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Job> jobs_;
  std::size_t next_ = 0;  ///< the first job that nobody has begun
  bool isComplete_ = false;
  std::exception_ptr failure_;
  std::size_t bytes_ = 0;  ///< that were added before there were threads
  bool hasStarted_ = false;
  std::vector<std::thread> workers_;
};

}  // namespace tgx::host
