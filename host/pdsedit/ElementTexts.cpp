#include "host/pdsedit/ElementTexts.h"

#include <algorithm>
#include <array>

#include "host/pdmodel/Document.h"
#include "host/pdsedit/KidKinds.h"

namespace tgx::host {
namespace {

/// qpdf's key, with the slash.
const std::string& KeyOf(ElementText text) {
  static const std::array<std::string, kElementTexts> kKeys = {"/Alt", "/T", "/Lang"};
  return kKeys[static_cast<std::size_t>(text)];
}

/// The entry, uninitialized where there is none. Most elements have no texts and are asked for them over and over, so what a
/// dictionary lacks is remembered.
QPDFObjectHandle TextOf(StructureTree& tree, NodeId element, ElementText text) {
  Node& node = tree.Nodes()[element];
  if (node.Lacks(text)) return {};
  if (node.object.hasKey(KeyOf(text))) return node.object.getKey(KeyOf(text));
  node.NoteLacking(text);
  return {};
}

}  // namespace

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

bool HasText(StructureTree& tree, NodeId element, ElementText text) { return TextOf(tree, element, text).isString(); }

ASInt32 CopyText(StructureTree& tree, NodeId element, ElementText text, ASUns8* buffer) {
  QPDFObjectHandle string = TextOf(tree, element, text);
  if (!string.isString()) return 0;
  const std::string bytes = string.getStringValue();
  if (buffer != nullptr) std::copy(bytes.begin(), bytes.end(), buffer);
  return static_cast<ASInt32>(bytes.size());
}

void SetText(StructureTree& tree, NodeId element, ElementText text, const std::string& bytes) {
  Node& node = tree.Nodes()[element];
  node.object.replaceKey(KeyOf(text), QPDFObjectHandle::newString(bytes));
  node.NoteTextEdited(text);
  tree.Owner().MarkChanged();
}

void RemoveText(StructureTree& tree, NodeId element, ElementText text) {
  tree.Nodes()[element].object.removeKey(KeyOf(text));
  tree.Owner().MarkChanged();
}

}  // namespace tgx::host
