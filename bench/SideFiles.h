#pragma once

#include <string>
#include <vector>

namespace tgx::bench {

struct ContentsEntry {
  int level;
  std::string text;
};

// The files beside a document that steps take. They throw std::runtime_error for a path that cannot be written.

void WriteContents(const std::string& path, const std::vector<ContentsEntry>& entries);
void WriteStyles(const std::string& path);
/// `layoutTables` are numbers of tables, from 1 up and in order.
void WriteTables(const std::string& path, int tables, const std::vector<int>& layoutTables);

}  // namespace tgx::bench
