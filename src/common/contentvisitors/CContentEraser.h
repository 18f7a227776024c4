#pragma once

#include <vector>

#include "src/common/contentvisitors/ContentDispatch.h"

namespace tgx {

/// Takes the marked content of an MCID off a page and commits the page. After a removal the search goes on at the second
/// element of the list: a further container of the MCID that has become the first one of its list stays.
class CContentEraser {
 public:
  CContentEraser();
  virtual ~CContentEraser() = default;

  /// Nothing for a null document or page and for a negative MCID.
  void Erase(PDDoc document, PDPage page, std::int32_t mcid);

 private:
  void Reset();
  void EraseFrom(PDEContent content);
  void VisitContainer(PDEElement& container);
  void VisitContent(PDEElement& content);

  ContentDispatch<CContentEraser> dispatch_;
  std::int32_t mcid_ = -1;
  PDPage page_ = nullptr;
  PDDoc document_ = nullptr;
  ASInt32 index_ = -1;
  bool restart_ = false;
  std::vector<PDEContent> contents_;  ///< the lists being searched, the innermost last
};

}  // namespace tgx
