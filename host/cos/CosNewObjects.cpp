#include <cmath>

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/core/Operations.h"
#include "host/cos/Names.h"
#include "host/cos/Numbers.h"
#include "host/pdmodel/Document.h"

namespace tgx::host {
namespace {

/// Gives a new object to its document. qpdf treats an object without an owner more harshly: it throws where it would warn.
CosObj Register(Document& document, ASBool indirect, QPDFObjectHandle object) {
  if (indirect != 0) return document.HandleOf(document.Pdf().makeIndirectObject(object));
  object.setObjectDescription(&document.Pdf(), "a new object");
  return document.HandleOf(object);
}

}  // namespace

namespace operations {

CosObj CosNewNull(void) { return kNullObject; }

CosObj CosNewBoolean(CosDoc doc, ASBool indirect, ASBool value) {
  return Register(Document::Of(doc), indirect, QPDFObjectHandle::newBool(value != 0));
}

CosObj CosNewInteger(CosDoc doc, ASBool indirect, ASInt32 value) {
  return Register(Document::Of(doc), indirect, QPDFObjectHandle::newInteger(value));
}

CosObj CosNewFixed(CosDoc doc, ASBool indirect, ASFixed value) {
  return Register(Document::Of(doc), indirect, QPDFObjectHandle::newReal(RealText(value)));
}

CosObj CosNewFloat(CosDoc doc, ASBool indirect, float value) {
  if (!std::isfinite(value)) throw HostError(kASBadParameter, "a real number is neither infinite nor undefined");
  return Register(Document::Of(doc), indirect, QPDFObjectHandle::newReal(RealText(value)));
}

CosObj CosNewName(CosDoc doc, ASBool indirect, ASAtom name) {
  return Register(Document::Of(doc), indirect, QPDFObjectHandle::newName(ToQpdfName(AtomView(name))));
}

CosObj CosNewString(CosDoc doc, ASBool indirect, const char* bytes, ASTArraySize count) {
  if (count < 0 || (bytes == nullptr && count > 0)) throw HostError(kASBadParameter, "string without bytes");
  const std::string text = bytes == nullptr ? std::string() : std::string(bytes, static_cast<std::size_t>(count));
  return Register(Document::Of(doc), indirect, QPDFObjectHandle::newString(text));
}

CosObj CosNewArray(CosDoc doc, ASBool indirect, ASTArraySize /*hint*/) {
  return Register(Document::Of(doc), indirect, QPDFObjectHandle::newArray());
}

CosObj CosNewDict(CosDoc doc, ASBool indirect, ASTArraySize /*hint*/) {
  return Register(Document::Of(doc), indirect, QPDFObjectHandle::newDictionary());
}

}  // namespace operations
}  // namespace tgx::host
