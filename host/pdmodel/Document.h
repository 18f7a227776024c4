#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>

#include <tgx/host.h>
#include <qpdf/QPDF.hh>

#include "host/cos/CosObserver.h"
#include "host/cos/NameSpelling.h"
#include "host/cos/NewStreams.h"
#include "host/cos/ObjectTable.h"

namespace tgx::host {

class AnnotationLists;
struct LivingObject;
class PageContents;
class PageList;
class Source;
class StructureTree;

/// One open document: qpdf's view of the file, the handles given out for its objects, and the models kept over them.
///
/// Documents live in one registry. A PDDoc, CosDoc or PDPage is a number made from the document's serial number (and the
/// page's index), never an address: a handle of a closed document is recognised for good.
class Document {
 public:
  /// Takes over a file that qpdf has read; `name` is what messages call it, `source` what qpdf reads from, if it is ours.
  /// Reads the page list at once: qpdf may replace page objects that stand in the page tree twice, so this comes before any
  /// handle.
  static Document& Adopt(std::unique_ptr<QPDF> pdf, std::string name, std::shared_ptr<Source> source = nullptr);

  /// The open document of a serial number or a handle, null if there is none.
  static Document* Find(ASUns32 serial) noexcept;
  static Document* Find(PDDoc handle) noexcept;

  /// The open document of a handle. Throw kASBadParameter for null and for dead handles.
  static Document& Of(PDDoc handle);
  static Document& Of(CosDoc handle);
  static Document& Of(PDPage handle);
  static Document& Of(CosObj handle);
  /// The same together with the object's slot.
  static LivingObject ObjectOf(CosObj handle);

  /// Ends the document; all its handles are dead from here on.
  static void Close(Document& document) noexcept;

  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  ASUns32 Serial() const noexcept { return serial_; }
  PDDoc Handle() const noexcept;
  CosDoc CosHandle() const noexcept;
  const std::string& Name() const noexcept { return name_; }

  QPDF& Pdf() noexcept { return *pdf_; }
  ObjectTable& Objects() noexcept { return objects_; }
  CosObj HandleOf(const QPDFObjectHandle& object) { return objects_.HandleOf(object); }
  NameSpelling& Names() noexcept { return names_; }
  NewStreams& Streams() noexcept { return streams_; }
  PageList& Pages() noexcept { return *pages_; }
  AnnotationLists& Annotations() noexcept { return *annotations_; }
  StructureTree& Structure() noexcept { return *structure_; }
  PageContents& Contents() noexcept { return *contents_; }

  /// What the document is read from, null if somebody else opened it.
  Source* From() noexcept { return source_.get(); }

  /// What was found wrong with the file so far, by qpdf or by the host through QPDF::warn, a line each; of very many only
  /// the first, and a last line that says so. Lines never change their places.
  const std::deque<std::string>& Warnings();

  /// Whether anything has been edited since the document was opened. Saving rebuilds the parent tree only then.
  bool IsChanged() const noexcept { return edits_ != 0; }
  void MarkChanged() noexcept { ++edits_; }

  /// How often it was marked so far: the same number twice means that nothing was edited in between.
  std::size_t Edits() const noexcept { return edits_; }

  /// Whether the document has been written linearized, which qpdf does once only.
  bool HasBeenLinearized() const noexcept { return linearized_; }
  void MarkLinearized() noexcept { linearized_ = true; }

  /// Called by the Cos operations; see CosObserver. An edit also marks the document changed.
  void BeforeCosRead(const QPDFObjectHandle& container, std::string_view key);
  void AfterCosEdit(const QPDFObjectHandle& container, std::string_view key);

 private:
  Document(ASUns32 serial, std::unique_ptr<QPDF> pdf, std::string name, std::shared_ptr<Source> source);

  ASUns32 serial_;
  std::string name_;
  std::shared_ptr<Source> source_;
  std::unique_ptr<QPDF> pdf_;
  std::deque<std::string> warnings_;
  ObjectTable objects_;
  NameSpelling names_;
  NewStreams streams_;
  std::unique_ptr<PageList> pages_;
  std::unique_ptr<AnnotationLists> annotations_;
  std::unique_ptr<StructureTree> structure_;
  std::unique_ptr<PageContents> contents_;
  std::size_t edits_ = 0;
  bool linearized_ = false;
};

/// What the handle of a living object stands for.
struct LivingObject {
  Document& document;
  ObjectTable::Slot& slot;
};

}  // namespace tgx::host
