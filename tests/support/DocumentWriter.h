#pragma once

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include "tests/support/TestDocument.h"

namespace tgx::test {

/// Turns a TestDocument into objects of qpdf's. All indirect objects are made first, so that PDF text can refer to any of
/// them; then they are filled.
class DocumentWriter {
 public:
  explicit DocumentWriter(TestDocument& document) : document_(document) {}
  std::unique_ptr<QPDF> Build();

 private:
  using ElementNode = Element::Node;
  using AnnotationNode = Annotation::Node;

  void MakeObjects();
  void MakeElements();
  void FillPage(const Page& page);
  QPDFObjectHandle ResourcesOf(const Page& page);
  void FillAnnotation(const AnnotationNode& annotation);
  void FillForm();
  void FillTree();
  void FillElement(const ElementNode& element);
  QPDFObjectHandle KidObject(const ElementNode& element, const Element::Kid& kid, const Page* ownPage);
  void FillParentTree();
  void FillIdTree();

  /// PDF text with `$name` replaced, as an object.
  QPDFObjectHandle Parse(const std::string& pdfText);
  void Apply(QPDFObjectHandle dictionary, const RawEntries& entries);
  void Name(const std::string& name, const QPDFObjectHandle& object);
  QPDFObjectHandle NewDictionary();
  QPDFObjectHandle& PageObject(const Page& page) { return pages_.at(static_cast<std::size_t>(page.number_ - 1)); }

  TestDocument& document_;
  std::unique_ptr<QPDF> pdf_;
  std::map<std::string, std::string> references_;  // name to "7 0 R"
  std::vector<QPDFObjectHandle> pages_;
  std::unordered_map<const AnnotationNode*, QPDFObjectHandle> annotations_;
  std::vector<std::shared_ptr<ElementNode>> elementOrder_;  // parents before kids
  std::unordered_map<const ElementNode*, QPDFObjectHandle> elements_;
  std::unordered_map<const ElementNode*, QPDFObjectHandle> parents_;
  std::map<int, std::map<int, QPDFObjectHandle>> owners_;                             // page, MCID
  std::vector<std::pair<const AnnotationNode*, QPDFObjectHandle>> annotationOwners_;  // annotation to its element
  QPDFObjectHandle tree_;
};

}  // namespace tgx::test
