#include "host/core/Paths.h"

#include <array>
#include <cstdio>
#include <string_view>

#include "host/core/HandleTable.h"
#include "host/core/HostError.h"
#include "host/core/Utf.h"

namespace tgx::host {
namespace {

constexpr std::size_t kLongestDisplayName = 300;  // leaves room for the reason in a text of 499 bytes

HandleTable<ASPathName, std::string>& LivingPaths() {
  static HandleTable<ASPathName, std::string> paths(5, "path object");
  return paths;
}

void AppendEscaped(std::string& out, char c) {
  std::array<char, 5> escape{};
  std::snprintf(escape.data(), escape.size(), "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
  out += escape.data();
}

}  // namespace

ASFileSys DefaultFileSystem() noexcept {
  static char theFileSystem;  // only its address matters
  return reinterpret_cast<ASFileSys>(&theFileSystem);
}

void CheckFileSystem(ASFileSys fileSystem) {
  if (fileSystem != nullptr && fileSystem != DefaultFileSystem()) throw HostError(kASBadParameter, "no such file system");
}

ASPathName CreatePath(std::string bytes) { return LivingPaths().Add(std::make_unique<std::string>(std::move(bytes))); }

const std::string& PathOf(ASPathName path) { return LivingPaths().Of(path); }

void ReleasePath(ASPathName path) noexcept { LivingPaths().Remove(path); }

std::string OneLine(std::string_view text) {
  std::string out;
  std::string_view rest = text;
  while (!rest.empty()) {
    const std::size_t length = Utf8SequenceLength(rest);
    const bool isControl = length == 1 && (static_cast<unsigned char>(rest[0]) < 0x20 || rest[0] == 0x7F);
    if (length == 0 || isControl) {
      AppendEscaped(out, rest[0]);
      rest.remove_prefix(1);
    } else {
      out.append(rest.substr(0, length));
      rest.remove_prefix(length);
    }
  }
  return out;
}

std::string DisplayName(std::string_view path) {
  std::string out = OneLine(path);
  if (out.size() <= kLongestDisplayName) return out;
  std::size_t start = out.size() - kLongestDisplayName;
  while ((static_cast<unsigned char>(out[start]) & 0xC0U) == 0x80U) ++start;
  return "..." + out.substr(start);
}

}  // namespace tgx::host
