#include "tests/support/OpenDocument.h"

#include <cstring>
#include <stdexcept>

#include "tests/support/StateFolder.h"
#include "tests/support/TreeText.h"

namespace tgx::test {
namespace {

const HostTables* currentTables = nullptr;

/// The library asks through a plain function pointer, so the tables of the session stand in a variable.
const HostTables* CurrentTables() { return currentTables != nullptr ? currentTables : EmbeddedTables(); }

void Bind() {
  const TGXInitParams init = {kTestExtension, CurrentTables};
  TGX_init(&init);
}

template <typename Call>
Outcome Run(const Call& call) {
  UseOwnStateFolder();
  Bind();
  const std::size_t frames = TGXHost_FrameDepth();
  const int result = call();
  TGXHost_CutFrames(frames);
  return {result, TGX_GetLastError()};
}

}  // namespace

const HostTables* EmbeddedTables() { return TGXHost_Tables(); }

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << "result " << outcome.result << " with the text \"" << outcome.text << "\"";
}

HostSession::HostSession(const HostTables* tables) : before_(currentTables), frames_(TGXHost_FrameDepth()) {
  currentTables = tables;
  Bind();
}

HostSession::~HostSession() {
  currentTables = before_;
  TGXHost_CutFrames(frames_);
}

OpenDocument::OpenDocument(const std::string& bytes, const std::string& name, const TGXHostOpenOptions* options)
    : handle_(TGXHost_OpenMemory(bytes.data(), bytes.size(), name.c_str(), options)) {
  if (handle_ == nullptr) throw std::runtime_error(name + " does not open: " + TGXHost_LastError());
}

OpenDocument::~OpenDocument() { TGXHost_Close(handle_); }

Outcome OpenDocument::Action(int number, const std::string& path) {
  std::vector<char> memory(offsetof(TGXActionParams, path) + path.size() + 1);
  const std::int32_t action = number;
  std::memcpy(memory.data() + offsetof(TGXActionParams, action), &action, sizeof action);
  std::memcpy(memory.data() + offsetof(TGXActionParams, path), path.c_str(), path.size() + 1);
  return Run([&] { return TGX_Action(handle_, reinterpret_cast<const TGXActionParams*>(memory.data())); });
}

Outcome OpenDocument::Fixups(std::uint32_t mask) {
  const TGXFixupParams params = {0, mask};
  return Run([&] { return TGX_Fixups(handle_, &params); });
}

std::string OpenDocument::Save(const TGXHostSaveOptions* options) {
  void* data = nullptr;
  std::size_t size = 0;
  if (TGXHost_SaveMemory(handle_, options, &data, &size) != 0) {
    throw std::runtime_error(std::string("the document does not save: ") + TGXHost_LastError());
  }
  std::string bytes(static_cast<const char*>(data), size);
  TGXHost_FreeMemory(data);
  return bytes;
}

std::string SavedTree(OpenDocument& document) { return TreeText(document.Save()); }

}  // namespace tgx::test
