#include "src/actions/ReshuffleAnchoredFrames/AuxiliaryContent.h"

#include <array>

namespace tgx {
namespace {

struct Eraser {
  const std::set<ASInt32>& mcids;
  CosObj page;
  ASFixed leftEdge;  // of the page

  // Asks for the number alone: the host makes an object of each property dictionary that it hands out.
  bool IsDoomed(PDEContainer container) const {
    if (mcids.empty()) return false;
    PDSMCInfo info = {};
    PDSMCGetInfo(page, container, &info);
    return info.mcid != -1 && mcids.contains(info.mcid);
  }

  bool IsDummy(PDEImage image) const {
    PDEImageAttrs attributes = {};
    PDEImageGetAttrs(image, &attributes, sizeof(attributes));
    if (attributes.width != 1 || attributes.height != 1) return false;
    ASFixedRect box = {};
    PDEElementGetBBox(image, &box);
    if (box.left != leftEdge) return false;
    std::array<ASUns8, 3> sample = {};
    if (PDEImageGetDataLen(image) != static_cast<ASInt32>(sample.size())) return false;
    PDEImageGetData(image, 0, sample.data());
    return sample == std::array<ASUns8, 3>{};
  }

  // Whether the element goes; one that stays is rid of what goes in it.
  bool Goes(PDEElement element) const {  // NOLINT(misc-no-recursion): the host bounds the depth
    const ASInt32 kind = PDEObjectGetType(element);
    if (kind == kPDEImage) return IsDummy(element);
    if (kind != kPDEContainer) return false;
    if (IsDoomed(element)) return true;
    Erase(PDEContainerGetContent(element));
    return false;
  }

  void Erase(PDEContent content) const {  // NOLINT(misc-no-recursion)
    for (ASInt32 index = 0; index < PDEContentGetNumElems(content);) {
      if (Goes(PDEContentGetElem(content, index))) {
        PDEContentRemoveElem(content, index);
      } else {
        ++index;
      }
    }
  }
};

}  // namespace

void EraseAuxiliaryContent(PDDoc document, const std::set<ASInt32>& mcids) {
  const ASInt32 count = PDDocGetNumPages(document);
  for (ASInt32 index = 0; index < count; ++index) {
    const PDPage page = PDDocAcquirePage(document, index);
    ASFixedRect box = {};
    PDPageGetCropBox(page, &box);
    Eraser{mcids, PDPageGetCosObj(page), box.left}.Erase(PDPageAcquirePDEContent(page, ExtensionId()));
    PDPageSetPDEContent(page, ExtensionId());
  }
}

}  // namespace tgx
