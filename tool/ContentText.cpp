#include "tool/ContentText.h"

#include "tool/HostCalls.h"
#include "tool/TextString.h"

namespace tgx::tool {
namespace {

std::string TextOfRun(PDEText text, ASInt32 run) {
  const PDEFont font = PDETextGetFont(text, kPDETextRun, run);
  std::string codes(static_cast<std::size_t>(PDETextGetNumBytes(text, kPDETextRun, run)), '\0');
  if (font == nullptr || codes.empty()) return "";
  auto* bytes = reinterpret_cast<ASUns8*>(codes.data());
  PDETextGetText(text, kPDETextRun, run, bytes);
  const auto count = static_cast<ASInt32>(codes.size());
  std::string utf16(static_cast<std::size_t>(PDEFontTranslateGlyphIdsToUnicode(font, bytes, count, nullptr, 0)), '\0');
  if (utf16.empty()) return "";
  PDEFontTranslateGlyphIdsToUnicode(font, bytes, count, reinterpret_cast<ASUns8*>(utf16.data()),
                                    static_cast<ASInt32>(utf16.size()));
  return DecodeTextString("\xFE\xFF" + utf16);
}

// As deep as the host lets marked content nest.
void AddTexts(PDEContent content, std::string& texts) {  // NOLINT(misc-no-recursion)
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 i = 0; i < count; ++i) {
    const PDEElement element = PDEContentGetElem(content, i);
    const ASInt32 type = PDEObjectGetType(element);
    if (type == kPDEContainer) AddTexts(PDEContainerGetContent(element), texts);
    if (type != kPDEText) continue;
    const ASInt32 runs = PDETextGetNumRuns(element);
    for (ASInt32 run = 0; run < runs; ++run) texts += TextOfRun(element, run);
  }
}

}  // namespace

std::string ShownText(PDEContainer container) {
  const HostFrame frame;
  std::string text;
  AddTexts(PDEContainerGetContent(container), text);
  return text;
}

}  // namespace tgx::tool
