#include "host/pdmodel/AnnotationLists.h"

#include <algorithm>
#include <string>
#include <utility>

#include "host/core/Atoms.h"
#include "host/core/HostError.h"
#include "host/cos/Names.h"
#include "host/pdmodel/Document.h"
#include "host/pdmodel/Edits.h"
#include "host/pdmodel/PageList.h"

namespace tgx::host {

QPDFObjectHandle NewAnnotation(Document& document, ASAtom subtype, const ASFixedRect* rect) {
  if (rect == nullptr) throw HostError(kASBadParameter, "an annotation needs a rectangle");
  auto annotation = QPDFObjectHandle::newDictionary();
  annotation.replaceKey("/Type", QPDFObjectHandle::newName("/Annot"));
  annotation.replaceKey("/Subtype", QPDFObjectHandle::newName(ToQpdfName(AtomView(subtype))));
  annotation.replaceKey("/Rect", QPDFObjectHandle::newArray({NumberFrom(rect->left), NumberFrom(rect->bottom),
                                                             NumberFrom(rect->right), NumberFrom(rect->top)}));
  return document.Pdf().makeIndirectObject(annotation);
}

const AnnotationLists::List& AnnotationLists::ListOf(const QPDFObjectHandle& page) {
  if (last_.page == page.getObjectPtr()) return last_;
  last_ = {};
  last_.array = QPDFObjectHandle(page).getKey("/Annots");
  if (last_.array.isArray()) {
    const int count = last_.array.getArrayNItems();
    for (int place = 0; place < count; ++place) {
      if (last_.array.getArrayItem(place).isDictionary()) last_.places.push_back(place);
    }
  }
  last_.page = page.getObjectPtr();
  return last_;
}

ASInt32 AnnotationLists::Count(const QPDFObjectHandle& page) { return static_cast<ASInt32>(ListOf(page).places.size()); }

int AnnotationLists::PlaceOf(const QPDFObjectHandle& page, ASInt32 index) {
  const List& list = ListOf(page);
  if (index < 0 || static_cast<std::size_t>(index) >= list.places.size()) {
    const ASInt32 number = document_.Pages().IndexOf(page);
    throw HostError(kASOutOfRange, document_.Name() + ": page " + std::to_string(number + 1) + ": no annotation " +
                                       std::to_string(index) + " among " + std::to_string(list.places.size()));
  }
  return list.places[static_cast<std::size_t>(index)];
}

QPDFObjectHandle AnnotationLists::At(const QPDFObjectHandle& page, ASInt32 index) {
  const int place = PlaceOf(page, index);
  return last_.array.getArrayItem(place);
}

bool AnnotationLists::IsShared(const QPDFObjectHandle& array) {
  if (pagesOfArray_.empty()) {
    PageList& pages = document_.Pages();
    for (ASInt32 number = 0; number < pages.Count(); ++number) {
      QPDFObjectHandle annotations = pages.At(number).dictionary.getKey("/Annots");
      if (annotations.isArray()) ++pagesOfArray_[annotations.getObjectPtr()];
    }
  }
  const auto known = pagesOfArray_.find(array.getObjectPtr());
  return known != pagesOfArray_.end() && known->second > 1;
}

/// The page's array, made if there is none, and no other page's. The copy of an indirect array is indirect: clients may give
/// it to other pages in their turn.
QPDFObjectHandle AnnotationLists::OwnArray(const QPDFObjectHandle& page) {
  QPDFObjectHandle array = QPDFObjectHandle(page).getKey("/Annots");
  const bool isArray = array.isArray();
  if (isArray && !IsShared(array)) return array;
  auto own = isArray ? QPDFObjectHandle::newArray(array.getArrayAsVector()) : QPDFObjectHandle::newArray();
  if (isArray && array.isIndirect()) own = document_.Pdf().makeIndirectObject(own);
  auto counts = std::move(pagesOfArray_);  // SetEntry tells us, and we would count all pages anew
  if (isArray) --counts[array.getObjectPtr()];
  SetEntry(document_, page, "Annots", own);
  pagesOfArray_ = std::move(counts);
  return own;
}

/// The place in the array right behind the annotation at an index; -1 for the end of the array.
int AnnotationLists::PlaceBehind(const List& list, ASInt32 index) {
  if (list.places.empty()) return -1;
  if (index == kPDAnnotBeforeFirst) return list.places.front();
  const auto last = static_cast<ASInt32>(list.places.size()) - 1;
  const ASInt32 before = index == kPDAnnotAfterLast ? last : std::min(index, last);
  return list.places[static_cast<std::size_t>(before)] + 1;
}

void AnnotationLists::Insert(const QPDFObjectHandle& page, ASInt32 addAfter, QPDFObjectHandle annotation) {
  if (addAfter < kPDAnnotAfterLast) {
    throw HostError(kASOutOfRange,
                    document_.Name() + ": no annotation " + std::to_string(addAfter) + " to add another behind");
  }
  const List& list = ListOf(page);
  for (const int place : list.places) {
    if (last_.array.getArrayItem(place).getObjectPtr() == annotation.getObjectPtr()) {
      throw HostError(kASBadParameter, document_.Name() + ": the annotation is on the page already");
    }
  }
  const int place = PlaceBehind(list, addAfter);
  QPDFObjectHandle array = OwnArray(page);
  if (!annotation.isIndirect()) annotation = document_.Pdf().makeIndirectObject(annotation);
  array.insertItem(place < 0 ? array.getArrayNItems() : place, annotation);
  document_.AfterCosEdit(array, {});
  SetEntry(document_, annotation, "P", page);
}

void AnnotationLists::Remove(const QPDFObjectHandle& page, ASInt32 index) {
  const int place = PlaceOf(page, index);
  List list = std::exchange(last_, {});
  list.array = OwnArray(page);
  list.array.eraseItem(place);
  document_.AfterCosEdit(list.array, {});
  // The list stays true: removing many annotations one by one is not to look through all each time.
  const auto behind = list.places.erase(list.places.begin() + index);
  std::for_each(behind, list.places.end(), [](int& other) { --other; });
  last_ = std::move(list);
}

void AnnotationLists::AfterCosEdit(const QPDFObjectHandle& container, std::string_view key) {
  if (key == "Annots") {
    last_ = {};
    pagesOfArray_.clear();
  } else if (last_.page != nullptr && container.getObjectPtr() == last_.array.getObjectPtr()) {
    last_ = {};
  }
}

}  // namespace tgx::host
