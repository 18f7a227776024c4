#include "tool/FormAppearances.h"

#include <map>
#include <vector>

#include "tool/HostCalls.h"

namespace tgx::tool {
namespace {

constexpr char kNeedAppearances[] = "NeedAppearances";

/// The form that values came from, open as long as it is looked at.
class OtherForm {
 public:
  explicit OtherForm(const std::string& path) : document_(TGXHost_OpenFile(path.c_str(), nullptr)) {}
  ~OtherForm() {
    if (document_ != nullptr) TGXHost_Close(document_);
  }
  OtherForm(const OtherForm&) = delete;
  OtherForm& operator=(const OtherForm&) = delete;

  PDDoc Handle() const { return document_; }

 private:
  PDDoc document_;
};

/// An entry of a dictionary; the null object without one, and for anything but a dictionary.
CosObj Entry(CosObj dictionary, const char* key) {
  return CosObjGetType(dictionary) == CosDict ? CosDictGetKeyString(dictionary, key) : CosNewNull();
}

CosObj FormOf(PDDoc document) { return Entry(CosDocGetRoot(PDDocGetCosDoc(document)), "AcroForm"); }

std::vector<CosObj> Items(CosObj array) {
  std::vector<CosObj> items;
  if (CosObjGetType(array) != CosArray) return items;
  const ASInt32 count = CosArrayLength(array);
  for (ASInt32 i = 0; i < count; ++i) items.push_back(CosArrayGet(array, i));
  return items;
}

bool IsName(CosObj object, const char* name) {
  return CosObjGetType(object) == CosName && CosNameValue(object) == ASAtomFromString(name);
}

bool AsksForAppearances(CosObj form) {
  const CosObj flag = Entry(form, kNeedAppearances);
  return CosObjGetType(flag) == CosBoolean && CosBooleanValue(flag) != 0;
}

std::string NameOf(CosObj field) {
  const CosObj name = Entry(field, "T");
  if (CosObjGetType(name) != CosString) return {};
  ASTArraySize count = 0;
  const char* bytes = CosStringValue(name, &count);
  return {bytes, static_cast<std::size_t>(count)};
}

/// Appearances go from annotation to annotation; a signature field can do without one.
bool TookAppearance(CosObj widget, CosObj other) {
  if (IsName(Entry(widget, "FT"), "Sig") && IsNull(Entry(widget, "AP"))) return true;
  return IsName(Entry(widget, "Type"), "Annot") && IsName(Entry(other, "Type"), "Annot") &&
         !IsNull(Entry(Entry(widget, "AP"), "N")) && !IsNull(Entry(Entry(other, "AP"), "N"));
}

/// Fields pair by name, their kids by place, and kids of kids not at all.
bool TookAppearances(CosObj field, CosObj other) {
  const std::vector<CosObj> kids = Items(Entry(field, "Kids"));
  const std::vector<CosObj> others = Items(Entry(other, "Kids"));
  if (kids.size() != others.size()) return false;
  if (kids.empty()) return TookAppearance(field, other);
  for (std::size_t i = 0; i < kids.size(); ++i) {
    if (!IsNull(Entry(kids[i], "Kids")) || !TookAppearance(kids[i], others[i])) return false;
  }
  return true;
}

bool TookAllAppearances(CosObj form, CosObj other) {
  std::map<std::string, CosObj> others;
  for (const CosObj& field : Items(Entry(other, "Fields"))) others.emplace(NameOf(field), field);
  for (const CosObj& field : Items(Entry(form, "Fields"))) {
    const auto partner = others.find(NameOf(field));
    if (partner == others.end() || !TookAppearances(field, partner->second)) return false;
  }
  return true;
}

}  // namespace

void KeepCopiedAppearances(PDDoc document, const std::string& formPath) {
  const HostFrame frame;
  const CosObj form = FormOf(document);
  if (!AsksForAppearances(form)) return;
  const OtherForm other(formPath);
  if (other.Handle() == nullptr) return;
  const CosObj otherForm = FormOf(other.Handle());
  if (!AsksForAppearances(otherForm) && TookAllAppearances(form, otherForm)) CosDictRemoveKeyString(form, kNeedAppearances);
}

}  // namespace tgx::tool
