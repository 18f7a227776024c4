#include "bench/TaggedPages.h"

#include <cstdio>

#include <qpdf/QPDFPageDocumentHelper.hh>

namespace tgx::bench {
namespace {

constexpr double kTop = 790;

QPDFObjectHandle Name(const std::string& text) { return QPDFObjectHandle::newName("/" + text); }
QPDFObjectHandle Integer(long long value) { return QPDFObjectHandle::newInteger(value); }

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

}  // namespace

TaggedPages::TaggedPages(SubsetFont& font) : font_(font) {
  pdf_.emptyPDF();
  resources_ = pdf_.makeIndirectObject(QPDFObjectHandle::parse("<</Font <<>> /XObject <<>>>>"));
  root_ = pdf_.makeIndirectObject(QPDFObjectHandle::parse("<</Type /StructTreeRoot>>"));
  AddResource("Font", "F1", font_.CopyTo(pdf_));
}

void TaggedPages::AddResource(const std::string& category, const std::string& name, QPDFObjectHandle object) {
  resources_.getKey("/" + category).replaceKey("/" + name, object);
}

void TaggedPages::BeginPage() {
  page_ = pdf_.makeIndirectObject(QPDFObjectHandle::parse("<</Type /Page /MediaBox [0 0 420 820] /Tabs /S>>"));
  page_.replaceKey("/Resources", resources_);
  operators_.clear();
  owners_.clear();
  annotations_.clear();
  y_ = kTop;
}

void TaggedPages::EndPage() {
  page_.replaceKey("/Contents", pdf_.newStream(operators_));
  page_.replaceKey("/StructParents", Integer(static_cast<long long>(parents_.size())));
  if (!annotations_.empty()) page_.replaceKey("/Annots", QPDFObjectHandle::newArray(annotations_));
  QPDFObjectHandle owners = QPDFObjectHandle::newArray();
  for (const Node* owner : owners_) owners.appendItem(owner->element);
  parents_.push_back(pdf_.makeIndirectObject(owners));
  QPDFPageDocumentHelper(pdf_).addPage(QPDFPageObjectHelper(page_), false);
  page_ = QPDFObjectHandle();
}

Node* TaggedPages::AddLoose(const std::string& type) {
  Node& node = nodes_.emplace_back();
  node.element = pdf_.makeIndirectObject(QPDFObjectHandle::parse("<</Type /StructElem>>"));
  node.element.replaceKey("/S", Name(type));
  if (page_.isInitialized()) node.element.replaceKey("/Pg", page_);
  return &node;
}

void TaggedPages::Adopt(Node* parent, Node* kid) {
  kid->parent = parent;
  parent->kids.emplace_back(kid);
}

Node* TaggedPages::Add(const std::string& type, Node* parent, int index) {
  Node* node = AddLoose(type);
  if (parent == nullptr) {
    top_.push_back(node);
    return node;
  }
  Adopt(parent, node);
  if (index >= 0 && static_cast<std::size_t>(index) + 1 < parent->kids.size()) {
    parent->kids.pop_back();
    parent->kids.insert(parent->kids.begin() + index, node);
  }
  return node;
}

void TaggedPages::Mark(Node* node, const std::string& tag, const std::string& operators, const std::string& properties) {
  const int mcid = static_cast<int>(owners_.size());
  Operators("/" + tag + " <</MCID " + std::to_string(mcid) + properties + ">> BDC " + operators + " EMC");
  node->kids.emplace_back(Node::Mcid{mcid});
  owners_.push_back(node);
  ++marked_;
}

void TaggedPages::Text(Node* node, const std::string& tag, const std::string& utf8, double x, double size,
                       const std::string& properties) {
  Mark(node, tag,
       "BT /F1 " + Number(size) + " Tf 1 0 0 1 " + Number(x) + " " + Number(y_) + " Tm " + font_.Show(utf8) + " Tj ET",
       properties);
}

QPDFObjectHandle TaggedPages::Link(Node* node, double left, double width, const std::string& key, QPDFObjectHandle target) {
  QPDFObjectHandle annotation =
      pdf_.makeIndirectObject(QPDFObjectHandle::parse("<</Type /Annot /Subtype /Link /Border [0 0 0] /F 4>>"));
  const QPDFObjectHandle::Rectangle area(left, y_ - 2, left + width, y_ + 8);
  annotation.replaceKey("/Rect", QPDFObjectHandle::newFromRectangle(area));
  annotation.replaceKey("/P", page_);
  annotation.replaceKey("/StructParent", Integer(static_cast<long long>(parents_.size())));
  annotation.replaceKey("/" + key, target);
  parents_.push_back(node->element);
  annotations_.push_back(annotation);
  node->kids.emplace_back(Node::Object{annotation, page_});
  return annotation;
}

QPDFObjectHandle TaggedPages::Image(int width, int height) {
  std::string samples;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      samples += width == 1 ? std::string(3, '\0')
                            : std::string({static_cast<char>(30 + 7 * x), static_cast<char>(80 + 8 * y), '\x70'});
    }
  }
  QPDFObjectHandle image = pdf_.newStream(samples);
  QPDFObjectHandle dictionary =
      QPDFObjectHandle::parse("<</Type /XObject /Subtype /Image /ColorSpace /DeviceRGB /BitsPerComponent 8>>");
  dictionary.replaceKey("/Width", Integer(width));
  dictionary.replaceKey("/Height", Integer(height));
  image.replaceDict(dictionary);
  return image;
}

