#include "tool/Document.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include <tgx/tgx.h>

#include "tool/Files.h"
#include "tool/Messages.h"
#include "tool/TextString.h"
#include "tool/ToolSteps.h"

namespace tgx::tool {
namespace {

/// A text of the host about a file, without the name in front. The host leaves the start of a long name out.
std::string WithoutName(const std::string& path, const std::string& text) {
  const std::string name = OneLine(path);
  std::string line = OneLine(text);
  for (const std::string_view sign : {": ", ", "}) {
    if (line.starts_with(name + std::string(sign))) return line.substr(name.size() + 2);
  }
  if (line.starts_with(name + " (")) return line.substr(name.size() + 1);
  if (!line.starts_with("...")) return line;
  for (std::size_t end = line.find(": "); end != std::string::npos; end = line.find(": ", end + 1)) {
    if (name.ends_with(line.substr(3, end - 3))) return line.substr(end + 2);
  }
  return line;
}

std::string HostReason(const std::string& path) {
  const std::string reason = WithoutName(path, TGXHost_LastError());
  return reason.empty() ? "failed without a reason" : reason;
}

PDDoc OpenFile(const std::string& path, const char* password) {
  TGXHostOpenOptions options = {};
  options.size = sizeof options;
  options.password = password;
  return TGXHost_OpenFile(path.c_str(), &options);
}

std::string OpenFailure(const std::string& path, bool passwordGiven) {
  if (TGXHost_LastErrorCode() != kASBadPassword) return HostReason(path);
  return passwordGiven ? "the password is wrong" : "needs a password; see --password and --password-file";
}

/// An action's record, with its path stored behind the fixed part.
class ActionRecord {
 public:
  ActionRecord(std::int32_t action, const std::string& path)
      : memory_(std::max(sizeof(TGXActionParams), offsetof(TGXActionParams, path) + path.size() + 1)) {
    std::memcpy(memory_.data() + offsetof(TGXActionParams, action), &action, sizeof action);
    std::memcpy(memory_.data() + offsetof(TGXActionParams, path), path.c_str(), path.size() + 1);
  }
  const TGXActionParams* Params() const { return reinterpret_cast<const TGXActionParams*>(memory_.data()); }

 private:
  std::vector<char> memory_;  // zero, and aligned for every type
};

/// The warnings of a file that are told; the others are only counted.
constexpr std::size_t kMostWarnings = 10;

StepResult Apply(PDDoc document, const StepCall& step) {
  if (step.kind == StepKind::kTool) return RunToolStep(document, step.name);
  int code = TGX_OK;
  if (step.kind == StepKind::kAction) {
    code = TGX_Action(document, ActionRecord(static_cast<std::int32_t>(step.number), step.path).Params());
  } else {
    const TGXFixupParams params = {0, step.number};
    code = TGX_Fixups(document, &params);
  }
  return {code, TGX_GetLastError()};
}

}  // namespace

Document::Document(std::string path, const std::optional<std::string>& password) : path_(std::move(path)), handle_(nullptr) {
  RequireReadable(path_);
  const TGXInitParams init = {nullptr, &TGXHost_Tables};
  TGX_init(&init);
  handle_ = OpenFile(path_, password ? password->c_str() : nullptr);
  if (handle_ == nullptr) throw Failure(path_, OpenFailure(path_, password.has_value()));
}

Document::~Document() {
#ifdef __SANITIZE_ADDRESS__
  Close();  // else everything would count as leaked
#endif
}

void Document::Close() {
  TGXHost_Close(handle_);
  handle_ = nullptr;
}

void Document::TellWarnings() {
  const std::size_t count = TGXHost_WarningCount(handle_);
  for (; warningsTold_ < count; ++warningsTold_) {
    if (warningsTold_ == kMostWarnings) {
      Warn(path_ + ": " + std::to_string(count - kMostWarnings) + " more warnings of damage");
      warningsTold_ = count;
      return;
    }
    Warn("warning: " + path_ + ": " + WithoutName(path_, TGXHost_Warning(handle_, warningsTold_)));
  }
}

StepResult Document::Run(const StepCall& step) {
  const std::size_t frames = TGXHost_FrameDepth();
  StepResult result = Apply(handle_, step);
  TGXHost_CutFrames(frames);
  if (!keepsContent_) TGXHost_DropUnchangedContent(handle_);
  if (result.code == TGX_UNKNOWN_ACTION && result.error.empty()) result.error = "there is no such action";
  return result;
}

void Document::Save(const std::string& path, const SaveChoices& choices) {
  TGXHostSaveOptions options = {};
  options.size = sizeof options;
  options.linearize = choices.linearize ? 1 : 0;
  options.deterministic = choices.deterministic ? 1 : 0;
  options.decrypt = choices.decrypt ? 1 : 0;
  if (TGXHost_SaveFile(handle_, path.c_str(), &options) == 0) return;
  std::string reason = HostReason(path);
  if (choices.deterministic && TGXHost_LastErrorCode() == kASNotSupported) reason += "; --decrypt takes it away";
  // What is wrong with INPUT comes out when it is written; its name is then all that helps.
  if (reason != WithoutName(path_, reason)) throw Failure(reason);
  throw Failure(path, reason);
}

void RequireOpensWithoutPassword(const std::string& path) {
  const PDDoc document = OpenFile(path, nullptr);
  if (document != nullptr) return TGXHost_Close(document);
  const bool isLocked = TGXHost_LastErrorCode() == kASBadPassword;
  throw Failure(path, isLocked ? "needs a password; only a form without one can be read" : HostReason(path));
}

}  // namespace tgx::tool
