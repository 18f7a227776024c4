#include "host/core/Paths.h"

#include <array>
#include <cstdio>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "host/core/HostError.h"

namespace tgx::host {
namespace {

constexpr std::size_t kLongestDisplayName = 300;  // leaves room for the reason in a text of 499 bytes

using PathTable = std::unordered_map<ASPathName, std::unique_ptr<std::string>>;

PathTable& LivingPaths() {
  static PathTable paths;
  return paths;
}

/// The length of the well-formed UTF-8 sequence at the front of `text`; 0 if there is none.
std::size_t Utf8SequenceLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
  const auto continues = [&](std::size_t i) { return (byte(i) & 0xC0U) == 0x80U; };
  const unsigned first = byte(0);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return continues(1) ? 2 : 0;
  if (first >= 0xE0 && first < 0xF0) {
    const bool overlong = first == 0xE0 && byte(1) < 0xA0;
    const bool surrogate = first == 0xED && byte(1) >= 0xA0;
    return continues(1) && continues(2) && !overlong && !surrogate ? 3 : 0;
  }
  if (first >= 0xF0 && first < 0xF5) {
    const bool overlong = first == 0xF0 && byte(1) < 0x90;
    const bool tooLarge = first == 0xF4 && byte(1) >= 0x90;
    return continues(1) && continues(2) && continues(3) && !overlong && !tooLarge ? 4 : 0;
  }
  return 0;
}

void AppendEscaped(std::string& out, char c) {
  std::array<char, 5> escape{};
  std::snprintf(escape.data(), escape.size(), "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
  out += escape.data();
}

}  // namespace

ASPathName CreatePath(std::string bytes) {
  auto path = std::make_unique<std::string>(std::move(bytes));
  const auto handle = reinterpret_cast<ASPathName>(path.get());
  LivingPaths().emplace(handle, std::move(path));
  return handle;
}

const std::string& PathOf(ASPathName path) {
  const auto found = LivingPaths().find(path);
  if (found == LivingPaths().end()) throw HostError(kASBadParameter, "no living path object has this ASPathName");
  return *found->second;
}

void ReleasePath(ASPathName path) noexcept { LivingPaths().erase(path); }

std::string DisplayName(const std::string& path) {
  std::string out;
  std::string_view rest = path;
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
  if (out.size() <= kLongestDisplayName) return out;
  std::size_t start = out.size() - kLongestDisplayName;
  while ((static_cast<unsigned char>(out[start]) & 0xC0U) == 0x80U) ++start;
  return "..." + out.substr(start);
}

}  // namespace tgx::host