void TaggedPages::WriteKids(Node& node) {
  std::vector<QPDFObjectHandle> items;
  for (const Node::Kid& kid : node.kids) {
    if (const auto* element = std::get_if<Node*>(&kid)) {
      items.push_back((*element)->element);
    } else if (const auto* mcid = std::get_if<Node::Mcid>(&kid)) {
      items.push_back(Integer(mcid->number));
    } else {
      const auto& object = std::get<Node::Object>(kid);
      QPDFObjectHandle reference = QPDFObjectHandle::parse("<</Type /OBJR>>");
      reference.replaceKey("/Pg", object.page);
      reference.replaceKey("/Obj", object.annotation);
      items.push_back(reference);
    }
  }
  if (items.empty()) return;
  node.element.replaceKey("/K", items.size() == 1 ? items.front() : QPDFObjectHandle::newArray(items));
}

QPDFObjectHandle TaggedPages::ParentTree() {
  constexpr std::size_t kKeysInALeaf = 250;
  QPDFObjectHandle leaves = QPDFObjectHandle::newArray();
  for (std::size_t first = 0; first < parents_.size(); first += kKeysInALeaf) {
    const std::size_t end = std::min(first + kKeysInALeaf, parents_.size());
    QPDFObjectHandle numbers = QPDFObjectHandle::newArray();
    for (std::size_t key = first; key < end; ++key) {
      numbers.appendItem(Integer(static_cast<long long>(key)));
      numbers.appendItem(parents_[key]);
    }
    QPDFObjectHandle leaf = QPDFObjectHandle::newDictionary();
    leaf.replaceKey("/Limits", QPDFObjectHandle::newArray(
                                   {Integer(static_cast<long long>(first)), Integer(static_cast<long long>(end) - 1)}));
    leaf.replaceKey("/Nums", numbers);
    leaves.appendItem(pdf_.makeIndirectObject(leaf));
  }
  QPDFObjectHandle tree = QPDFObjectHandle::newDictionary();
  tree.replaceKey("/Kids", leaves);
  return pdf_.makeIndirectObject(tree);
}

void TaggedPages::Finish(QPDFObjectHandle roleMap) {
  for (Node& node : nodes_) {
    WriteKids(node);
    node.element.replaceKey("/P", node.parent == nullptr ? root_ : node.parent->element);
  }
  QPDFObjectHandle kids = QPDFObjectHandle::newArray();
  for (const Node* node : top_) kids.appendItem(node->element);
  root_.replaceKey("/K", kids);
  root_.replaceKey("/RoleMap", roleMap);
  root_.replaceKey("/ParentTree", ParentTree());
  root_.replaceKey("/ParentTreeNextKey", Integer(static_cast<long long>(parents_.size())));
  QPDFObjectHandle catalog = pdf_.getRoot();
  catalog.replaceKey("/StructTreeRoot", root_);
  catalog.replaceKey("/MarkInfo", QPDFObjectHandle::parse("<</Marked true>>"));
  catalog.replaceKey("/ViewerPreferences", QPDFObjectHandle::parse("<</DisplayDocTitle true>>"));
  catalog.replaceKey("/Lang", QPDFObjectHandle::newString("en"));
}

}  // namespace tgx::bench
