#pragma once

#include "src/api/HostBinding.h"
#include "src/common/PageReference.h"

namespace tgx {

/// Commits the edits of a page's content and gives back the caller's hold on the content and on the page.
void FinishPage(PDPage page);

/// The page with that dictionary, found by trying the pages of its document one by one, for the caller to release. Throws
/// std::runtime_error when it is none of them. AcquirePageOfCosPage asks the host for the number instead.
PDPage AcquirePageByCosPage(CosObj cosPage);

/// A page, held for as long as the helper lives, and the making of annotations on it.
class PDPageHelper {
 public:
  explicit PDPageHelper(PDPage page);
  PDPageHelper(const PDPageHelper&) = delete;
  PDPageHelper& operator=(const PDPageHelper&) = delete;
  virtual ~PDPageHelper() = default;

  PDPage GetPage() const { return page_.Get(); }
  /// Puts an annotation behind the one at `index`; -2 is behind the last.
  void AddAnnot(ASInt32 index, PDAnnot annot);
  /// A new link annotation, not yet on the page. `rect` is in the page's user space.
  PDAnnot CreateLinkAnnot(const ASFixedRect& rect);

 private:
  PageReference page_;
};

}  // namespace tgx
