#pragma once

#include <string_view>

#include <qpdf/QPDFObjectHandle.hh>
#include <tgx/host.h>

#include "host/cos/CosObserver.h"

namespace tgx::host {

class Document;

/// The content models of a document's pages, each made when it is first asked for.
class PageContents : public CosObserver {
 public:
  explicit PageContents(Document& document) : document_(document) {}

  void BeforeCosRead(const QPDFObjectHandle& container, std::string_view key) override;
  void AfterCosEdit(const QPDFObjectHandle& container, std::string_view key) override;

  /// The first container, depth first, with this MCID on the page at `pageIndex`; null if there is none. Does not leave the
  /// page's content acquired. Throws kASDamagedDocument for a page that cannot be read.
  PDEContainer ContainerOf(ASInt32 pageIndex, ASInt32 mcid);

  /// The MCID of a living container, -1 if it has none. Throws kASBadParameter, kASWrongType.
  ASInt32 McidOf(PDEContainer container);

  /// Serialises the committed edits that wait, and throws the first failure that a commit had to keep to itself.
  void WriteCommitted();

  /// Forgets the models of pages that nobody changed. Only while no content handle is in use.
  void DropUnchanged();

 private:
  Document& document_;
};

}  // namespace tgx::host
