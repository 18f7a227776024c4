#include <cstdio>

#include <qpdf/QPDFObjectHandle.hh>

#include "tests/support/TestDocument.h"

namespace tgx::test {
namespace {

constexpr double kLeftMargin = 72, kLeading = 14, kTop = 740, kBottom = 72;

std::string Decimal(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

}  // namespace

Page& Page::Add(const Content& content) {
  Append(content);
  return *this;
}

int Page::Mark(const std::string& tag, const Content& content) {
  const int mcid = nextMcid_++;
  Append(Marked(tag, "<</MCID " + std::to_string(mcid) + ">>", {content}));
  return mcid;
}

Page& Page::Resource(const std::string& category, const std::string& name, std::string pdfText) {
  resources_[category][name] = std::move(pdfText);
  return *this;
}

Page& Page::Set(std::string key, std::string pdfText) {
  entries_.emplace_back(std::move(key), std::move(pdfText));
  return *this;
}

Annotation Page::Annotate(const std::string& subtype) {
  const auto node = std::make_shared<Annotation::Node>();
  node->page = this;
  node->entries = {{"Type", "/Annot"}, {"Subtype", "/" + subtype}, {"Rect", "[72 700 172 714]"}};
  annotations_.push_back(node);
  return Annotation(node);
}

Annotation Page::Link(const std::string& uri) {
  return Annotate("Link").Set("A", "<</S/URI/URI " + QPDFObjectHandle::newString(uri).unparseBinary() + ">>");
}

std::string Page::ImageResource(int width, int height) {
  std::string name = "Im" + std::to_string(width) + "x" + std::to_string(height);
  images_[name] = {width, height};
  return name;
}

void Page::Append(const Content& content) {
  const std::string width = std::to_string(content.width);
  const std::string height = std::to_string(content.height);
  switch (content.kind) {
    case Content::Kind::kText:
      return AppendText(content);
    case Content::Kind::kImage:
      operators_ +=
          "q " + width + " 0 0 " + height + " 72 72 cm /" + ImageResource(content.width, content.height) + " Do Q\n";
      return;
    case Content::Kind::kInlineImage:
      operators_ += "q " + width + " 0 0 " + height + " 72 72 cm BI /W " + width + " /H " + height + " /BPC 8 /CS /G ID ";
      operators_ += std::string(static_cast<std::size_t>(content.width) * static_cast<std::size_t>(content.height), '\x7F');
      operators_ += "\nEI Q\n";
      return;
    case Content::Kind::kOperators:
      operators_ += content.text + "\n";
      return;
    case Content::Kind::kMarked:
      return AppendMarked(content);
  }
}

void Page::AppendText(const Content& content) {
  double x = content.x;
  double y = content.y;
  if (x < 0 || y < 0) {
    x = kLeftMargin;
    y = nextLine_;
    nextLine_ = nextLine_ - kLeading < kBottom ? kTop : nextLine_ - kLeading;
  }
  operators_ += "BT /" + content.font + " " + Decimal(content.size) + " Tf " + Decimal(x) + " " + Decimal(y) + " Td " +
                QPDFObjectHandle::newString(content.text).unparse() + " Tj ET\n";
}

void Page::AppendMarked(const Content& content) {
  const std::string tag = QPDFObjectHandle::newName("/" + content.text).unparse();
  if (content.properties.empty()) {
    operators_ += tag + " BMC\n";
  } else if (content.inResources) {
    const std::string name = "MC" + std::to_string(properties_++);
    Resource("Properties", name, content.properties);
    operators_ += tag + " /" + name + " BDC\n";
  } else {
    operators_ += tag + " " + content.properties + " BDC\n";
  }
  for (const Content& kid : content.kids) Append(kid);
  operators_ += "EMC\n";
}

}  // namespace tgx::test
