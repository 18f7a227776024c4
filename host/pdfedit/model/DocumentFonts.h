#pragma once

#include <deque>
#include <memory>
#include <unordered_map>

#include <tgx/host.h>
#include <qpdf/QPDFObjectHandle.hh>

#include "host/pdfedit/fonts/Font.h"
#include "host/pdfedit/model/Slabs.h"

namespace tgx::host {

class DocumentFonts;
class FontParts;

/// A font dictionary that page content of a document uses.
class DocumentFont {
 public:
  DocumentFont(const QPDFObjectHandle& dictionary, DocumentFonts& document) : dictionary_(dictionary), document_(document) {}

  const QPDFObjectHandle& Dictionary() const noexcept { return dictionary_; }
  PDEFont Handle() const noexcept { return handle_; }
  /// Of which document's fonts this is one; only to be compared.
  const void* Document() const noexcept { return &document_; }

  /// What the dictionary says, read when it is first needed.
  const Font& Metrics() {
    if (!font_) ReadMetrics();
    return *font_;
  }

 private:
  friend class DocumentFonts;

  void ReadMetrics();

  QPDFObjectHandle dictionary_;
  DocumentFonts& document_;
  std::unique_ptr<Font> font_;
  PDEFont handle_ = nullptr;
};

/// The fonts of a document, one for each font dictionary, under one handle each.
class DocumentFonts {
 public:
  DocumentFonts();
  DocumentFonts(const DocumentFonts&) = delete;
  DocumentFonts& operator=(const DocumentFonts&) = delete;
  ~DocumentFonts();

  DocumentFont& Of(const QPDFObjectHandle& dictionary);

 private:
  struct alignas(8) Record {
    DocumentFont* font;
    char unused[kRecordSize - sizeof(void*)];
  };
  friend DocumentFont* FindFont(PDEObject handle);
  friend class DocumentFont;

  std::deque<DocumentFont> fonts_;
  std::unordered_map<const QPDFObject*, DocumentFont*> known_;
  Slabs<Record> records_;
  std::unique_ptr<FontParts> parts_;
};

/// The font behind a handle of an open document. Throws kASBadParameter, kASWrongType.
DocumentFont& FontOf(PDEObject handle);

}  // namespace tgx::host
