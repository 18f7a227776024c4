#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/pdfedit/PageContents.h"
#include "host/pdmodel/Document.h"
#include "host/pdsedit/ElementTexts.h"
#include "host/pdsedit/KidAnswers.h"
#include "host/pdsedit/RoleMap.h"
#include "host/pdsedit/Targets.h"

namespace tgx::host {
namespace {

/// Target for an operation that takes the tree root in the place of an element.
struct ParentTarget {
  explicit ParentTarget(PDSElement handle) : ParentTarget(handle, Document::ObjectOf(handle)) {}
  ParentTarget(PDSElement handle, const LivingObject& living)
      : tree(living.document.Structure()), node(tree.ElementOrRootOf(handle, living.slot.object)) {}
  StructureTree& tree;
  NodeId node;
};

ASInt32 CountKids(StructureTree& tree, NodeId node) { return static_cast<ASInt32>(tree.Nodes()[node].kids.Size()); }

}  // namespace

namespace operations {

ASBool PDDocGetStructTreeRoot(PDDoc doc, PDSTreeRoot* root) {
  StructureTree& tree = Document::Of(doc).Structure();
  const CosObj handle = tree.HandleOf(tree.Root());
  Store(root, handle);
  return IsNull(handle) ? 0 : 1;
}

ASInt32 PDSTreeRootGetNumKids(PDSTreeRoot root) {
  StructureTree& tree = TreeOf(root);
  return CountKids(tree, tree.RootOf(root));
}

void PDSTreeRootGetKid(PDSTreeRoot root, ASInt32 index, PDSElement* element) {
  StructureTree& tree = TreeOf(root);
  const Kid& kid = KidAt(tree, tree.RootOf(root), index);
  Store(element, ObjectOfKid(tree, kid));
}

ASBool PDSTreeRootGetRoleMap(PDSTreeRoot root, PDSRoleMap* map) {
  StructureTree& tree = TreeOf(root);
  const CosObj handle = RoleMapOf(tree, tree.RootOf(root));
  Store(map, handle);
  return IsNull(handle) ? 0 : 1;
}

ASAtom PDSRoleMapGetDirectMap(PDSRoleMap map, ASAtom source) { return MappedRole(map, source); }

CosObj PDSElementGetCosObj(PDSElement element) {
  const ParentTarget target(element);
  return element;
}

ASAtom PDSElementGetType(PDSElement element) {
  const Target target(element);
  return TypeOfElement(target.tree, target.element);
}

void PDSElementGetParent(PDSElement element, PDSElement* parent, ASBool* isRoot) {
  const ParentTarget target(element);
  const NodeId above = target.tree.ParentOf(target.node);
  Store(parent, target.tree.HandleOf(above));
  Store(isRoot, above != kNoNode && target.tree.Nodes()[above].isRoot ? 1 : 0);
}

ASInt32 PDSElementGetNumKids(PDSElement element) {
  const ParentTarget target(element);
  return CountKids(target.tree, target.node);
}

ASAtom PDSElementGetKid(PDSElement element, ASInt32 index, CosObj* kid, void** pointer, CosObj* page) {
  const ParentTarget target(element);
  return AnswerAboutKid(target.tree, target.node, index, {.kid = kid, .pointer = pointer, .page = page});
}

ASAtom PDSElementGetKidEx(PDSElement element, ASInt32 index, CosObj* kid, ASInt32* mcid, void** pointer, CosObj* page) {
  const ParentTarget target(element);
  return AnswerAboutKid(target.tree, target.node, index, {.kid = kid, .mcid = mcid, .pointer = pointer, .page = page});
}

ASAtom PDSElementGetKidWithMCInfo(PDSElement element, ASInt32 index, CosObj* kid, PDSMCInfo* mcInfo, void** pointer,
                                  CosObj* page) {
  const ParentTarget target(element);
  return AnswerAboutKid(target.tree, target.node, index, {.kid = kid, .mcInfo = mcInfo, .pointer = pointer, .page = page});
}

ASBool PDSElementHasAlt(PDSElement element) {
  const Target target(element);
  return HasText(target.tree, target.element, ElementText::kAlt) ? 1 : 0;
}

ASInt32 PDSElementGetAlt(PDSElement element, ASUns8* buffer) {
  const Target target(element);
  return CopyText(target.tree, target.element, ElementText::kAlt, buffer);
}

ASInt32 PDSElementGetTitle(PDSElement element, ASUns8* buffer) {
  const Target target(element);
  return CopyText(target.tree, target.element, ElementText::kTitle, buffer);
}

ASBool PDSElementHasLanguage(PDSElement element) {
  const Target target(element);
  return HasText(target.tree, target.element, ElementText::kLanguage) ? 1 : 0;
}

ASInt32 PDSElementGetLanguage(PDSElement element, ASUns8* buffer) {
  const Target target(element);
  return CopyText(target.tree, target.element, ElementText::kLanguage, buffer);
}

void PDSMCGetInfo(CosObj cosPage, PDEContainer container, PDSMCInfo* info) {
  PDSMCInfo result = {};
  result.size = sizeof(PDSMCInfo);
  result.mcid = Document::Of(cosPage).Contents().McidOf(container);
  result.page = cosPage;
  Store(info, result);
}

}  // namespace operations
}  // namespace tgx::host
