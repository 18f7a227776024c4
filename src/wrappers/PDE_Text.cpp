#include "src/wrappers/PDE_Text.h"

namespace tgx {

ASUns32 PDE_Text::GetText(std::vector<char>& out) const {
  out.clear();
  std::vector<ASUns8> codes;
  std::vector<ASUns8> unicode;
  const ASInt32 count = PDETextGetNumChars(GetHandle());
  for (ASInt32 index = 0; index != count; ++index) {
    const PDEFont font = PDETextGetFont(GetHandle(), kPDETextChar, index);
    const ASInt32 length = PDETextGetText(GetHandle(), kPDETextChar, index, nullptr);
    codes.resize(static_cast<std::size_t>(length));
    PDETextGetText(GetHandle(), kPDETextChar, index, codes.data());
    const ASInt32 needed = font == nullptr ? 0 : PDEFontTranslateGlyphIdsToUnicode(font, codes.data(), length, nullptr, 0);
    if (needed < 1) {
      out.insert(out.end(), codes.begin(), codes.end());
      continue;
    }
    unicode.resize(static_cast<std::size_t>(needed));
    PDEFontTranslateGlyphIdsToUnicode(font, codes.data(), length, unicode.data(), needed);
    out.insert(out.end(), unicode.begin(), unicode.end());
  }
  return static_cast<ASUns32>(out.size());
}

}  // namespace tgx
