#pragma once

#include <utility>

#include "src/api/HostBinding.h"

namespace tgx {

/// Owns one reference on a page.
class PageReference {
 public:
  explicit PageReference(PDPage page) : page_(page) {}
  PageReference(PageReference&& other) noexcept : page_(std::exchange(other.page_, nullptr)) {}
  PageReference& operator=(PageReference&&) = delete;
  ~PageReference() {
    if (page_ != nullptr) PDPageRelease(page_);
  }

  PDPage Get() const { return page_; }
  /// Hands the reference over to the caller.
  PDPage Release() { return std::exchange(page_, nullptr); }

 private:
  PDPage page_;
};

}  // namespace tgx
