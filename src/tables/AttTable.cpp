#include "src/tables/AttTable.h"

namespace tgx {
namespace {

std::unique_ptr<SthTableCell> CopyOf(const ATT_SthXmlTableCell& source) {
  auto cell = std::make_unique<SthTableCell>();
  cell->type = source.type;
  cell->row = source.row;
  cell->index = source.index;
  return cell;
}

}  // namespace

AttTable::AttTable(const ATT_XmlTable& source) : AttTable(source.getType(), source.index) {}

AttTable::AttTable(std::int32_t tableType, std::int32_t tableIndex)
    : element(CosNewNull()), type(tableType), index(tableIndex) {}

bool AttTable::isValid() const { return CosObjEqual(element, CosNewNull()) == 0; }

QthTable::QthTable(const ATT_QthXmlTable& source) : AttTable(source), rows(source.rows), cols(source.cols) {}

SthTable::SthTable(const ATT_SthXmlTable& source) : AttTable(source) {
  for (const ATT_SthXmlTableRow* sourceRow : source.getRows()) {
    auto& row = rows.emplace_back(std::make_unique<SthTableRow>());
    row->index = sourceRow->index;
    for (const ATT_SthXmlTableCell* sourceCell : sourceRow->getCells()) {
      auto& cell = row->cells.emplace_back(CopyOf(*sourceCell));
      for (const ATT_SthXmlTableCell* header : sourceCell->getCells()) cell->headers.push_back(CopyOf(*header));
    }
  }
}

std::unique_ptr<AttTable> MakeAttTable(const ATT_XmlTable& source) {
  switch (static_cast<AttTableType>(source.getType())) {
    case AttTableType::IdentifiedHeaders:
    case AttTableType::Layout:
      return std::make_unique<AttTable>(source);
    case AttTableType::CountedHeaders:
      return std::make_unique<QthTable>(dynamic_cast<const ATT_QthXmlTable&>(source));
    case AttTableType::DescribedCells:
      return std::make_unique<SthTable>(dynamic_cast<const ATT_SthXmlTable&>(source));
  }
  return nullptr;
}

}  // namespace tgx
