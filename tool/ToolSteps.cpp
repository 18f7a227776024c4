#include "tool/ToolSteps.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <string_view>

#include <tgx/tgx.h>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/PageContent.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

constexpr std::string_view kUtf16Mark = "\xFE\xFF";

/// Whether the bytes are UTF-16 that has lost its zero bytes, and so are none any longer: the library leaves a language so
/// that it takes from one element to another.
bool IsCutUtf16(std::string_view bytes) {
  return bytes.starts_with(kUtf16Mark) &&
         std::all_of(bytes.begin() + kUtf16Mark.size(), bytes.end(), [](unsigned char c) { return c >= ' ' && c < 0x7F; });
}

void WritePlainLanguage(PDSElement element) {
  if (PDSElementHasLanguage(element) == 0) return;
  const std::string code = PlainLanguage(TextOf(element, PDSElementGetLanguage));
  if (!code.empty()) SetLanguage(element, code);
}

/// Of the document itself, or of the properties of marked content. True if there was one to write.
bool WritePlainLanguage(CosDoc document, CosObj dictionary) {
  const CosObj language = CosDictGetKeyString(dictionary, "Lang");
  if (CosObjGetType(language) != CosString) return false;
  const std::string code = PlainLanguage(BytesOf(language));
  if (code.empty()) return false;
  PutString(document, dictionary, "Lang", code);
  return true;
}

/// As deep as the host lets marked content nest. True if anything was written.
bool WritePlainLanguages(CosDoc document, PDEContent content) {  // NOLINT(misc-no-recursion)
  bool isChanged = false;
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 i = 0; i < count; ++i) {
    const PDEElement element = PDEContentGetElem(content, i);
    if (PDEObjectGetType(element) != kPDEContainer) continue;
    CosObj properties = {};
    if (PDEContainerGetDict(element, &properties, nullptr) != 0) isChanged |= WritePlainLanguage(document, properties);
    isChanged |= WritePlainLanguages(document, PDEContainerGetContent(element));
  }
  return isChanged;
}

void WritePlainLanguagesOfPages(PDDoc document) {
  const ASInt32 count = PDDocGetNumPages(document);
  for (ASInt32 i = 0; i < count; ++i) {
    const PageContent content(document, i);
    if (WritePlainLanguages(PDDocGetCosDoc(document), content.Get())) PDPageSetPDEContent(content.Page(), nullptr);
  }
}

void RunPlainLanguages(PDDoc document) {
  const HostFrame frame;
  ForEachElement(document, [](PDSElement element) { WritePlainLanguage(element); });
  const CosDoc cosDoc = PDDocGetCosDoc(document);
  WritePlainLanguage(cosDoc, CosDocGetRoot(cosDoc));
  WritePlainLanguagesOfPages(document);
}

}  // namespace

bool IsLanguageCode(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(),
                                      [](unsigned char c) { return c == '-' || (c < 0x80 && std::isalnum(c) != 0); });
}

std::string LanguageInBrackets(const std::string& bytes) {
  constexpr std::string_view kOpen = "[Lang=";
  std::string text = IsCutUtf16(bytes) ? bytes.substr(kUtf16Mark.size()) : DecodeTextString(bytes);
  if (!text.starts_with(kOpen) || !text.ends_with(']')) return "";
  text = text.substr(kOpen.size(), text.size() - kOpen.size() - 1);
  // As systems name their locales; languages of documents have hyphens.
  std::replace(text.begin(), text.end(), '_', '-');
  return IsLanguageCode(text) ? text : "";
}

std::string PlainLanguage(const std::string& bytes) {
  const std::string cut = IsCutUtf16(bytes) ? bytes.substr(kUtf16Mark.size()) : "";
  return IsLanguageCode(cut) ? cut : LanguageInBrackets(bytes);
}

StepResult RunToolStep(PDDoc document, const std::string& name) {
  try {
    if (name != "plain-languages") throw std::logic_error("the command has no step " + name);
    RunPlainLanguages(document);
    return {TGX_OK, ""};
  } catch (const HostFailure& failure) {
    return {TGX_FAILED, failure.what()};
  }
}

}  // namespace tgx::tool
