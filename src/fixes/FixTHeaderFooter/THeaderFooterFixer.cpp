#include "src/fixes/FixTHeaderFooter/THeaderFooterFixer.h"

#include "src/common/ContentUtils.h"
#include "src/common/PageContentGuards.h"

namespace tgx {

THeaderFooterFixer::THeaderFooterFixer() : RoleDispatchFixer({"fixes/FixTHeaderFooter/THeaderFooterFixer", 31}) {
  SetHandler("Table", &THeaderFooterFixer::HandleTable);
  SetHandler("THead", &THeaderFooterFixer::HandleHead);
  SetHandler("TFoot", &THeaderFooterFixer::HandleFoot);
}

void THeaderFooterFixer::HandleTable(const PDSElement& element) {
  // Nothing clears the heads when the first table is met: those before it count as its own.
  if (!tables_.empty()) Finish();
  tables_.push_back(element);
}

void THeaderFooterFixer::Finish() {
  FixTable();
  ClearAll();
}

void THeaderFooterFixer::FixTable() {
  if (!foots_.empty()) foots_.pop_back();
  if (!heads_.empty()) heads_.pop_front();
  if (tables_.empty()) return;
  const PDSElement table = tables_.back();
  RemoveAll(table, heads_);
  RemoveAll(table, foots_);
}

void THeaderFooterFixer::RemoveAll(const PDSElement& table, std::deque<PDSElement>& elements) {
  while (!elements.empty()) {
    const PDSElement element = elements.back();
    elements.pop_back();
    MarkArtifacts(element);
    PDSElementRemoveKid(table, element);
  }
}

void THeaderFooterFixer::MarkArtifacts(const PDSElement& element) {
  const ASInt32 count = PDSElementGetNumKids(element);
  for (ASInt32 i = 0; i < count; ++i) {
    CosObj kid;
    CosObj page;
    void* pointer = nullptr;
    const ASAtom type = PDSElementGetKidWithMCInfo(element, i, &kid, nullptr, &pointer, &page);
    if (type == ASAtomFromString("StructElem")) {
      MarkArtifacts(kid);
    } else if (type == ASAtomFromString("MC") && pointer != nullptr) {
      const McChangeSaver saver(Document(), page);
      auto container = static_cast<PDEContainer>(pointer);
      MarkAsArtifact(&container);
    }
  }
}

void THeaderFooterFixer::ClearAll() {
  tables_.clear();
  heads_.clear();
  foots_.clear();
}

}  // namespace tgx
