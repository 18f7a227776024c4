#pragma once

#include "tool/HostCalls.h"

namespace tgx::tool {

/// The content of a page, held for as long as this lives.
class PageContent {
 public:
  PageContent(PDDoc document, ASInt32 pageIndex) : page_(document, pageIndex), content_(page_.handle) {}

  PDPage Page() const { return page_.handle; }
  PDEContent Get() const { return content_.handle; }

 private:
  struct HeldPage {
    HeldPage(PDDoc document, ASInt32 pageIndex) : handle(PDDocAcquirePage(document, pageIndex)) {}
    ~HeldPage() { PDPageRelease(handle); }
    HeldPage(const HeldPage&) = delete;
    HeldPage& operator=(const HeldPage&) = delete;
    PDPage handle;
  };
  struct HeldContent {
    explicit HeldContent(PDPage itsPage) : page(itsPage), handle(PDPageAcquirePDEContent(itsPage, nullptr)) {}
    ~HeldContent() { PDPageReleasePDEContent(page, nullptr); }
    HeldContent(const HeldContent&) = delete;
    HeldContent& operator=(const HeldContent&) = delete;
    PDPage page;
    PDEContent handle;
  };

  HeldPage page_;
  HeldContent content_;
};

}  // namespace tgx::tool
