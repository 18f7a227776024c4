#include "host/pdmodel/Edits.h"

#include <string>

#include "host/core/HostError.h"
#include "host/cos/CosAccess.h"
#include "host/cos/Dictionaries.h"
#include "host/cos/Numbers.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {

void SetEntry(Document& document, const QPDFObjectHandle& dictionary, std::string_view key, const QPDFObjectHandle& value) {
  document.BeforeCosRead(dictionary, key);
  DictSet(dictionary, key, value);
  document.AfterCosEdit(dictionary, key);
}

void RemoveEntry(Document& document, const QPDFObjectHandle& dictionary, std::string_view key) {
  document.BeforeCosRead(dictionary, key);
  if (!DictHas(dictionary, key)) return;
  DictRemove(dictionary, key);
  document.AfterCosEdit(dictionary, key);
}

QPDFObjectHandle OwnDictionary(Document& document, CosObj handle, const char* what) {
  if (IsNull(handle)) throw HostError(kASBadParameter, document.Name() + ": " + what + " is the null object");
  QPDFObjectHandle& object = SlotOfType(handle, CosDict).object;
  if (handle.b != document.Serial()) {
    throw HostError(kASBadParameter, document.Name() + ": " + what + " belongs to another document");
  }
  return object;
}

QPDFObjectHandle NumberFrom(ASFixed value) {
  constexpr ASFixed kOne = 0x10000;
  return value % kOne == 0 ? QPDFObjectHandle::newInteger(value / kOne) : QPDFObjectHandle::newReal(RealText(value));
}

}  // namespace tgx::host
