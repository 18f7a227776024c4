#include "src/actions/PDFAction.h"

#include <stdexcept>

#include "src/common/PageHelpers.h"

namespace tgx {

PDFAction::~PDFAction() = default;

bool PDFAction::Run() { throw std::runtime_error("not implemented"); }

PDSTreeRoot* PDFAction::AcquireStructTreeRoot(PDSTreeRoot* root) {
  if (PDDocGetStructTreeRoot(document_, root) == 0) PDDocCreateStructTreeRoot(document_, root);
  return root;
}

PDSRoleMap* PDFAction::AcquireRoleMap(PDSRoleMap* map) {
  PDSTreeRoot root = {};
  AcquireStructTreeRoot(&root);
  if (PDSTreeRootGetRoleMap(root, map) == 0) PDSTreeRootCreateRoleMap(root, map);
  return map;
}

void PDFAction::AcquirePages() {
  pages_.clear();
  for (ASInt32 index = 0; index < PDDocGetNumPages(document_); ++index) {
    pages_.push_back(PDDocAcquirePage(document_, index));
  }
}

void PDFAction::CommitPages() {
  for (const PDPage page : pages_) FinishPage(page);
}

}  // namespace tgx
