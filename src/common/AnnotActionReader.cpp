#include "src/common/AnnotActionReader.h"

#include "src/api/HostException.h"
#include "src/common/HostTexts.h"

namespace tgx {
namespace {

/// A PDF text string up to its first zero unit; the host raises for what is no string.
std::u16string DecodeString(CosObj string) {
  const OwnedAsText text(ASTextNew());
  ASTextSetPDText(text.get(), CosStringValue(string, nullptr));
  std::u16string units;
  for (const ASUTF16Val* unit = ASTextGetUnicode(text.get()); *unit != 0; ++unit) {
    units.push_back(static_cast<char16_t>(*unit));
  }
  return units;
}

/// The file that a launch action names, as a string or as a file specification.
std::u16string ReadLaunch(CosObj annotation) {
  const CosObj file = CosDictGetKeyString(CosDictGetKeyString(annotation, "A"), "F");
  switch (CosObjGetType(file)) {
    case CosString:
      return DecodeString(file);
    case CosDict:
      return DecodeString(CosDictGetKeyString(file, "F"));
    default:
      return {};
  }
}

std::u16string ReadUri(CosObj annotation) {
  return DecodeString(CosDictGetKeyString(CosDictGetKeyString(annotation, "A"), "URI"));
}

bool IsNamed(CosObj dictionary, const char* key, const char* name) {
  return CosDictKnownKeyString(dictionary, key) != 0 &&
         CosNameValue(CosDictGetKeyString(dictionary, key)) == ASAtomFromString(name);
}

}  // namespace

void AnnotActionReader::Describe(CosObj annotation, std::u16string& output) const {
  std::u16string target;
  try {
    InExceptionFrame([&] {
      if (const Reader reader = ReaderFor(ActionType(annotation))) target = reader(annotation);
    });
  } catch (const APDFLException::ASExceptionInfo&) {
    // A link that cannot be read is described by its text alone.
    static_cast<void>(ASGetExceptionErrorCode());
  }
  if (!target.empty()) output.append(u"(").append(target).append(u")");
}

std::string_view AnnotActionReader::ActionType(CosObj annotation) {
  if (!IsNamed(annotation, "Type", "Annot") || !IsNamed(annotation, "Subtype", "Link")) return "Unknown";
  if (CosDictKnownKeyString(annotation, "A") == 0) return "Unknown";
  const CosObj action = CosDictGetKeyString(annotation, "A");
  if (CosDictKnownKeyString(action, "S") == 0) return "Unknown";
  return ASAtomGetString(CosNameValue(CosDictGetKeyString(action, "S")));
}

AnnotActionReader::Reader AnnotActionReader::ReaderFor(std::string_view type) {
  if (type == "Launch") return ReadLaunch;
  if (type == "URI") return ReadUri;
  return nullptr;
}

}  // namespace tgx
