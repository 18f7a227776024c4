#include "host/cos/CosAccess.h"

#include <unordered_set>
#include <utility>
#include <vector>

#include "host/core/HostError.h"

namespace tgx::host {
namespace {

// qpdf gives up on direct objects that are nested deeper than this when it reads a file.
constexpr std::size_t kDeepestNesting = 500;

const char* TypeName(ASInt32 type) {
  switch (type) {
    case CosInteger:
      return "an integer";
    case CosFixed:
      return "a real number";
    case CosBoolean:
      return "a boolean";
    case CosName:
      return "a name";
    case CosString:
      return "a string";
    case CosDict:
      return "a dictionary";
    case CosArray:
      return "an array";
    case CosStream:
      return "a stream";
    default:
      return "null";
  }
}

/// The direct containers right below a direct container.
std::vector<QPDFObjectHandle> DirectContainersIn(QPDFObjectHandle container) {
  std::vector<QPDFObjectHandle> found;
  const auto add = [&found](QPDFObjectHandle item) {
    if (!item.isIndirect() && (item.isArray() || item.isDictionary())) found.push_back(std::move(item));
  };
  if (container.isArray()) {
    for (auto& item : container.getArrayAsVector()) add(item);
  } else if (container.isDictionary()) {
    for (auto& [key, item] : container.getDictAsMap()) add(item);
  }
  return found;
}

/// Walks the direct objects of `value` level by level, each once however often it is shared.
void CheckNesting(const QPDFObjectHandle& container, const QPDFObjectHandle& value) {
  const QPDFObject* const forbidden = container.getObjectPtr();
  std::unordered_set<const QPDFObject*> seen;
  std::vector<QPDFObjectHandle> level{value};
  for (std::size_t depth = 1; !level.empty(); ++depth) {
    if (depth >= kDeepestNesting) throw HostError(kASBadParameter, "direct objects nested more than 500 levels deep");
    std::vector<QPDFObjectHandle> below;
    for (const QPDFObjectHandle& object : level) {
      if (object.getObjectPtr() == forbidden) throw HostError(kASBadParameter, "a direct object cannot contain itself");
      for (QPDFObjectHandle& item : DirectContainersIn(object)) {
        if (seen.insert(item.getObjectPtr()).second) below.push_back(std::move(item));
      }
    }
    level = std::move(below);
  }
}

}  // namespace

ASInt32 CosTypeOf(QPDFObjectHandle& object) {
  switch (object.getTypeCode()) {
    case ::ot_boolean:
      return CosBoolean;
    case ::ot_integer:
      return CosInteger;
    case ::ot_real:
      return CosFixed;
    case ::ot_string:
      return CosString;
    case ::ot_name:
      return CosName;
    case ::ot_array:
      return CosArray;
    case ::ot_dictionary:
      return CosDict;
    case ::ot_stream:
      return CosStream;
    default:
      return CosNull;
  }
}

void ThrowWrongType(CosObj handle, const char* wanted) {
  if (IsNull(handle)) throw HostError(kASWrongType, std::string("the null object is not ") + wanted);
  throw HostError(kASWrongType, Describe(handle) + " is " + TypeName(CosTypeOf(ObjectOf(handle))) + ", not " + wanted);
}

ObjectTable::Slot& SlotOfType(CosObj handle, ASInt32 type) {
  if (IsNull(handle)) ThrowWrongType(handle, TypeName(type));
  ObjectTable::Slot& slot = SlotOf(handle);
  if (CosTypeOf(slot.object) != type) ThrowWrongType(handle, TypeName(type));
  return slot;
}

QPDFObjectHandle& ArrayOf(CosObj handle) { return SlotOfType(handle, CosArray).object; }
QPDFObjectHandle& StreamObjectOf(CosObj handle) { return SlotOfType(handle, CosStream).object; }

QPDFObjectHandle DictionaryOf(CosObj handle) {
  if (!IsNull(handle)) {
    QPDFObjectHandle& object = ObjectOf(handle);
    if (object.isDictionary()) return object;
    if (object.isStream()) return object.getDict();
  }
  ThrowWrongType(handle, "a dictionary or a stream");
}

QPDFObjectHandle ValueFor(CosObj containerHandle, const QPDFObjectHandle& container, CosObj value) {
  if (IsNull(value)) return QPDFObjectHandle::newNull();
  QPDFObjectHandle object = ObjectOf(value);
  if (value.b != containerHandle.b) {
    throw HostError(kASBadParameter, Describe(value) + " belongs to another document than " + Describe(containerHandle));
  }
  const bool isDirectContainer = !object.isIndirect() && (object.isArray() || object.isDictionary());
  if (isDirectContainer) CheckNesting(container, object);
  return object;
}

}  // namespace tgx::host
