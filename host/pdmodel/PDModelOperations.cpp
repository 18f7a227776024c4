#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/core/Paths.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/Open.h"
#include "host/pdmodel/PageList.h"

namespace tgx::host::operations {

PDDoc PDDocOpen(ASPathName path, ASFileSys, PDAuthProc, ASBool doRepair) {
  OpenOptions options;
  options.repair = doRepair != 0;
  return OpenFile(PathOf(path), options).Handle();
}

void PDDocClose(PDDoc doc) { Document::Close(Document::Of(doc)); }

PDDoc PDDocAcquire(PDDoc doc) {
  Document::Of(doc);
  return doc;
}

void PDDocRelease(PDDoc doc) { Document::Of(doc); }

CosDoc PDDocGetCosDoc(PDDoc doc) { return Document::Of(doc).CosHandle(); }
PDDoc PDDocFromCosDoc(CosDoc cosDoc) { return cosDoc == nullptr ? nullptr : Document::Of(cosDoc).Handle(); }

ASInt32 PDDocGetNumPages(PDDoc doc) { return Document::Of(doc).Pages().Count(); }

PDPage PDDocAcquirePage(PDDoc doc, ASInt32 index) {
  Document& document = Document::Of(doc);
  ++document.Pages().At(index).references;
  return PageHandle(document, static_cast<ASUns32>(index));
}

PDPage PDPageAcquire(PDPage page) {
  ++Document::Of(page).Pages().Of(page).references;
  return page;
}

void PDPageRelease(PDPage page) {
  Page& entry = Document::Of(page).Pages().Of(page);
  if (entry.references > 0) --entry.references;
}

CosObj PDPageGetCosObj(PDPage page) {
  Document& document = Document::Of(page);
  return document.HandleOf(document.Pages().Of(page).dictionary);
}

PDDoc PDPageGetDoc(PDPage page) {
  Document& document = Document::Of(page);
  document.Pages().Of(page);
  return document.Handle();
}

ASInt32 PDPageGetNumber(PDPage page) {
  Document::Of(page).Pages().Of(page);
  return static_cast<ASInt32>(PageIndex(page));
}

ASInt32 PDPageNumFromCosObj(CosObj page) {
  const QPDFObjectHandle& object = IsNull(page) ? QPDFObjectHandle::newNull() : ObjectOf(page);
  if (!QPDFObjectHandle(object).isDictionary())
    throw HostError(kASWrongType, "a page number is asked for what is no dictionary");
  const ASInt32 index = Document::Of(page).Pages().IndexOf(object);
  if (index < 0) throw HostError(kASNotFound, Document::Of(page).Name() + ": the dictionary is no page of the document");
  return index;
}

void PDPageNotifyContentsDidChange(PDPage page) { Document::Of(page).Pages().Of(page); }

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-parameter"
#define STUB(result, name, parameters) \
  result name parameters { throw HostError(kASNotSupported, #name " is not available"); }
STUB(void, PDPageGetCropBox, (PDPage page, ASFixedRect* box))
STUB(ASInt32, PDPageGetNumAnnots, (PDPage page))
STUB(PDAnnot, PDPageGetAnnot, (PDPage page, ASInt32 index))
STUB(PDAnnot, PDPageCreateAnnot, (PDPage page, ASAtom subtype, const ASFixedRect* rect))
STUB(PDAnnot, PDPageAddNewAnnot, (PDPage page, ASInt32 addAfter, ASAtom subtype, const ASFixedRect* rect))
STUB(void, PDPageAddAnnot, (PDPage page, ASInt32 addAfter, PDAnnot annot))
STUB(void, PDPageRemoveAnnot, (PDPage page, ASInt32 index))
STUB(CosObj, PDAnnotGetCosObj, (PDAnnot annot))
STUB(ASAtom, PDAnnotGetSubtype, (PDAnnot annot))
STUB(void, PDAnnotSetFlags, (PDAnnot annot, ASUns32 flags))
STUB(void, PDAnnotSetTitle, (PDAnnot annot, const char* bytes, ASTArraySize count))
STUB(void, PDLinkAnnotSetAction, (PDLinkAnnot link, PDAction action))
STUB(void, PDLinkAnnotGetBorder, (PDLinkAnnot link, PDLinkAnnotBorder* border))
STUB(void, PDLinkAnnotSetBorder, (PDLinkAnnot link, const PDLinkAnnotBorder* border))
STUB(PDViewDestination, PDViewDestCreate,
     (PDDoc doc, PDPage page, ASAtom fitType, const ASFixedRect* rect, ASFixed zoom, ASInt32 pageNumber))
STUB(PDAction, PDActionNewFromDest, (PDDoc doc, PDViewDestination dest, PDDoc destDoc))
#undef STUB
#pragma GCC diagnostic pop

}  // namespace tgx::host::operations
