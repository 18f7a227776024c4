#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/Content.h"

namespace tgx::test {

class Page;

/// The bytes of a PDF text string: plain bytes as they stand, UTF-16 text as UTF-16BE with its mark.
struct Bytes {
  std::string value;
  Bytes(const char* plain) : value(plain) {}             // NOLINT(google-explicit-constructor): reads well in trees
  Bytes(std::string plain) : value(std::move(plain)) {}  // NOLINT(google-explicit-constructor)
  Bytes(const char16_t* text) : Bytes(std::u16string_view(text)) {}  // NOLINT(google-explicit-constructor)
  Bytes(std::u16string_view text);                                   // NOLINT(google-explicit-constructor)
};

/// Keys of a dictionary with the PDF text of their values, in the order in which they are set. In such text `$name` stands
/// for a reference to the element, annotation, stream or page of that name; "null" removes a key.
using RawEntries = std::vector<std::pair<std::string, std::string>>;

/// An annotation of a page. A handle: copies mean the same annotation.
class Annotation {
 public:
  struct Node {
    Page* page = nullptr;
    std::string name;
    RawEntries entries;
  };

  explicit Annotation(std::shared_ptr<Node> node) : node_(std::move(node)) {}
  Annotation& Named(std::string name) { return node_->name = std::move(name), *this; }
  Annotation& Set(std::string key, std::string pdfText);
  const std::shared_ptr<Node>& Get() const { return node_; }

 private:
  std::shared_ptr<Node> node_;
};

/// A structure element to be. A handle: copies mean the same element, so that a test can keep one and put it into a tree.
///
///     Element("Document")({
///         Element("H1").Text(page, "Title"),
///         Element("Figure").Alt(u"A tree").Image(page, 1, 1),
///     })
///
/// An element that is its own ancestor is made with a raw kid: `Element("Sect").Named("loop").RawKid("$loop")`.
class Element {
 public:
  struct Node;
  struct Kid {
    enum class Kind { kElement, kContent, kMcid, kMcr, kObject, kRaw };
    Kind kind;
    std::shared_ptr<Node> element = nullptr;
    Page* page = nullptr;
    int mcid = -1;  ///< of content: -1 until the page has it
    Content content = {};
    std::shared_ptr<Annotation::Node> annotation = nullptr;
    std::string raw = {};
  };
  struct Node {
    std::string type;
    std::string name;
    RawEntries entries;
    std::vector<Kid> kids;
    ~Node();
  };

  explicit Element(std::string type);

  /// Elements behind the kids that are there.
  Element& operator()(const std::vector<Element>& kids);
  Element& Add(const Element& kid);
  /// Adds a new element and returns that one, for trees that are built downwards.
  Element AddNew(std::string type);

  /// Marked content on the page, tagged with the element's type and the page's next MCID, and the kid for it.
  Element& Text(Page& page, std::string_view bytes) { return Mark(page, test::Text(bytes)); }
  Element& Image(Page& page, int width, int height) { return Mark(page, test::Image(width, height)); }
  Element& Mark(Page& page, Content content);
  /// A kid for an MCID whose content the test has put on the page by itself, or not at all. The second form is always an MCR
  /// dictionary; the first is an integer on the element's own page.
  Element& Mcid(Page& page, int mcid);
  Element& Mcr(Page& page, int mcid);
  /// An object reference to an annotation.
  Element& Object(const Annotation& annotation);
  /// A kid from PDF text.
  Element& RawKid(std::string pdfText);

  Element& Title(const Bytes& text) { return String("T", text); }
  Element& Alt(const Bytes& text) { return String("Alt", text); }
  Element& ActualText(const Bytes& text) { return String("ActualText", text); }
  Element& Lang(const Bytes& text) { return String("Lang", text); }
  Element& Id(const Bytes& text) { return String("ID", text); }
  Element& Attributes(std::string pdfText) { return Set("A", std::move(pdfText)); }

  /// Any key from PDF text, in the place of what the builder would write.
  Element& Set(std::string key, std::string pdfText);
  Element& String(std::string key, const Bytes& text);
  /// A name for `$name` in PDF text.
  Element& Named(std::string name) { return node_->name = std::move(name), *this; }

  const std::shared_ptr<Node>& Get() const { return node_; }

 private:
  std::shared_ptr<Node> node_;
};

}  // namespace tgx::test
