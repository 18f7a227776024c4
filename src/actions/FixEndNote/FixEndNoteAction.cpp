#include "src/actions/FixEndNote/FixEndNoteAction.h"

#include "src/common/TagStructureWalker.h"

namespace tgx {

bool FixEndNoteAction::Run() {
  endnoteFound_ = false;
  TagStructureWalker walker;
  walker.AddVisitor(this);
  PDSTreeRoot root = CosNewNull();
  AcquireStructTreeRoot(&root);
  walker.Walk(root);
  if (endnoteFound_) {
    PDSRoleMap map = CosNewNull();
    AcquireRoleMap(&map);
    PDSRoleMapMap(map, ASAtomFromString("Endnote"), ASAtomFromString("Note"));
  }
  return true;
}

void FixEndNoteAction::VisitElement(PDSElement& element) {
  // The element's own type, whatever the role map says of it.
  if (PDSElementGetType(element) == ASAtomFromString("Endnote")) endnoteFound_ = true;
}

}  // namespace tgx
