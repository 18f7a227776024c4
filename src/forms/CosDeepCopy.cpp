#include "src/forms/CosDeepCopy.h"

#include <memory>
#include <stdexcept>
#include <type_traits>

#include "src/forms/CosEntries.h"

namespace tgx::acroform {
namespace {

struct CloseStream {
  void operator()(ASStm stream) const { ASStmClose(stream); }
};
using OpenStream = std::unique_ptr<std::remove_pointer_t<ASStm>, CloseStream>;

/// A value in the making: arrays and dictionaries are made empty and filled by a second step, since a dictionary stores them
/// first and an array last.
CosObj NewValue(CosDoc document, CosObj source, CopyBudget& budget) {
  budget.Spend(1);
  const ASBool indirect = CosObjIsIndirect(source);
  switch (CosObjGetType(source)) {
    case CosInteger:
      return CosNewInteger(document, indirect, CosIntegerValue(source));
    case CosFixed:
      return CosNewFixed(document, indirect, CosFixedValue(source));
    case CosBoolean:
      return CosNewBoolean(document, indirect, CosBooleanValue(source));
    case CosName:
      return CosNewName(document, indirect, CosNameValue(source));
    case CosString: {
      ASTArraySize count = 0;
      const char* bytes = CosStringValue(source, &count);
      budget.SpendData(count);
      return count == 0 ? CosNewNull() : CosNewString(document, indirect, bytes, count);
    }
    case CosArray:
      return CosNewArray(document, indirect, 0);
    case CosDict:
      return CosNewDict(document, indirect, 0);
    case CosStream: {
      const CosObj attributes = CosNewDict(document, 0, 0);
      DeepCopyDictionary(CosStreamDict(source), attributes, KnownKeys::Overwrite, budget);
      const OpenStream data(CosStreamOpenStm(source, cosOpenRaw));
      const CosObj copy = CosNewStream(document, 1, data.get(), 0, 0, attributes, CosNewNull(), -1);
      budget.SpendData(CosStreamLength(copy));
      return copy;
    }
    default:
      return CosNewName(document, 0, ASAtomFromString("Not implemented sync"));
  }
}

void FillValue(CosObj source, CosObj copy, KnownKeys knownKeys, CopyBudget& budget) {
  const ASInt32 type = CosObjGetType(source);
  if (type == CosArray) DeepCopyArray(source, copy, budget);
  if (type == CosDict) DeepCopyDictionary(source, copy, knownKeys, budget);
}

}  // namespace

void CopyBudget::Spend(std::int64_t values) {
  if (values > left_) throw std::runtime_error("the second form refers to the same values too often to copy them all");
  left_ -= values;
}

void DeepCopyDictionary(CosObj source, CosObj destination, KnownKeys knownKeys, CopyBudget& budget) {
  if (CosObjGetType(source) != CosDict || CosObjGetType(destination) != CosDict) return;
  const ASAtom parent = ASAtomFromString("P");
  for (const auto& [key, value] : EntriesOf(source)) {
    if (key == parent) continue;
    if (CosDictKnown(destination, key) == 1) {
      if (knownKeys == KnownKeys::Keep) continue;
      const CosObj old = CosDictGet(destination, key);
      CosDictRemove(destination, key);
      CosObjDestroy(old);
    }
    const CosObj copy = NewValue(CosObjGetDoc(destination), value, budget);
    CosDictPut(destination, key, copy);
    FillValue(value, copy, knownKeys, budget);
  }
}

void DeepCopyArray(CosObj source, CosObj destination, CopyBudget& budget) {
  if (CosObjGetType(source) != CosArray || CosObjGetType(destination) != CosArray) return;
  const ASInt32 count = CosArrayLength(source);
  for (ASInt32 i = 0; i < count; ++i) {
    const CosObj item = CosArrayGet(source, i);
    const CosObj copy = NewValue(CosObjGetDoc(destination), item, budget);
    FillValue(item, copy, KnownKeys::Overwrite, budget);
    CosArrayInsert(destination, CosArrayLength(destination) + 1, copy);
  }
}

}  // namespace tgx::acroform
