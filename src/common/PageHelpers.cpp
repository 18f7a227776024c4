#include "src/common/PageHelpers.h"

#include "src/common/PageFinder.h"

namespace tgx {

void FinishPage(PDPage page) {
  PDPageSetPDEContent(page, ExtensionId());
  PDPageReleasePDEContent(page, ExtensionId());
  PDPageNotifyContentsDidChange(page);
  PDPageRelease(page);
}

PDPage AcquirePageByCosPage(CosObj cosPage) { return AcquirePageByCos(cosPage); }

PDPageHelper::PDPageHelper(PDPage page) : page_(PDPageAcquire(page)) {}

void PDPageHelper::AddAnnot(ASInt32 index, PDAnnot annot) { PDPageAddAnnot(page_.Get(), index, annot); }

PDAnnot PDPageHelper::CreateLinkAnnot(const ASFixedRect& rect) {
  return PDPageCreateAnnot(page_.Get(), ASAtomFromString("Link"), &rect);
}

}  // namespace tgx
