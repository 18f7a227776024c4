#include "tests/support/TestDocument.h"

#include "tests/support/DocumentWriter.h"

namespace tgx::test {
namespace {

/// Puts the content of elements on the pages, parents before kids.
void PlaceContent(const std::vector<Element>& top) {
  std::vector<std::shared_ptr<Element::Node>> waiting;
  for (auto element = top.rbegin(); element != top.rend(); ++element) waiting.push_back(element->Get());
  while (!waiting.empty()) {
    const std::shared_ptr<Element::Node> node = waiting.back();
    waiting.pop_back();
    for (Element::Kid& kid : node->kids) {
      if (kid.kind == Element::Kid::Kind::kContent && kid.mcid < 0) kid.mcid = kid.page->Mark(node->type, kid.content);
    }
    for (auto kid = node->kids.rbegin(); kid != node->kids.rend(); ++kid) {
      if (kid->element) waiting.push_back(kid->element);
    }
  }
}

}  // namespace

Page& TestDocument::AddPage() { return pages_.emplace_back(static_cast<int>(pages_.size()) + 1); }

TestDocument& TestDocument::Tree(const std::vector<Element>& top) {
  hasTree_ = true;
  PlaceContent(top);
  top_.insert(top_.end(), top.begin(), top.end());
  return *this;
}

TestDocument& TestDocument::RoleMap(std::vector<std::pair<std::string, std::string>> sourceToTarget) {
  roleMap_ = std::move(sourceToTarget);
  return *this;
}

TestDocument& TestDocument::Lang(const Bytes& language) {
  return SetCatalog("Lang", QPDFObjectHandle::newString(language.value).unparseBinary());
}

TestDocument& TestDocument::SetTree(std::string key, std::string pdfText) {
  hasTree_ = true;
  treeEntries_.emplace_back(std::move(key), std::move(pdfText));
  return *this;
}

TestDocument& TestDocument::SetCatalog(std::string key, std::string pdfText) {
  catalogEntries_.emplace_back(std::move(key), std::move(pdfText));
  return *this;
}

TestDocument& TestDocument::Stream(std::string name, std::string dictionary, std::string data) {
  streams_.push_back({std::move(name), std::move(dictionary), std::move(data)});
  return *this;
}

TestDocument& TestDocument::Object(std::string name, std::string pdfText) {
  objects_.emplace_back(std::move(name), std::move(pdfText));
  return *this;
}

Annotation TestDocument::Field(Page& page, const Bytes& name, const std::string& type, const std::string& value) {
  Annotation field = page.Annotate("Widget");
  field.Set("FT", "/" + type).Set("T", QPDFObjectHandle::newString(name.value).unparseBinary());
  if (!value.empty()) field.Set("V", value);
  AddField(field);
  return field;
}

TestDocument& TestDocument::AddField(const Annotation& field) {
  fields_.push_back(field.Get());
  return *this;
}

TestDocument& TestDocument::Patch(std::function<void(QPDF&)> patch) {
  patches_.push_back(std::move(patch));
  return *this;
}

std::unique_ptr<QPDF> TestDocument::Build() {
  PlaceContent(top_);
  auto pdf = DocumentWriter(*this).Build();
  for (const auto& patch : patches_) patch(*pdf);
  return pdf;
}

std::string TestDocument::Write(const std::function<void(QPDFWriter&)>& configure) {
  return WriteToString(*Build(), configure);
}

std::string WriteToString(QPDF& pdf, const std::function<void(QPDFWriter&)>& configure) {
  QPDFWriter writer(pdf);
  writer.setOutputMemory();
  writer.setStaticID(true);
  if (configure) configure(writer);
  writer.write();
  const auto buffer = writer.getBufferSharedPointer();
  return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
}

}  // namespace tgx::test
