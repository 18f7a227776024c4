// Opens a whole document, runs one operation on it, saves it and opens the result. The first line of the input says what is
// run, "action 6" or "fixes 70"; the rest is the file. Metadata files that an action reads are the same for every input.
#include <tgx/embedded_host.h>
#include <tgx/tgx.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/ReferenceMutator.h"
#include "host/core/Raise.h"

namespace {

struct Operation {
  std::optional<std::int32_t> action;
  std::uint32_t fixes = 0;
};

/// What the line asks for; nothing where it is no such line.
std::optional<Operation> OperationOf(const std::string& line) {
  char* end = nullptr;
  if (line.starts_with("action ")) {
    const long number = std::strtol(line.c_str() + 7, &end, 10);
    if (number < 0 || number > 18) return std::nullopt;
    return Operation{.action = static_cast<std::int32_t>(number)};
  }
  if (!line.starts_with("fixes ")) return std::nullopt;
  return Operation{.fixes = static_cast<std::uint32_t>(std::strtoul(line.c_str() + 6, &end, 16))};
}

/// The metadata files, in a folder that goes away with the process.
class Metadata {
 public:
  Metadata() {
    std::string pattern = std::filesystem::temp_directory_path() / "tgx-fuzz-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) std::abort();
    folder_ = pattern;
    Write("styles", "<Styles><Style id='a' hex_name='61'/></Styles>");
    Write("contents",
          "<TOC_Item title='Contents'><TOC_Entry level='1'><TOC_EntryText>one</TOC_EntryText></TOC_Entry>"
          "<TOC_Entry level='2'><TOC_EntryText>two</TOC_EntryText></TOC_Entry></TOC_Item>");
    Write("tables", "Table\t1\nLayout\nTable\t4\nLayout\n");
  }
  ~Metadata() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Metadata(const Metadata&) = delete;
  Metadata& operator=(const Metadata&) = delete;

  std::string PathFor(std::int32_t action) const {
    if (action == 2) return folder_ / "styles";
    if (action == 5) return folder_ / "contents";
    return folder_ / "tables";
  }

 private:
  void Write(const char* name, std::string_view text) const { std::ofstream(folder_ / name) << text; }

  std::filesystem::path folder_;
};

int Run(PDDoc document, const Operation& operation) {
  static const Metadata metadata;
  if (!operation.action) {
    const TGXFixupParams params = {0, operation.fixes};
    return TGX_Fixups(document, &params);
  }
  const std::string path = metadata.PathFor(*operation.action);
  std::vector<char> storage(sizeof(TGXActionParams) + path.size());
  auto* params = reinterpret_cast<TGXActionParams*>(storage.data());
  params->action = *operation.action;
  std::memcpy(storage.data() + offsetof(TGXActionParams, path), path.c_str(), path.size() + 1);
  return TGX_Action(document, params);
}

/// A failure is told by the host's or the library's own text, never by what the host did not expect itself.
void ExpectKnownFailure() {
  const ASErrorCode code = tgx::host::LastRaiseCode();
  if (tgx::host::LastRaiseText() == TGX_GetLastError() && (code == kASInternalError || code == kASNoMemory)) std::abort();
}

PDDoc Open(std::string_view file) { return TGXHost_OpenMemory(file.data(), file.size(), "fuzz", nullptr); }

}  // namespace

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

/// Half of the inputs are changed as bytes, the other half as documents.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, unsigned int seed) {
  if (seed % 2 == 0) return LLVMFuzzerMutate(data, size, most);
  const std::string changed = ReferenceMutator({reinterpret_cast<const char*>(data), size}).Mutate(seed / 2);
  if (changed.size() > most) return size;
  std::memcpy(data, changed.data(), changed.size());
  return changed.size();
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  setenv("XDG_STATE_HOME", "/dev/null", 1);  // the log of the role map is written nowhere
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const auto lineEnd = input.find('\n');
  if (lineEnd == std::string_view::npos) return 0;
  const auto operation = OperationOf(std::string(input.substr(0, lineEnd)));
  if (!operation) return 0;
  const TGXInitParams init = {nullptr, &TGXHost_Tables};
  TGX_init(&init);
  PDDoc document = Open(input.substr(lineEnd + 1));
  if (document == nullptr) return 0;
  const std::size_t frames = TGXHost_FrameDepth();
  if (Run(document, *operation) == TGX_FAILED) ExpectKnownFailure();
  TGXHost_CutFrames(frames);
  void* saved = nullptr;
  std::size_t savedSize = 0;
  const bool isSaved = TGXHost_SaveMemory(document, nullptr, &saved, &savedSize) == 0;
  TGXHost_Close(document);
  if (!isSaved) return 0;
  PDDoc again = Open({static_cast<const char*>(saved), savedSize});
  if (again == nullptr) {
    std::fprintf(stderr, "the saved document cannot be opened: %s\n", TGXHost_LastError());
    std::abort();
  }
  TGXHost_Close(again);
  TGXHost_FreeMemory(saved);
  return 0;
}
