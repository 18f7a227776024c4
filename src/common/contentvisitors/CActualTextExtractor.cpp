#include "src/common/contentvisitors/CActualTextExtractor.h"

#include <algorithm>
#include <array>

namespace tgx {
namespace {

/// The bytes of "ActualText" without the first FE FF that stands anywhere in them.
ByteVector ReadActualText(PDEContainer container) {
  CosObj dictionary;
  ASBool isInline = 0;
  if (PDEContainerGetDict(container, &dictionary, &isInline) == 0) return {};
  if (CosDictKnownKeyString(dictionary, "ActualText") == 0) return {};
  const CosObj value = CosDictGetKeyString(dictionary, "ActualText");
  if (CosObjGetType(value) != CosString) return {};
  ASTArraySize count = 0;
  const char* bytes = CosStringValue(value, &count);
  if (count <= 0) return {};
  ByteVector text(bytes, bytes + count);
  constexpr std::array<std::uint8_t, 2> kMark = {0xFE, 0xFF};
  const auto mark = std::search(text.begin(), text.end(), kMark.begin(), kMark.end());
  if (mark != text.end()) text.erase(mark, mark + kMark.size());
  return text;
}

}  // namespace

CActualTextExtractor::CActualTextExtractor() {
  dispatch_.Set(kPDEContainer, &CActualTextExtractor::VisitContainer);
  dispatch_.Set(kPDEContent, &CActualTextExtractor::VisitContent);
}

void CActualTextExtractor::Extract(PDEElement element) {
  text_.clear();
  if (element != nullptr) dispatch_(*this, element);
}

void CActualTextExtractor::VisitContainer(PDEElement& container) {
  const ByteVector own = ReadActualText(container);
  text_.insert(text_.end(), own.begin(), own.end());
  if (const PDEContent content = PDEContainerGetContent(container)) dispatch_(*this, content);
}

void CActualTextExtractor::VisitContent(PDEElement& content) {
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 i = 0; i < count; ++i) dispatch_(*this, PDEContentGetElem(content, i));
}

}  // namespace tgx
