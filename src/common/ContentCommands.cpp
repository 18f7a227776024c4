#include "src/common/ContentCommands.h"

#include "src/common/ContentUtils.h"
#include "src/common/PageReference.h"

namespace tgx {
namespace {

// Raises for an object that is no page of an open document.
PageReference AcquirePage(CosObj cosPage) {
  const ASInt32 number = PDPageNumFromCosObj(cosPage);
  const PDDoc document = PDDocFromCosDoc(CosObjGetDoc(cosPage));
  return PageReference(PDDocAcquirePage(document, number));
}

bool IsDummyImage(PDEElement element) {
  if (PDEObjectGetType(element) != kPDEImage) return false;
  PDEImageAttrs attributes = {};
  PDEImageGetAttrs(element, &attributes, sizeof(attributes));
  return attributes.width == 1 && attributes.height == 1;
}

}  // namespace

void MoveTaggedMcCmd::Execute() {
  if (containers != nullptr) {
    for (const PDEContainer container : *containers) VisitContainer(container);
    return;
  }
  ContentWalker walker;
  walker.AddVisitor(this);
  walker.Walk(page);
}

void MoveTaggedMcCmd::VisitContainer(PDEContainer container) {
  const ASInt32 found = ContentWalker::GetMCID(container);
  if (found == -1 || found != mcid) return;
  PDSElementRemoveKidMC(source, PDPageGetCosObj(page), container);
  PDSElementInsertMCAsKid(destination, PDPageGetCosObj(page), container, kPDSAfterLast);
}

void RemoveDummyImagesCmd::Execute() { walker_.Walk(AcquirePage(cosPage).Get()); }

void RemoveDummyImagesCmd::VisitElement(PDEElement& element) {
  if (!IsDummyImage(element)) return;
  // Behind a container of the same list the walker's current content is the container's, and what stands there at the index
  // of the image is what goes. Callers know the outcome and rely on it.
  const PDEContent content = walker_.CurrentContent();
  const ASInt32 index = walker_.CurrentIndex();
  if (index >= 0 && index < PDEContentGetNumElems(content)) walker_.RemoveElement(content, index);
}

void RemoveMarkedContentCmd::Execute() {
  const PageReference page = AcquirePage(cosPage);
  if (index == nullptr) return walker_.Walk(page.Get());
  index->Remove(page.Get(), mcid);
  PDPageSetPDEContent(page.Get(), ExtensionId());
}

void RemoveMarkedContentCmd::VisitContainer(PDEContainer container) {
  ASInt32 found = -1;
  if (!FindContainerMCID(container, found) || found != mcid) return;
  const PDEContent content = walker_.TopContent();
  // The container is the element under visit, unless the visitor of another command took it away.
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 at = 0; at < count; ++at) {
    if (PDEContentGetElem(content, at) != container) continue;
    walker_.RemoveElement(content, at);
    walker_.SetStop(true);
    return;
  }
}

void RemoveDummyImages(PDDoc document) {
  const ASInt32 count = PDDocGetNumPages(document);
  RemoveDummyImagesCmd command;
  for (ASInt32 index = 0; index < count; ++index) {
    command.cosPage = PDPageGetCosObj(PDDocAcquirePage(document, index));
    command.Execute();
  }
}

}  // namespace tgx
