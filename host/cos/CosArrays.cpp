#include <algorithm>

#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/cos/CosAccess.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {
namespace {

// An index that is out of all proportion would fill the memory with null items.
constexpr ASInt32 kHighestIndex = 0x7FFFFF;

/// An array that a client works on, brought up to date with the models of its document.
struct Target {
  explicit Target(CosObj handle) : array(ArrayOf(handle)), document(Document::Of(handle)) {
    document.BeforeCosRead(array, {});
  }
  QPDFObjectHandle array;
  Document& document;
};

void CheckIndex(CosObj array, ASInt32 index) {
  if (index < 0) throw HostError(kASOutOfRange, Describe(array) + ": no item has the index " + std::to_string(index));
}

}  // namespace

namespace operations {

ASInt32 CosArrayLength(CosObj array) { return Target(array).array.getArrayNItems(); }

CosObj CosArrayGet(CosObj array, ASInt32 index) {
  Target target(array);
  CheckIndex(array, index);
  if (index >= target.array.getArrayNItems()) return kNullObject;
  const CosObj item = target.document.Objects().HandleOf(target.array.getArrayItem(index), array);
  target.document.Objects().FollowInto(array, item);
  return item;
}

void CosArrayPut(CosObj array, ASInt32 index, CosObj value) {
  Target target(array);
  CheckIndex(array, index);
  const QPDFObjectHandle item = ValueFor(array, target.array, value);
  const ASInt32 length = target.array.getArrayNItems();
  if (index < length) {
    target.array.setArrayItem(index, item);
  } else {
    if (index > kHighestIndex) {
      throw HostError(kASOutOfRange, Describe(array) + ": an array does not grow to the index " + std::to_string(index));
    }
    for (ASInt32 gap = length; gap < index; ++gap) target.array.appendItem(QPDFObjectHandle::newNull());
    target.array.appendItem(item);
  }
  target.document.Streams().AfterPut(target.array, index, item);
  target.document.AfterCosEdit(target.array, {});
}

void CosArrayInsert(CosObj array, ASInt32 pos, CosObj value) {
  Target target(array);
  CheckIndex(array, pos);
  const QPDFObjectHandle item = ValueFor(array, target.array, value);
  // Callers pass positions past the end to append.
  const int index = std::min(pos, target.array.getArrayNItems());
  target.array.insertItem(index, item);
  target.document.Streams().AfterPut(target.array, index, item);
  target.document.AfterCosEdit(target.array, {});
}

}  // namespace operations
}  // namespace tgx::host
