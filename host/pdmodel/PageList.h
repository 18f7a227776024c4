#pragma once

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

class Document;

/// A page that is or was in the page tree of an open document. Its place in the list of handles never changes; counts are
/// bookkeeping only: closing and saving never look at them.
struct Page {
  QPDFObjectHandle dictionary;
  ASInt32 number = 0;  ///< its place in the document, -1 once it has been taken out of the page tree
  ASInt32 references = 0;
};

/// The handle of a page by its place in the list of handles, and the place that a handle carries; whether they name a page
/// is for PageList to say. While nobody edits the page tree, the place is the page's number.
PDPage PageHandle(const Document& document, ASUns32 index) noexcept;
ASUns32 PageIndex(PDPage handle) noexcept;

/// The pages of a document in order. Read when it is opened, and again after an edit of the page tree. Throws
/// kASDamagedDocument for a tree that contains a part of itself or is too deep.
class PageList {
 public:
  explicit PageList(Document& document);

  ASInt32 Count();
  Page& At(ASInt32 number);         ///< throws kASOutOfRange
  Page& Of(PDPage handle);          ///< throws kASBadParameter; pages that were taken out have their handle for good
  PDPage HandleAt(ASInt32 number);  ///< throws kASOutOfRange
  ASInt32 NumberOf(PDPage handle);  ///< throws kASBadParameter, kASNotFound for a page that was taken out
  /// The number of the page with this dictionary, -1 if it is no page of the document.
  ASInt32 IndexOf(const QPDFObjectHandle& dictionary);

  /// Reads the page tree again if somebody edited it.
  void Refresh();

  void AfterCosEdit(const QPDFObjectHandle& container, std::string_view key);

 private:
  void Read();

  Document& document_;
  std::vector<Page> pages_;       // by place
  std::vector<ASUns32> placeOf_;  // by page number
  std::unordered_map<const QPDFObject*, ASUns32> placeOfDictionary_;
  std::unordered_set<const QPDFObject*> tree_;  // the nodes of the page tree and their arrays of kids
  bool isEdited_ = false;
};

}  // namespace tgx::host
