#include "host/core/Operations.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/PageList.h"

namespace tgx::host::operations {
namespace {

PageContents& ContentsOf(PDPage page, ASInt32& pageIndex) {
  Document& document = Document::Of(page);
  document.Pages().Of(page);
  pageIndex = static_cast<ASInt32>(PageIndex(page));
  return document.Contents();
}

}  // namespace

PDEContent PDPageAcquirePDEContent(PDPage page, ASExtension) {
  ASInt32 pageIndex = 0;
  PageModel& model = ContentsOf(page, pageIndex).Of(pageIndex);
  ++model.acquired;
  return model.ListHandle(PageModel::RootList());
}

ASInt32 PDPageReleasePDEContent(PDPage page, ASExtension) {
  if (page == nullptr) return 0;
  ASInt32 pageIndex = 0;
  PageModel* model = ContentsOf(page, pageIndex).Find(pageIndex);
  if (model == nullptr || model->acquired == 0) return 0;
  return --model->acquired;
}

ASBool PDPageSetPDEContent(PDPage page, ASExtension) {
  ASInt32 pageIndex = 0;
  PageContents& contents = ContentsOf(page, pageIndex);
  if (PageModel* model = contents.Find(pageIndex)) contents.Commit(*model);
  return 1;
}

}  // namespace tgx::host::operations
