#include "tests/host/pdsedit/StructureFixture.h"

namespace tgx::host::structure {

CosObj StructureDocument::PageObject(int index) {
  return Tables()->pdModel->PDPageGetCosObj(Tables()->pdModel->PDDocAcquirePage(Handle(), index));
}

PDSTreeRoot StructureDocument::Root() {
  PDSTreeRoot root = {9, 9};
  Read().PDDocGetStructTreeRoot(Handle(), &root);
  return root;
}

PDSElement StructureDocument::At(const std::vector<ASInt32>& path) {
  PDSElement at = Root();
  for (const ASInt32 index : path) Read().PDSElementGetKid(at, index, &at, nullptr, nullptr);
  return at;
}

PDSElement StructureDocument::NewElement(const char* type) {
  PDSElement element = kNullObject;
  Write().PDSElementCreate(Handle(), &element);
  if (type != nullptr) Write().PDSElementSetType(element, Intern(type));
  return element;
}

SeenKid KidOf(PDSElement parent, ASInt32 index) {
  SeenKid seen;
  const ASAtom type = Read().PDSElementGetKidEx(parent, index, &seen.kid, &seen.mcid, &seen.pointer, &seen.page);
  seen.type = AtomText(type);
  return seen;
}

PDSElement ParentOf(PDSElement element) {
  PDSElement parent = {9, 9};
  Read().PDSElementGetParent(element, &parent, nullptr);
  return parent;
}

std::string TypeOf(PDSElement element) { return AtomText(Read().PDSElementGetType(element)); }

std::string KidsOf(PDSElement parent) {
  std::string kids;
  for (ASInt32 i = 0; i < Read().PDSElementGetNumKids(parent); ++i) {
    CosObj kid = kNullObject;
    const ASAtom type = Read().PDSElementGetKid(parent, i, &kid, nullptr, nullptr);
    kids += (i == 0 ? "" : " ") + (type == Intern("StructElem") ? TypeOf(kid) : std::string(AtomText(type)));
  }
  return kids;
}

std::string TitleOf(PDSElement element) {
  std::string title(static_cast<std::size_t>(Read().PDSElementGetTitle(element, nullptr)), '\0');
  Read().PDSElementGetTitle(element, reinterpret_cast<ASUns8*>(title.data()));
  return title;
}

}  // namespace tgx::host::structure
