#pragma once

#include "src/common/TextEncoding.h"
#include "src/common/contentvisitors/ContentDispatch.h"

namespace tgx {

/// Collects the text that a container shows, apart by the width of its characters (see GetUnicodeText).
class CContentTextExtractor {
 public:
  CContentTextExtractor();
  virtual ~CContentTextExtractor() = default;

  /// Starts anew with what stands in `element`, but for the raw codes, which grow from call to call; null gives nothing.
  void Extract(PDEElement element);

  bool HasSingleByte() const { return !singleByte_.empty(); }
  bool HasUtf16() const { return !utf16_.empty(); }
  bool HasUtf32() const { return !utf32_.empty(); }
  const ByteVector& SingleByte() const { return singleByte_; }
  const ByteVector& Utf16() const { return utf16_; }  ///< the bytes of the units just as the host wrote them
  const ByteVector& Utf32() const { return utf32_; }  ///< likewise
  const ByteVector& Raw() const { return raw_; }      ///< character codes

 private:
  void VisitContainer(PDEElement& container);
  void VisitContent(PDEElement& content);
  void VisitText(PDEElement& text);
  void Ignore(PDEElement&) {}

  ContentDispatch<CContentTextExtractor> dispatch_;
  ByteVector raw_;
  ByteVector singleByte_;
  ByteVector utf16_;
  ByteVector utf32_;
};

}  // namespace tgx
