#include "host/pdsedit/KidKinds.h"

#include <algorithm>
#include <limits>
#include <string>

#include "host/core/Atoms.h"
#include "host/cos/Names.h"

namespace tgx::host {
namespace {

KidKind KindByKeys(QPDFObjectHandle& item) {
  if (item.hasKey("/MCID")) return item.hasKey("/Stm") ? KidKind::kStreamReference : KidKind::kReference;
  if (item.hasKey("/Obj")) return KidKind::kObject;
  if (item.hasKey("/S")) return KidKind::kElement;
  return KidKind::kOther;
}

}  // namespace

KidKind KindOf(QPDFObjectHandle& item) {
  if (item.isInteger()) return KidKind::kNumber;
  if (!item.isDictionary()) return KidKind::kOther;
  QPDFObjectHandle type = item.getKey("/Type");
  if (!type.isName()) return KindByKeys(item);
  const std::string name = type.getName();
  if (name == "/StructElem") return KidKind::kElement;
  if (name == "/MCR") return item.hasKey("/Stm") ? KidKind::kStreamReference : KidKind::kReference;
  if (name == "/OBJR") return KidKind::kObject;
  return KidKind::kOther;
}

ASAtom TypeNameOf(KidKind kind, QPDFObjectHandle& item) {
  static const ASAtom kElementName = Intern("StructElem");
  static const ASAtom kMarkedContentName = Intern("MC");
  static const ASAtom kObjectName = Intern("OBJR");
  static const ASAtom kUnknownName = Intern("Unknown");
  switch (kind) {
    case KidKind::kElement:
      return kElementName;
    case KidKind::kNumber:
    case KidKind::kReference:
    case KidKind::kStreamReference:
      return kMarkedContentName;
    case KidKind::kObject:
      return kObjectName;
    case KidKind::kOther:
      break;
  }
  if (item.isDictionary()) return NameOr(item.getKey("/Type"), kUnknownName);
  if (item.isStream()) return NameOr(item.getDict().getKey("/Type"), kUnknownName);
  return kUnknownName;
}

ASInt32 IntegerOr(QPDFObjectHandle object, ASInt32 fallback) {
  long long value = 0;
  if (!object.getValueAsInt(value)) return fallback;
  constexpr long long kLow = std::numeric_limits<ASInt32>::min();
  constexpr long long kHigh = std::numeric_limits<ASInt32>::max();
  return static_cast<ASInt32>(std::clamp(value, kLow, kHigh));
}

ASAtom NameOr(QPDFObjectHandle object, ASAtom fallback) {
  return object.isName() ? AtomOfQpdfName(object.getName()) : fallback;
}

QPDFObjectHandle NameObject(ASAtom atom) { return QPDFObjectHandle::newName(ToQpdfName(AtomView(atom))); }

}  // namespace tgx::host
