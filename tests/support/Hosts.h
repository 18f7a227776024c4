#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/support/HostDecorator.h"
#include "tests/support/OpenDocument.h"

namespace tgx::test {

/// Records the calls in order.
class RecordingHost : public HostDecorator<RecordingHost> {
 public:
  explicit RecordingHost(const HostTables* inner = EmbeddedTables()) : HostDecorator(inner) {}

  /// Names alone, or with arguments: "PDSElementGetKid(12:1, 0, pointer, null, null)".
  std::vector<std::string> Names() const;
  const std::vector<std::string>& Calls() const { return calls_; }
  std::size_t Count(Operation operation) const;
  void Clear() { operations_.clear(), calls_.clear(); }

 protected:
  void Before(const HostCall& call) override;

 private:
  std::vector<Operation> operations_;
  std::vector<std::string> calls_;
};

/// Raises at one call, counted from 1 over the calls that may raise. Counts on afterwards without raising again.
class RaisingHost : public HostDecorator<RaisingHost> {
 public:
  /// `at` 0: never, only counts.
  explicit RaisingHost(const HostTables* inner, std::size_t at, ASErrorCode code = kASInternalError,
                       std::string text = "the host failed")
      : HostDecorator(inner), at_(at), code_(code), text_(std::move(text)) {}

  std::size_t Calls() const { return calls_; }
  bool HasRaised() const { return at_ != 0 && calls_ >= at_; }
  /// The operation that was made to raise.
  Operation RaisedIn() const { return raisedIn_; }

 protected:
  void Before(const HostCall& call) override;

 private:
  std::size_t at_;
  ASErrorCode code_;
  std::string text_;
  std::size_t calls_ = 0;
  Operation raisedIn_ = Operation::kCount;
};

/// Counts what is acquired against what is released: pages, page contents, elements, texts, callbacks, paths, streams,
/// memory, document references, opened documents and exception frames.
class CountingHost : public HostDecorator<CountingHost> {
 public:
  explicit CountingHost(const HostTables* inner = EmbeddedTables()) : HostDecorator(inner) {}

  /// Acquired less released of a kind: "pages", "contents", "elements", "texts", "callbacks", "paths", "streams", "memory",
  /// "document references", "documents", "frames". Below zero when more was released.
  long long Open(const std::string& kind) const;
  /// Every kind that is not even, as "texts +1".
  std::vector<std::string> Uneven() const;

 protected:
  void After(const HostCall& call) override;

 private:
  std::map<std::string, long long> open_;
};

/// Runs a function before every call: for a test's own behaviour of a host, such as one that refuses something.
class HookedHost : public HostDecorator<HookedHost> {
 public:
  HookedHost(const HostTables* inner, std::function<void(const HostCall&)> before)
      : HostDecorator(inner), before_(std::move(before)) {}

 protected:
  void Before(const HostCall& call) override { before_(call); }

 private:
  std::function<void(const HostCall&)> before_;
};

}  // namespace tgx::test
