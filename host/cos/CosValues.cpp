#include <algorithm>
#include <limits>

#include "host/core/Fixed.h"
#include "host/core/HostError.h"
#include "host/core/Memory.h"
#include "host/core/Operations.h"
#include "host/cos/CosAccess.h"
#include "host/cos/Names.h"
#include "host/cos/Numbers.h"

namespace tgx::host {
namespace {

// Behind the bytes of a string, so that a reader of PDF text strings finds an end, also in UTF-16.
constexpr std::size_t kZeroesBehindString = 2;

void StoreCount(ASTArraySize* count, std::size_t size) {
  if (count != nullptr)
    *count = static_cast<ASTArraySize>(std::min<std::size_t>(size, std::numeric_limits<ASTArraySize>::max()));
}

}  // namespace

namespace operations {

ASBool CosBooleanValue(CosObj obj) { return SlotOfType(obj, CosBoolean).object.getBoolValue() ? 1 : 0; }

ASInt32 CosIntegerValue(CosObj obj) {
  constexpr long long kLow = std::numeric_limits<ASInt32>::min();
  constexpr long long kHigh = std::numeric_limits<ASInt32>::max();
  return static_cast<ASInt32>(std::clamp(SlotOfType(obj, CosInteger).object.getIntValue(), kLow, kHigh));
}

ASFixed CosFixedValue(CosObj obj) {
  const bool isInteger = !IsNull(obj) && ObjectOf(obj).isInteger();
  return ToFixed(NumberOf(SlotOfType(obj, isInteger ? CosInteger : CosFixed).object));
}

ASAtom CosNameValue(CosObj obj) { return AtomOfQpdfName(SlotOfType(obj, CosName).object.getName()); }

const char* CosStringValue(CosObj obj, ASTArraySize* count) {
  ObjectTable::Slot& slot = SlotOfType(obj, CosString);
  std::string bytes = slot.object.getStringValue();
  StoreCount(count, bytes.size());
  bytes.append(kZeroesBehindString, '\0');
  slot.bytes = std::make_unique<std::string>(std::move(bytes));
  return slot.bytes->c_str();
}

char* CosCopyStringValue(CosObj obj, ASTArraySize* count) {
  const std::string bytes = SlotOfType(obj, CosString).object.getStringValue();
  StoreCount(count, bytes.size());
  return static_cast<char*>(GiveOut(bytes, kZeroesBehindString));
}

}  // namespace operations
}  // namespace tgx::host
