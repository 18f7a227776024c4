#include "host/cos/ObjectTable.h"

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/cos/Names.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {

CosObj ObjectTable::HandleOf(const QPDFObjectHandle& object) {
  QPDFObjectHandle resolved = object;
  if (!resolved.isInitialized() || resolved.isNull()) return kNullObject;
  const auto [known, isNew] = slotOfObject_.try_emplace(resolved.getObjectPtr(), static_cast<ASUns32>(slots_.size()));
  if (isNew) slots_.push_back({std::move(resolved), nullptr});
  return {known->second, document_};
}

CosObj ObjectTable::KeyName(ASAtom key) {
  const auto [known, isNew] = keyNames_.try_emplace(key, kNullObject);
  if (isNew) known->second = HandleOf(QPDFObjectHandle::newName(ToQpdfName(AtomView(key))));
  return known->second;
}

ObjectTable::Slot& SlotOf(CosObj handle) {
  if (IsNull(handle)) throw HostError(kASBadParameter, "the null object where an object is needed");
  Document* document = Document::Find(handle.b);
  ObjectTable::Slot* slot = document == nullptr ? nullptr : document->Objects().Find(handle);
  if (slot == nullptr) {
    throw HostError(kASBadParameter, "no object of an open document has the handle " + std::to_string(handle.a) + ":" +
                                         std::to_string(handle.b));
  }
  return *slot;
}

}  // namespace tgx::host
