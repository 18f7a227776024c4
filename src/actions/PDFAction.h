#pragma once

#include <list>

#include "src/api/HostBinding.h"

namespace tgx {

/// The base of the numbered actions: holds the document and offers its structure root, its role map and its pages.
class PDFAction {
 public:
  PDFAction() = default;
  /// Forgets the pages without releasing them; the host keeps pages alive whatever their count.
  virtual ~PDFAction();
  PDFAction(const PDFAction&) = delete;
  PDFAction& operator=(const PDFAction&) = delete;

  /// The action on the document. Throws std::runtime_error("not implemented") where a subclass has none.
  virtual bool Run();

  void SetDocument(PDDoc document) { document_ = document; }
  PDDoc GetDocument() const { return document_; }

 protected:
  /// The structure root, and the role map, which the document is given if it has none. Return the output's address.
  PDSTreeRoot* AcquireStructTreeRoot(PDSTreeRoot* root);
  PDSRoleMap* AcquireRoleMap(PDSRoleMap* map);

  /// Acquires every page, in order; pages of an earlier call are forgotten, not released.
  void AcquirePages();
  /// Writes the content of the acquired pages back and releases content and pages. The list stays as it is.
  void CommitPages();
  const std::list<PDPage>& Pages() const { return pages_; }

 private:
  std::list<PDPage> pages_;
  PDDoc document_ = nullptr;
};

}  // namespace tgx
