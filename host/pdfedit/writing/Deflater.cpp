#include "host/pdfedit/writing/Deflater.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include <qpdf/Pl_Buffer.hh>
#include <qpdf/Pl_Flate.hh>

namespace tgx::host {

std::shared_ptr<Buffer> Deflate(const std::string& content) {
  Pl_Buffer packed("content");
  Pl_Flate deflate("deflate", &packed, Pl_Flate::a_deflate);
  deflate.write(reinterpret_cast<const unsigned char*>(content.data()), content.size());
  deflate.finish();
  return packed.getBufferSharedPointer();
}

namespace {

/// Below this threads would cost more than they bring.
constexpr std::size_t kWorthThreads = std::size_t{1} << 18;
constexpr unsigned kMostThreads = 4;
/// Contents that may wait; the caller helps when there are more, which bounds the memory.
constexpr std::size_t kMostWaiting = 64;

}  // namespace

Deflater::~Deflater() { Stop(); }

void Deflater::Add(std::string content) {
  bytes_ += content.size();
  if (bytes_ > kWorthThreads && !hasStarted_) StartWorkers();
  std::unique_lock<std::mutex> lock(mutex_);
  jobs_.push_back({std::move(content), nullptr});
  changed_.notify_one();
  if (workers_.empty() || jobs_.size() - next_ > kMostWaiting) WorkOnNext(lock);
}

std::vector<std::shared_ptr<Buffer>> Deflater::Finish() {
  {
    std::unique_lock<std::mutex> lock(mutex_);
    while (WorkOnNext(lock)) {
    }
  }
  Stop();
  if (failure_) std::rethrow_exception(failure_);
  std::vector<std::shared_ptr<Buffer>> results;
  results.reserve(jobs_.size());
  for (Job& job : jobs_) results.push_back(std::move(job.packed));
  return results;
}

/// As many as the machine has processors, the caller's thread counted in. A machine that gives none does without.
void Deflater::StartWorkers() {
  hasStarted_ = true;
  const unsigned threads = std::min(std::thread::hardware_concurrency(), kMostThreads);
  try {
    for (unsigned i = 1; i < threads; ++i) workers_.emplace_back([this] { Work(); });
  } catch (const std::system_error&) {
  }
}

void Deflater::Work() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return isComplete_ || next_ < jobs_.size(); });
    if (!WorkOnNext(lock)) return;
  }
}

bool Deflater::WorkOnNext(std::unique_lock<std::mutex>& lock) {
  if (next_ == jobs_.size()) return false;
  Job& job = jobs_[next_++];  // stays where it is while others are added
  lock.unlock();
  std::exception_ptr failure;
  try {
    job.packed = Deflate(job.content);
    job.content = {};
  } catch (...) {
    failure = std::current_exception();
  }
  lock.lock();
  if (!failure_) failure_ = std::move(failure);
  return true;
}

void Deflater::Stop() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    isComplete_ = true;
    next_ = jobs_.size();
  }
  changed_.notify_all();
  for (std::thread& worker : workers_) worker.join();
  workers_.clear();
}

}  // namespace tgx::host
