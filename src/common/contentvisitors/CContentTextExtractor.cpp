#include "src/common/contentvisitors/CContentTextExtractor.h"

#include <cstring>

namespace tgx {
namespace {

/// Appends the bytes of the units in memory order: as the host wrote them, not swapped.
template <typename Unit>
void AppendBytes(const std::vector<Unit>& units, ByteVector& bytes) {
  const std::size_t start = bytes.size();
  bytes.resize(start + units.size() * sizeof(Unit));
  if (!units.empty()) std::memcpy(bytes.data() + start, units.data(), units.size() * sizeof(Unit));
}

}  // namespace

CContentTextExtractor::CContentTextExtractor() {
  dispatch_.Set(kPDEContainer, &CContentTextExtractor::VisitContainer);
  dispatch_.Set(kPDEContent, &CContentTextExtractor::VisitContent);
  dispatch_.Set(kPDEText, &CContentTextExtractor::VisitText);
  dispatch_.Set(kIgnoredElementKind, &CContentTextExtractor::Ignore);
}

void CContentTextExtractor::Extract(PDEElement element) {
  singleByte_.clear();
  utf16_.clear();
  utf32_.clear();
  if (element != nullptr) dispatch_(*this, element);
}

void CContentTextExtractor::VisitContainer(PDEElement& container) {
  if (const PDEContent content = PDEContainerGetContent(container)) dispatch_(*this, content);
}

void CContentTextExtractor::VisitContent(PDEElement& content) {
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 i = 0; i < count; ++i) dispatch_(*this, PDEContentGetElem(content, i));
}

void CContentTextExtractor::VisitText(PDEElement& text) {
  ByteVector codes;
  GetRawText(text, codes);
  raw_.insert(raw_.end(), codes.begin(), codes.end());
  ByteVector single;
  std::vector<std::uint16_t> utf16;
  std::vector<std::uint32_t> utf32;
  GetUnicodeText(text, single, utf16, utf32);
  singleByte_.insert(singleByte_.end(), single.begin(), single.end());
  AppendBytes(utf16, utf16_);
  AppendBytes(utf32, utf32_);
}

}  // namespace tgx
