#pragma once

#include <memory>

#include <tgx/host.h>

namespace tgx::host {

/// A structure element by its place in the tree's store of nodes.
using NodeId = ASUns32;
constexpr NodeId kNoNode = 0xFFFFFFFF;

/// A page by its index; below that the numbers of dictionaries that stand as pages without being pages of the document.
using PageRef = ASInt32;
constexpr PageRef kNoPage = -1;

enum class KidKind : ASUns32 {
  kElement,          ///< a structure element
  kNumber,           ///< an MCID by itself
  kReference,        ///< a marked-content reference to content of a page
  kStreamReference,  ///< a marked-content reference with "Stm": content of another stream than the page's
  kObject,           ///< a reference to an annotation or another object
  kOther             ///< anything else
};

/// One kid of a structure element. Small and trivially copyable, since a tree has some hundred thousand.
struct Kid {
  ASUns32 place = 0;  ///< of an element its NodeId, else the place of its item in the store of items
  ASInt32 mcid = -1;  ///< of a number or reference
  PageRef page : 28;  ///< of a reference its own "Pg"
  ASUns32 kindBits : 4;

  Kid() : page(kNoPage), kindBits(0) {}
  Kid(KidKind kind, ASUns32 itsPlace, ASInt32 itsMcid, PageRef itsPage)
      : place(itsPlace), mcid(itsMcid), page(itsPage), kindBits(static_cast<ASUns32>(kind)) {}

  KidKind Kind() const noexcept { return static_cast<KidKind>(kindBits); }
  bool IsElement() const noexcept { return Kind() == KidKind::kElement; }
  bool IsMarkedContent() const noexcept {
    return Kind() == KidKind::kNumber || Kind() == KidKind::kReference || Kind() == KidKind::kStreamReference;
  }
};
static_assert(sizeof(Kid) == 12);

/// The kids of an element: an array with a gap at the place of the last edit, so that a worker that goes through a hundred
/// thousand kids and edits as it goes moves only what lies between one edit and the next.
class KidList {
 public:
  ASUns32 Size() const noexcept { return size_; }
  const Kid& operator[](ASUns32 index) const noexcept { return kids_[Slot(index)]; }
  Kid& operator[](ASUns32 index) noexcept { return kids_[Slot(index)]; }

  void Reserve(ASUns32 count);
  void Insert(ASUns32 index, Kid kid);
  void Append(Kid kid) { Insert(size_, kid); }
  void Erase(ASUns32 index);
  void Clear() noexcept;

  /// The index at which the last edit was made: a good place to start looking for the next.
  ASUns32 LastEdit() const noexcept { return gap_ < size_ ? gap_ : size_; }

  /// The index that a client asked about last: what it is going to edit has often just been looked up.
  ASUns32 LastRead() const noexcept { return lastRead_; }
  void NoteRead(ASUns32 index) noexcept { lastRead_ = index; }

 private:
  ASUns32 Slot(ASUns32 index) const noexcept { return index < gap_ ? index : index + (capacity_ - size_); }
  void MoveGap(ASUns32 index) noexcept;

  std::unique_ptr<Kid[]> kids_;
  ASUns32 size_ = 0;
  ASUns32 capacity_ = 0;
  ASUns32 gap_ = 0;  ///< where the unused slots stand
  ASUns32 lastRead_ = 0;
};

}  // namespace tgx::host
