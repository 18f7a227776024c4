#include "host/pdsedit/IdTree.h"

#include <algorithm>

#include "host/pdmodel/Document.h"
#include "host/pdsedit/KeyedTree.h"

namespace tgx::host {

void MakeIdTreeTrue(StructureTree& tree, const TreeContents& contents) {
  NodeStore& nodes = tree.Nodes();
  QPDFObjectHandle root = nodes[tree.Root()].object;
  QPDFObjectHandle idTree = root.getKey("/IDTree");
  if (contents.ids.empty()) {
    root.removeKey("/IDTree");
    return;
  }
  if (idTree.isDictionary()) {
    const auto found = ReadNameTree(idTree);
    const bool isTrue =
        found.isOrderly && std::equal(found.entries.begin(), found.entries.end(), contents.ids.begin(), contents.ids.end(),
                                      [&](const TreeEntry<std::string>& entry, const auto& id) {
                                        return entry.key == id.first &&
                                               entry.value.getObjectPtr() == nodes[id.second].object.getObjectPtr();
                                      });
    if (isTrue) return;
  } else {
    idTree = tree.Owner().Pdf().makeIndirectObject(QPDFObjectHandle::newDictionary());
    root.replaceKey("/IDTree", idTree);
  }
  std::vector<TreeEntry<std::string>> entries;
  entries.reserve(contents.ids.size());
  for (const auto& [id, element] : contents.ids) entries.push_back({id, nodes[element].object});
  WriteNameTree(tree.Owner().Pdf(), idTree, entries);
}

}  // namespace tgx::host
