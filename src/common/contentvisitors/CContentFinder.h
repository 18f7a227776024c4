#pragma once

#include "src/common/contentvisitors/ContentDispatch.h"

namespace tgx {

/// Finds the marked content of an MCID on a page, depth first.
class CContentFinder {
 public:
  CContentFinder();
  virtual ~CContentFinder();
  CContentFinder(const CContentFinder&) = delete;
  CContentFinder& operator=(const CContentFinder&) = delete;

  /// The container. When the page has none of this MCID, the last container that was visited: look at WasFound, or at its
  /// MCID. Null for a page without containers, for a null document or page, and for a negative MCID. The page's content
  /// stays acquired until the next Find or the end of this object.
  PDEContainer Find(PDDoc document, PDPage page, std::int32_t mcid);
  bool WasFound() const { return found_; }

 private:
  void Reset();
  void VisitContainer(PDEElement& container);
  void VisitContent(PDEElement& content);

  ContentDispatch<CContentFinder> dispatch_;
  std::int32_t mcid_ = -1;
  bool found_ = false;
  PDPage page_ = nullptr;
  PDDoc document_ = nullptr;
  PDEContainer container_ = nullptr;
};

}  // namespace tgx
