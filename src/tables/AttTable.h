#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "src/api/HostBinding.h"
#include "src/tables/AttXmlTable.h"

namespace tgx {

/// What a run keeps of a table's metadata, bound to the "Table" element that it speaks of. Outlives the XML objects.
class AttTable {
 public:
  explicit AttTable(const ATT_XmlTable& source);
  AttTable(std::int32_t type, std::int32_t index);
  virtual ~AttTable() = default;

  /// Whether the table has been bound to an element.
  bool isValid() const;

  PDSElement element;  ///< the null object until bound
  std::int32_t type;   ///< an AttTableType
  std::int32_t index;
};

class QthTable : public AttTable {
 public:
  explicit QthTable(const ATT_QthXmlTable& source);

  std::int32_t rows;  ///< leading rows of column headers
  std::int32_t cols;  ///< leading cells of a row that are row headers
};

struct SthTableCell {
  std::int32_t type = 0;  ///< 0 header cell, 1 data cell
  std::int32_t row = 0;
  std::int32_t index = 0;
  std::vector<std::unique_ptr<SthTableCell>> headers;  ///< references to the cells that head this one; theirs stay empty
};

struct SthTableRow {
  std::int32_t index = 0;
  std::vector<std::unique_ptr<SthTableCell>> cells;
};

class SthTable : public AttTable {
 public:
  /// Keeps two levels of cells; deeper nesting is dropped.
  explicit SthTable(const ATT_SthXmlTable& source);

  std::vector<std::unique_ptr<SthTableRow>> rows;  ///< in document order
};

/// The working table for a piece of metadata.
std::unique_ptr<AttTable> MakeAttTable(const ATT_XmlTable& source);

}  // namespace tgx
