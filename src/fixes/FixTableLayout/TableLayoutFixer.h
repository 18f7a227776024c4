#pragma once

#include <deque>

#include "src/common/KidFinder.h"
#include "src/fixes/RoleDispatchFixer.h"

namespace tgx {

/// Puts the content of tables that are used for layout in the place of the table.
///
/// Once a "Table" was met, every element of other than the table types that is met after it, inside the table or anywhere
/// later in the tree, is collected until the next "Table" or the end of the tree; then the table leaves its parent and the
/// collected elements stand in its place, in the order in which they were met. Their former parents keep them too.
class TableLayoutFixer : public RoleDispatchFixer {
 public:
  TableLayoutFixer();
  void handleOtherElement(const PDSElement& element) override;

 private:
  void Begin() override { tables_.clear(); }
  void Finish() override;
  void AfterElement(bool hadTable) override;
  bool HasTable() const override { return !tables_.empty(); }

  void HandleTable(const PDSElement& element);
  void HandleHead(const PDSElement& element) { heads_.push_back(element); }
  void HandleFoot(const PDSElement& element) { foots_.push_back(element); }
  void HandleBody(const PDSElement& element) { bodies_.push_back(element); }
  void HandleRow(const PDSElement& element) { rows_.push_back(element); }
  void HandleDataCell(const PDSElement& element) { dataCells_.push_back(element); }
  void HandleHeaderCell(const PDSElement& element) { headerCells_.push_back(element); }

  void Relocate();
  void ClearAll();

  std::deque<PDSElement> tables_;  ///< at most one: the latest
  std::deque<PDSElement> heads_;
  std::deque<PDSElement> foots_;
  std::deque<PDSElement> bodies_;
  std::deque<PDSElement> headerCells_;
  std::deque<PDSElement> rows_;
  std::deque<PDSElement> dataCells_;
  std::deque<PDSElement> otherElements_;
  KidFinder places_;
};

}  // namespace tgx
