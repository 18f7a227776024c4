#include "tests/support/Element.h"

#include <qpdf/QPDFObjectHandle.hh>

namespace tgx::test {

Bytes::Bytes(std::u16string_view text) : value("\xFE\xFF") {
  for (const char16_t unit : text) {
    value.push_back(static_cast<char>(unit >> 8));
    value.push_back(static_cast<char>(unit & 0xFF));
  }
}

Annotation& Annotation::Set(std::string key, std::string pdfText) {
  node_->entries.emplace_back(std::move(key), std::move(pdfText));
  return *this;
}

Element::Element(std::string type) : node_(std::make_shared<Node>()) { node_->type = std::move(type); }

Element& Element::operator()(const std::vector<Element>& kids) {
  for (const Element& kid : kids) Add(kid);
  return *this;
}

// Trees in tests can be 10,000 levels deep: taken apart level by level, not by recursion.
Element::Node::~Node() {
  std::vector<std::shared_ptr<Node>> doomed;
  const auto take = [&doomed](std::vector<Kid>& from) {
    for (Kid& kid : from) {
      if (kid.element && kid.element.use_count() == 1) doomed.push_back(std::move(kid.element));
    }
    from.clear();
  };
  take(kids);
  while (!doomed.empty()) {
    const std::shared_ptr<Node> node = std::move(doomed.back());
    doomed.pop_back();
    take(node->kids);
  }
}

Element& Element::Add(const Element& kid) {
  node_->kids.push_back({.kind = Kid::Kind::kElement, .element = kid.node_});
  return *this;
}

Element Element::AddNew(std::string type) {
  Element kid(std::move(type));
  Add(kid);
  return kid;
}

Element& Element::Mark(Page& page, Content content) {
  node_->kids.push_back({.kind = Kid::Kind::kContent, .page = &page, .content = std::move(content)});
  return *this;
}

Element& Element::Mcid(Page& page, int mcid) {
  node_->kids.push_back({.kind = Kid::Kind::kMcid, .page = &page, .mcid = mcid});
  return *this;
}

Element& Element::Mcr(Page& page, int mcid) {
  node_->kids.push_back({.kind = Kid::Kind::kMcr, .page = &page, .mcid = mcid});
  return *this;
}

Element& Element::Object(const Annotation& annotation) {
  node_->kids.push_back({.kind = Kid::Kind::kObject, .page = annotation.Get()->page, .annotation = annotation.Get()});
  return *this;
}

Element& Element::RawKid(std::string pdfText) {
  node_->kids.push_back({.kind = Kid::Kind::kRaw, .raw = std::move(pdfText)});
  return *this;
}

Element& Element::Set(std::string key, std::string pdfText) {
  node_->entries.emplace_back(std::move(key), std::move(pdfText));
  return *this;
}

Element& Element::String(std::string key, const Bytes& text) {
  std::string literal = QPDFObjectHandle::newString(text.value).unparseBinary();
  return Set(std::move(key), std::move(literal));
}

}  // namespace tgx::test
