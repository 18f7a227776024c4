#include "src/common/TagStructureWalker.h"

#include <algorithm>

namespace tgx {

void TagStructureWalker::Walk(PDSTreeRoot root) {
  const bool withPointers = AnyVisitorNeedsPointers();
  const ASInt32 count = PDSTreeRootGetNumKids(root);
  for (ASInt32 index = 0; index != count; ++index) {
    PDSElement element = CosNewNull();
    PDSTreeRootGetKid(root, index, &element);
    TellElement(element);
    VisitKids(element, withPointers);
  }
}

void TagStructureWalker::WalkKids(PDSElement& element) { VisitKids(element, AnyVisitorNeedsPointers()); }

void TagStructureWalker::TellElement(PDSElement& element) {
  for (ITagStructureVisitor* visitor : Visitors()) visitor->VisitElement(element);
}

// As deep as the structure, which the host bounds.
void TagStructureWalker::VisitKids(PDSElement element, bool withPointers) {  // NOLINT(misc-no-recursion)
  const ASInt32 count = PDSElementGetNumKids(element);
  for (ASInt32 index = 0; index != count; ++index) VisitKid(element, index, withPointers);
}

void TagStructureWalker::VisitKid(PDSElement element, int index, bool withPointers) {  // NOLINT(misc-no-recursion)
  CosObj kid = CosNewNull();
  ASInt32 mcid = -1;
  void* pointer = nullptr;
  CosObj page = CosNewNull();
  const ASAtom type = PDSElementGetKidEx(element, index, &kid, &mcid, withPointers ? &pointer : nullptr, &page);
  if (type == ASAtomFromString("StructElem")) {
    TellElement(kid);
    VisitKids(kid, withPointers);
  } else if (type == ASAtomFromString("MC")) {
    for (ITagStructureVisitor* visitor : Visitors()) visitor->VisitMarkedContent(kid, mcid, page);
    for (ITagStructureVisitor* visitor : Visitors()) visitor->VisitMarkedContentPointer(pointer, mcid, page);
  } else if (type == ASAtomFromString("OBJR")) {
    for (ITagStructureVisitor* visitor : Visitors()) visitor->VisitObjectReference(kid, mcid, page);
  } else {
    for (ITagStructureVisitor* visitor : Visitors()) visitor->VisitOther(kid, mcid, page);
  }
}

bool TagStructureWalker::AnyVisitorNeedsPointers() const {
  return std::any_of(Visitors().begin(), Visitors().end(),
                     [](const ITagStructureVisitor* visitor) { return visitor->NeedsContentPointers(); });
}

PDSElement TagStructureWalker::FindDescendantByType(PDSElement element, ASAtom type) {  // NOLINT(misc-no-recursion)
  const ASInt32 count = PDSElementGetNumKids(element);
  for (ASInt32 index = 0; index < count; ++index) {
    PDSElement kid = CosNewNull();
    if (PDSElementGetKid(element, index, &kid, nullptr, nullptr) != ASAtomFromString("StructElem")) continue;
    if (PDSElementGetType(kid) == type) return kid;
    PDSElement found = FindDescendantByType(kid, type);
    if (!IsNull(found)) return found;
  }
  return CosNewNull();
}

PDSElement TagStructureWalker::FindAncestorByType(PDSElement element, const char* type) {
  PDSElement ancestor = GetParentElement(element);
  while (!IsNull(ancestor) && PDSElementGetType(ancestor) != ASAtomFromString(type)) ancestor = GetParentElement(ancestor);
  return ancestor;
}

CosObj TagStructureWalker::GetKidObject(PDSElement element, int index) {
  CosObj kid = CosNewNull();
  PDSElementGetKid(element, index, &kid, nullptr, nullptr);
  return kid;
}

int TagStructureWalker::GetKidCount(PDSElement element) { return PDSElementGetNumKids(element); }

int TagStructureWalker::IndexOfKid(PDSElement element, PDSElement kid) {
  const CosObj wanted = PDSElementGetCosObj(kid);
  const ASInt32 count = PDSElementGetNumKids(element);
  for (ASInt32 index = 0; index < count; ++index) {
    if (CosObjEqual(GetKidObject(element, index), wanted) != 0) return index;
  }
  return -1;
}

int TagStructureWalker::IndexInParent(PDSElement element) {
  PDSElement parent = GetParentElement(element);
  return IsNull(parent) ? -1 : IndexOfKid(parent, element);
}

PDSElement TagStructureWalker::GetParentElement(PDSElement element) {
  PDSElement parent = CosNewNull();
  ASBool isRoot = 0;
  PDSElementGetParent(element, &parent, &isRoot);
  return isRoot != 0 ? CosNewNull() : parent;
}

bool TagStructureWalker::IsNull(PDSElement element) { return CosObjEqual(element, CosNewNull()) != 0; }

bool TagStructureWalker::IsElementKid(PDSElement element, int index) {
  return PDSElementGetKid(element, index, nullptr, nullptr, nullptr) == ASAtomFromString("StructElem");
}

}  // namespace tgx
