#include "src/tables/TsvTables.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

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

/// Reads a number as scanf's "%d" does, and goes on behind it; one that is none of 32 bits counts as missing.
std::optional<std::int32_t> ReadNumber(const char*& text) {
  char* end = nullptr;
  const std::int64_t number = std::strtoll(text, &end, 10);
  if (end == text || number != static_cast<std::int32_t>(number)) return std::nullopt;
  text = end;
  return static_cast<std::int32_t>(number);
}

std::optional<std::int32_t> ReadTableLine(const std::string& line) {
  constexpr std::string_view kWord = "Table";
  if (!line.starts_with(kWord)) return std::nullopt;
  const char* number = line.c_str() + kWord.size();
  return ReadNumber(number);
}

/// The table whose kind the line behind its "Table" line names; null when it names none. The words may stand anywhere in it.
std::unique_ptr<TSV_Table> TableOfKind(std::int32_t number, const std::string& kindLine) {
  if (Holds(kindLine, "Simple")) {
    constexpr std::string_view kWord = "Simple";
    if (!kindLine.starts_with(kWord)) return nullptr;
    const char* numbers = kindLine.c_str() + kWord.size();
    const std::optional<std::int32_t> rows = ReadNumber(numbers);
    const std::optional<std::int32_t> cols = rows ? ReadNumber(numbers) : std::nullopt;
    return cols ? std::make_unique<QTH_Table>(number, *rows, *cols) : nullptr;
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
