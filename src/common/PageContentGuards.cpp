#include "src/common/PageContentGuards.h"

namespace tgx {
namespace {

// None of the two raises for a page that is open, so destructors may call them.
void CommitContent(PDPage page) {
  PDPageSetPDEContent(page, ExtensionId());
  PDPageReleasePDEContent(page, ExtensionId());
}

}  // namespace

McChangeSaver::McChangeSaver(PDDoc document, CosObj cosPage)
    : page_(PDDocAcquirePage(document, PDPageNumFromCosObj(cosPage))), document_(document) {
  PDPageAcquirePDEContent(page_.Get(), ExtensionId());
}

McChangeSaver::~McChangeSaver() { CommitContent(page_.Get()); }

PageContent::PageContent(PDDoc document, PDPage page)
    : page_(page), document_(document), content_(PDPageAcquirePDEContent(page, ExtensionId())) {}

PageContent::~PageContent() { CommitContent(page_.Get()); }

AcquiredContent::AcquiredContent(PDPage page) : page_(page), content_(PDPageAcquirePDEContent(page, ExtensionId())) {}

AcquiredContent::~AcquiredContent() { PDPageReleasePDEContent(page_, ExtensionId()); }

}  // namespace tgx
