#include "host/pdsedit/RoleMap.h"

#include "host/core/Atoms.h"
#include "host/cos/CosAccess.h"
#include "host/cos/Dictionaries.h"
#include "host/pdmodel/Document.h"
#include "host/pdsedit/KidKinds.h"

namespace tgx::host {
namespace {

QPDFObjectHandle& MapDictionary(PDSRoleMap map) {
  QPDFObjectHandle& dictionary = ObjectOf(map);
  if (!dictionary.isDictionary()) ThrowWrongType(map, "a role map");
  return dictionary;
}

}  // namespace

CosObj RoleMapOf(StructureTree& tree, NodeId root) {
  QPDFObjectHandle map = tree.Nodes()[root].object.getKey("/RoleMap");
  return map.isDictionary() ? tree.Owner().HandleOf(map) : kNullObject;
}

CosObj MakeRoleMap(StructureTree& tree, NodeId root) {
  if (const CosObj known = RoleMapOf(tree, root); !IsNull(known)) return known;
  QPDFObjectHandle map = tree.Owner().Pdf().makeIndirectObject(QPDFObjectHandle::newDictionary());
  tree.Nodes()[root].object.replaceKey("/RoleMap", map);
  tree.Owner().MarkChanged();
  return tree.Owner().HandleOf(map);
}

ASAtom MappedRole(PDSRoleMap map, ASAtom source) {
  return NameOr(DictGet(MapDictionary(map), AtomView(source)), ASAtomNull);
}

void MapRole(PDSRoleMap map, ASAtom source, ASAtom target) {
  DictSet(MapDictionary(map), AtomView(source), NameObject(target));
  Document::Of(map).MarkChanged();
}

void UnmapRole(PDSRoleMap map, ASAtom source) {
  QPDFObjectHandle& dictionary = MapDictionary(map);
  if (!DictHas(dictionary, AtomView(source))) return;
  DictRemove(dictionary, AtomView(source));
  Document::Of(map).MarkChanged();
}

}  // namespace tgx::host
