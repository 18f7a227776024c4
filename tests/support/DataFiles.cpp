#include "tests/support/DataFiles.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "tests/support/Paths.h"

namespace tgx::test {

void PrintTo(const DataFile& file, std::ostream* out) { *out << file.name; }

std::vector<DataFile> DataFiles() {
  std::vector<DataFile> files;
  for (const std::string folder : {"samples", "corpus", "libreoffice", "links"}) {
    for (const auto& entry : std::filesystem::directory_iterator(DataPath(folder))) {
      if (entry.path().extension() != ".pdf") continue;
      files.push_back({folder + "/" + entry.path().filename().string(), entry.path().string()});
    }
  }
  std::sort(files.begin(), files.end(), [](const DataFile& a, const DataFile& b) { return a.name < b.name; });
  return files;
}

std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string TestName(const DataFile& file) {
  std::string name = file.name;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
  return name;
}

}  // namespace tgx::test
