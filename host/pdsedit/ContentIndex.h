#pragma once

#include <cstdint>
#include <unordered_map>

#include "host/pdsedit/KidList.h"

namespace tgx::host {

/// Which marked content stands among the kids of one element: the one that content is just being put into, piece after
/// piece. Going through all of its kids for each piece, to see whether it is there already, would take ever longer.
class ContentIndex {
 public:
  /// Whether `Holds` can answer for an element. At first it cannot: that is for whoever asks about it often in a row.
  bool IsReadyFor(NodeId element, const KidList& kids);
  /// `page` is what the kid itself names: kNoPage for content whose page is the element's.
  bool Holds(PageRef page, ASInt32 mcid) const { return counts_.count(KeyOf(page, mcid)) != 0; }

  /// To be called for each kid that is put into an element or taken out.
  void NoteInserted(NodeId element, const Kid& kid) {
    if (isFilled_ && element == element_) Add(kid);
  }
  void NoteErased(NodeId element, const Kid& kid) {
    if (isFilled_ && element == element_) Drop(kid);
  }

 private:
  static std::uint64_t KeyOf(PageRef page, ASInt32 mcid) {
    return std::uint64_t{static_cast<ASUns32>(page)} << 32 | static_cast<ASUns32>(mcid);
  }
  static bool IsPageContent(const Kid& kid) { return kid.Kind() == KidKind::kNumber || kid.Kind() == KidKind::kReference; }
  void Add(const Kid& kid);
  void Drop(const Kid& kid);

  NodeId element_ = kNoNode;
  ASUns32 questions_ = 0;  ///< about this element, without one about another between them
  bool isFilled_ = false;
  std::unordered_map<std::uint64_t, ASUns32> counts_;
};

}  // namespace tgx::host
