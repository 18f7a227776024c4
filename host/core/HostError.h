#pragma once

#include <exception>
#include <string>

#include <tgx/host.h>

namespace tgx::host {

/// A failure of the host: a code of the kAS... list and a text that names the place, well-formed UTF-8 of at most 499 bytes
/// (what is longer is cut, what is ill-formed replaced). Host code throws it; the guard in front of every table entry turns
/// it into a raise. An embedder meets it only when a raise finds no exception frame.
class __attribute__((visibility("default"))) HostError : public std::exception {
 public:
  HostError(ASErrorCode code, std::string text);
  ASErrorCode Code() const noexcept { return code_; }
  const std::string& Text() const noexcept { return text_; }
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  ASErrorCode code_;
  std::string text_;
};

}  // namespace tgx::host
