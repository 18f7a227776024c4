#include "tests/support/Hosts.h"

#include <algorithm>

namespace tgx::test {
namespace {

struct Account {
  const char* kind;
  int change;
};

/// What a call acquires or releases; releases of nothing (a null argument) do not count.
Account AccountOf(const HostCall& call) {
  switch (call.operation) {
    case Operation::PDDocAcquirePage:
    case Operation::PDPageAcquire:
      return {"pages", 1};
    case Operation::PDPageRelease:
      return {"pages", -1};
    case Operation::PDPageAcquirePDEContent:
      return {"contents", 1};
    case Operation::PDPageReleasePDEContent:
      return {"contents", -1};
    case Operation::PDEAcquire:
    case Operation::PDETextCreate:
      return {"elements", 1};
    case Operation::PDERelease:
      return {"elements", -1};
    case Operation::ASTextNew:
    case Operation::ASTextFromSizedUnicode:
      return {"texts", 1};
    case Operation::ASTextDestroy:
      return {"texts", -1};
    case Operation::ASCallbackCreate:
      return {"callbacks", 1};
    case Operation::ASCallbackDestroy:
      return {"callbacks", -1};
    case Operation::CosStreamOpenStm:
      return {"streams", 1};
    case Operation::ASStmClose:
      return {"streams", -1};
    case Operation::CosCopyStringValue:
    case Operation::ASTextGetUnicodeCopy:
      return {"memory", 1};
    case Operation::ASfree:
      return {"memory", -1};
    case Operation::PDDocAcquire:
      return {"document references", 1};
    case Operation::PDDocRelease:
      return {"document references", -1};
    case Operation::PDDocOpen:
      return {"documents", 1};
    case Operation::PDDocClose:
      return {"documents", -1};
    case Operation::ASPushExceptionFrame:
      return {"frames", 1};
    case Operation::ASPopExceptionFrame:
      return {"frames", -1};
    case Operation::ASFileSysCreatePathName:
      return {"paths", 1};
    case Operation::ASFileSysReleasePath:
      return {"paths", -1};
    default:
      return {nullptr, 0};
  }
}

bool ReleasesNothing(const HostCall& call) {
  if (call.Is(Operation::ASPopExceptionFrame)) return false;
  const std::size_t handle = call.Is(Operation::ASFileSysReleasePath) ? 1 : 0;
  return call.values[handle] == 0;
}

}  // namespace

std::vector<std::string> RecordingHost::Names() const {
  std::vector<std::string> names;
  for (const Operation operation : operations_) names.emplace_back(NameOf(operation));
  return names;
}

std::size_t RecordingHost::Count(Operation operation) const {
  return static_cast<std::size_t>(std::count(operations_.begin(), operations_.end(), operation));
}

void RecordingHost::Before(const HostCall& call) {
  operations_.push_back(call.operation);
  calls_.push_back(call.Name() + call.ArgumentText(Inner()));
}

void RaisingHost::Before(const HostCall& call) {
  if (NeverRaises(call.operation) || ++calls_ != at_) return;
  raisedIn_ = call.operation;
  RaiseAsHost(code_, text_);
}

long long CountingHost::Open(const std::string& kind) const {
  const auto known = open_.find(kind);
  return known == open_.end() ? 0 : known->second;
}

std::vector<std::string> CountingHost::Uneven() const {
  std::vector<std::string> uneven;
  for (const auto& [kind, count] : open_) {
    if (count != 0) uneven.push_back(kind + (count > 0 ? " +" : " ") + std::to_string(count));
  }
  return uneven;
}

void CountingHost::After(const HostCall& call) {
  const Account account = AccountOf(call);
  if (account.kind == nullptr || (account.change < 0 && ReleasesNothing(call))) return;
  open_[account.kind] += account.change;
}

}  // namespace tgx::test
