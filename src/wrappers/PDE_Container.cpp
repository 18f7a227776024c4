#include "src/wrappers/PDE_Container.h"

namespace tgx {

PDE_Container::PDE_Container(PDEContainer container, PDF_BaseObject* parent) : PDE_Element(container, parent) {
  PDE_Container::Refresh();
}

void PDE_Container::ClearKids() { content_.reset(); }

void PDE_Container::Refresh() {  // NOLINT(misc-no-recursion)
  PDE_Container::ClearKids();
  content_ = std::make_unique<PDE_Content>(PDEContainerGetContent(GetHandle()), this);
}

bool PDE_Container::HasMCID() const {
  CosObj dict = CosNewNull();
  ASBool isInline = 0;
  return PDEContainerGetDict(GetHandle(), &dict, &isInline) == 1 && CosDictKnownKeyString(dict, "MCID") != 0;
}

ASInt32 PDE_Container::GetMCID() const {
  CosObj dict = CosNewNull();
  ASBool isInline = 0;
  PDEContainerGetDict(GetHandle(), &dict, &isInline);
  return CosIntegerValue(CosDictGetKeyString(dict, "MCID"));
}

std::optional<ASInt32> PDE_Container::FindMCID() const {
  CosObj dict = CosNewNull();
  ASBool isInline = 0;
  if (PDEContainerGetDict(GetHandle(), &dict, &isInline) != 1) return std::nullopt;
  const CosObj value = CosDictGetKeyString(dict, "MCID");
  if (CosObjGetType(value) != CosInteger) return std::nullopt;
  return CosIntegerValue(value);
}

}  // namespace tgx
