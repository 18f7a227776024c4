#include "host/pdfedit/Handles.h"

#include <array>

#include "host/core/HostError.h"

namespace tgx::host {
namespace {

FoundRecord Living(PDEObject object) {
  const FoundRecord found = FindRecord(object);
  const bool isFreed = found.slab != nullptr && found.slab->kind == RecordKind::kText &&
                       static_cast<TextRecord*>(found.record)->text == nullptr;
  if (found.slab == nullptr || isFreed) {
    throw HostError(kASBadParameter,
                    object == nullptr ? "a null page content handle" : "no living page content object has this handle");
  }
  return found;
}

const char* KindName(ASInt32 type) {
  constexpr std::array<const char*, 19> kNames = {
      "content list", "text",  "path",      "image", "form", "PS XObject", "XObject", "clip",  "font",   "colour space",
      "ExtGState",    "place", "container", "",      "",     "",           "shading", "group", "unknown"};
  return kNames[static_cast<std::size_t>(type)];
}

[[noreturn]] void ThrowWrongType(PDEObject object, const char* wanted) {
  throw HostError(kASWrongType,
                  std::string("the page content object is no ") + wanted + " but of the kind " + KindName(TypeOf(object)));
}

ElementRef ElementOf(const FoundRecord& found, PDEObject object, int type) {
  const bool fits =
      found.slab->kind == RecordKind::kElement && (type == kAnyType || static_cast<Element*>(found.record)->type == type);
  if (!fits) ThrowWrongType(object, type == kAnyType ? "element of a page" : KindName(type));
  return {static_cast<PageModel*>(found.slab->owner), found.number};
}

CreatedText* CreatedTextOf(const FoundRecord& found) {
  return found.slab->kind == RecordKind::kText ? static_cast<TextRecord*>(found.record)->text : nullptr;
}

}  // namespace

ASInt32 TypeOf(PDEObject object) {
  const FoundRecord found = Living(object);
  switch (found.slab->kind) {
    case RecordKind::kElement:
      return static_cast<Element*>(found.record)->type;
    case RecordKind::kText:
      return kPDEText;
    case RecordKind::kFont:
      return kPDEFont;
    case RecordKind::kColorSpace:
      return kPDEColorSpace;
    case RecordKind::kList:
      break;
  }
  return kPDEContent;
}

ElementRef ElementOf(PDEObject object, int type) { return ElementOf(Living(object), object, type); }

ListRef ListOf(PDEContent list) {
  const FoundRecord found = Living(list);
  if (found.slab->kind != RecordKind::kList) ThrowWrongType(list, KindName(kPDEContent));
  return {static_cast<PageModel*>(found.slab->owner), found.number};
}

TextRef TextOf(PDEText text) {
  const FoundRecord found = Living(text);
  if (CreatedText* created = CreatedTextOf(found)) return {nullptr, 0, created};
  const ElementRef element = ElementOf(found, text, kPDEText);
  return {element.page, element.number, nullptr};
}

CreatedText* CreatedTextOf(PDEObject object) { return CreatedTextOf(Living(object)); }

}  // namespace tgx::host
