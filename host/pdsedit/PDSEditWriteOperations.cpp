#include <string>

#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/core/TextObject.h"
#include "host/core/Utf.h"
#include "host/pdmodel/Document.h"
#include "host/pdsedit/ElementTexts.h"
#include "host/pdsedit/KidEdits.h"
#include "host/pdsedit/RoleMap.h"
#include "host/pdsedit/Targets.h"

namespace tgx::host {
namespace {

/// A node whose kids are edited. The null object stands for the root of the tree to which `kid` belongs: top-level elements
/// are known to some clients only by a parent of null.
struct ParentTarget {
  ParentTarget(PDSElement parent, CosObj kid) : tree(TreeOf(IsNull(parent) ? kid : parent)) {
    if (!IsNull(parent)) {
      if (!IsNull(kid) && kid.b != parent.b)
        throw HostError(kASBadParameter, "parent and kid belong to different documents");
      node = tree.ElementOrRootOf(parent);
      return;
    }
    node = tree.Root();
    if (node == kNoNode) throw HostError(kASBadParameter, "a null parent in a document without a structure tree");
  }
  StructureTree& tree;
  NodeId node;
};

}  // namespace

namespace operations {

void PDDocCreateStructTreeRoot(PDDoc doc, PDSTreeRoot* root) {
  StructureTree& tree = Document::Of(doc).Structure();
  Store(root, tree.HandleOf(tree.MakeRoot()));
}

void PDSTreeRootCreateRoleMap(PDSTreeRoot root, PDSRoleMap* map) {
  StructureTree& tree = TreeOf(root);
  Store(map, MakeRoleMap(tree, tree.RootOf(root)));
}

void PDSRoleMapMap(PDSRoleMap map, ASAtom source, ASAtom target) { MapRole(map, source, target); }

// The flag of a full host chooses between maps that the embedded host does not keep apart.
void PDSRoleMapUnMapSrc(PDSRoleMap map, ASAtom source, ASBool /*flag*/) { UnmapRole(map, source); }

void PDSElementCreate(PDDoc doc, PDSElement* element) {
  StructureTree& tree = Document::Of(doc).Structure();
  Store(element, tree.HandleOf(tree.NewElement()));
}

void PDSElementSetType(PDSElement element, ASAtom type) {
  const Target target(element);
  SetTypeOfElement(target.tree, target.element, type);
}

void PDSElementSetLanguage(PDSElement element, const ASUns8* bytes, ASTArraySize count) {
  const Target target(element);
  if (count < 0 || (bytes == nullptr && count > 0)) throw HostError(kASBadParameter, "no bytes for a language");
  SetText(target.tree, target.element, ElementText::kLanguage, std::string(bytes, bytes + count));
}

void PDSElementSetAltASText(PDSElement element, ASText text) {
  const Target target(element);
  if (text == nullptr) {
    RemoveText(target.tree, target.element, ElementText::kAlt);
  } else {
    SetText(target.tree, target.element, ElementText::kAlt, "\xFE\xFF" + Utf16ToBigEndian(TextOf(text).units));
  }
}

void PDSElementInsertKid(PDSElement parent, PDSElement kid, ASInt32 insertAfter) {
  const ParentTarget target(parent, kid);
  InsertElement(target.tree, target.node, target.tree.ElementOf(kid), insertAfter);
}

void PDSElementInsertMCAsKid(PDSElement element, CosObj cosPage, PDEContainer container, ASInt32 insertAfter) {
  const Target target(element);
  InsertMarkedContent(target.tree, target.element, cosPage, container, insertAfter);
}

void PDSElementInsertOBJAsKid(PDSElement element, CosObj cosPage, CosObj obj, ASInt32 insertAfter) {
  const Target target(element);
  InsertObject(target.tree, target.element, cosPage, obj, insertAfter);
}

void PDSElementRemoveKid(PDSElement parent, CosObj kid) {
  const ParentTarget target(parent, kid);
  RemoveKid(target.tree, target.node, kid);
}

void PDSElementRemoveKidMC(PDSElement element, CosObj cosPage, PDEContainer container) {
  const ParentTarget target(element, element);
  RemoveMarkedContent(target.tree, target.node, cosPage, container);
}

void PDSElementRemoveKidOBJR(PDSElement element, CosObj obj) {
  const ParentTarget target(element, element);
  RemoveObject(target.tree, target.node, obj);
}

void PDSElementReplaceKid(PDSElement parent, PDSElement oldKid, PDSElement newKid) {
  const ParentTarget target(parent, oldKid);
  if (!IsNull(newKid) && newKid.b != oldKid.b) throw HostError(kASBadParameter, "the kids belong to different documents");
  const NodeId oldElement = target.tree.ElementOf(oldKid);
  ReplaceElement(target.tree, target.node, oldElement, target.tree.ElementOf(newKid));
}

}  // namespace operations
}  // namespace tgx::host
