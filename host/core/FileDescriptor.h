#pragma once

#include <utility>

#include <unistd.h>

namespace tgx::host {

/// Owns a file descriptor.
class FileDescriptor {
 public:
  explicit FileDescriptor(int number = -1) noexcept : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~FileDescriptor() {
    if (number_ >= 0) ::close(number_);
  }

  int Number() const noexcept { return number_; }
  explicit operator bool() const noexcept { return number_ >= 0; }
  int Release() noexcept { return std::exchange(number_, -1); }  ///< the caller owns the number from here on

 private:
  int number_;
};

}  // namespace tgx::host
