#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>

#include "src/api/HostBinding.h"
#include "src/wrappers/PD_Page.h"

namespace tgx {

class PDE_Container;

/// Pages of a document, each viewed when it is first asked for and kept. For passes that ask many pages for much and change
/// none meanwhile.
class PageViews {
 public:
  explicit PageViews(PDDoc document) : document_(document) {}

  /// What FindContainerByMcid finds on the page with that dictionary; null when it is no page of the document.
  PDE_Container* FindContainer(CosObj page, ASInt32 mcid);
  /// Takes note of the removal of what FindContainer finds.
  void Forget(CosObj page, ASInt32 mcid);

 private:
  struct Place {
    PDE_Container* container;
    bool isOnlyOne;  ///< of its MCID
  };
  using Places = std::unordered_map<ASInt32, Place>;
  struct View {
    explicit View(PDPage itsPage) : page(itsPage) {}
    PD_Page page;
    Places places;
  };

  static std::uint64_t KeyOf(CosObj page) { return std::uint64_t{page.a} << 32U | page.b; }
  static void Index(const PDE_Content& content, Places& places);
  void FindPages();
  View* ViewOf(CosObj page);

  PDDoc document_;
  bool pagesFound_ = false;
  std::unordered_map<std::uint64_t, ASInt32> indices_;  // of the pages, by their dictionaries
  std::unordered_map<ASInt32, std::unique_ptr<View>> views_;
};

}  // namespace tgx
