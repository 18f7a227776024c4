#include "src/actions/EmptyTag/EmptyTagFix.h"

#include <string>

#include "src/actions/TagStructureNode.h"

namespace tgx {
namespace {

void RemoveEmptyKids(const TagStructureNode& parent) {
  for (int index = 0; index < parent.GetKidCount(); ++index) {
    const TagStructureNode& kid = *parent.GetKid(index);
    if (TagStructureNode::HasContent(&kid)) {
      RemoveEmptyKids(kid);
    } else {
      // At the top the parent is the null object: what that means is the host's to say.
      CosObj parentObject = {};
      CosObj kidObject = {};
      PDSElementRemoveKid(*parent.GetObject(&parentObject), *kid.GetObject(&kidObject));
    }
  }
}

void MarkEmptyKids(const TagStructureNode& parent) {
  for (int index = 0; index < parent.GetKidCount(); ++index) {
    TagStructureNode& kid = *parent.GetKid(index);
    if (TagStructureNode::HasContent(&kid)) {
      MarkEmptyKids(kid);
    } else {
      std::string type;
      kid.GetTypeName(&type);
      kid.SetTypeName(type + " [EMPTY]");
    }
  }
}

}  // namespace

bool EmptyTagFix::Run() {
  RemoveEmptyKids(*TagStructureNode::BuildTree(GetDocument()));
  return true;
}

bool EmptyTagFix::MarkEmpty() {
  MarkEmptyKids(*TagStructureNode::BuildTree(GetDocument()));
  return true;
}

}  // namespace tgx
