#pragma once

#include <functional>
#include <vector>

#include "src/api/HostBinding.h"

namespace tgx {

class PDAnnotHelper {
 public:
  explicit PDAnnotHelper(PDAnnot annot) : annot_(annot) {}
  PDAnnotHelper(const PDAnnotHelper&) = default;
  PDAnnotHelper& operator=(const PDAnnotHelper&) = default;
  virtual ~PDAnnotHelper() = default;

  PDAnnot GetAnnot() const { return annot_; }

 private:
  PDAnnot annot_;
};

/// The containers of an MCID on a page, in the order in which a walk meets them.
using ContainersOfMcid = std::function<std::vector<PDEContainer>(CosObj cosPage, ASInt32 mcid)>;

class PDLinkAnnotHelper : public PDAnnotHelper {
 public:
  using PDAnnotHelper::PDAnnotHelper;

  void SetAction(PDAction action);
  /// `width` is in points, 16.16.
  void SetBorderWidth(ASFixed width);
  /// The bytes are written as they stand.
  void SetTitle(const char* text, ASTArraySize byteCount);
  /// Moves every kid of `element` into a new "Link" element, which becomes its one kid and gets, as its own last kid, the
  /// reference to the annotation. Marked content stays where it is, on `page` or on a page of its own. A caller that has
  /// walked the pages tells by `containersOf` which containers an MCID has there; without it the page is walked for each
  /// kid.
  void WrapKidsInLink(PDSElement element, PDPage page, const ContainersOfMcid& containersOf = {});
};

PDViewDestination CreateViewDestination(PDDoc document, PDPage page, ASAtom fitType, const ASFixedRect& rect, ASFixed zoom,
                                        ASInt32 pageNumber);
PDAction NewActionFromDest(PDDoc document, PDViewDestination destination, PDDoc destinationDocument);

/// Puts a new "Highlight" annotation on the page, behind the others, and gives its dictionary. `rect` is in user space.
CosObj CreateHighlightAnnot(PDPage page, const ASFixedRect& rect);
/// Writes the first three values of the colour as whole numbers, unscaled: a fixed-point 1.0 becomes 65536.
void SetHighlightColor(CosObj annot, const PDColorValueRec& color);
/// 0 is transparent, 1 opaque.
void SetHighlightOpacity(CosObj annot, float opacity);
void SetAnnotFlags(CosObj annot, ASUns32 flags);
/// Zero-terminated bytes, written as they stand.
void SetAnnotTitle(CosObj annot, const char* text);
void SetAnnotContents(CosObj annot, const char* text);

}  // namespace tgx
