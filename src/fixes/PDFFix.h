#pragma once

#include "src/api/HostBinding.h"

namespace tgx {

/// A fix that gets its document before it is applied.
class PDFFix {
 public:
  PDFFix() = default;
  PDFFix(const PDFFix&) = delete;
  PDFFix& operator=(const PDFFix&) = delete;
  virtual ~PDFFix() = default;

  void SetDocument(PDDoc document) { document_ = document; }
  PDDoc GetDocument() const { return document_; }

  virtual bool ApplyFix() { return false; }

 private:
  PDDoc document_ = nullptr;
};

}  // namespace tgx
