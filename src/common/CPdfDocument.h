#pragma once

#include "src/api/HostBinding.h"

namespace tgx {

/// Holds a document, with a reference of its own on it.
class CPdfDocument {
 public:
  CPdfDocument() = default;
  CPdfDocument(const CPdfDocument&) = delete;
  CPdfDocument& operator=(const CPdfDocument&) = delete;
  virtual ~CPdfDocument();

  /// Takes a reference and gives back that on the document held before. Null is ignored.
  void SetDoc(PDDoc document);
  PDDoc GetDoc() const { return document_; }

 private:
  PDDoc document_ = nullptr;
};

}  // namespace tgx
