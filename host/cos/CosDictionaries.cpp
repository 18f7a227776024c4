#include <string_view>

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/cos/CosAccess.h"
#include "host/cos/Dictionaries.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {
namespace {

std::string_view KeyText(const char* key) {
  if (key == nullptr) throw HostError(kASBadParameter, "null where the key of a dictionary is needed");
  return key;
}

/// A dictionary whose entry a client works on, brought up to date with the models of its document.
struct Target {
  Target(CosObj handle, std::string_view key) : dictionary(DictionaryOf(handle)), document(*Document::Find(handle.b)) {
    document.BeforeCosRead(dictionary, key);
  }
  QPDFObjectHandle dictionary;
  Document& document;
};

CosObj Get(CosObj dict, std::string_view key) {
  const Target target(dict, key);
  ObjectTable& objects = target.document.Objects();
  const CosObj value = objects.HandleOf(DictGet(target.dictionary, key), dict);
  objects.StepInto(dict, value);
  return value;
}

ASBool Known(CosObj dict, std::string_view key) {
  const Target target(dict, key);
  return DictHas(target.dictionary, key) ? 1 : 0;
}

void Remove(CosObj dict, std::string_view key) {
  const Target target(dict, key);
  if (!DictHas(target.dictionary, key)) return;
  DictRemove(target.dictionary, key);
  target.document.AfterCosEdit(target.dictionary, key);
}

void Put(CosObj dict, std::string_view key, CosObj value) {
  if (IsNull(value)) return Remove(dict, key);
  const Target target(dict, key);
  const QPDFObjectHandle stored = ValueFor(dict, target.dictionary, value);
  DictSet(target.dictionary, key, stored);
  target.document.Streams().AfterPut(target.dictionary, key, stored);
  target.document.AfterCosEdit(target.dictionary, key);
}

}  // namespace

namespace operations {

CosObj CosDictGet(CosObj dict, ASAtom key) { return Get(dict, AtomView(key)); }
CosObj CosDictGetKeyString(CosObj dict, const char* key) { return Get(dict, KeyText(key)); }

void CosDictPut(CosObj dict, ASAtom key, CosObj value) { Put(dict, AtomView(key), value); }
void CosDictPutKeyString(CosObj dict, const char* key, CosObj value) { Put(dict, KeyText(key), value); }

void CosDictRemove(CosObj dict, ASAtom key) { Remove(dict, AtomView(key)); }
void CosDictRemoveKeyString(CosObj dict, const char* key) { Remove(dict, KeyText(key)); }

ASBool CosDictKnown(CosObj dict, ASAtom key) { return Known(dict, AtomView(key)); }
ASBool CosDictKnownKeyString(CosObj dict, const char* key) { return Known(dict, KeyText(key)); }

}  // namespace operations
}  // namespace tgx::host
