#pragma once

#include <string>

#include <qpdf/QPDFObjectHandle.hh>

#include "host/pdfedit/fonts/Font.h"

namespace tgx::host {

/// A character code that a page shows.
struct ShownCode {
  const Font* font;
  Font::Code code;
  double x;  ///< where its glyph starts, in user space
  double y;
  double width;  ///< of its glyph in user space, for text that runs to the right
  bool isUpright;
  bool hasActualText;
};

/// What a page shows, in the order of its content.
class PageTextVisitor {
 public:
  virtual ~PageTextVisitor() = default;
  virtual void OnCode(const ShownCode& shown) = 0;
  /// Marked content that showed text and has a text of its own, after its codes.
  virtual void OnActualText(const std::u16string& /*text*/) {}
};

/// Visits the codes of a page, its form XObjects and the appearances of its annotations. Knows of the graphics state what
/// moves text.
void ScanPageText(QPDFObjectHandle page, PageTextVisitor& visitor);

/// What a reader takes from the page: what its codes stand for, and "ActualText" in place of the codes that have it.
std::u16string PageText(QPDFObjectHandle page);

}  // namespace tgx::host
