#pragma once

#include <string_view>

#include <qpdf/QPDFObjectHandle.hh>
#include <tgx/host.h>

#include "host/cos/CosObserver.h"

namespace tgx::host {

class Document;

/// The structure tree of a document, held in memory from its first use on.
class StructureTree : public CosObserver {
 public:
  explicit StructureTree(Document& document) : document_(document) {}

  void BeforeCosRead(const QPDFObjectHandle& container, std::string_view key) override;
  void AfterCosEdit(const QPDFObjectHandle& container, std::string_view key) override;

  /// Writes out every changed "K" and "P", and makes the parent tree, its keys and the ID tree true. Called once before each
  /// saving of a changed document.
  void PrepareForSaving();

 private:
  Document& document_;
};

}  // namespace tgx::host
