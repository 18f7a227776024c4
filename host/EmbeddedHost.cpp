#include <tgx/embedded_host.h>

#include <cstdlib>
#include <deque>
#include <new>
#include <string>

#include "host/core/HostError.h"
#include "host/core/Raise.h"
#include "host/core/Tables.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/Open.h"
#include "host/pdmodel/Save.h"

namespace tgx::host {
namespace {

/// What TGXHost_LastError tells.
struct LastFailure {
  ASErrorCode code = kASNoError;
  std::string text;
};

LastFailure& Last() {
  static LastFailure last;
  return last;
}

/// Runs a function of the C interface: keeps what it throws for TGXHost_LastError and answers `onFailure` instead.
template <typename Result, typename Work>
Result Answer(Result onFailure, Work&& work) noexcept {
  LastFailure& last = Last();
  last.code = kASNoError;
  last.text.clear();
  try {
    return work();
  } catch (...) {
    const HostError failure = CurrentFailure();
    last.code = failure.Code();
    try {
      last.text = failure.Text();
    } catch (const std::bad_alloc&) {
      last.text.clear();
    }
    return onFailure;
  }
}

template <typename Work>
int CodeOf(Work&& work) noexcept {
  Answer(0, [&] {
    work();
    return 0;
  });
  return Last().code;
}

/// A record of options that may be left out. Its size tells which version of the header the caller was compiled with.
template <typename Record>
Record Given(const Record* options) {
  if (options == nullptr) return Record{};
  if (options->size != sizeof(Record)) throw HostError(kASBadParameter, "a record of options has the wrong size");
  return *options;
}

template <typename Pointer>
Pointer NotNull(Pointer pointer, const char* what) {
  if (pointer == nullptr) throw HostError(kASBadParameter, std::string(what) + " is null");
  return pointer;
}

OpenOptions ToOpen(const TGXHostOpenOptions* options) {
  const TGXHostOpenOptions given = Given(options);
  OpenOptions result;
  result.repair = given.noRepair == 0;
  if (given.password != nullptr) result.password = given.password;
  return result;
}

SaveOptions ToSave(const TGXHostSaveOptions* options) {
  const TGXHostSaveOptions given = Given(options);
  return {given.linearize != 0, given.deterministic != 0, given.decrypt != 0};
}

}  // namespace
}  // namespace tgx::host

using namespace tgx::host;  // NOLINT(google-build-using-namespace): the functions below are the C face of this namespace

const HostTables* TGXHost_Tables(void) { return Tables(); }

PDDoc TGXHost_OpenFile(const char* path, const TGXHostOpenOptions* options) {
  return Answer(PDDoc{}, [&] { return OpenFile(NotNull(path, "the path"), ToOpen(options)).Handle(); });
}

PDDoc TGXHost_OpenMemory(const void* data, size_t size, const char* name, const TGXHostOpenOptions* options) {
  return Answer(PDDoc{}, [&] {
    const auto* bytes = static_cast<const char*>(size == 0 ? "" : NotNull(data, "the data"));
    return OpenMemory({bytes, size}, name == nullptr ? "document in memory" : name, ToOpen(options)).Handle();
  });
}

int TGXHost_SaveFile(PDDoc document, const char* path, const TGXHostSaveOptions* options) {
  return CodeOf([&] { SaveFile(Document::Of(document), NotNull(path, "the path"), ToSave(options)); });
}

int TGXHost_SaveMemory(PDDoc document, const TGXHostSaveOptions* options, void** data, size_t* size) {
  return CodeOf([&] {
    NotNull(data, "the place for the data");
    NotNull(size, "the place for the size");
    MallocBytes bytes = SaveMemory(Document::Of(document), ToSave(options));
    *size = bytes.size;
    *data = bytes.data.release();
  });
}

void TGXHost_FreeMemory(void* data) { std::free(data); }

void TGXHost_Close(PDDoc document) {
  Answer(0, [&] {
    if (Document* open = Document::Find(document)) Document::Close(*open);
    return 0;
  });
}

size_t TGXHost_WarningCount(PDDoc document) {
  return Answer(size_t{0}, [&] { return Document::Of(document).Warnings().size(); });
}

const char* TGXHost_Warning(PDDoc document, size_t index) {
  return Answer(static_cast<const char*>(nullptr), [&] {
    const std::deque<std::string>& warnings = Document::Of(document).Warnings();
    if (index >= warnings.size()) throw HostError(kASOutOfRange, "no warning " + std::to_string(index));
    return warnings[index].c_str();
  });
}

size_t TGXHost_FrameDepth(void) { return FrameDepth(); }
void TGXHost_CutFrames(size_t depth) { CutFrames(depth); }

void TGXHost_DropUnchangedContent(PDDoc document) {
  CodeOf([&] { Document::Of(document).Contents().DropUnchanged(); });
}

size_t TGXHost_EditCount(PDDoc document) {
  return Answer(size_t{0}, [&] { return Document::Of(document).Edits(); });
}

size_t TGXHost_RemovedContentCount(PDDoc document) {
  return Answer(size_t{0}, [&] { return Document::Of(document).Contents().Removed().size(); });
}

int TGXHost_RemovedContent(PDDoc document, size_t index, TGXHostRemovedContent* content) {
  return CodeOf([&] {
    Given(NotNull(content, "the place for the content"));
    *content = DescribeRemoved(Document::Of(document).Contents(), index);
  });
}

int TGXHost_RemovedContentBox(PDDoc document, size_t index, ASFixedRect* box) {
  return CodeOf([&] {
    NotNull(box, "the place for the box");
    *box = BoxOfRemoved(Document::Of(document).Contents(), index);
  });
}

int TGXHost_LastErrorCode(void) { return Last().code; }
const char* TGXHost_LastError(void) { return Last().text.c_str(); }
