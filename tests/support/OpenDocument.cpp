#include "tests/support/OpenDocument.h"

#include <cstring>

#include <qpdf/QPDF.hh>

#include "host/core/Raise.h"
#include "host/core/Tables.h"
#include "host/pdmodel/Document.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx::test {
namespace {

const HostTables* currentTables = nullptr;

/// The library asks through a plain function pointer, so the tables of the session stand in a variable.
const HostTables* CurrentTables() { return currentTables != nullptr ? currentTables : EmbeddedTables(); }

void Bind() {
  const TGXInitParams init = {nullptr, CurrentTables};
  TGX_init(&init);
}

template <typename Call>
Outcome Run(const Call& call) {
  Bind();
  const std::size_t frames = host::FrameDepth();
  const int result = call();
  host::CutFrames(frames);
  return {result, TGX_GetLastError()};
}

}  // namespace

const HostTables* EmbeddedTables() { return host::Tables(); }

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << "result " << outcome.result << " with the text \"" << outcome.text << "\"";
}

HostSession::HostSession(const HostTables* tables) : before_(currentTables), frames_(host::FrameDepth()) {
  currentTables = tables;
  Bind();
}

HostSession::~HostSession() {
  currentTables = before_;
  host::CutFrames(frames_);
}

OpenDocument::OpenDocument(std::string bytes, const std::string& name) : bytes_(std::move(bytes)) {
  auto pdf = std::make_unique<QPDF>();
  pdf->setSuppressWarnings(true);
  pdf->processMemoryFile(name.c_str(), bytes_.data(), bytes_.size());
  handle_ = host::Document::Adopt(std::move(pdf), name).Handle();
}

OpenDocument::~OpenDocument() { host::Document::Close(host::Document::Of(handle_)); }

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

std::string OpenDocument::Save() { return WriteToString(host::Document::Of(handle_).Pdf()); }

std::string SavedTree(OpenDocument& document) { return TreeText(document.Save()); }

}  // namespace tgx::test
