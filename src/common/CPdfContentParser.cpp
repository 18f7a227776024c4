#include "src/common/CPdfContentParser.h"

#include "src/api/HostException.h"
#include "src/common/ObjectBits.h"
#include "src/common/TextEncoding.h"

namespace tgx {
namespace {

/// The text as far as its fonts tell it. A code of one byte is taken for the character itself; longer ones go through the
/// font. Ends at a character without a font or with one that has no ToUnicode map.
std::u16string ReadText(PDEText text) {
  std::u16string units;
  ByteVector code;
  ByteVector translation;
  PDEFont known = nullptr;
  const ASInt32 count = PDETextGetNumChars(text);
  for (ASInt32 index = 0; index < count; ++index) {
    const PDEFont font = PDETextGetFont(text, kPDETextChar, index);
    if (font == nullptr) break;
    if (font != known && (PDEFontGetCreateNeedFlags(font) & kPDEFontCreateToUnicode) != 0) break;
    known = font;
    const ASInt32 size = PDETextGetText(text, kPDETextChar, index, nullptr);
    code.resize(static_cast<std::size_t>(size));
    PDETextGetText(text, kPDETextChar, index, code.data());
    if (size == 1) {
      units.push_back(code[0]);
    } else if (size > 1) {
      const ASInt32 needed = PDEFontTranslateGlyphIdsToUnicode(font, code.data(), size, nullptr, 0);
      translation.resize(static_cast<std::size_t>(needed));
      PDEFontTranslateGlyphIdsToUnicode(font, code.data(), size, translation.data(), needed);
      AppendUtf16Units(translation, units);
    }
  }
  return units;
}

}  // namespace

CPdfContentParser::CPdfContentParser() { Reset(); }

void CPdfContentParser::SetDoc(PDDoc document) {
  if (document != nullptr) Reset();
  CPdfDocument::SetDoc(document);
}

void CPdfContentParser::Reset() {
  containers_.clear();
  texts_.clear();
  contents_.clear();
  pageNumbers_.clear();
  dispatch_.Set(kPDEContent, &CPdfContentParser::VisitContent);
  dispatch_.Set(kPDEText, &CPdfContentParser::VisitText);
  dispatch_.Set(kPDEContainer, &CPdfContentParser::VisitContainer);
}

void CPdfContentParser::Parse() {
  Reset();
  InExceptionFrame([this] {
    const ASInt32 count = PDDocGetNumPages(GetDoc());
    for (ASInt32 index = 0; index < count; ++index) {
      const PDPage page = PDDocAcquirePage(GetDoc(), index);
      pageNumber_ = PDPageGetNumber(page);
      cosPage_ = PDPageGetCosObj(page);
      pageNumbers_.emplace(BitsOf(cosPage_), pageNumber_);
      const PDEContent content = contents_.emplace_back(page).Get();
      const ASInt32 elements = PDEContentGetNumElems(content);
      for (ASInt32 element = 0; element < elements; ++element) dispatch_(*this, PDEContentGetElem(content, element));
    }
  });
}

void CPdfContentParser::FindRecord(ASInt32 mcid, ASInt32 page, ContentTextRecord& record) const {
  const auto text = texts_.find(KeyOf(mcid, page));
  record = text == texts_.end() ? ContentTextRecord() : ContentTextRecord{mcid, page, ReadText(text->second)};
}

ASInt32 CPdfContentParser::PageNumberOf(CosObj cosPage) const {
  const auto number = pageNumbers_.find(BitsOf(cosPage));
  return number == pageNumbers_.end() ? -1 : number->second;
}

void CPdfContentParser::VisitContent(PDEElement& content) {
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 index = 0; index < count; ++index) dispatch_(*this, PDEContentGetElem(content, index));
}

void CPdfContentParser::VisitContainer(PDEElement& container) {
  const PDEContent content = PDEContainerGetContent(container);
  if (content == nullptr) return;
  containers_.push_back(container);
  dispatch_(*this, content);
  containers_.pop_back();
}

void CPdfContentParser::VisitText(PDEElement& text) {
  if (containers_.empty()) return;
  PDSMCInfo info = {};
  PDSMCGetInfo(cosPage_, containers_.back(), &info);
  // Only the first text of an MCID is ever looked up.
  texts_.try_emplace(KeyOf(info.mcid, pageNumber_), text);
}

}  // namespace tgx
