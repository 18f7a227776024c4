#include "src/actions/TagStructureNode.h"

namespace tgx {

TagStructureNode::~TagStructureNode() = default;

std::unique_ptr<TagStructureNode> TagStructureNode::BuildTree(PDDoc document) {
  auto tree = std::make_unique<TagStructureNode>(kRoot);
  PDSTreeRoot root = {};
  if (PDDocGetStructTreeRoot(document, &root) == 0) return tree;
  const ASInt32 count = PDSTreeRootGetNumKids(root);
  for (ASInt32 index = 0; index < count; ++index) {
    PDSElement element = {};
    PDSTreeRootGetKid(root, index, &element);
    TagStructureNode& kid = tree->Append(kElement, element);
    kid.Fill();
    tree->hasContent_ = tree->hasContent_ || kid.hasContent_;
  }
  return tree;
}

// The host refuses trees of more than 512 levels, which bounds the recursion, here and wherever the tree is walked.
void TagStructureNode::Fill() {
  const ASInt32 count = PDSElementGetNumKids(object_);
  for (ASInt32 index = 0; index < count; ++index) {
    CosObj object = {};
    PDSMCInfo mcInfo = {};
    CosObj page = {};
    const ASAtom type = PDSElementGetKidWithMCInfo(object_, index, &object, &mcInfo, nullptr, &page);
    if (type == ASAtomFromString("StructElem")) {
      TagStructureNode& kid = Append(kElement, object);
      kid.Fill();
      hasContent_ = hasContent_ || kid.hasContent_;
    } else {
      Append(kNonElement, object).hasContent_ = true;
      hasContent_ = true;
    }
  }
}

TagStructureNode& TagStructureNode::Append(Kind kind, CosObj object) {
  TagStructureNode& kid = *kids_.emplace_back(std::make_unique<TagStructureNode>(kind, object));
  kid.parent_ = this;
  return kid;
}

int TagStructureNode::IndexOfKid(const TagStructureNode* kid) const {
  for (int index = 0; index < GetKidCount(); ++index) {
    if (GetKid(index) == kid) return index;
  }
  return -1;
}

CosObj* TagStructureNode::GetObject(CosObj* object) const {
  *object = object_;
  return object;
}

CosObj* TagStructureNode::GetElementObject(CosObj* object) const {
  *object = PDSElementGetCosObj(object_);
  return object;
}

bool TagStructureNode::IsNull() const { return CosObjEqual(object_, CosNewNull()) == 1; }

void TagStructureNode::GetTypeName(std::string* name) const { *name = ASAtomGetString(PDSElementGetType(object_)); }

void TagStructureNode::SetTypeName(const std::string& name) { PDSElementSetType(object_, ASAtomFromString(name.c_str())); }

}  // namespace tgx
