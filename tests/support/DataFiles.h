#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace tgx::test {

/// A document of tests/data.
struct DataFile {
  std::string name;  ///< "corpus/typst-getreide.pdf"
  std::string path;
};

void PrintTo(const DataFile& file, std::ostream* out);

/// The PDF documents of tests/data that programs exported: its folders samples, corpus, libreoffice and links, by name.
std::vector<DataFile> DataFiles();

/// The bytes of a file; throws if there is none.
std::string ReadBytes(const std::string& path);

/// The name as a test's name may be.
std::string TestName(const DataFile& file);

}  // namespace tgx::test
