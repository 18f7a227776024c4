#include "src/common/AnnotHelpers.h"

#include <cstring>

#include "src/common/ContentCommands.h"
#include "src/common/PageReference.h"

namespace tgx {
namespace {

void PutString(CosObj dict, const char* key, const char* text) {
  CosDictPutKeyString(dict, key, CosNewString(CosObjGetDoc(dict), 0, text, static_cast<ASTArraySize>(std::strlen(text))));
}

// Right bottom, left bottom, right top, left top: the order in which readers take the corners of a highlight.
CosObj QuadPoints(CosDoc document, const ASFixedRect& rect) {
  const ASFixed corners[] = {rect.right, rect.bottom, rect.left, rect.bottom, rect.right, rect.top, rect.left, rect.top};
  const CosObj points = CosNewArray(document, 0, 8);
  ASInt32 index = 0;
  for (const ASFixed corner : corners) CosArrayPut(points, index++, CosNewFixed(document, 0, corner));
  return points;
}

/// Moves the references to marked content of a page from one element to another. `cosPage` is the page where that is not the
/// link's: what has the same MCID there is something else.
void MoveMarkedContent(PDSElement from, PDSElement to, ASInt32 mcid, PDPage linkPage, CosObj cosPage,
                       const ContainersOfMcid& containersOf) {
  const bool isElsewhere = CosObjGetType(cosPage) == CosDict && CosObjEqual(cosPage, PDPageGetCosObj(linkPage)) == 0;
  const PageReference page(isElsewhere ? PDDocAcquirePage(PDPageGetDoc(linkPage), PDPageNumFromCosObj(cosPage))
                                       : PDPageAcquire(linkPage));
  MoveTaggedMcCmd command;
  command.page = page.Get();
  command.source = from;
  command.destination = to;
  command.mcid = mcid;
  std::vector<PDEContainer> containers;
  if (containersOf) {
    containers = containersOf(PDPageGetCosObj(command.page), mcid);
    command.containers = &containers;
  }
  command.Execute();
}

}  // namespace

void PDLinkAnnotHelper::SetAction(PDAction action) { PDLinkAnnotSetAction(GetAnnot(), action); }

void PDLinkAnnotHelper::SetBorderWidth(ASFixed width) {
  PDLinkAnnotBorder border = {};
  PDLinkAnnotGetBorder(GetAnnot(), &border);
  border.width = width;
  PDLinkAnnotSetBorder(GetAnnot(), &border);
}

void PDLinkAnnotHelper::SetTitle(const char* text, ASTArraySize byteCount) { PDAnnotSetTitle(GetAnnot(), text, byteCount); }

void PDLinkAnnotHelper::WrapKidsInLink(PDSElement element, PDPage page, const ContainersOfMcid& containersOf) {
  PDSElement link = CosNewNull();
  PDSElementCreate(PDPageGetDoc(page), &link);
  PDSElementSetType(link, ASAtomFromString("Link"));
  ASInt32 count = PDSElementGetNumKids(element);
  while (count > 0) {
    CosObj kid = CosNewNull();
    ASInt32 mcid = -1;
    CosObj cosPage = CosNewNull();
    const ASAtom type = PDSElementGetKidEx(element, 0, &kid, &mcid, nullptr, &cosPage);
    if (type == ASAtomFromString("MC")) {
      MoveMarkedContent(element, link, mcid, page, cosPage, containersOf);
    } else if (type == ASAtomFromString("OBJR")) {
      PDSElementRemoveKidOBJR(element, kid);
      PDSElementInsertOBJAsKid(link, cosPage, kid, kPDSAfterLast);
    } else if (type == ASAtomFromString("StructElem")) {
      PDSElementRemoveKid(element, kid);
      PDSElementInsertKid(link, kid, kPDSAfterLast);
    }
    // A kid that could not be moved, as content that its page does not have, ends it; what is behind stays too.
    const ASInt32 countNow = PDSElementGetNumKids(element);
    if (countNow == count) break;
    count = countNow;
  }
  PDSElementInsertKid(element, link, kPDSAfterLast);
  PDSElementInsertOBJAsKid(link, PDPageGetCosObj(page), PDAnnotGetCosObj(GetAnnot()), kPDSAfterLast);
}

PDViewDestination CreateViewDestination(PDDoc document, PDPage page, ASAtom fitType, const ASFixedRect& rect, ASFixed zoom,
                                        ASInt32 pageNumber) {
  return PDViewDestCreate(document, page, fitType, &rect, zoom, pageNumber);
}

PDAction NewActionFromDest(PDDoc document, PDViewDestination destination, PDDoc destinationDocument) {
  return PDActionNewFromDest(document, destination, destinationDocument);
}

CosObj CreateHighlightAnnot(PDPage page, const ASFixedRect& rect) {
  const CosDoc document = PDDocGetCosDoc(PDPageGetDoc(page));
  const PDAnnot annot = PDPageAddNewAnnot(page, kPDAnnotAfterLast, ASAtomFromString("Highlight"), &rect);
  const CosObj dict = PDAnnotGetCosObj(annot);
  PutString(dict, "Subj", "Highlight");
  PutString(dict, "Contents", "");
  PutString(dict, "RC", "");
  PutString(dict, "T", "Highlight");
  CosDictPutKeyString(dict, "CA", CosNewFloat(document, 0, 1.0F));
  CosDictPutKeyString(dict, "QuadPoints", QuadPoints(document, rect));
  return dict;
}

void SetHighlightColor(CosObj annot, const PDColorValueRec& color) {
  const CosDoc document = CosObjGetDoc(annot);
  const CosObj components = CosNewArray(document, 0, 3);
  for (ASInt32 index = 0; index < 3; ++index) {
    CosArrayPut(components, index, CosNewFloat(document, 0, static_cast<float>(color.value[index])));
  }
  CosDictPutKeyString(annot, "C", components);
}

void SetHighlightOpacity(CosObj annot, float opacity) {
  CosDictPutKeyString(annot, "CA", CosNewFloat(CosObjGetDoc(annot), 0, opacity));
}

void SetAnnotFlags(CosObj annot, ASUns32 flags) { PDAnnotSetFlags(annot, flags); }

void SetAnnotTitle(CosObj annot, const char* text) { PutString(annot, "T", text); }

void SetAnnotContents(CosObj annot, const char* text) { PutString(annot, "Contents", text); }

}  // namespace tgx
