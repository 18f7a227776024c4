#include "tool/ToolSteps.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <string_view>

#include <tgx/tgx.h>

#include "tool/Elements.h"
#include "tool/HostCalls.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

bool IsLanguageCode(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(),
                                      [](unsigned char c) { return c == '-' || (c < 0x80 && std::isalnum(c) != 0); });
}

void WritePlainLanguage(PDSElement element) {
  if (PDSElementHasLanguage(element) == 0) return;
  const std::string code = LanguageInBrackets(TextOf(element, PDSElementGetLanguage));
  if (!code.empty()) SetLanguage(element, code);
}

/// The document's own language.
void WritePlainLanguageOfDocument(PDDoc document) {
  const CosDoc cosDoc = PDDocGetCosDoc(document);
  const CosObj catalog = CosDocGetRoot(cosDoc);
  const CosObj language = CosDictGetKeyString(catalog, "Lang");
  if (CosObjGetType(language) != CosString) return;
  const std::string code = LanguageInBrackets(BytesOf(language));
  if (!code.empty()) PutString(cosDoc, catalog, "Lang", code);
}

void RunPlainLanguages(PDDoc document) {
  const HostFrame frame;
  ForEachElement(document, WritePlainLanguage);
  WritePlainLanguageOfDocument(document);
}

}  // namespace

std::string LanguageInBrackets(const std::string& bytes) {
  constexpr std::string_view kOpen = "[Lang=";
  std::string text = DecodeTextString(bytes);
  if (!text.starts_with(kOpen) || !text.ends_with(']')) return "";
  text = text.substr(kOpen.size(), text.size() - kOpen.size() - 1);
  return IsLanguageCode(text) ? text : "";
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
