#pragma once

#include <cstdint>
#include <deque>
#include <unordered_set>

#include "src/common/KidFinder.h"
#include "src/fixes/RoleDispatchFixer.h"

namespace tgx {

/// Puts the content of tables that are used for layout in the place of the table.
///
/// Once a "Table" was met, every element of other than the table types that is met after it, inside the table or anywhere
/// later in the tree, is collected until the next "Table" or the end of the tree; then the table leaves its parent and the
/// collected elements stand in its place, in the order in which they were met. Their former parents keep them too, so that
/// the walk can meet them again and again, with all below them: a run in which that comes to a multiple of the tree fails.
class TableLayoutFixer : public RoleDispatchFixer {
 public:
  TableLayoutFixer();
  void handleOtherElement(const PDSElement& element) override;

 private:
  void Begin() override;
  void BeforeElement(const PDSElement& element) override;
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

  std::unordered_set<std::uint64_t> relocated_;
  int levelsInsideRelocated_ = 0;  ///< of the element that is being handled
  std::int64_t elementsMet_ = 0;
  std::int64_t elementsMetAgain_ = 0;  ///< relocated ones and what lies below them
};

}  // namespace tgx
