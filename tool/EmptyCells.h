#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

#include <tgx/host.h>

namespace tgx::tool {

/// The cells of table rows before elements without content are removed: a row that lost its empty cells would no longer
/// stand under the columns of its table.
class EmptyCells {
 public:
  explicit EmptyCells(PDDoc document);

  /// Puts the cells that their rows have lost back into their places, without what they held: that was empty too.
  void PutBack() const;

 private:
  struct Row {
    PDSElement element;
    std::vector<PDSElement> kids;
    std::unordered_set<std::uint64_t> cells;  ///< those that hold nothing but elements, by their keys
  };
  std::vector<Row> rows_;  ///< those with such cells
};

}  // namespace tgx::tool
