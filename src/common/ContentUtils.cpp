#include "src/common/ContentUtils.h"

#include <array>
#include <cstring>

#include "src/api/StructureError.h"
#include "src/common/HostTexts.h"

namespace tgx {
namespace {

constexpr char kSourceFile[] = "common/ContentUtils";

// No code of a font is longer than four bytes.
using CharacterCode = std::array<ASUns8, 10>;

// The value of `key` in the container's property dictionary, when it is there and of that type.
bool FindProperty(PDEContainer container, const char* key, ASInt32 type, CosObj& value) {
  CosObj dict = CosNewNull();
  ASBool isInline = 0;
  if (PDEContainerGetDict(container, &dict, &isInline) == 0) return false;
  if (CosDictKnownKeyString(dict, key) == 0) return false;
  value = CosDictGetKeyString(dict, key);
  return CosObjGetType(value) == type;
}

// Appends the one unit that a code of several bytes stands for; false when it is no unit of two or four bytes.
bool AppendTranslation(PDEFont font, const CharacterCode& code, ASInt32 codeSize, std::vector<std::uint16_t>& utf16,
                       std::vector<std::uint32_t>& utf32) {
  const ASInt32 size = PDEFontTranslateGlyphIdsToUnicode(font, code.data(), codeSize, nullptr, 0);
  const auto append = [&](auto& units, auto unit) {
    PDEFontTranslateGlyphIdsToUnicode(font, code.data(), codeSize, reinterpret_cast<ASUns8*>(&unit), sizeof(unit));
    units.push_back(unit);
  };
  if (size == 2) {
    append(utf16, std::uint16_t{0});
  } else if (size == 4) {
    append(utf32, std::uint32_t{0});
  } else {
    return false;
  }
  return true;
}

}  // namespace

ASInt32 GetContainerMCID(PDEContainer container) {
  ASInt32 mcid = -1;
  return FindContainerMCID(container, mcid) ? mcid : -1;
}

bool FindContainerMCID(PDEContainer container, ASInt32& mcid) {
  CosObj value = CosNewNull();
  if (!FindProperty(container, "MCID", CosInteger, value)) return false;
  mcid = CosIntegerValue(value);
  return true;
}

void GetContainerLang(PDEContainer container, ByteVector& lang) {
  lang.clear();
  CosObj value = CosNewNull();
  if (!FindProperty(container, "Lang", CosString, value)) return;
  ASTArraySize size = 0;
  const HostMemory<char> copy(CosCopyStringValue(value, &size));
  lang.assign(copy.get(), copy.get() + size);
}

ASInt32 GetElementKind(const PDEElement* element) {
  return *element == nullptr ? kNullElementKind : PDEObjectGetType(*element);
}

PDPage AcquirePageOfCosPage(CosObj page) {
  if (CosObjGetType(page) == CosNull) return nullptr;
  const ASInt32 number = PDPageNumFromCosObj(page);
  const PDDoc document = PDDocFromCosDoc(CosObjGetDoc(page));
  return document == nullptr ? nullptr : PDDocAcquirePage(document, number);
}

void GetRawText(PDEText text, ByteVector& codes) {
  codes.clear();
  if (text == nullptr) return;
  const ASInt32 count = PDETextGetNumChars(text);
  for (ASInt32 index = 0; index < count; ++index) {
    CharacterCode code = {};
    const ASInt32 size = PDETextGetText(text, kPDETextChar, index, code.data());
    codes.insert(codes.end(), code.data(), code.data() + size);
  }
}

void GetUnicodeText(PDEText text, ByteVector& single, std::vector<std::uint16_t>& utf16, std::vector<std::uint32_t>& utf32) {
  single.clear();
  utf16.clear();
  utf32.clear();
  const ASInt32 count = PDETextGetNumChars(text);
  for (ASInt32 index = 0; index < count; ++index) {
    const PDEFont font = PDETextGetFont(text, kPDETextChar, index);
    if (font == nullptr) return ReportStructureError("Failed to get char Font", kSourceFile, 318);
    if ((PDEFontGetCreateNeedFlags(font) & kPDEFontCreateToUnicode) != 0) {
      return ReportStructureError("No ToUnicode table found", kSourceFile, 324);
    }
    CharacterCode code = {};
    const ASInt32 size = PDETextGetText(text, kPDETextChar, index, code.data());
    if (size < 1) return ReportStructureError("Unknown text char size", kSourceFile, 356);
    if (size == 1) {
      single.push_back(code[0]);
    } else if (!AppendTranslation(font, code, size, utf16, utf32)) {
      return ReportStructureError("Unknown utf char size", kSourceFile, 352);
    }
  }
}

void MarkAsArtifact(const PDEContainer* container) {
  PDEContainerSetMCTag(*container, ASAtomFromString("Artifact"));
  CosObj dict = CosNewNull();
  ASBool isInline = 0;
  if (PDEContainerGetDict(*container, &dict, &isInline) == 0) return;
  if (CosDictKnownKeyString(dict, "MCID") != 0) CosDictRemoveKeyString(dict, "MCID");
}

}  // namespace tgx
