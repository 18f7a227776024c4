#include "src/common/ContentCommands.h"

#include "src/common/PageReference.h"

namespace tgx {
namespace {

// Raises for an object that is no page of an open document.
void WalkPage(ContentWalker& walker, CosObj cosPage) {
  const ASInt32 number = PDPageNumFromCosObj(cosPage);
  const PDDoc document = PDDocFromCosDoc(CosObjGetDoc(cosPage));
  const PageReference page(PDDocAcquirePage(document, number));
  walker.Walk(page.Get());
}

bool IsDummyImage(PDEElement element) {
  if (PDEObjectGetType(element) != kPDEImage) return false;
  PDEImageAttrs attributes = {};
  PDEImageGetAttrs(element, &attributes, sizeof(attributes));
  return attributes.width == 1 && attributes.height == 1;
}

// Whether the properties of the container hold this MCID.
bool HasMCID(PDEContainer container, ASInt32 mcid) {
  CosObj dict = CosNewNull();
  ASBool isInline = 0;
  if (PDEContainerGetDict(container, &dict, &isInline) != 1 || CosDictKnownKeyString(dict, "MCID") != 1) return false;
  const CosObj value = CosDictGetKeyString(dict, "MCID");
  return CosObjGetType(value) == CosInteger && CosIntegerValue(value) == mcid;
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

void RemoveDummyImagesCmd::Execute() { WalkPage(walker_, cosPage); }

void RemoveDummyImagesCmd::VisitElement(PDEElement& element) {
  if (!IsDummyImage(element)) return;
  // Behind a container of the same list the walker's current content is the container's, and what stands there at the index
  // of the image is what goes. Callers know the outcome and rely on it.
  const PDEContent content = walker_.CurrentContent();
  const ASInt32 index = walker_.CurrentIndex();
  if (index >= 0 && index < PDEContentGetNumElems(content)) walker_.RemoveElement(content, index);
}

void RemoveMarkedContentCmd::Execute() { WalkPage(walker_, cosPage); }

void RemoveMarkedContentCmd::VisitContainer(PDEContainer container) {
  if (!HasMCID(container, mcid)) return;
  const PDEContent content = walker_.TopContent();
  // The container is the element under visit, unless the visitor of another command took it away.
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 index = 0; index < count; ++index) {
    if (PDEContentGetElem(content, index) != container) continue;
    walker_.RemoveElement(content, index);
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
