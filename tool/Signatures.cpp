#include "tool/HostCalls.h"
// The forwarders come first.
#include "tool/Signatures.h"

namespace tgx::tool {
namespace {

constexpr int kDeepestField = 32;
constexpr int kMostFields = 100'000;

bool IsDict(CosObj object) { return CosObjGetType(object) == CosDict; }

class FieldSearch {
 public:
  bool FindsSignature(CosObj fields, int depth = 0) {
    if (CosObjGetType(fields) != CosArray || depth > kDeepestField) return false;
    const ASInt32 count = CosArrayLength(fields);
    for (ASInt32 i = 0; i < count && seen_ < kMostFields; ++i) {
      ++seen_;
      const CosObj field = CosArrayGet(fields, i);
      if (!IsDict(field)) continue;
      if (HoldsSignature(field) || FindsSignature(CosDictGetKeyString(field, "Kids"), depth + 1)) return true;
    }
    return false;
  }

 private:
  static bool HoldsSignature(CosObj field) {
    const CosObj value = CosDictGetKeyString(field, "V");
    return IsDict(value) && CosDictKnownKeyString(value, "ByteRange") != 0;
  }

  int seen_ = 0;
};

}  // namespace

bool IsSigned(PDDoc document) {
  const HostFrame frame;
  try {
    const CosObj catalog = CosDocGetRoot(PDDocGetCosDoc(document));
    if (!IsDict(catalog)) return false;
    const CosObj form = CosDictGetKeyString(catalog, "AcroForm");
    return IsDict(form) && FieldSearch().FindsSignature(CosDictGetKeyString(form, "Fields"));
  } catch (const HostFailure&) {
    return false;
  }
}

}  // namespace tgx::tool
