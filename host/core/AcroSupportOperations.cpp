#include <algorithm>
#include <array>
#include <cstring>

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/core/Memory.h"
#include "host/core/Operations.h"
#include "host/core/Paths.h"
#include "host/core/Raise.h"
#include "host/core/Streams.h"
#include "host/core/Utf.h"

namespace tgx::host {
namespace {

std::string_view GenericText(ASErrorCode code) {
  static constexpr std::array<std::string_view, 11> kTexts = {"No error",
                                                              "Bad parameter",
                                                              "Wrong object type",
                                                              "Index out of range",
                                                              "Not found",
                                                              "Damaged document",
                                                              "A password is needed, or the given one is wrong",
                                                              "File error",
                                                              "Not supported",
                                                              "Out of memory",
                                                              "Internal error of the PDF library"};
  if (code < 0 || static_cast<std::size_t>(code) >= kTexts.size()) return "Unknown error";
  return kTexts[static_cast<std::size_t>(code)];
}

}  // namespace

namespace operations {

const char* ASGetErrorString(ASErrorCode code, char* buffer, ASInt32 size) {
  if (buffer == nullptr || size < 1) return "";
  const bool isLast = code != kASNoError && code == LastRaiseCode();
  const std::string_view text = CutUtf8(isLast ? LastRaiseText() : GenericText(code), static_cast<std::size_t>(size) - 1);
  text.copy(buffer, text.size());
  buffer[text.size()] = '\0';
  return buffer;
}

void ASfree(void* memory) { TakeBack(memory); }

ASFileSys ASGetDefaultFileSys(void) { return DefaultFileSystem(); }

ASPathName ASFileSysCreatePathName(ASFileSys fileSys, ASAtom pathType, const void* pathData, const void* /*mustBeZero*/) {
  CheckFileSystem(fileSys);
  if (AtomView(pathType) != "Cstring") {
    throw HostError(kASBadParameter, "no path type has the name \"" + std::string(AtomView(pathType)) + "\"");
  }
  if (pathData == nullptr) throw HostError(kASBadParameter, "null where a path is needed");
  return CreatePath(static_cast<const char*>(pathData));
}

void ASFileSysReleasePath(ASFileSys fileSys, ASPathName path) {
  if (path == nullptr) return;
  CheckFileSystem(fileSys);
  PathOf(path);
  ReleasePath(path);
}

ASInt32 ASStmRead(char* buffer, ASInt32 itemSize, ASInt32 numItems, ASStm stm) {
  ByteStream& stream = StreamOf(stm);
  if (itemSize < 1 || numItems < 0 || (buffer == nullptr && numItems > 0)) {
    throw HostError(kASBadParameter, "stream read with a bad buffer, item size or number of items");
  }
  const std::string_view rest = stream.Rest();
  const auto size = static_cast<std::size_t>(itemSize);
  const std::size_t items = std::min(rest.size() / size, static_cast<std::size_t>(numItems));
  if (items > 0) std::memcpy(buffer, rest.data(), items * size);
  stream.Skip(items * size);
  return static_cast<ASInt32>(items);
}

void ASStmClose(ASStm stm) { CloseStream(stm); }

}  // namespace operations
}  // namespace tgx::host
