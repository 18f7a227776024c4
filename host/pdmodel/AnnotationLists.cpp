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

std::size_t AnnotationLists::RankBehind(const List& list, ASInt32 index) {
  const std::size_t count = list.places.size();
  if (index == kPDAnnotBeforeFirst) return 0;
  return index == kPDAnnotAfterLast ? count : std::min(static_cast<std::size_t>(index) + 1, count);
}

bool AnnotationLists::Holds(List& list, const QPDFObjectHandle& annotation) {
  if (list.members.empty()) {
    for (const int place : list.places) list.members.insert(list.array.getArrayItem(place).getObjectPtr());
  }
  return list.members.find(QPDFObjectHandle(annotation).getObjectPtr()) != list.members.end();
}

void AnnotationLists::Insert(const QPDFObjectHandle& page, ASInt32 addAfter, QPDFObjectHandle annotation) {
  if (addAfter < kPDAnnotAfterLast) {
    throw HostError(kASOutOfRange,
                    document_.Name() + ": no annotation " + std::to_string(addAfter) + " to add another behind");
  }
  ListOf(page);
  List list = std::exchange(last_, {});
  if (Holds(list, annotation)) {
    throw HostError(kASBadParameter, document_.Name() + ": the annotation is on the page already");
  }
  const std::size_t rank = RankBehind(list, addAfter);
  list.array = OwnArray(page);
  // Right behind the one before it; items that are no annotations stay where they are.
  int place = list.array.getArrayNItems();
  if (!list.places.empty()) place = rank == 0 ? list.places.front() : list.places[rank - 1] + 1;
  if (!annotation.isIndirect()) annotation = document_.Pdf().makeIndirectObject(annotation);
  list.array.insertItem(place, annotation);
  document_.AfterCosEdit(list.array, {});
  SetEntry(document_, annotation, "P", page);
  // The list stays true: adding many annotations one by one is not to look through all each time.
  const auto behind = list.places.insert(list.places.begin() + static_cast<std::ptrdiff_t>(rank), place) + 1;
  std::for_each(behind, list.places.end(), [](int& other) { ++other; });
  list.members.insert(annotation.getObjectPtr());
  last_ = std::move(list);
}

void AnnotationLists::Remove(const QPDFObjectHandle& page, ASInt32 index) {
  const int place = PlaceOf(page, index);
  List list = std::exchange(last_, {});
  list.array = OwnArray(page);
  const auto member = list.members.find(list.array.getArrayItem(place).getObjectPtr());
  if (member != list.members.end()) list.members.erase(member);
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
