#pragma once

#include "src/common/TextEncoding.h"
#include "src/common/contentvisitors/ContentDispatch.h"

namespace tgx {

/// Collects the "ActualText" of a container and of all containers in it, outer text before inner.
class CActualTextExtractor {
 public:
  CActualTextExtractor();
  virtual ~CActualTextExtractor() = default;

  /// Starts anew with what stands in `element`; null gives nothing.
  void Extract(PDEElement element);
  bool HasText() const { return !text_.empty(); }
  /// UTF-16BE without marks, as far as the document stores it so.
  const ByteVector& Text() const { return text_; }

 private:
  void VisitContainer(PDEElement& container);
  void VisitContent(PDEElement& content);

  ContentDispatch<CActualTextExtractor> dispatch_;
  ByteVector text_;
};

}  // namespace tgx
