#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace tinyxml2 {
class XMLElement;  // NOLINT(cppcoreguidelines-virtual-class-destructor): not ours
}

namespace tgx {

/// A node of the XML description of a table that an exporter leaves in the "Alt" of a placeholder. The objects mirror the
/// XML and know nothing of PDF. Reading never fails: an attribute that is missing or no number counts as 0, and what is not
/// known is passed over.
class ATT_XmlObject {
 public:
  virtual ~ATT_XmlObject() = default;
  virtual void read(const tinyxml2::XMLElement& element);
  /// Writes into `element`, which the caller made; the inverse of `read`.
  virtual void write(tinyxml2::XMLElement& element) const;
};

/// Kinds of table, the "type" of a "Table" element.
enum class AttTableType : std::int32_t {
  IdentifiedHeaders = 1,  ///< header cells are tagged already
  CountedHeaders = 2,     ///< leading rows and columns are headers
  DescribedCells = 3,     ///< every cell is described
  Layout = 4              ///< not a data table
};

class ATT_XmlTable : public ATT_XmlObject {
 public:
  void read(const tinyxml2::XMLElement& element) override;
  void write(tinyxml2::XMLElement& element) const override;
  virtual std::int32_t getType() const = 0;

  std::int32_t index = 0;  ///< the table's number in the metadata
};

class ATT_IdhXmlTable : public ATT_XmlTable {
 public:
  std::int32_t getType() const override { return static_cast<std::int32_t>(AttTableType::IdentifiedHeaders); }
};

class ATT_LayoutXmlTable : public ATT_XmlTable {
 public:
  std::int32_t getType() const override { return static_cast<std::int32_t>(AttTableType::Layout); }
};

class ATT_QthXmlTable : public ATT_XmlTable {
 public:
  void read(const tinyxml2::XMLElement& element) override;
  void write(tinyxml2::XMLElement& element) const override;
  std::int32_t getType() const override { return static_cast<std::int32_t>(AttTableType::CountedHeaders); }

  std::int32_t rows = 0;  ///< leading rows of column headers
  std::int32_t cols = 0;  ///< leading cells of a row that are row headers
};

/// A cell; nested in another one it names, by `row` and `index`, a header cell that heads the outer one.
class ATT_SthXmlTableCell : public ATT_XmlObject {
 public:
  void read(const tinyxml2::XMLElement& element) override;
  void write(tinyxml2::XMLElement& element) const override;
  /// The nested cells; they stay this object's.
  std::vector<ATT_SthXmlTableCell*> getCells() const;

  std::int32_t type = -1;   ///< 0 header cell, 1 data cell
  std::int32_t row = -1;    ///< second number of the cell's identifier
  std::int32_t index = -1;  ///< third number of the cell's identifier
  std::vector<std::unique_ptr<ATT_SthXmlTableCell>> cells;
};

class ATT_SthXmlTableRow : public ATT_XmlObject {
 public:
  void read(const tinyxml2::XMLElement& element) override;
  void write(tinyxml2::XMLElement& element) const override;
  /// The cells; they stay this object's.
  std::vector<ATT_SthXmlTableCell*> getCells() const;

  std::int32_t index = 0;
  std::vector<std::unique_ptr<ATT_SthXmlTableCell>> cells;
};

class ATT_SthXmlTable : public ATT_XmlTable {
 public:
  void read(const tinyxml2::XMLElement& element) override;
  void write(tinyxml2::XMLElement& element) const override;
  std::int32_t getType() const override { return static_cast<std::int32_t>(AttTableType::DescribedCells); }
  /// The rows; they stay this object's.
  std::vector<ATT_SthXmlTableRow*> getRows() const;

  std::vector<std::unique_ptr<ATT_SthXmlTableRow>> rows;
};

/// A new, empty table of a type number; null for a number that names no kind.
std::unique_ptr<ATT_XmlTable> createTable(std::int32_t type);

}  // namespace tgx
