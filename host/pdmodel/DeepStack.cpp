#include "host/pdmodel/DeepStack.h"

#include <cstddef>
#include <exception>

#include <pthread.h>
#include <sys/mman.h>

#include "host/core/HostError.h"

namespace tgx::host {
namespace {

constexpr std::size_t kLargest = std::size_t{1} << 36;
constexpr std::size_t kSmallest = std::size_t{1} << 26;

/// Address space for a stack, as much as can be had.
class StackMemory {
 public:
  StackMemory() {
    for (size_ = kLargest; size_ >= kSmallest; size_ /= 4) {
      memory_ =
          ::mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_STACK, -1, 0);
      if (memory_ != MAP_FAILED) return;
    }
    throw HostError(kASNoMemory, "no memory for a stack");
  }
  ~StackMemory() { ::munmap(memory_, size_); }
  StackMemory(const StackMemory&) = delete;
  StackMemory& operator=(const StackMemory&) = delete;

  void* Memory() const noexcept { return memory_; }
  std::size_t Size() const noexcept { return size_; }

 private:
  void* memory_ = nullptr;
  std::size_t size_ = 0;
};

struct Job {
  const std::function<void()>* work;
  std::exception_ptr failure;
};

void* Run(void* argument) noexcept {
  auto& job = *static_cast<Job*>(argument);
  try {
    (*job.work)();
  } catch (...) {
    job.failure = std::current_exception();
  }
  return nullptr;
}

}  // namespace

void OnDeepStack(const std::function<void()>& work) {
  const StackMemory stack;
  Job job = {&work, nullptr};
  pthread_attr_t attributes;
  pthread_t thread;
  pthread_attr_init(&attributes);
  const bool isStarted = pthread_attr_setstack(&attributes, stack.Memory(), stack.Size()) == 0 &&
                         pthread_create(&thread, &attributes, Run, &job) == 0;
  pthread_attr_destroy(&attributes);
  if (!isStarted) throw HostError(kASNoMemory, "no thread with a large stack");
  pthread_join(thread, nullptr);
  if (job.failure) std::rethrow_exception(job.failure);
}

}  // namespace tgx::host
