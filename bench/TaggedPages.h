#pragma once

#include <deque>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include "bench/SubsetFont.h"

namespace tgx::bench {

/// A structure element to be; its kids are written at the end, each parent once.
struct Node {
  struct Mcid {
    int number;
  };
  struct Object {
    QPDFObjectHandle annotation, page;
  };
  using Kid = std::variant<Node*, Mcid, Object>;

  QPDFObjectHandle element;
  Node* parent = nullptr;
  std::vector<Kid> kids;
};

/// Builds a tagged document page by page, top down: every piece of text becomes a marked-content sequence of an element.
class TaggedPages {
 public:
  explicit TaggedPages(SubsetFont& font);

  QPDF& Pdf() { return pdf_; }

  void BeginPage();
  void EndPage();
  QPDFObjectHandle Page() const { return page_; }

  /// A new element, the last kid of `parent` or the kid at `index`; without a parent it stands at the top of the tree. With
  /// a page open it gets that as its "Pg".
  Node* Add(const std::string& type, Node* parent, int index = -1);
  /// An element that is not yet in the tree; Adopt puts it there.
  Node* AddLoose(const std::string& type);
  void Adopt(Node* parent, Node* kid);

  /// Marked content of an element: operators, or a line of text at `x` and the present height.
  void Mark(Node* node, const std::string& tag, const std::string& operators, const std::string& properties = "");
  void Text(Node* node, const std::string& tag, const std::string& utf8, double x = 36, double size = 9,
            const std::string& properties = "");
  void Operators(const std::string& operators) { operators_ += operators + "\n"; }
  void Down(double points) { y_ -= points; }
  double Height() const { return y_; }

  /// A link annotation on the page, a kid of the element. `target` is the value of its "A" or "Dest".
  QPDFObjectHandle Link(Node* node, double left, double width, const std::string& key, QPDFObjectHandle target);

  QPDFObjectHandle Image(int width, int height);
  void AddResource(const std::string& category, const std::string& name, QPDFObjectHandle object);

  /// Writes the kids, the parent tree and the tree's root.
  void Finish(QPDFObjectHandle roleMap);

  std::size_t ElementCount() const { return nodes_.size(); }
  std::size_t MarkedContentCount() const { return marked_; }

 private:
  void WriteKids(Node& node);
  QPDFObjectHandle ParentTree();

  QPDF pdf_;
  SubsetFont& font_;
  QPDFObjectHandle resources_, root_, page_;
  std::deque<Node> nodes_;
  std::vector<Node*> top_;
  std::vector<Node*> owners_;  // of the MCIDs of the open page
  std::vector<QPDFObjectHandle> annotations_;
  std::vector<QPDFObjectHandle> parents_;  // values of the parent tree by key
  std::string operators_;
  double y_ = 0;
  std::size_t marked_ = 0;
};

}  // namespace tgx::bench
