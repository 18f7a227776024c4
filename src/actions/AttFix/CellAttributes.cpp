#include "src/actions/AttFix/CellAttributes.h"

#include <array>
#include <cstdio>

namespace tgx {
namespace {

void PutName(CosObj dictionary, const char* key, const char* name) {
  CosDictPutKeyString(dictionary, key, CosNewName(CosObjGetDoc(dictionary), 0, ASAtomFromString(name)));
}

/// A cell and the references to it carry the same row and index, and so get the same identifier.
CosObj NewIdentifier(CosDoc document, int number, const SthTableCell& cell) {
  std::array<char, 50> text{};
  const int length = std::snprintf(text.data(), text.size(), "%d_%d_%d", number, cell.row, cell.index);
  return CosNewString(document, 0, text.data(), length);
}

void SetHeaders(CosObj element, int number, const SthTableCell& cell) {
  const CosDoc document = CosObjGetDoc(element);
  CosObj attributes;
  if (CosDictKnownKeyString(element, "A") != 0) {
    attributes = CosDictGetKeyString(element, "A");
  } else {
    attributes = CosNewDict(document, 0, 2);
    CosDictPutKeyString(element, "A", attributes);
  }
  PutName(attributes, "O", "Table");
  const CosObj headers = CosNewArray(document, 0, 0);
  CosDictPutKeyString(attributes, "Headers", headers);
  for (const auto& header : cell.headers) {
    CosArrayInsert(headers, CosArrayLength(headers), NewIdentifier(document, number, *header));
  }
}

}  // namespace

void SetScope(const PDSElement& element, const char* scope) {
  const CosObj object = PDSElementGetCosObj(element);
  if (CosDictKnownKeyString(object, "A") != 0) {
    const CosObj attributes = CosDictGetKeyString(object, "A");
    PutName(attributes, "O", "Table");
    PutName(attributes, "Scope", scope);
    return;
  }
  const CosObj attributes = CosNewDict(CosObjGetDoc(object), 0, 2);
  PutName(attributes, "O", "Table");
  PutName(attributes, "Scope", scope);
  CosDictPutKeyString(object, "A", attributes);
}

void SetIdentifiers(const PDSElement& element, int number, const SthTableCell& cell) {
  const CosObj object = PDSElementGetCosObj(element);
  CosDictPutKeyString(object, "ID", NewIdentifier(CosObjGetDoc(object), number, cell));
  if (!cell.headers.empty()) SetHeaders(object, number, cell);
}

}  // namespace tgx
