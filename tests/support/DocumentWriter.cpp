#include "tests/support/DocumentWriter.h"

#include <cctype>
#include <stdexcept>

namespace tgx::test {
namespace {

constexpr const char* kHelvetica = "<</Type/Font/Subtype/Type1/BaseFont/Helvetica/Encoding/WinAnsiEncoding>>";

/// The page of the element itself: that of its first marked content.
const Page* OwnPage(const Element::Node& element) {
  for (const Element::Kid& kid : element.kids) {
    if (kid.kind == Element::Kid::Kind::kContent || kid.kind == Element::Kid::Kind::kMcid) return kid.page;
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<QPDF> DocumentWriter::Build() {
  pdf_ = std::make_unique<QPDF>();
  pdf_->emptyPDF();
  MakeObjects();
  for (const auto& [name, text] : document_.objects_) pdf_->replaceObject(Parse("$" + name).getObjGen(), Parse(text));
  for (const Page& page : document_.pages_) FillPage(page);
  FillForm();
  if (document_.hasTree_) FillTree();
  Apply(pdf_->getRoot(), document_.catalogEntries_);
  return std::move(pdf_);
}

void DocumentWriter::MakeObjects() {
  Name("catalog", pdf_->getRoot());
  QPDFObjectHandle pageTree = pdf_->getRoot().getKey("/Pages");
  QPDFObjectHandle kids = QPDFObjectHandle::newArray();
  for (const Page& page : document_.pages_) {
    pages_.push_back(NewDictionary());
    pages_.back().replaceKey("/Parent", pageTree);
    kids.appendItem(pages_.back());
    Name("page" + std::to_string(page.number_), pages_.back());
    for (const auto& annotation : page.annotations_) {
      Name(annotation->name, annotations_[annotation.get()] = NewDictionary());
    }
  }
  pageTree.replaceKey("/Kids", kids);
  pageTree.replaceKey("/Count", QPDFObjectHandle::newInteger(static_cast<long long>(pages_.size())));
  for (const auto& stream : document_.streams_) Name(stream.name, pdf_->newStream(stream.data));
  for (const auto& object : document_.objects_) Name(object.first, NewDictionary());
  if (document_.hasTree_) {
    tree_ = NewDictionary();
    Name("tree", tree_);
    MakeElements();
  }
  for (const auto& stream : document_.streams_) {
    QPDFObjectHandle dictionary = Parse("$" + stream.name).getDict();
    for (auto& [key, value] : Parse(stream.dictionary).getDictAsMap()) dictionary.replaceKey(key, value);
  }
}

void DocumentWriter::MakeElements() {
  std::vector<std::pair<std::shared_ptr<ElementNode>, QPDFObjectHandle>> waiting;  // with the parent
  for (auto top = document_.top_.rbegin(); top != document_.top_.rend(); ++top) waiting.emplace_back(top->Get(), tree_);
  while (!waiting.empty()) {
    const auto [node, parent] = waiting.back();
    waiting.pop_back();
    const auto [place, isNew] = elements_.try_emplace(node.get());
    if (!isNew) continue;  // stands in the tree twice; the first place is its parent
    const QPDFObjectHandle object = place->second = NewDictionary();
    Name(node->name, object);
    elementOrder_.push_back(node);
    parents_[node.get()] = parent;
    for (auto kid = node->kids.rbegin(); kid != node->kids.rend(); ++kid) {
      if (kid->element) waiting.emplace_back(kid->element, object);
    }
  }
}

void DocumentWriter::FillPage(const Page& page) {
  QPDFObjectHandle object = PageObject(page);
  object.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
  object.replaceKey("/MediaBox", QPDFObjectHandle::parse("[0 0 612 792]"));
  object.replaceKey("/Resources", ResourcesOf(page));
  object.replaceKey("/Contents", pdf_->newStream(page.operators_));
  if (!page.annotations_.empty()) {
    QPDFObjectHandle list = QPDFObjectHandle::newArray();
    for (const auto& annotation : page.annotations_) {
      FillAnnotation(*annotation);
      list.appendItem(annotations_.at(annotation.get()));
    }
    object.replaceKey("/Annots", list);
  }
  Apply(object, page.entries_);
}

QPDFObjectHandle DocumentWriter::ResourcesOf(const Page& page) {
  QPDFObjectHandle resources = QPDFObjectHandle::parse("<</Font<<>>/XObject<<>>>>");
  resources.getKey("/Font").replaceKey("/F1", QPDFObjectHandle::parse(kHelvetica));
  for (const auto& [name, size] : page.images_) {
    const auto samples = static_cast<std::size_t>(size.first) * static_cast<std::size_t>(size.second);
    QPDFObjectHandle image = pdf_->newStream(std::string(samples, '\x7F'));
    image.replaceDict(Parse("<</Type/XObject/Subtype/Image/ColorSpace/DeviceGray/BitsPerComponent 8/Width " +
                            std::to_string(size.first) + "/Height " + std::to_string(size.second) + ">>"));
    resources.getKey("/XObject").replaceKey("/" + name, image);
  }
  for (const auto& [category, entries] : page.resources_) {
    if (!resources.hasKey("/" + category)) resources.replaceKey("/" + category, QPDFObjectHandle::newDictionary());
    for (const auto& [name, text] : entries) resources.getKey("/" + category).replaceKey("/" + name, Parse(text));
  }
  return resources;
}

void DocumentWriter::FillAnnotation(const AnnotationNode& annotation) {
  QPDFObjectHandle object = annotations_.at(&annotation);
  object.replaceKey("/P", PageObject(*annotation.page));
  Apply(object, annotation.entries);
}

void DocumentWriter::FillForm() {
  if (document_.fields_.empty()) return;
  QPDFObjectHandle fields = QPDFObjectHandle::newArray();
  for (const auto& field : document_.fields_) fields.appendItem(annotations_.at(field.get()));
  QPDFObjectHandle form = NewDictionary();
  form.replaceKey("/Fields", fields);
  pdf_->getRoot().replaceKey("/AcroForm", form);
}

void DocumentWriter::FillTree() {
  pdf_->getRoot().replaceKey("/StructTreeRoot", tree_);
  pdf_->getRoot().replaceKey("/MarkInfo", QPDFObjectHandle::parse("<</Marked true>>"));
  tree_.replaceKey("/Type", QPDFObjectHandle::newName("/StructTreeRoot"));
  if (!document_.roleMap_.empty()) {
    QPDFObjectHandle map = QPDFObjectHandle::newDictionary();
    for (const auto& [source, target] : document_.roleMap_) {
      map.replaceKey("/" + source, QPDFObjectHandle::newName("/" + target));
    }
    tree_.replaceKey("/RoleMap", map);
  }
  QPDFObjectHandle kids = QPDFObjectHandle::newArray();
  for (const Element& element : document_.top_) kids.appendItem(elements_.at(element.Get().get()));
  if (!document_.top_.empty()) tree_.replaceKey("/K", kids);
  for (const auto& element : elementOrder_) FillElement(*element);
  if (document_.parentTree_) FillParentTree();
  FillIdTree();
  Apply(tree_, document_.treeEntries_);
}

void DocumentWriter::FillElement(const ElementNode& element) {
  QPDFObjectHandle object = elements_.at(&element);
  object.replaceKey("/Type", QPDFObjectHandle::newName("/StructElem"));
  object.replaceKey("/S", QPDFObjectHandle::newName("/" + element.type));
  object.replaceKey("/P", parents_.at(&element));
  const Page* ownPage = OwnPage(element);
  if (ownPage != nullptr) object.replaceKey("/Pg", PageObject(*ownPage));
  std::vector<QPDFObjectHandle> kids;
  for (const Element::Kid& kid : element.kids) kids.push_back(KidObject(element, kid, ownPage));
  if (kids.size() == 1) object.replaceKey("/K", kids.front());
  if (kids.size() > 1) object.replaceKey("/K", QPDFObjectHandle::newArray(kids));
  Apply(object, element.entries);
}

QPDFObjectHandle DocumentWriter::KidObject(const ElementNode& element, const Element::Kid& kid, const Page* ownPage) {
  using Kind = Element::Kid::Kind;
  switch (kid.kind) {
    case Kind::kElement:
      return elements_.at(kid.element.get());
    case Kind::kRaw:
      return Parse(kid.raw);
    case Kind::kObject: {
      QPDFObjectHandle reference = QPDFObjectHandle::parse("<</Type/OBJR>>");
      reference.replaceKey("/Obj", annotations_.at(kid.annotation.get()));
      reference.replaceKey("/Pg", PageObject(*kid.page));
      annotationOwners_.emplace_back(kid.annotation.get(), elements_.at(&element));
      return reference;
    }
    default: {
      owners_[kid.page->number_].try_emplace(kid.mcid, elements_.at(&element));
      if (kid.kind != Kind::kMcr && kid.page == ownPage) return QPDFObjectHandle::newInteger(kid.mcid);
      QPDFObjectHandle reference = QPDFObjectHandle::parse("<</Type/MCR>>");
      reference.replaceKey("/MCID", QPDFObjectHandle::newInteger(kid.mcid));
      reference.replaceKey("/Pg", PageObject(*kid.page));
      return reference;
    }
  }
}

void DocumentWriter::FillParentTree() {
  QPDFObjectHandle entries = QPDFObjectHandle::newArray();
  long long next = 0;
  for (const auto& [number, owners] : owners_) {
    if (owners.rbegin()->first < 0) continue;
    QPDFObjectHandle list = QPDFObjectHandle::newArray();
    for (const auto& [mcid, owner] : owners) {
      while (list.getArrayNItems() < mcid) list.appendItem(QPDFObjectHandle::newNull());
      if (mcid >= 0) list.appendItem(owner);
    }
    entries.appendItem(QPDFObjectHandle::newInteger(next));
    entries.appendItem(list);
    QPDFObjectHandle page = pages_.at(static_cast<std::size_t>(number - 1));
    if (!page.hasKey("/StructParents")) page.replaceKey("/StructParents", QPDFObjectHandle::newInteger(next));
    ++next;
  }
  for (const auto& [annotation, owner] : annotationOwners_) {
    QPDFObjectHandle object = annotations_.at(annotation);
    if (object.hasKey("/StructParent")) continue;
    entries.appendItem(QPDFObjectHandle::newInteger(next));
    entries.appendItem(owner);
    object.replaceKey("/StructParent", QPDFObjectHandle::newInteger(next++));
  }
  if (next == 0) return;
  QPDFObjectHandle parentTree = NewDictionary();
  parentTree.replaceKey("/Nums", entries);
  tree_.replaceKey("/ParentTree", parentTree);
  tree_.replaceKey("/ParentTreeNextKey", QPDFObjectHandle::newInteger(next));
}

void DocumentWriter::FillIdTree() {
  std::map<std::string, QPDFObjectHandle> ids;
  for (const auto& element : elementOrder_) {
    QPDFObjectHandle object = elements_.at(element.get());
    if (object.getKey("/ID").isString()) ids.emplace(object.getKey("/ID").getStringValue(), object);
  }
  if (ids.empty()) return;
  QPDFObjectHandle names = QPDFObjectHandle::newArray();
  for (const auto& [id, object] : ids) {
    names.appendItem(QPDFObjectHandle::newString(id));
    names.appendItem(object);
  }
  QPDFObjectHandle idTree = NewDictionary();
  idTree.replaceKey("/Names", names);
  tree_.replaceKey("/IDTree", idTree);
}

QPDFObjectHandle DocumentWriter::Parse(const std::string& pdfText) {
  std::string expanded;
  for (std::size_t i = 0; i < pdfText.size();) {
    if (pdfText[i] != '$') {
      expanded.push_back(pdfText[i++]);
      continue;
    }
    const std::size_t start = ++i;
    while (i < pdfText.size() && (std::isalnum(static_cast<unsigned char>(pdfText[i])) != 0 || pdfText[i] == '_')) ++i;
    const std::string name = pdfText.substr(start, i - start);
    const auto known = references_.find(name);
    if (known == references_.end()) throw std::logic_error("no object of the test document is named '" + name + "'");
    expanded += known->second;
  }
  // qpdf takes a reference only inside an array.
  QPDFObjectHandle items = QPDFObjectHandle::parse(pdf_.get(), "[" + expanded + "\n]", expanded);
  if (items.getArrayNItems() != 1) throw std::logic_error("not one PDF object: " + pdfText);
  return items.getArrayItem(0);
}

void DocumentWriter::Apply(QPDFObjectHandle dictionary, const RawEntries& entries) {
  for (const auto& [key, text] : entries) {
    if (text == "null") {
      dictionary.removeKey("/" + key);
    } else {
      dictionary.replaceKey("/" + key, Parse(text));
    }
  }
}

void DocumentWriter::Name(const std::string& name, const QPDFObjectHandle& object) {
  if (!name.empty()) references_[name] = QPDFObjectHandle(object).unparse();
}

QPDFObjectHandle DocumentWriter::NewDictionary() { return pdf_->makeIndirectObject(QPDFObjectHandle::newDictionary()); }

}  // namespace tgx::test
