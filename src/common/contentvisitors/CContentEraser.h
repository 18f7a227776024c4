#pragma once

#include <unordered_map>
#include <vector>

#include "src/common/contentvisitors/ContentDispatch.h"

namespace tgx {

/// Takes the marked content of an MCID off a page and commits the page. After each removal the search of its list starts
/// again, but at the second element: a further container of the MCID that has become the first one of its list stays, unless
/// the list is in one that is searched again.
class CContentEraser {
 public:
  CContentEraser();
  virtual ~CContentEraser() = default;

  /// Nothing for a null document or page and for a negative MCID.
  void Erase(PDDoc document, PDPage page, std::int32_t mcid);

 private:
  /// The elements of a list behind its first in which the last search found something. A search that starts again finds
  /// nothing in the others that it has been through and passes over them, else a page would cost the square of its elements.
  using Unsettled = std::vector<PDEElement>;

  void Reset();
  void SearchAll(PDEContent content, Unsettled& unsettled);
  void SearchAgain(PDEContent content, Unsettled& unsettled);
  void SearchUnsettled(Unsettled& unsettled);
  /// Searches the element at `index`. True if that was what is searched for, and was removed.
  bool RemovesAt(PDEContent content, ASInt32 index);
  void VisitContainer(PDEElement& container);
  void VisitContent(PDEElement& content);

  ContentDispatch<CContentEraser> dispatch_;
  std::int32_t mcid_ = -1;
  PDPage page_ = nullptr;
  PDDoc document_ = nullptr;
  ASInt32 index_ = -1;
  bool restart_ = false;
  std::size_t removals_ = 0;
  std::vector<PDEContent> contents_;                    ///< the lists being searched, the innermost last
  std::unordered_map<PDEContent, Unsettled> searched_;  ///< the lists that were searched before
};

}  // namespace tgx
