#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

#include "host/cos/CosObserver.h"
#include "host/pdfedit/model/DocumentFonts.h"
#include "host/pdfedit/model/PageModel.h"
#include "host/pdfedit/model/RemovedContent.h"

namespace tgx::host {

class Document;

/// The content models of a document's pages, each made when it is first asked for.
class PageContents : public CosObserver {
 public:
  explicit PageContents(Document& document) : document_(document) {}
  ~PageContents() override;
  PageContents(const PageContents&) = delete;
  PageContents& operator=(const PageContents&) = delete;

  void BeforeCosRead(const QPDFObjectHandle& container, std::string_view key) override;
  void AfterCosEdit(const QPDFObjectHandle& container, std::string_view key) override;

  /// The first container, depth first, with this MCID on the page at `pageIndex`; null if there is none. Does not leave the
  /// page's content acquired. Throws kASDamagedDocument for a page that cannot be read.
  PDEContainer ContainerOf(ASInt32 pageIndex, ASInt32 mcid);

  /// The MCID of a living container, -1 if it has none. Throws kASBadParameter, kASWrongType.
  ASInt32 McidOf(PDEContainer container);

  /// Serialises the committed edits that wait, and throws the first failure that a commit had to keep to itself.
  void WriteCommitted();

  /// Forgets the models of pages that nobody changed, also of content that is no longer in the document. Only while no
  /// content handle is in use.
  void DropUnchanged();

  /// The model of a page, read when it is first asked for. Throws kASOutOfRange, kASDamagedDocument, kASNotSupported.
  PageModel& Of(ASInt32 pageIndex);
  /// The model of a page that has been read, null for another.
  PageModel* Find(ASInt32 pageIndex) noexcept;

  /// Commits what was edited on a page. Never throws: a failure shows when the document is written.
  void Commit(PageModel& page) noexcept;

  /// What commits have taken off the pages, in their order.
  const std::vector<RemovedElement>& Removed() const { return removed_; }
  void NoteRemoved(RemovedElement element) { removed_.push_back(element); }

  Document& InDocument() const { return document_; }
  DocumentFonts& Fonts() { return fonts_; }

  /// Tells a page when one of its property dictionaries is edited through the Cos operations.
  void Watch(const QPDFObjectHandle& dictionary, ASInt32 pageIndex, std::uint32_t properties);
  void Unwatch(const QPDFObjectHandle& dictionary, ASInt32 pageIndex, std::uint32_t properties) noexcept;
  /// Counts the Cos edits of objects that nobody watches; an array inside a property dictionary may be among them.
  std::uint64_t UnknownEdits() const { return unknownEdits_; }

  /// Committed edits of a page wait to be written.
  void Waits(PageModel& page);

 private:
  struct Watched {
    const QPDFObject* dictionary;
    ASInt32 pageIndex;
    std::uint32_t properties;
    bool operator<(const Watched& other) const {
      return std::tie(dictionary, pageIndex, properties) < std::tie(other.dictionary, other.pageIndex, other.properties);
    }
  };

  /// A client put other content into a page, which counts from then on: what was edited in the former is dropped, and its
  /// handles stand for nothing in the document.
  void ContentReplaced(ASInt32 pageIndex);
  void Remember(PageModel& page);
  void Forget(ASInt32 pageIndex);

  Document& document_;
  DocumentFonts fonts_;
  std::set<Watched> watched_;
  std::uint64_t unknownEdits_ = 0;
  std::vector<ASInt32> waiting_;  ///< page indices
  std::vector<ASInt32> failed_;   ///< pages whose commit failed
  std::vector<RemovedElement> removed_;
  std::vector<std::unique_ptr<PageModel>> pages_;
  std::vector<std::unique_ptr<PageModel>> replaced_;              ///< kept for their handles, and for Removed
  std::set<std::pair<const QPDFObject*, ASInt32>> streamArrays_;  ///< the arrays of the streams of pages in pages_
};

}  // namespace tgx::host
