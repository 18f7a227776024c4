#include "src/common/XmlFile.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "src/common/XmlGuard.h"

namespace tgx {
namespace {

// Far above what any exporter writes; the parser takes several times its file in memory.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{64} << 20U;

bool IsWorthReading(const std::string& path) {
  std::error_code error;
  // A pipe would make the reader wait.
  if (!std::filesystem::is_regular_file(path, error)) return false;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  return !error && size <= kLargestFile;
}

}  // namespace

bool LoadXmlFile(const std::string& path, tinyxml2::XMLDocument& document) {
  document.Clear();
  if (!IsWorthReading(path)) return false;
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  if (HasCrowdedTag(text)) return false;
  if (document.Parse(text.data(), text.size()) == tinyxml2::XML_SUCCESS) return true;
  // Of a file that is broken somewhere the parser keeps what stands before.
  document.Clear();
  return false;
}

}  // namespace tgx
