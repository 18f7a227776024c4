#include "src/actions/FixGroupTags/FixGroupTagsAction.h"

#include "src/common/ObjectBits.h"
#include "src/common/StructureUtils.h"
#include "src/common/TagStructureWalker.h"

namespace tgx {
namespace {

bool Holds(PDSElement element, ASAtom type) {
  return PDSElementGetType(element) == type ||
         !TagStructureWalker::IsNull(TagStructureWalker::FindDescendantByType(element, type));
}

}  // namespace

FixGroupTagsAction::FixGroupTagsAction()
    : roles_{{ASAtomFromString("GT_Caption"), GroupKind::kCaption},
             {ASAtomFromString("GT_CaptionListAtTop"), GroupKind::kCaptionListAtTop},
             {ASAtomFromString("GT_CaptionTableAtTop"), GroupKind::kCaptionTableAtTop},
             {ASAtomFromString("GT_CaptionTableAtBottom"), GroupKind::kCaptionTableAtBottom},
             {ASAtomFromString("GT_Index"), GroupKind::kIndex},
             {ASAtomFromString("GT_BlockQuote"), GroupKind::kBlockQuote},
             {ASAtomFromString("GT_Figure"), GroupKind::kFigure},
             {ASAtomFromString("GT_Formula"), GroupKind::kFormula}} {}

bool FixGroupTagsAction::Run() {
  TagStructureWalker walker;
  walker.AddVisitor(this);
  PDSTreeRoot root = CosNewNull();
  AcquireStructTreeRoot(&root);
  walker.Walk(root);
  if (work_.empty()) return true;
  for (const Work& work : work_) {
    if (!grouped_.contains(BitsOf(work.element))) Handle(work);
  }
  work_.clear();
  UnmapPrivateTypes();
  return true;
}

void FixGroupTagsAction::VisitElement(PDSElement& element) {
  const auto role = roles_.find(PDSElementGetType(element));
  if (role != roles_.end()) work_.push_back({element, role->second});
}

void FixGroupTagsAction::Handle(const Work& work) {
  switch (work.kind) {
    case GroupKind::kCaption:
    case GroupKind::kFigure:
    case GroupKind::kFormula:
      return MakeGroup(work.element, "Caption");
    case GroupKind::kIndex:
      return MakeGroup(work.element, "Index");
    case GroupKind::kBlockQuote:
      return MakeGroup(work.element, "BlockQuote");
    case GroupKind::kCaptionListAtTop:
      return MakeCaption(work.element, "L", Direction::kForward);
    case GroupKind::kCaptionTableAtTop:
      return MakeCaption(work.element, "Table", Direction::kForward);
    case GroupKind::kCaptionTableAtBottom:
      return MakeCaption(work.element, "Table", Direction::kBackward);
  }
}

void FixGroupTagsAction::MakeGroup(PDSElement element, const char* type) {
  const Paragraphs paragraphs = FindParagraphs(element);
  TakeOut(paragraphs);
  const PDSElement group = NewElementOver(paragraphs, type);
  neighbours_.Insert(paragraphs.parent, group, paragraphs.index - 1);  // where the first paragraph stood
  FinishParagraphs(paragraphs);
}

void FixGroupTagsAction::MakeCaption(PDSElement element, const char* targetType, Direction direction) {
  const ASAtom type = ASAtomFromString(targetType);
  PDSElement target = TagStructureWalker::FindDescendantByType(element, type);
  if (!TagStructureWalker::IsNull(target)) {
    PutBefore(element, target);
  } else {
    target = neighbours_.Find(element, type, direction == Direction::kForward ? 1 : -1);
    // Nothing to give the caption to: it keeps its private type.
    if (TagStructureWalker::IsNull(target)) return;
  }
  const Paragraphs paragraphs = FindParagraphs(element);
  for (const PDSElement paragraph : paragraphs.elements) ForgetSearchesFor(paragraph);
  TakeOut(paragraphs);
  const PDSElement caption = NewElementOver(paragraphs, "Caption");
  neighbours_.Insert(target, caption, direction == Direction::kForward ? kPDSBeforeFirst : PDSElementGetNumKids(target));
  ForgetSearchesFor(caption);
  FinishParagraphs(paragraphs);
}

void FixGroupTagsAction::PutBefore(PDSElement element, PDSElement target) {
  ForgetSearchesFor(target);
  const PDSElement parent = GetParent(element);
  const int index = places_.IndexOf(parent, element);
  neighbours_.Remove(GetParent(target), target);
  neighbours_.Insert(parent, target, index - 1);
}

void FixGroupTagsAction::ForgetSearchesFor(PDSElement element) {
  for (const ASAtom type : {ASAtomFromString("L"), ASAtomFromString("Table")}) {
    if (Holds(element, type)) neighbours_.ForgetSearchesPast(element, type);
  }
}

FixGroupTagsAction::Paragraphs FixGroupTagsAction::FindParagraphs(PDSElement element) {
  const PDSElement parent = GetParent(element);
  Paragraphs paragraphs = {parent, places_.IndexOf(parent, element), {element}};
  const ASAtom type = PDSElementGetType(element);
  const ASInt32 count = PDSElementGetNumKids(parent);
  for (ASInt32 index = paragraphs.index + 1; index < count; ++index) {
    CosObj kid = CosNewNull();
    if (PDSElementGetKid(parent, index, &kid, nullptr, nullptr) != ASAtomFromString("StructElem")) break;
    if (PDSElementGetType(kid) != type) break;
    paragraphs.elements.push_back(kid);
  }
  return paragraphs;
}

void FixGroupTagsAction::TakeOut(const Paragraphs& paragraphs) {
  for (const PDSElement paragraph : paragraphs.elements) neighbours_.Remove(paragraphs.parent, paragraph);
}

PDSElement FixGroupTagsAction::NewElementOver(const Paragraphs& paragraphs, const char* type) {
  PDSElement group = CosNewNull();
  PDSElementCreate(GetDocument(), &group);
  PDSElementSetType(group, ASAtomFromString(type));
  ASInt32 index = 0;
  for (const PDSElement paragraph : paragraphs.elements) PDSElementInsertKid(group, paragraph, index++);
  return group;
}

void FixGroupTagsAction::FinishParagraphs(const Paragraphs& paragraphs) {
  for (const PDSElement paragraph : paragraphs.elements) {
    PDSElementSetType(paragraph, ASAtomFromString("P"));
    grouped_.insert(BitsOf(paragraph));
  }
}

void FixGroupTagsAction::UnmapPrivateTypes() {
  PDSRoleMap map = CosNewNull();
  AcquireRoleMap(&map);
  for (const auto& [type, kind] : roles_) PDSRoleMapUnMapSrc(map, type, 1);
}

}  // namespace tgx
