#include "src/tables/TsvTables.h"

#include <array>
#include <cstdio>
#include <optional>

namespace tgx {
namespace {

constexpr std::size_t kLineBuffer = 1024;  // with the terminator

bool Holds(const std::string& line, const char* word) { return line.find(word) != std::string::npos; }

void ReadTypeLine(const std::string& line, std::string& first, std::string& second) {
  std::array<char, 50> firstWord{};
  std::array<char, 50> secondWord{};
  if (std::sscanf(line.c_str(), "Type\t%49s\t%49s\t\n", firstWord.data(), secondWord.data()) != 2) return;
  first = firstWord.data();
  second = secondWord.data();
}

std::optional<std::int32_t> ReadTableLine(const std::string& line) {
  int number = -1;
  if (std::sscanf(line.c_str(), "Table\t%d\n", &number) != 1) return std::nullopt;
  return number;
}

/// The table whose kind the line behind its "Table" line names; null when it names none. The words may stand anywhere in it.
std::unique_ptr<TSV_Table> TableOfKind(std::int32_t number, const std::string& kindLine) {
  if (Holds(kindLine, "Simple")) {
    int rows = 0;
    int cols = 0;
    if (std::sscanf(kindLine.c_str(), "Simple\t%d\t%d\n", &rows, &cols) != 2) return nullptr;
    return std::make_unique<QTH_Table>(number, rows, cols);
  }
  if (Holds(kindLine, "Layout")) return std::make_unique<Layout_Table>(number);
  if (Holds(kindLine, "Row")) return std::make_unique<STH_Table>(number);
  return nullptr;
}

}  // namespace

void TSV_Parser::readLines(std::istream& stream, std::vector<std::string>& lines) {
  lines.clear();
  std::array<char, kLineBuffer> buffer{};
  while (stream.good() && lines.size() <= kMostLines) {
    stream.getline(buffer.data(), buffer.size());
    if (buffer.front() != '\0') lines.emplace_back(buffer.data());
  }
}

void TSV_Parser::parse(const std::vector<std::string>& lines) {
  typeFirst.clear();
  typeSecond.clear();
  tables.clear();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (Holds(lines[i], "Type")) ReadTypeLine(lines[i], typeFirst, typeSecond);
    if (!Holds(lines[i], "Table")) continue;
    const auto number = ReadTableLine(lines[i]);
    if (!number) continue;
    if (i + 1 == lines.size() || Holds(lines[i + 1], "Table")) {
      tables.push_back(std::make_unique<IDH_Table>(*number));
      continue;
    }
    ++i;
    if (auto table = TableOfKind(*number, lines[i])) tables.push_back(std::move(table));
  }
}

}  // namespace tgx
