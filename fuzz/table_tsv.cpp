// Reads any bytes as the tab-separated description of tables.
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "src/tables/TsvTables.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream stream(std::string(reinterpret_cast<const char*>(data), size));
  tgx::TSV_Parser parser;
  std::vector<std::string> lines;
  parser.readLines(stream, lines);
  for (const std::string& line : lines) {
    if (line.empty() || line.size() > 1023 || line.find('\n') != std::string::npos) std::abort();
  }
  parser.parse(lines);
  if (parser.tables.size() > lines.size() || parser.typeFirst.size() > 49 || parser.typeSecond.size() > 49) std::abort();
  if (parser.typeFirst.empty() != parser.typeSecond.empty()) std::abort();
  return 0;
}
