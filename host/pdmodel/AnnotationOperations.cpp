#include <string>

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/cos/CosAccess.h"
#include "host/cos/Names.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/Edits.h"
#include "host/pdmodel/Links.h"
#include "host/pdmodel/PageList.h"

namespace tgx::host::operations {
namespace {

/// An annotation of an open document.
struct Annotation {
  explicit Annotation(PDAnnot handle) : document(Document::Of(handle)), dictionary(SlotOfType(handle, CosDict).object) {}
  Document& document;
  QPDFObjectHandle dictionary;
};

}  // namespace

CosObj PDAnnotGetCosObj(PDAnnot annot) {
  const Annotation annotation(annot);
  return annot;
}

ASAtom PDAnnotGetSubtype(PDAnnot annot) {
  Annotation annotation(annot);
  QPDFObjectHandle subtype = annotation.dictionary.getKey("/Subtype");
  return subtype.isName() ? AtomOfQpdfName(subtype.getName()) : ASAtomNull;
}

void PDAnnotSetFlags(PDAnnot annot, ASUns32 flags) {
  const Annotation annotation(annot);
  SetEntry(annotation.document, annotation.dictionary, "F", QPDFObjectHandle::newInteger(flags));
}

void PDAnnotSetTitle(PDAnnot annot, const char* bytes, ASTArraySize count) {
  const Annotation annotation(annot);
  if (count < 0 || (bytes == nullptr && count > 0))
    throw HostError(kASBadParameter, "the title of an annotation has no bytes");
  const std::string title(bytes == nullptr ? "" : bytes, static_cast<std::size_t>(count));
  SetEntry(annotation.document, annotation.dictionary, "T", QPDFObjectHandle::newString(title));
}

void PDLinkAnnotSetAction(PDLinkAnnot link, PDAction action) {
  const Annotation annotation(link);
  SetEntry(annotation.document, annotation.dictionary, "A", OwnDictionary(annotation.document, action, "the action"));
  RemoveEntry(annotation.document, annotation.dictionary, "Dest");
}

void PDLinkAnnotGetBorder(PDLinkAnnot link, PDLinkAnnotBorder* border) {
  const Annotation annotation(link);
  if (border != nullptr) *border = BorderOf(annotation.dictionary);
}

void PDLinkAnnotSetBorder(PDLinkAnnot link, const PDLinkAnnotBorder* border) {
  const Annotation annotation(link);
  if (border == nullptr) throw HostError(kASBadParameter, "the border is null");
  SetEntry(annotation.document, annotation.dictionary, "Border", BorderArray(*border));
}

PDViewDestination PDViewDestCreate(PDDoc doc, PDPage page, ASAtom fitType, const ASFixedRect* rect, ASFixed zoom,
                                   ASInt32 pageNumber) {
  Document& document = Document::Of(doc);
  QPDFObjectHandle target = QPDFObjectHandle::newInteger(pageNumber);
  if (page != nullptr) {
    if (&Document::Of(page) != &document) {
      throw HostError(kASBadParameter, document.Name() + ": the page of the destination belongs to another document");
    }
    target = document.Pages().Of(page).dictionary;
  }
  return document.HandleOf(DestinationArray(target, fitType, rect, zoom));
}

PDAction PDActionNewFromDest(PDDoc doc, PDViewDestination dest, PDDoc destDoc) {
  Document& document = Document::Of(doc);
  if (&Document::Of(destDoc) != &document || (!IsNull(dest) && dest.b != document.Serial())) {
    throw HostError(kASBadParameter, document.Name() + ": the destination of the action is in another document");
  }
  SlotOf(dest);
  auto action = QPDFObjectHandle::newDictionary();
  action.replaceKey("/S", QPDFObjectHandle::newName("/GoTo"));
  action.replaceKey("/D", SlotOfType(dest, CosArray).object);
  return document.HandleOf(document.Pdf().makeIndirectObject(action));
}

}  // namespace tgx::host::operations
