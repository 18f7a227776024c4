#pragma once

#include "src/api/HostBinding.h"
#include "src/common/PageReference.h"

namespace tgx {

/// Keeps the content of a page acquired while it is edited through handles obtained elsewhere, and commits the edits at its
/// end, also when an exception ends it.
class McChangeSaver {
 public:
  /// `cosPage` is the page's dictionary.
  McChangeSaver(PDDoc document, CosObj cosPage);
  McChangeSaver(const McChangeSaver&) = delete;
  McChangeSaver& operator=(const McChangeSaver&) = delete;
  virtual ~McChangeSaver();

  PDDoc GetDocument() const { return document_; }

 private:
  PageReference page_;
  PDDoc document_;
};

/// The same for a page that the caller holds already, with its content at hand.
class PageContent {
 public:
  /// Takes over the caller's reference on `page`.
  PageContent(PDDoc document, PDPage page);
  PageContent(const PageContent&) = delete;
  PageContent& operator=(const PageContent&) = delete;
  virtual ~PageContent();

  PDDoc GetDocument() const { return document_; }
  PDEContent GetContent() const { return content_; }

 private:
  PageReference page_;
  PDDoc document_;
  PDEContent content_;
};

/// The content of a page, acquired for reading. The page is the caller's.
class AcquiredContent {
 public:
  explicit AcquiredContent(PDPage page);
  AcquiredContent(const AcquiredContent&) = delete;
  AcquiredContent& operator=(const AcquiredContent&) = delete;
  ~AcquiredContent();

  PDEContent Get() const { return content_; }

 private:
  PDPage page_;
  PDEContent content_;
};

}  // namespace tgx
