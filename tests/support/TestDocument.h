#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

#include "tests/support/Content.h"
#include "tests/support/Element.h"

namespace tgx::test {

/// A page of a TestDocument: 612 by 792 points, text going down line by line.
class Page {
 public:
  explicit Page(int number) : number_(number) {}
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;

  int Number() const { return number_; }  ///< counted from 1; `$page1` is the first page's name in PDF text

  /// Adds content behind what is there.
  Page& Add(const Content& content);
  /// Adds marked content with the next MCID of the page, and gives the MCID.
  int Mark(const std::string& tag, const Content& content);
  int NextMcid() const { return nextMcid_; }

  /// An entry of the page's resources, such as ("Font", "F2", "<</Type/Font ...>>"). A second one replaces the first.
  Page& Resource(const std::string& category, const std::string& name, std::string pdfText);
  /// Any key of the page dictionary.
  Page& Set(std::string key, std::string pdfText);

  Annotation Annotate(const std::string& subtype);
  /// A link annotation with a URI action.
  Annotation Link(const std::string& uri);

 private:
  friend class DocumentWriter;

  std::string ImageResource(int width, int height);
  void Append(const Content& content);
  void AppendText(const Content& content);
  void AppendMarked(const Content& content);

  int number_;
  int nextMcid_ = 0;
  int properties_ = 0;
  double nextLine_ = 740;
  std::string operators_;
  std::map<std::string, std::map<std::string, std::string>> resources_;
  std::map<std::string, std::pair<int, int>> images_;  // resource name to width and height
  RawEntries entries_;
  std::vector<std::shared_ptr<Annotation::Node>> annotations_;
};

/// Makes a tagged PDF that can be read off the test:
///
///     TestDocument doc;
///     Page& page = doc.AddPage();
///     doc.Tree({Element("Document")({
///         Element("H1").Text(page, "Title"),
///         Element("P"),
///         Element("Link").Text(page, "here").Object(page.Link("https://example.org/")),
///     })});
///     OpenDocument open(doc.Write());
///
/// The parent tree, "StructParents" and "StructParent", the page entries of the elements and the ID tree are made from the
/// tree, unless the test sets those keys itself. Every dictionary takes any key from PDF text, so damage is built the same
/// way.
class TestDocument {
 public:
  TestDocument() = default;
  TestDocument(const TestDocument&) = delete;
  TestDocument& operator=(const TestDocument&) = delete;

  Page& AddPage();
  Page& PageAt(int number) { return pages_.at(static_cast<std::size_t>(number - 1)); }

  /// Gives the document a structure tree with these elements on top, behind those of earlier calls. Without a call the
  /// document has no tree; `Tree({})` makes an empty one. Marked content of the elements goes to the pages now, in tree
  /// order.
  TestDocument& Tree(const std::vector<Element>& top);

  TestDocument& RoleMap(std::vector<std::pair<std::string, std::string>> sourceToTarget);
  TestDocument& Lang(const Bytes& language);
  /// Leaves out the parent tree and all "StructParents" and "StructParent".
  TestDocument& WithoutParentTree() { return parentTree_ = false, *this; }

  /// Any key of the tree root (`$tree` in PDF text) and of the catalog (`$catalog`).
  TestDocument& SetTree(std::string key, std::string pdfText);
  TestDocument& SetCatalog(std::string key, std::string pdfText);

  /// A stream and any other indirect object, for `$name` in PDF text.
  TestDocument& Stream(std::string name, std::string dictionary, std::string data);
  TestDocument& Object(std::string name, std::string pdfText);

  /// A form field that is its own widget on the page: `type` is Tx, Btn, Ch or Sig, `value` the PDF text of "V" or empty.
  Annotation Field(Page& page, const Bytes& name, const std::string& type, const std::string& value = "");
  /// Puts the annotation of an own making among the fields of the form.
  TestDocument& AddField(const Annotation& field);

  /// Called with the finished document before it is written: for what no other way reaches.
  TestDocument& Patch(std::function<void(QPDF&)> patch);

  /// The document, and its bytes. `configure` may change how it is written (encryption, object streams); the same document
  /// gives the same bytes unless it is encrypted.
  std::unique_ptr<QPDF> Build();
  std::string Write(const std::function<void(QPDFWriter&)>& configure = {});

 private:
  friend class DocumentWriter;

  struct NamedStream {
    std::string name, dictionary, data;
  };

  std::deque<Page> pages_;
  std::vector<Element> top_;
  bool hasTree_ = false;
  bool parentTree_ = true;
  std::vector<std::pair<std::string, std::string>> roleMap_;
  RawEntries treeEntries_, catalogEntries_;
  std::vector<NamedStream> streams_;
  std::vector<std::pair<std::string, std::string>> objects_;
  std::vector<std::shared_ptr<Annotation::Node>> fields_;
  std::vector<std::function<void(QPDF&)>> patches_;
};

/// The bytes of a document of qpdf's, written the same way every time.
std::string WriteToString(QPDF& pdf, const std::function<void(QPDFWriter&)>& configure = {});

}  // namespace tgx::test
