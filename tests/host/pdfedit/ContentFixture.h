#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <tgx/host.h>
#include <qpdf/QPDF.hh>

#include "host/core/Tables.h"
#include "host/pdfedit/PageContents.h"
#include "tests/host/HostDocument.h"

namespace tgx::host {

inline const PDFEditReadTable& ReadContent() { return *Tables()->pdfEditRead; }
inline const PDFEditWriteTable& WriteContent() { return *Tables()->pdfEditWrite; }
inline const PagePDEContentTable& PageContent() { return *Tables()->pagePDEContent; }
inline const CosTable& Cos() { return *Tables()->cos; }

/// Content for the page of a ContentDocument, with what goes with it.
struct PageSource {
  std::vector<std::string> streams;  ///< one stands alone, several make an array
  std::string resources;             ///< entries of the page's resources beside the standard ones
  std::string page;                  ///< further entries of the page dictionary
  std::string objects;               ///< further objects from number 20 up

  PageSource(const char* stream) : streams{stream} {}                            // NOLINT(google-explicit-constructor)
  PageSource(std::string stream) : streams{std::move(stream)} {}                 // NOLINT(google-explicit-constructor)
  PageSource(std::vector<std::string> several) : streams(std::move(several)) {}  // NOLINT(google-explicit-constructor)
  PageSource& Resources(std::string entries) { return resources = std::move(entries), *this; }
  PageSource& Page(std::string entries) { return page = std::move(entries), *this; }
  PageSource& Objects(std::string text) { return objects = std::move(text), *this; }
};

/// A document of one page of 200 by 200 points. Its fonts are F1 (Courier: every code moves 0.6 of the size) and F2
/// (composite, Identity-H, two bytes a code, every code moves 0.5); its XObjects Im (1 by 1), Fm (BBox 0 0 10 20), Ps; its
/// property dictionary Pr0 has MCID 7.
class ContentDocument {
 public:
  explicit ContentDocument(const PageSource& source);
  static ContentDocument FromBytes(std::string_view bytes) { return ContentDocument(HostDocument::FromBytes(bytes)); }

  HostDocument& Host() { return document_; }
  PDPage Page(int index = 0);
  PDEContent Root(int index = 0);
  QPDFObjectHandle Dictionary(int index = 0) { return document_->Pdf().getAllPages().at(static_cast<std::size_t>(index)); }
  PageModel& Model(int index = 0) { return document_->Contents().Of(index); }

  /// The elements as text: `text("ab" "c") path image[text() container:P#3[...]]`.
  std::string Tree(int index = 0);
  /// The element at a path of indices from the top.
  PDEElement At(std::vector<int> path, int pageIndex = 0);
  PDEContent ListAt(std::vector<int> path, int pageIndex = 0);
  void Remove(std::vector<int> path, int pageIndex = 0);
  CosObj Properties(PDEContainer container);
  void Commit(int index = 0) { PageContent().PDPageSetPDEContent(Page(index), nullptr); }

  /// The page's content as it is saved; Saved gives it with one space for all white space between two things.
  std::string SavedRaw(int index = 0);
  std::string Saved(int index = 0);
  std::string SavedBytes() { return document_.Written(); }

 private:
  explicit ContentDocument(HostDocument document) : document_(std::move(document)) {}

  HostDocument document_;
};

/// The elements of a list as text.
std::string ListText(PDEContent list);

/// The bytes of all characters, and of one run.
std::string TextOf(PDEElement text);
std::string RunOf(PDEElement text, int run);

/// A box in points as "left bottom right top".
std::string BoxText(PDEElement element);
std::string MatrixText(PDEText text, ASUns32 flags, int index);

}  // namespace tgx::host
