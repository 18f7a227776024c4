#include "src/forms/AcroFormField.h"

namespace tgx::acroform {
namespace {

bool IsDictionary(CosObj object) { return CosObjGetType(object) == CosDict; }

bool IsAnnotation(CosObj dictionary) {
  if (CosDictKnownKeyString(dictionary, "Type") == 0) return false;
  const CosObj type = CosDictGetKeyString(dictionary, "Type");
  return CosObjGetType(type) == CosName && CosNameValue(type) == ASAtomFromString("Annot");
}

CosObj WidgetOf(CosObj field) {
  if (!IsDictionary(field)) return CosNewNull();
  if (IsAnnotation(field)) return field;
  const CosObj kids = CosDictGetKeyString(field, "Kids");
  if (CosObjGetType(kids) != CosArray) return CosNewNull();
  const ASInt32 count = CosArrayLength(kids);
  for (ASInt32 i = 0; i < count; ++i) {
    const CosObj kid = CosArrayGet(kids, i);
    if (IsDictionary(kid) && IsAnnotation(kid)) return kid;
  }
  return CosNewNull();
}

std::string BytesOf(CosObj text) {
  ASTArraySize count = 0;
  const char* bytes = CosStringValue(text, &count);
  return {bytes, static_cast<std::size_t>(count)};
}

}  // namespace

AcroFormField::AcroFormField(CosObj field) : field_(field), widget_(WidgetOf(field)) {}

FieldType AcroFormField::Type() const {
  std::string text;
  ReadName(Owner::Field, "FT", text);
  if (text == "Btn") return FieldType::Button;
  if (text == "Tx") return FieldType::Text;
  if (text == "Ch") return FieldType::Choice;
  if (text == "Sig") return FieldType::Signature;
  return FieldType::Unknown;
}

std::string AcroFormField::Name() const {
  if (!IsDictionary(field_) || CosDictKnownKeyString(field_, "T") == 0) return {};
  // The type is not looked at: a name that is no string is the host's to refuse.
  return BytesOf(CosDictGetKeyString(field_, "T"));
}

std::vector<CosObj> AcroFormField::Kids() const {
  std::vector<CosObj> items;
  CosObj kids;
  if (!ReadObject(Owner::Field, "Kids", CosArray, kids)) return items;
  const ASInt32 count = CosArrayLength(kids);
  for (ASInt32 i = 0; i < count; ++i) items.push_back(CosArrayGet(kids, i));
  return items;
}

CosObj AcroFormField::Entry(Owner owner, const char* key, std::int32_t cosType) const {
  const CosObj dictionary = DictionaryOf(owner);
  if (!IsDictionary(dictionary) || CosDictKnownKeyString(dictionary, key) == 0) return CosNewNull();
  const CosObj value = CosDictGetKeyString(dictionary, key);
  return CosObjGetType(value) == cosType ? value : CosNewNull();
}

bool AcroFormField::ReadName(Owner owner, const char* key, std::string& text) const {
  text.clear();
  const CosObj value = Entry(owner, key, CosName);
  if (CosObjGetType(value) == CosNull) return false;
  text = ASAtomGetString(CosNameValue(value));
  return true;
}

bool AcroFormField::ReadString(Owner owner, const char* key, std::string& bytes) const {
  bytes.clear();
  const CosObj value = Entry(owner, key, CosString);
  if (CosObjGetType(value) == CosNull) return false;
  bytes = BytesOf(value);
  return true;
}

bool AcroFormField::ReadInteger(Owner owner, const char* key, std::int32_t& value) const {
  value = 0;
  const CosObj entry = Entry(owner, key, CosInteger);
  if (CosObjGetType(entry) == CosNull) return false;
  value = CosIntegerValue(entry);
  return true;
}

bool AcroFormField::ReadObject(Owner owner, const char* key, std::int32_t cosType, CosObj& object) const {
  object = Entry(owner, key, cosType);
  return CosObjGetType(object) != CosNull;
}

bool AcroFormField::ReadValue(const char* key, std::string& value) const {
  return Type() == FieldType::Button ? ReadName(Owner::Field, key, value) : ReadString(Owner::Field, key, value);
}

CosDoc AcroFormField::Document() const { return CosObjGetDoc(field_); }

void AcroFormField::WriteName(Owner owner, const char* key, const std::string& text) {
  WriteObject(owner, key, text.empty() ? CosNewNull() : CosNewName(Document(), 0, ASAtomFromString(text.c_str())));
}

void AcroFormField::WriteString(Owner owner, const char* key, const std::string& bytes) {
  WriteObject(
      owner, key,
      bytes.empty() ? CosNewNull() : CosNewString(Document(), 0, bytes.data(), static_cast<ASTArraySize>(bytes.size())));
}

void AcroFormField::WriteInteger(Owner owner, const char* key, std::int32_t value) {
  WriteObject(owner, key, CosNewInteger(Document(), 0, value));
}

void AcroFormField::WriteObject(Owner owner, const char* key, CosObj object) {
  ReplaceEntry(DictionaryOf(owner), key, object);
}

void ReplaceEntry(CosObj dictionary, const char* key, CosObj value) {
  if (!IsDictionary(dictionary)) return;
  if (CosDictKnownKeyString(dictionary, key) == 1) {
    const CosObj old = CosDictGetKeyString(dictionary, key);
    CosDictRemoveKeyString(dictionary, key);
    CosObjDestroy(old);
  }
  CosDictPutKeyString(dictionary, key, value);
}

}  // namespace tgx::acroform
