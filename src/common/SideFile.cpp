#include "src/common/SideFile.h"

#include <cstdint>
#include <filesystem>
#include <system_error>

namespace tgx {
namespace {

// Far above what any exporter writes.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{64} << 20U;

}  // namespace

std::optional<std::ifstream> OpenSideFile(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (error || size > kLargestFile) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) return std::nullopt;
  return file;
}

}  // namespace tgx
