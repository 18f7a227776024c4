#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <vector>

namespace tgx {

/// A table that a tab-separated description names by its number in the document, counted from 1. The class tells its kind.
class TSV_Table {
 public:
  explicit TSV_Table(std::int32_t number) : index(number) {}
  virtual ~TSV_Table() = default;

  std::int32_t index;
};

class IDH_Table : public TSV_Table {
 public:
  using TSV_Table::TSV_Table;
};

class Layout_Table : public TSV_Table {
 public:
  using TSV_Table::TSV_Table;
};

class STH_Table : public TSV_Table {
 public:
  using TSV_Table::TSV_Table;
};

class QTH_Table : public TSV_Table {
 public:
  QTH_Table(std::int32_t number, std::int32_t headerRows, std::int32_t headerCols)
      : TSV_Table(number), rows(headerRows), cols(headerCols) {}

  std::int32_t rows;
  std::int32_t cols;
};

/// Reads a tab-separated description of tables: readLines, parse, then the tables. Reports nothing; lines that fit no
/// pattern are passed over.
class TSV_Parser {
 public:
  /// Far above what any exporter writes.
  static constexpr std::size_t kMostLines = 1'000'000;

  virtual ~TSV_Parser() = default;

  /// Decides the tables from the lines, which hold no blank ones. Forgets what it held.
  virtual void parse(const std::vector<std::string>& lines);

  /// Empties `lines` and fills it with the lines of the stream that are not empty. A line has at most 1,023 bytes: reading
  /// ends at a longer one, with what was read until then, and behind one line more than kMostLines.
  virtual void readLines(std::istream& stream, std::vector<std::string>& lines);

  std::string typeFirst;  ///< the two words of the "Type" line, empty without one
  std::string typeSecond;
  std::vector<std::unique_ptr<TSV_Table>> tables;
};

}  // namespace tgx
