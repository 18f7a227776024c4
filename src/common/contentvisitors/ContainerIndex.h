#pragma once

#include <unordered_map>

#include "src/api/HostBinding.h"

namespace tgx {

/// The containers of pages by MCID, each page read once: for passes that look up many containers and change nothing in
/// between. Answers just as CContentFinder does.
class ContainerIndex {
 public:
  /// The first container of the MCID on the page, depth first; without one, the last container of the page; null for a page
  /// without containers, for a null page and for a negative MCID.
  PDEContainer Find(PDPage page, ASInt32 mcid);

 private:
  struct Page {
    std::unordered_map<ASInt32, PDEContainer> firstOf;
    PDEContainer last = nullptr;
  };

  static void Collect(PDEContent content, Page& page);

  std::unordered_map<PDPage, Page> pages_;
};

}  // namespace tgx
