#include "src/forms/AcroFormTree.h"

#include "src/forms/CosEntries.h"

namespace tgx::acroform {

CosObj FindForm(PDDoc document) {
  const auto entries = EntriesOf(CosDocGetRoot(PDDocGetCosDoc(document)));
  const ASAtom key = ASAtomFromString("AcroForm");
  return entries.count(key) == 1 ? entries.find(key)->second : CosNewNull();
}

bool AcroFormTree::Load(PDDoc document) {
  const CosObj form = FindForm(document);
  if (CosObjGetType(form) != CosDict || CosDictKnownKeyString(form, "Fields") == 0) return true;
  const CosObj fields = CosDictGetKeyString(form, "Fields");
  if (CosObjGetType(fields) != CosArray) return true;
  const ASInt32 count = CosArrayLength(fields);
  for (ASInt32 i = 0; i < count; ++i) fields_.push_back(std::make_unique<AcroFormField>(CosArrayGet(fields, i)));
  return true;
}

}  // namespace tgx::acroform
