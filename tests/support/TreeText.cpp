#include "tests/support/TreeText.h"

#include <cstdio>
#include <map>
#include <sstream>

#include <qpdf/Pl_Buffer.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QUtil.hh>

namespace tgx::test {
namespace {

constexpr int kDeepest = 600;

std::string Escaped(const std::string& utf8) {
  std::string out;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    if (byte >= 0x20 && byte < 0x7F) {
      if (byte == '"' || byte == '\\') out.push_back('\\');
      out.push_back(utf8[i++]);
      continue;
    }
    bool error = false;
    char text[16];
    const std::size_t start = i;
    const unsigned long code = QUtil::get_next_utf8_codepoint(utf8, i, error);
    if (error) {
      std::snprintf(text, sizeof text, "\\x%02X", byte);
      i = start + 1;
    } else {
      std::snprintf(text, sizeof text, "\\u{%04lX}", code);
    }
    out += text;
  }
  return out;
}

std::string TextOf(QPDFObjectHandle string) {
  const bool utf16 = QUtil::is_utf16(string.getStringValue());
  return (utf16 ? "u\"" : "\"") + Escaped(string.getUTF8Value()) + "\"";
}

constexpr int kDeepestValue = 20;

/// An object with what it refers to in place of the references, so that renumbering does not show.
std::string ValueText(QPDFObjectHandle value, int depth = 0) {
  if (depth > kDeepestValue) return "...";
  std::string text;
  if (value.isArray()) {
    for (const QPDFObjectHandle& item : value.getArrayAsVector()) text += " " + ValueText(item, depth + 1);
    return "[" + text + " ]";
  }
  if (value.isDictionary()) {
    for (const auto& [key, item] : value.getDictAsMap()) text += " " + key + " " + ValueText(item, depth + 1);
    return "<<" + text + " >>";
  }
  return value.isStream() ? "stream" : value.unparseResolved();
}

class TreePrinter {
 public:
  explicit TreePrinter(QPDF& pdf) {
    int number = 0;
    for (const QPDFObjectHandle& page : pdf.getAllPages()) pageNumbers_[page.getObjGen()] = ++number;
  }

  std::string Print(const QPDFObjectHandle& root) {
    PrintKids(root, QPDFObjectHandle::newNull(), 0);
    return std::move(out_);
  }

 private:
  void PrintKids(QPDFObjectHandle parent, const QPDFObjectHandle& page, int depth) {
    QPDFObjectHandle kids = parent.getKey("/K");
    if (kids.isArray()) {
      for (QPDFObjectHandle& kid : kids.getArrayAsVector()) {
        if (!kid.isNull()) PrintKid(kid, page, depth);
      }
    } else if (!kids.isNull()) {
      PrintKid(kids, page, depth);
    }
  }

  void PrintKid(QPDFObjectHandle kid, const QPDFObjectHandle& page, int depth) {
    if (depth > kDeepest) return Line(depth, "(too deep)");
    if (kid.isInteger()) return Line(depth, "mcid " + std::to_string(kid.getIntValue()) + PageOf(page));
    if (!kid.isDictionary()) return Line(depth, "(" + std::string(kid.getTypeName()) + ")");
    QPDFObjectHandle own = kid.getKey("/Pg");
    const QPDFObjectHandle kidPage = own.isDictionary() ? own : page;
    if (kid.isDictionaryOfType("/MCR")) {
      return Line(depth, "mcr " + std::to_string(kid.getKey("/MCID").getIntValue()) + PageOf(kidPage));
    }
    if (kid.isDictionaryOfType("/OBJR")) return PrintReference(kid, kidPage, depth);
    PrintElement(kid, kidPage, depth);
  }

  void PrintReference(QPDFObjectHandle reference, const QPDFObjectHandle& page, int depth) {
    QPDFObjectHandle object = reference.getKey("/Obj");
    const std::string subtype = object.isDictionary() && object.getKey("/Subtype").isName()
                                    ? object.getKey("/Subtype").getName().substr(1)
                                    : std::string(object.getTypeName());
    Line(depth, "objr " + subtype + PageOf(page));
  }

  void PrintElement(QPDFObjectHandle element, const QPDFObjectHandle& page, int depth) {
    QPDFObjectHandle type = element.getKey("/S");
    std::string line = type.isName() ? Escaped(type.getName().substr(1)) : "(no type)";
    static const std::pair<const char*, const char*> kTexts[] = {
        {"/T", " title="}, {"/Alt", " alt="}, {"/ActualText", " actual="}, {"/Lang", " lang="}, {"/ID", " id="}};
    for (const auto& [key, label] : kTexts) {
      QPDFObjectHandle value = element.getKey(key);
      if (value.isString()) line += label + TextOf(value);
    }
    QPDFObjectHandle attributes = element.getKey("/A");
    if (!attributes.isNull()) line += " attributes=" + ValueText(attributes);
    Line(depth, line);
    PrintKids(element, page, depth + 1);
  }

  std::string PageOf(const QPDFObjectHandle& page) const {
    const auto known = pageNumbers_.find(page.getObjGen());
    return known == pageNumbers_.end() || !page.isIndirect() ? " no page" : " page " + std::to_string(known->second);
  }

  void Line(int depth, const std::string& text) {
    out_ += std::string(static_cast<std::size_t>(depth) * 2, ' ') + text + "\n";
  }

  std::map<QPDFObjGen, int> pageNumbers_;
  std::string out_;
};

}  // namespace

std::string TreeText(QPDF& pdf) {
  QPDFObjectHandle root = pdf.getRoot().getKey("/StructTreeRoot");
  return root.isDictionary() ? TreePrinter(pdf).Print(root) : "(no structure tree)\n";
}

std::string TreeText(const std::string& bytes) {
  ReadBack file(bytes);
  return TreeText(file.Pdf());
}

std::string TreeWithoutContent(const std::string& bytes) {
  std::istringstream lines(TreeText(bytes));
  std::string left;
  for (std::string line; std::getline(lines, line);) {
    if (line.find("mcid") == std::string::npos) left += line + "\n";
  }
  return left;
}

std::string RoleMapText(QPDF& pdf) {
  std::string out;
  QPDFObjectHandle root = pdf.getRoot().getKey("/StructTreeRoot");
  if (!root.isDictionary() || !root.getKey("/RoleMap").isDictionary()) return out;
  for (auto& [source, target] : root.getKey("/RoleMap").getDictAsMap()) {
    out += Escaped(source.substr(1)) + " -> " + (target.isName() ? Escaped(target.getName().substr(1)) : target.unparse()) +
           "\n";
  }
  return out;
}

ReadBack::ReadBack(std::string bytes) : bytes_(std::move(bytes)) {
  pdf_.setSuppressWarnings(true);
  pdf_.processMemoryFile("saved.pdf", bytes_.data(), bytes_.size());
}

QPDFObjectHandle ReadBack::Page(int number) { return pdf_.getAllPages().at(static_cast<std::size_t>(number - 1)); }

std::string ReadBack::Content(int pageNumber) {
  Pl_Buffer buffer("page content");
  Page(pageNumber).pipePageContents(&buffer);
  const auto content = buffer.getBufferSharedPointer();
  return {reinterpret_cast<const char*>(content->getBuffer()), content->getSize()};
}

}  // namespace tgx::test
