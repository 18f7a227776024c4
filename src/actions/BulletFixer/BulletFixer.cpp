#include "src/actions/BulletFixer/BulletFixer.h"

#include <array>
#include <vector>

#include "src/api/HostException.h"
#include "src/common/PageContentGuards.h"

namespace tgx {
namespace {

constexpr ASFixed kFixedOne = 0x10000;

/// Black, as all components are zero, with the line width, miter limit and flatness that a page begins with.
PDEGraphicState PlainGrayState() {
  const PDEColorSpace gray = PDEColorSpaceCreateFromName(ASAtomFromString("DeviceGray"));
  PDEGraphicState state = {};
  state.fillColorSpec.space = gray;
  state.strokeColorSpec.space = gray;
  state.lineWidth = kFixedOne;
  state.miterLimit = 10 * kFixedOne;
  state.flatness = kFixedOne;
  return state;
}

/// A new text element, given back at the end; the page keeps its own hold on it.
class NewText {
 public:
  NewText() : text_(PDETextCreate()) {}
  NewText(const NewText&) = delete;
  NewText& operator=(const NewText&) = delete;
  ~NewText() { PDERelease(text_); }
  PDEText Get() const { return text_; }

 private:
  PDEText text_;
};

}  // namespace

/// A character of a text element.
struct BulletFixer::CharRecord {
  PDEFont font = nullptr;
  ASFixedMatrix matrix = {};
  std::vector<ASUns8> code;

  CharRecord(PDEText text, ASInt32 index)
      : font(PDETextGetFont(text, kPDETextChar, index)),
        code(static_cast<std::size_t>(PDETextGetNumBytes(text, kPDETextChar, index))) {
    PDETextGetText(text, kPDETextChar, index, code.data());
    PDETextGetTextMatrix(text, kPDETextChar, index, &matrix);
  }
};

bool BulletFixer::Run(PDDoc document) {
  if (document == nullptr) return false;
  InExceptionFrame([&] {
    const ASInt32 count = PDDocGetNumPages(document);
    for (ASInt32 index = 0; index < count; ++index) {
      const PageContent page(document, PDDocAcquirePage(document, index));
      content_ = page.GetContent();
      HandleElement(content_);
    }
  });
  return true;
}

void BulletFixer::HandleElement(PDEElement element) {
  using Handler = void (BulletFixer::*)(PDEElement);
  using Self = BulletFixer;
  // By kind. Some kinds within the range have no handler of their own.
  static constexpr std::array<Handler, 33> kHandlers = {
      &Self::HandleContent,      &Self::HandleText,       &Self::HandlePath,      &Self::HandleImage,
      &Self::HandleForm,         &Self::HandlePS,         &Self::HandleXObject,   &Self::HandleClip,
      &Self::HandleFont,         &Self::HandleColorSpace, &Self::HandleExtGState, &Self::HandlePlace,
      &Self::HandleContainer,    &Self::HandleUnknown,    &Self::HandlePattern,   &Self::HandleDeviceNColors,
      &Self::HandleShading,      &Self::HandleGroup,      &Self::HandleUnknown,   &Self::HandleBeginContainer,
      &Self::HandleEndContainer, &Self::HandleBeginGroup, &Self::HandleEndGroup,  &Self::HandleXGroup,
      &Self::HandleSoftMask,     &Self::HandleUnknown,    &Self::HandleDoc,       &Self::HandlePage,
      &Self::HandleReader,       &Self::HandleWriter,     &Self::HandleTextItem,  &Self::HandleImageFlate,
      &Self::HandleImageJPX,
  };
  const auto kind = static_cast<std::size_t>(PDEObjectGetType(element));
  const Handler handler = kind < kHandlers.size() ? kHandlers[kind] : &Self::HandleUnknown;
  (this->*handler)(element);
}

void BulletFixer::HandleContent(PDEContent content) {  // NOLINT(misc-no-recursion): the host bounds the depth
  content_ = content;
  // Text that is added on the way stands behind these and is not visited.
  const ASInt32 count = PDEContentGetNumElems(content);
  for (ASInt32 index = 0; index < count; ++index) HandleElement(PDEContentGetElem(content, index));
}

void BulletFixer::HandleContainer(PDEContainer container) {  // NOLINT(misc-no-recursion)
  // The container's list stays current for the text behind the container, too: that is where its new elements belong.
  content_ = PDEContainerGetContent(container);
  const PDEContent content = content_;
  HandleElement(content);
  PDEContainerSetContent(container, content);
}

void BulletFixer::HandleText(PDEText text) {
  const ASInt32 count = PDETextGetNumChars(text);
  if (count < 2) {
    // A single character goes without a successor.
    PDETextRemove(text, kPDETextChar, 0, count);
    return;
  }
  const CharRecord first(text, 0);
  PDETextRemove(text, kPDETextChar, 0, count);
  AddText(first);
}

void BulletFixer::AddText(const CharRecord& character) {
  const PDEGraphicState state = PlainGrayState();
  const NewText text;
  PDETextAdd(text.Get(), kPDETextRun, 0, character.code.data(), static_cast<ASInt32>(character.code.size()), character.font,
             &state, sizeof(state), nullptr, 0, &character.matrix, nullptr);
  PDEContentAddElem(content_, kPDEAfterLast, text.Get());
}

}  // namespace tgx
