#pragma once

#include <map>
#include <memory>
#include <vector>

#include "src/actions/PDFAction.h"
#include "src/common/TagStructureVisitor.h"
#include "src/common/TagStructureWalker.h"
#include "src/tables/AttTable.h"

namespace tgx {

/// Makes tables accessible by the metadata that the exporter left in them: a "Figure" whose "Alt" is "[ATT]" and an XML
/// fragment. Header cells, scopes, identifiers and header references are set as the fragment says, layout tables become
/// "Div", and the placeholders leave the tree.
class AttFixAction : public PDFAction, public TagStructureVisitorBase {
 public:
  AttFixAction();

  /// Always true. Metadata that names more cells than the table has ends with the host's raise; what was changed until then
  /// stays.
  bool Run() override;

  void VisitElement(PDSElement& element) override;
  bool NeedsContentPointers() const override { return false; }

 private:
  enum class Mode { CollectPlaceholders, ScopeHeaderCells, CollectRowsOfCounted, CollectRowsOfDescribed, RetagLayout };

  /// The tables that count, by kind: the first metadata record of each element.
  struct TablesByType {
    std::vector<AttTable*> identified;
    std::vector<QthTable*> counted;
    std::vector<SthTable*> described;
    std::vector<AttTable*> layout;
  };

  void CollectPlaceholder(PDSElement& element);
  TablesByType SortTables() const;
  void FixIdentifiedTable(AttTable& table);
  void FixCountedTable(QthTable& table);
  /// `number` is the first part of the identifiers: the position among the tables of this kind, counted from 1.
  void FixDescribedTable(SthTable& table, int number);
  void RetagLayoutTable(AttTable& table);
  void RemovePlaceholders();

  Mode mode_ = Mode::CollectPlaceholders;
  TagStructureWalker walker_;
  std::vector<std::unique_ptr<AttTable>> tables_;  ///< in the order in which their placeholders were met
  std::vector<PDSElement> rowElements_;            ///< the "TR" elements of the table at hand, those of nested tables too
  std::map<ASAtom, ASAtom> layoutTypeMap_;
  std::vector<PDSElement> placeholders_;
};

}  // namespace tgx
