#include "src/forms/CosEntries.h"

namespace tgx::acroform {
namespace {

/// Ends the host's callback object on every way out.
class EnumCallback {
 public:
  explicit EnumCallback(CosObjEnumProc procedure)
      : callback_(ASCallbackCreate(ExtensionId(), reinterpret_cast<void*>(procedure))) {}
  ~EnumCallback() { ASCallbackDestroy(callback_); }
  EnumCallback(const EnumCallback&) = delete;
  EnumCallback& operator=(const EnumCallback&) = delete;

  CosObjEnumProc Procedure() const { return reinterpret_cast<CosObjEnumProc>(callback_); }

 private:
  ASCallback callback_;
};

ASBool CollectEntry(CosObj key, CosObj value, void* entries) {
  if (CosObjGetType(key) == CosName) {
    static_cast<std::multimap<ASAtom, CosObj>*>(entries)->emplace(CosNameValue(key), value);
  }
  return 1;
}

}  // namespace

std::multimap<ASAtom, CosObj> EntriesOf(CosObj dictionary) {
  std::multimap<ASAtom, CosObj> entries;
  const EnumCallback callback(CollectEntry);
  CosObjEnum(dictionary, callback.Procedure(), &entries);
  return entries;
}

}  // namespace tgx::acroform
