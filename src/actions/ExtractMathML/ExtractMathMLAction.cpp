#include "src/actions/ExtractMathML/ExtractMathMLAction.h"

#include "src/common/AnnotHelpers.h"
#include "src/common/PageReference.h"
#include "src/common/StructureUtils.h"
#include "src/common/TagStructureWalker.h"

namespace tgx {
namespace {

constexpr ASUns32 kPrintFlag = 4;
constexpr float kHighlightOpacity = 0.3F;

/// The page of the first kid that has one, else the null object.
CosObj PageOfKids(const PDSElement& element) {
  const ASInt32 count = PDSElementGetNumKids(element);
  for (ASInt32 i = 0; i < count; ++i) {
    CosObj kid = CosNewNull();
    CosObj page = CosNewNull();
    PDSElementGetKid(element, i, &kid, nullptr, &page);
    if (CosObjGetType(page) != CosNull) return page;
  }
  return CosNewNull();
}

PDSElement NewElement(PDDoc document, const char* type) {
  PDSElement element = CosNewNull();
  PDSElementCreate(document, &element);
  PDSElementSetType(element, ASAtomFromString(type));
  return element;
}

void SetYellow(CosObj annotation) {
  const CosDoc document = CosObjGetDoc(annotation);
  const CosObj color = CosNewArray(document, 0, 3);
  for (const float part : {1.0F, 1.0F, 0.0F}) CosArrayInsert(color, CosArrayLength(color), CosNewFloat(document, 0, part));
  CosDictPutKeyString(annotation, "C", color);
}

}  // namespace

ExtractMathMLAction::ExtractMathMLAction() : holder_(CosNewNull()) {}

bool ExtractMathMLAction::Run() {
  AcquirePages();
  formulas_.clear();
  holder_ = CosNewNull();
  TagStructureWalker walker;
  walker.AddVisitor(this);
  PDSTreeRoot root = CosNewNull();
  walker.Walk(*AcquireStructTreeRoot(&root));
  for (auto& [id, entry] : formulas_) {
    if (!TagStructureWalker::IsNull(entry.start) && !TagStructureWalker::IsNull(entry.end)) BuildFormula(entry);
  }
  if (!formulas_.empty() && !TagStructureWalker::IsNull(holder_)) RemoveElementWithContent(holder_, removals_);
  CommitPages();
  return true;
}

void ExtractMathMLAction::VisitElement(PDSElement& element) {
  std::vector<char> title;
  GetTitle(element, title);
  if (IsFormulaHolderTitle({title.begin(), title.end()})) {
    holder_ = element;
    return;
  }
  if (PDSElementHasAlt(element) == 0) return;
  std::vector<char> alt;
  if (GetAlt(element, alt) == 0) return;
  if (const auto marker = ParseFormulaMarker({alt.begin(), alt.end()})) TakeMarker(element, *marker);
}

void ExtractMathMLAction::TakeMarker(PDSElement& element, const FormulaMarker& marker) {
  FormulaEntry& entry = formulas_.try_emplace(marker.id, FormulaEntry{CosNewNull(), CosNewNull(), {}}).first->second;
  switch (marker.kind) {
    case FormulaMarker::Kind::Start:
      entry.start = element;
      break;
    case FormulaMarker::Kind::End:
      entry.end = element;
      break;
    case FormulaMarker::Kind::Content:
      entry.contents[marker.name] = {element, marker.name, marker.text};
      break;
  }
}

void ExtractMathMLAction::BuildFormula(FormulaEntry& entry) {
  PDSElement annot = NewElement(GetDocument(), "Annot");
  PDSElement parent = GetParent(entry.start);
  const CosObj page = PageOfKids(parent);
  const CosObj annotation = CreateAnnotation(entry, parent, page);
  PDSElementInsertOBJAsKid(annot, page, annotation, kPDSAfterLast);
  PDSElement formula = NewElement(GetDocument(), "Formula");
  const std::vector<StructureKid> kids = kids_.Between(parent, entry.start, entry.end);
  for (const StructureKid& kid : kids) kids_.Detach(kid, GetDocument());
  for (const StructureKid& kid : kids) Attach(kid, formula, GetDocument());
  PDSElementInsertKid(annot, formula, kPDSAfterLast);
  kids_.InsertBehind(parent, annot, kids_.IndexOf(parent, entry.start));
  RemoveMarker(entry.start);
  RemoveMarker(entry.end);
}

void ExtractMathMLAction::RemoveMarker(PDSElement& marker) {
  const PDSElement parent = GetParent(marker);
  const int place = kids_.IndexOf(parent, marker);
  const std::size_t withOthers = removals_.withOthers;
  RemoveElementWithContent(marker, removals_);
  kids_.NoteRemoval(parent, place);
  if (removals_.withOthers != withOthers) kids_.Forget();
}

CosObj ExtractMathMLAction::CreateAnnotation(FormulaEntry& entry, PDSElement& parent, CosObj cosPage) {
  const ASFixedRect box = kids_.BoxOf(parent);
  const PageReference page(PDDocAcquirePage(GetDocument(), PDPageNumFromCosObj(cosPage)));
  const CosObj annotation = CreateHighlightAnnot(page.Get(), box);
  SetYellow(annotation);
  SetHighlightOpacity(annotation, kHighlightOpacity);
  SetAnnotFlags(annotation, kPrintFlag);
  SetAnnotTitle(annotation, "MathML");
  SetAnnotContents(annotation, entry.contents["MathML"].text.c_str());
  return annotation;
}

}  // namespace tgx
