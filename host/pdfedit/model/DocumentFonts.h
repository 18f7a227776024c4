#pragma once

#include <deque>
#include <memory>
#include <unordered_map>

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

#include "host/pdfedit/fonts/Font.h"
#include "host/pdfedit/model/Slabs.h"

namespace tgx::host {

/// A font dictionary that page content of a document uses.
class DocumentFont {
 public:
  DocumentFont(const QPDFObjectHandle& dictionary, void* document) : dictionary_(dictionary), document_(document) {}

  const QPDFObjectHandle& Dictionary() const noexcept { return dictionary_; }
  PDEFont Handle() const noexcept { return handle_; }
  /// Of which document's fonts this is one; only to be compared.
  const void* Document() const noexcept { return document_; }

  /// What the dictionary says, read when it is first needed.
  const Font& Metrics() {
    if (!font_) font_ = Font::Read(dictionary_);
    return *font_;
  }

 private:
  friend class DocumentFonts;

  QPDFObjectHandle dictionary_;
  void* document_;
  std::unique_ptr<Font> font_;
  PDEFont handle_ = nullptr;
};

/// The fonts of a document, one for each font dictionary, under one handle each.
class DocumentFonts {
 public:
  DocumentFonts() : records_(RecordKind::kFont, this) {}

  DocumentFont& Of(const QPDFObjectHandle& dictionary);

 private:
  struct alignas(8) Record {
    DocumentFont* font;
    char unused[kRecordSize - sizeof(void*)];
  };
  friend DocumentFont* FindFont(PDEObject handle);

  std::deque<DocumentFont> fonts_;
  std::unordered_map<const QPDFObject*, DocumentFont*> known_;
  Slabs<Record> records_;
};

/// The font behind a handle of an open document. Throws kASBadParameter, kASWrongType.
DocumentFont& FontOf(PDEObject handle);

}  // namespace tgx::host
