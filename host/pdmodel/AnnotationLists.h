#pragma once

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::host {

class Document;

/// A new annotation that is on no page yet. Throws kASBadParameter for a missing rectangle and a value that is no atom.
QPDFObjectHandle NewAnnotation(Document& document, ASAtom subtype, const ASFixedRect* rect);

/// The annotations of a document's pages. The list of a page is the dictionaries among the items of its "Annots"; other
/// items stay where they are and have no index. Two pages can have one array: a change to the one gives it a copy first.
class AnnotationLists {
 public:
  explicit AnnotationLists(Document& document) : document_(document) {}

  ASInt32 Count(const QPDFObjectHandle& page);
  QPDFObjectHandle At(const QPDFObjectHandle& page, ASInt32 index);  ///< throws kASOutOfRange

  /// Puts an annotation behind the one at an index (kPDAnnot... for the ends; behind the last when there are fewer), and
  /// makes the page its "P". Throws kASOutOfRange for an index below kPDAnnotAfterLast, kASBadParameter for an annotation
  /// that is in the list already.
  void Insert(const QPDFObjectHandle& page, ASInt32 addAfter, QPDFObjectHandle annotation);

  /// Takes one off the list; it lives on. Throws kASOutOfRange.
  void Remove(const QPDFObjectHandle& page, ASInt32 index);

  void AfterCosEdit(const QPDFObjectHandle& container, std::string_view key);

 private:
  /// Where in a page's array the annotations stand; kept for the page that was asked for last.
  struct List {
    const QPDFObject* page = nullptr;
    QPDFObjectHandle array;
    std::vector<int> places;
    std::unordered_multiset<const QPDFObject*> members;  ///< those at the places; empty until one is inserted
  };

  const List& ListOf(const QPDFObjectHandle& page);
  /// Where in the list the one behind an index stands or would stand.
  static std::size_t RankBehind(const List& list, ASInt32 index);
  static bool Holds(List& list, const QPDFObjectHandle& annotation);
  int PlaceOf(const QPDFObjectHandle& page, ASInt32 index);
  QPDFObjectHandle OwnArray(const QPDFObjectHandle& page);
  bool IsShared(const QPDFObjectHandle& array);

  Document& document_;
  List last_;
  std::unordered_map<const QPDFObject*, int> pagesOfArray_;  // how many pages have an array; empty until somebody edits
};

}  // namespace tgx::host
