#include <string>

#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/cos/CosAccess.h"
#include "host/pdmodel/AnnotationLists.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/Edits.h"
#include "host/pdmodel/PageBoxes.h"
#include "host/pdmodel/PageList.h"

namespace tgx::host::operations {

PDPage PDDocAcquirePage(PDDoc doc, ASInt32 index) {
  PageList& pages = Document::Of(doc).Pages();
  ++pages.At(index).references;
  return pages.HandleAt(index);
}

PDPage PDPageAcquire(PDPage page) {
  ++Document::Of(page).Pages().Of(page).references;
  return page;
}

void PDPageRelease(PDPage page) {
  Page& released = Document::Of(page).Pages().Of(page);
  if (released.references > 0) --released.references;
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

ASInt32 PDPageGetNumber(PDPage page) { return Document::Of(page).Pages().NumberOf(page); }

ASInt32 PDPageNumFromCosObj(CosObj page) {
  const QPDFObjectHandle dictionary = SlotOfType(page, CosDict).object;
  Document& document = Document::Of(page);
  const ASInt32 number = document.Pages().IndexOf(dictionary);
  if (number < 0) throw HostError(kASNotFound, document.Name() + ": " + Describe(page) + " is no page of the document");
  return number;
}

void PDPageNotifyContentsDidChange(PDPage page) { Document::Of(page).Pages().Of(page); }

void PDPageGetCropBox(PDPage page, ASFixedRect* box) {
  const QPDFObjectHandle dictionary = Document::Of(page).Pages().Of(page).dictionary;
  if (box != nullptr) *box = CropBoxOf(dictionary);
}

ASInt32 PDPageGetNumAnnots(PDPage page) {
  Document& document = Document::Of(page);
  return document.Annotations().Count(document.Pages().Of(page).dictionary);
}

PDAnnot PDPageGetAnnot(PDPage page, ASInt32 index) {
  Document& document = Document::Of(page);
  return document.HandleOf(document.Annotations().At(document.Pages().Of(page).dictionary, index));
}

PDAnnot PDPageCreateAnnot(PDPage page, ASAtom subtype, const ASFixedRect* rect) {
  Document& document = Document::Of(page);
  document.Pages().Of(page);
  return document.HandleOf(NewAnnotation(document, subtype, rect));
}

PDAnnot PDPageAddNewAnnot(PDPage page, ASInt32 addAfter, ASAtom subtype, const ASFixedRect* rect) {
  Document& document = Document::Of(page);
  const QPDFObjectHandle dictionary = document.Pages().Of(page).dictionary;
  const QPDFObjectHandle annotation = NewAnnotation(document, subtype, rect);
  document.Annotations().Insert(dictionary, addAfter, annotation);
  return document.HandleOf(annotation);
}

void PDPageAddAnnot(PDPage page, ASInt32 addAfter, PDAnnot annot) {
  Document& document = Document::Of(page);
  const QPDFObjectHandle dictionary = document.Pages().Of(page).dictionary;
  document.Annotations().Insert(dictionary, addAfter, OwnDictionary(document, annot, "the annotation"));
}

void PDPageRemoveAnnot(PDPage page, ASInt32 index) {
  Document& document = Document::Of(page);
  document.Annotations().Remove(document.Pages().Of(page).dictionary, index);
}

}  // namespace tgx::host::operations
