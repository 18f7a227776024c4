#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>

#include <tgx/host.h>
#include <qpdf/QPDFObjGen.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

class Document;

/// A page of an open document. Counts are bookkeeping only: closing and saving never look at them.
struct Page {
  QPDFObjectHandle dictionary;
  ASInt32 references = 0;
};

/// The handle of the page at an index, and the index that a handle carries; whether they name a page is for PageList to say.
PDPage PageHandle(const Document& document, ASUns32 index) noexcept;
ASUns32 PageIndex(PDPage handle) noexcept;

/// The pages of a document in order, read once when it is opened.
class PageList {
 public:
  explicit PageList(Document& document);

  ASInt32 Count() const noexcept { return static_cast<ASInt32>(pages_.size()); }
  Page& At(ASInt32 index);  ///< throws kASOutOfRange
  Page& Of(PDPage handle);  ///< throws kASBadParameter
  /// The index of the page with this dictionary, -1 if it is no page of the document.
  ASInt32 IndexOf(const QPDFObjectHandle& dictionary) const;

  void AfterCosEdit(const QPDFObjectHandle& container, std::string_view key);

 private:
  Document& document_;
  std::vector<Page> pages_;
  std::unordered_map<const QPDFObject*, ASInt32> indexOf_;
};

}  // namespace tgx::host
