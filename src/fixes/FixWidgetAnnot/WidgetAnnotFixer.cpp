#include "src/fixes/FixWidgetAnnot/WidgetAnnotFixer.h"

#include "src/api/HostException.h"
#include "src/api/StructureError.h"
#include "src/common/AnnotationArrays.h"
#include "src/common/PageReference.h"

namespace tgx {
namespace {

constexpr char kSourceFile[] = "fixes/FixWidgetAnnot/WidgetAnnotFixer";

bool IsButtonWidget(PDAnnot annotation) {
  if (PDAnnotGetSubtype(annotation) != ASAtomFromString("Widget")) return false;
  const CosObj dictionary = PDAnnotGetCosObj(annotation);
  return CosObjGetType(dictionary) == CosDict && CosDictKnownKeyString(dictionary, "FT") == 1 &&
         CosNameValue(CosDictGetKeyString(dictionary, "FT")) == ASAtomFromString("Btn");
}

CosObj ThinBorder(CosDoc document) {
  const CosObj border = CosNewArray(document, 0, 3);
  for (const ASInt32 value : {0, 0, 1}) CosArrayInsert(border, CosArrayLength(border), CosNewInteger(document, 0, value));
  return border;
}

}  // namespace

bool WidgetAnnotFixer::Run(PDDoc document) {
  if (document == nullptr) return false;
  document_ = document;
  return InExceptionFrame([this] { return FixPages(); });
}

bool WidgetAnnotFixer::FixPages() {
  PDSTreeRoot root;
  if (PDDocGetStructTreeRoot(document_, &root) == 0) {
    ReportStructureError("No document structure object found", kSourceFile, 30);
    return false;
  }
  const ASInt32 count = PDDocGetNumPages(document_);
  AnnotationArrays arrays;
  for (ASInt32 i = 0; i < count; ++i) {
    const PageReference page(PDDocAcquirePage(document_, i));
    if (arrays.IsNew(page.Get())) FixAnnotations(page.Get());
  }
  return true;
}

void WidgetAnnotFixer::FixAnnotations(PDPage page) {
  const ASInt32 count = PDPageGetNumAnnots(page);
  for (ASInt32 i = 0; i < count; ++i) {
    const PDAnnot annotation = PDPageGetAnnot(page, i);
    if (IsButtonWidget(annotation)) FixAnnotation(PDAnnotGetCosObj(annotation));
  }
}

void WidgetAnnotFixer::FixAnnotation(CosObj annotation) {
  const CosDoc document = PDDocGetCosDoc(document_);
  CosDictPutKeyString(annotation, "Subtype", CosNewName(document, 0, ASAtomFromString("Stamp")));
  CosDictPutKeyString(annotation, "H", CosNewName(document, 0, ASAtomFromString("I")));
  for (const char* key : {"P", "MK", "Ff", "C", "F", "FT", "T"}) CosDictRemoveKeyString(annotation, key);
  const CosObj appearances = CosDictGetKeyString(annotation, "AP");
  CosDictRemoveKeyString(CosDictGetKeyString(appearances, "N"), "Subtype");
  CosDictPutKeyString(annotation, "Border", ThinBorder(document));
  if (CosDictKnownKeyString(annotation, "AA") != 1) return;
  const CosObj actions = CosDictGetKeyString(annotation, "AA");
  if (CosDictKnownKeyString(actions, "D") != 1) return;
  const CosObj onClick = CosDictGetKeyString(actions, "D");
  CosDictRemoveKeyString(annotation, "AA");
  CosDictPutKeyString(annotation, "A", onClick);
}

}  // namespace tgx
