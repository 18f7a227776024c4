#include "src/fixes/FixTableLayout/TableLayoutFixer.h"

#include <stdexcept>

#include "src/common/ObjectBits.h"

namespace tgx {
namespace {

constexpr std::int64_t kMostAgainPerElement = 4;
constexpr std::int64_t kMostAgainAnyway = 100'000;

}  // namespace

TableLayoutFixer::TableLayoutFixer() : RoleDispatchFixer({"fixes/FixTableLayout/TableLayoutFixer", 32}) {
  SetHandler("Table", &TableLayoutFixer::HandleTable);
  SetHandler("THead", &TableLayoutFixer::HandleHead);
  SetHandler("TFoot", &TableLayoutFixer::HandleFoot);
  SetHandler("TBody", &TableLayoutFixer::HandleBody);
  SetHandler("TR", &TableLayoutFixer::HandleRow);
  SetHandler("TD", &TableLayoutFixer::HandleDataCell);
  SetHandler("TH", &TableLayoutFixer::HandleHeaderCell);
}

void TableLayoutFixer::Begin() {
  tables_.clear();
  relocated_.clear();
  levelsInsideRelocated_ = 0;
  elementsMet_ = elementsMetAgain_ = 0;
}

void TableLayoutFixer::BeforeElement(const PDSElement& element) {
  if (levelsInsideRelocated_ == 0 && !relocated_.contains(BitsOf(element))) {
    ++elementsMet_;
    return;
  }
  ++levelsInsideRelocated_;
  if (++elementsMetAgain_ > kMostAgainPerElement * elementsMet_ + kMostAgainAnyway) {
    throw std::runtime_error("the same elements would have to take the places of too many tables");
  }
}

void TableLayoutFixer::handleOtherElement(const PDSElement& element) {
  if (!tables_.empty()) otherElements_.push_back(element);
}

void TableLayoutFixer::HandleTable(const PDSElement& element) {
  if (!tables_.empty()) {
    Relocate();
    tables_.clear();
  }
  tables_.push_back(element);
}

void TableLayoutFixer::Finish() {
  Relocate();
  tables_.clear();
}

void TableLayoutFixer::AfterElement(bool hadTable) {
  if (levelsInsideRelocated_ > 0) --levelsInsideRelocated_;
  // The end of a table does not end the collecting: only what was collected outside any table is thrown away.
  if (!tables_.empty() || hadTable) return;
  Relocate();
  ClearAll();
}

void TableLayoutFixer::Relocate() {
  if (otherElements_.empty() || tables_.empty()) return;
  PDSElement table = tables_.back();
  PDSElement parent;
  PDSElementGetParent(table, &parent, nullptr);
  const int index = places_.IndexOf(parent, table);
  if (index < 0) return;
  places_.Remove(parent, table);
  while (!otherElements_.empty()) {
    const PDSElement other = otherElements_.back();
    otherElements_.pop_back();
    relocated_.insert(BitsOf(other));
    PDSElement placeholder;
    PDSElementCreate(Document(), &placeholder);
    places_.Insert(parent, placeholder, index - 1);  // after the kid before the table's place
    places_.Replace(parent, placeholder, other);
  }
}

void TableLayoutFixer::ClearAll() {
  for (auto* queue : {&tables_, &heads_, &foots_, &bodies_, &headerCells_, &rows_, &dataCells_, &otherElements_})
    queue->clear();
}

}  // namespace tgx
