#include "src/actions/AttFix/AttFixAction.h"

#include <algorithm>
#include <set>
#include <string>

#include "src/actions/AttFix/CellAttributes.h"
#include "src/common/TextEncoding.h"
#include "src/tables/AttXmlReader.h"

namespace tgx {
namespace {

constexpr char kMarker[] = "[ATT]";
constexpr std::size_t kMarkerLength = sizeof kMarker - 1;

/// "Alt" in UTF-8. Throws "wrong vector range" for a text shorter than three bytes.
std::string ReadAlt(PDSElement& element) {
  const ASInt32 length = PDSElementGetAlt(element, nullptr);
  std::vector<ASUns8> bytes(static_cast<std::size_t>(length) * 2);
  PDSElementGetAlt(element, bytes.data());
  bytes.resize(static_cast<std::size_t>(length));
  std::vector<ASUns8> text;
  Utf16BomToUtf8(bytes, text);
  return {text.begin(), text.end()};
}

/// The metadata behind the marker; null when the text carries none, or that of several tables.
std::unique_ptr<AttTable> ReadMetadata(const std::string& xml) {
  std::vector<std::unique_ptr<ATT_XmlTable>> tables;
  ATT_XmlReader().parseTables(xml.data(), static_cast<std::int32_t>(xml.size()), tables);
  return tables.size() == 1 ? MakeAttTable(*tables.front()) : nullptr;
}

PDSElement KidAt(const PDSElement& element, ASInt32 index) {
  CosObj kid;
  PDSElementGetKid(element, index, &kid, nullptr, nullptr);
  return kid;
}

bool HasType(const PDSElement& element, const char* type) { return PDSElementGetType(element) == ASAtomFromString(type); }

}  // namespace

AttFixAction::AttFixAction() {
  walker_.AddVisitor(this);
  for (const char* type : {"Table", "THead", "TBody", "TFoot", "TR", "TH", "TD"}) {
    layoutTypeMap_[ASAtomFromString(type)] = ASAtomFromString("Div");
  }
}

bool AttFixAction::Run() {
  tables_.clear();
  placeholders_.clear();
  mode_ = Mode::CollectPlaceholders;
  PDSTreeRoot root;
  walker_.Walk(*AcquireStructTreeRoot(&root));
  const TablesByType tables = SortTables();
  mode_ = Mode::ScopeHeaderCells;
  for (AttTable* table : tables.identified) FixIdentifiedTable(*table);
  mode_ = Mode::CollectRowsOfCounted;
  for (QthTable* table : tables.counted) FixCountedTable(*table);
  mode_ = Mode::CollectRowsOfDescribed;
  int number = 0;
  for (SthTable* table : tables.described) FixDescribedTable(*table, ++number);
  mode_ = Mode::RetagLayout;
  for (AttTable* table : tables.layout) RetagLayoutTable(*table);
  RemovePlaceholders();
  return true;
}

void AttFixAction::VisitElement(PDSElement& element) {
  switch (mode_) {
    case Mode::CollectPlaceholders:
      CollectPlaceholder(element);
      break;
    case Mode::ScopeHeaderCells:
      if (HasType(element, "TH")) SetScope(element, "Column");
      break;
    case Mode::CollectRowsOfCounted:
    case Mode::CollectRowsOfDescribed:
      if (HasType(element, "TR")) rowElements_.push_back(element);
      break;
    case Mode::RetagLayout:
      if (const auto mapped = layoutTypeMap_.find(PDSElementGetType(element)); mapped != layoutTypeMap_.end()) {
        PDSElementSetType(element, mapped->second);
      }
      break;
  }
}

void AttFixAction::CollectPlaceholder(PDSElement& element) {
  if (PDSElementHasAlt(element) != 1 || !HasType(element, "Figure")) return;
  const std::string text = ReadAlt(element);
  if (text.size() <= kMarkerLength || text.compare(0, kMarkerLength, kMarker) != 0) return;
  if (auto table = ReadMetadata(text.substr(kMarkerLength))) {
    table->element = TagStructureWalker::FindAncestorByType(element, "Table");
    tables_.push_back(std::move(table));
  }
  placeholders_.push_back(element);
}

AttFixAction::TablesByType AttFixAction::SortTables() const {
  TablesByType sorted;
  std::set<std::pair<ASUns32, ASUns32>> seen;
  for (const auto& table : tables_) {
    if (!table->isValid() || !seen.emplace(table->element.a, table->element.b).second) continue;
    switch (static_cast<AttTableType>(table->type)) {
      case AttTableType::IdentifiedHeaders:
        sorted.identified.push_back(table.get());
        break;
      case AttTableType::CountedHeaders:
        sorted.counted.push_back(dynamic_cast<QthTable*>(table.get()));
        break;
      case AttTableType::DescribedCells:
        sorted.described.push_back(dynamic_cast<SthTable*>(table.get()));
        break;
      case AttTableType::Layout:
        sorted.layout.push_back(table.get());
        break;
    }
  }
  return sorted;
}

void AttFixAction::FixIdentifiedTable(AttTable& table) { walker_.WalkKids(table.element); }

void AttFixAction::FixCountedTable(QthTable& table) {
  rowElements_.clear();
  walker_.WalkKids(table.element);
  std::vector<ASInt32> kidCounts;
  for (const PDSElement& row : rowElements_) kidCounts.push_back(PDSElementGetNumKids(row));
  const ASInt32 maxKids = kidCounts.empty() ? 0 : *std::max_element(kidCounts.begin(), kidCounts.end());
  for (std::size_t r = 0; r < rowElements_.size(); ++r) {
    // A row that is shorter than the longest, for instance through spanned cells, has correspondingly fewer header cells.
    const std::int64_t headerCells = std::int64_t{table.cols} - maxKids + kidCounts[r];
    const bool isHeaderRow = static_cast<std::int64_t>(r) < table.rows;
    for (ASInt32 c = 0; c < kidCounts[r]; ++c) {
      if (!isHeaderRow && c >= headerCells) break;
      const PDSElement cell = KidAt(rowElements_[r], c);
      PDSElementSetType(cell, ASAtomFromString("TH"));
      SetScope(cell, isHeaderRow ? "Column" : "Row");
    }
  }
}

void AttFixAction::FixDescribedTable(SthTable& table, int number) {
  rowElements_.clear();
  walker_.WalkKids(table.element);
  for (std::size_t r = 0; r < table.rows.size(); ++r) {
    const auto& cells = table.rows[r]->cells;
    for (std::size_t c = 0; c < cells.size(); ++c) {
      // Metadata for a row that the table lacks ends like that for a cell that a row lacks: with the host's raise.
      const PDSElement row = r < rowElements_.size() ? rowElements_[r] : CosNewNull();
      const PDSElement cell = KidAt(row, static_cast<ASInt32>(c));
      if (cells[c]->type == 0) PDSElementSetType(cell, ASAtomFromString("TH"));
      if (cells[c]->type == 1) PDSElementSetType(cell, ASAtomFromString("TD"));
      SetIdentifiers(cell, number, *cells[c]);
    }
  }
}

void AttFixAction::RetagLayoutTable(AttTable& table) {
  walker_.WalkKids(table.element);
  PDSElementSetType(table.element, ASAtomFromString("Div"));
}

void AttFixAction::RemovePlaceholders() {
  for (const PDSElement& placeholder : placeholders_) {
    PDSElement parent;
    PDSElementGetParent(placeholder, &parent, nullptr);
    PDSElementRemoveKid(parent, placeholder);
  }
  placeholders_.clear();
}

}  // namespace tgx
