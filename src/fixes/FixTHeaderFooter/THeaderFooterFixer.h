#pragma once

#include <deque>

#include "src/fixes/RoleDispatchFixer.h"

namespace tgx {

/// Of the heads and feet that a table repeats on every page keeps the first "THead" and the last "TFoot"; the others leave
/// the table and their content becomes artifacts, so that a reader announces them once.
///
/// Heads and feet are collected from one "Table" to the next, those that stand outside a table too.
class THeaderFooterFixer : public RoleDispatchFixer {
 public:
  THeaderFooterFixer();

 private:
  void Begin() override { ClearAll(); }
  void Finish() override;
  bool HasTable() const override { return !tables_.empty(); }

  void HandleTable(const PDSElement& element);
  void HandleHead(const PDSElement& element) { heads_.push_back(element); }
  void HandleFoot(const PDSElement& element) { foots_.push_back(element); }

  void FixTable();
  void RemoveAll(const PDSElement& table, std::deque<PDSElement>& elements);
  void MarkArtifacts(const PDSElement& element);
  void ClearAll();

  std::deque<PDSElement> tables_;
  std::deque<PDSElement> heads_;
  std::deque<PDSElement> foots_;
};

}  // namespace tgx
