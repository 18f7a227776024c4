#include <exception>
#include <vector>

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/core/Raise.h"
#include "host/cos/CosAccess.h"
#include "host/cos/Dictionaries.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {
namespace {

struct Entry {
  CosObj first;
  CosObj second;
};

/// What CosObjEnum hands out, taken before the first callback: a callback may change the object or close the document.
std::vector<Entry> Snapshot(CosObj handle) {
  if (IsNull(handle)) ThrowWrongType(handle, "a dictionary, a stream or an array");
  QPDFObjectHandle object = ObjectOf(handle);
  Document& document = Document::Of(handle);
  std::vector<Entry> entries;
  if (object.isArray()) {
    document.BeforeCosRead(object, {});
    for (const auto& item : object.getArrayAsVector())
      entries.push_back({document.Objects().HandleOf(item, handle), kNullObject});
    for (const Entry& entry : entries) document.Objects().FollowInto(handle, entry.first);
  } else if (object.isDictionary() || object.isStream()) {
    const QPDFObjectHandle dictionary = DictionaryOf(handle);
    document.BeforeCosRead(dictionary, {});
    for (const DictEntry& entry : DictEntries(dictionary)) {
      entries.push_back({document.Objects().KeyName(Intern(entry.key)), document.Objects().HandleOf(entry.value, handle)});
    }
    for (const Entry& entry : entries) document.Objects().FollowInto(handle, entry.second);
  } else {
    ThrowWrongType(handle, "a dictionary, a stream or an array");
  }
  return entries;
}

/// An exception of the client's procedure is the client's: it passes through the host untouched.
bool CallClient(CosObjEnumProc proc, const Entry& entry, void* clientData) {
  try {
    return proc(entry.first, entry.second, clientData) != 0;
  } catch (...) {
    throw CallbackException{std::current_exception()};
  }
}

}  // namespace

namespace operations {

ASBool CosObjEqual(CosObj a, CosObj b) { return Same(a, b) ? 1 : 0; }

ASInt32 CosObjGetType(CosObj obj) {
  if (IsNull(obj)) return CosNull;
  return CosTypeOf(ObjectOf(obj));
}

ASBool CosObjIsIndirect(CosObj obj) {
  if (IsNull(obj)) return 0;
  return ObjectOf(obj).isIndirect() ? 1 : 0;
}

CosDoc CosObjGetDoc(CosObj obj) {
  if (IsNull(obj)) return nullptr;
  return Document::Of(obj).CosHandle();
}

ASBool CosObjEnum(CosObj obj, CosObjEnumProc proc, void* clientData) {
  if (proc == nullptr) throw HostError(kASBadParameter, "enumeration without a procedure");
  for (const Entry& entry : Snapshot(obj)) {
    if (!CallClient(proc, entry, clientData)) return 0;
  }
  return 1;
}

// The object may have other users, and one that nothing refers to is not written anyway.
void CosObjDestroy(CosObj /*obj*/) {}

CosObj CosDocGetRoot(CosDoc doc) {
  Document& document = Document::Of(doc);
  return document.HandleOf(document.Pdf().getRoot());
}

}  // namespace operations
}  // namespace tgx::host
