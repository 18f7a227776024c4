#include "src/actions/IDStyleName/IDStyleNameFix.h"

#include "src/actions/IDStyleName/StyleFile.h"
#include "src/api/HostException.h"
#include "src/common/ElementWalk.h"

namespace tgx {

bool IDStyleNameFix::Run(const std::string& path) {
  if (GetDocument() == nullptr) return false;
  return InExceptionFrame([&] {
    paragraphStyles_.Clear();
    characterStyles_.Clear();
    ReadStyleFile(path, paragraphStyles_, characterStyles_);
    PDSTreeRoot root = CosNewNull();
    if (PDDocGetStructTreeRoot(GetDocument(), &root) == 0) return false;
    RenameElements(root);
    RenameInRoleMap(root);
    return true;
  });
}

void IDStyleNameFix::RenameElements(PDSTreeRoot root) {
  ForEachElement(root, [this](PDSElement element) {
    const char* type = ASAtomGetString(PDSElementGetType(element));
    if (!paragraphStyles_.Contains(type)) return;
    PDSElementSetType(element, ASAtomFromString(paragraphStyles_.Get(type).c_str()));
  });
}

void IDStyleNameFix::RenameInRoleMap(PDSTreeRoot root) {
  PDSRoleMap map = CosNewNull();
  if (PDSTreeRootGetRoleMap(root, &map) == 0) return;
  for (const auto& [identifier, name] : paragraphStyles_) {
    const ASAtom source = ASAtomFromString(identifier.c_str());
    const ASAtom target = PDSRoleMapGetDirectMap(map, source);
    if (target == ASAtomNull) continue;
    PDSRoleMapUnMapSrc(map, source, 0);
    PDSRoleMapMap(map, ASAtomFromString(name.c_str()), target);
  }
}

}  // namespace tgx
