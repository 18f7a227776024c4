#include "host/pdsedit/ElementTexts.h"

#include <algorithm>

#include "host/pdmodel/Document.h"
#include "host/pdsedit/KidKinds.h"

namespace tgx::host {

ASAtom TypeOfElement(StructureTree& tree, NodeId element) {
  Node& node = tree.Nodes()[element];
  if (node.type == ASAtomNull) node.type = NameOr(node.object.getKey("/S"), 0);
  return node.type;
}

void SetTypeOfElement(StructureTree& tree, NodeId element, ASAtom type) {
  Node& node = tree.Nodes()[element];
  node.object.replaceKey("/S", NameObject(type));
  node.type = type;
  tree.Owner().MarkChanged();
}

bool HasText(StructureTree& tree, NodeId element, const std::string& key) {
  return tree.Nodes()[element].object.getKey(key).isString();
}

ASInt32 CopyText(StructureTree& tree, NodeId element, const std::string& key, ASUns8* buffer) {
  QPDFObjectHandle text = tree.Nodes()[element].object.getKey(key);
  if (!text.isString()) return 0;
  const std::string bytes = text.getStringValue();
  if (buffer != nullptr) std::copy(bytes.begin(), bytes.end(), buffer);
  return static_cast<ASInt32>(bytes.size());
}

void SetText(StructureTree& tree, NodeId element, const std::string& key, const std::string& bytes) {
  tree.Nodes()[element].object.replaceKey(key, QPDFObjectHandle::newString(bytes));
  tree.Owner().MarkChanged();
}

void RemoveText(StructureTree& tree, NodeId element, const std::string& key) {
  tree.Nodes()[element].object.removeKey(key);
  tree.Owner().MarkChanged();
}

}  // namespace tgx::host
