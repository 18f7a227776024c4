#include "bench/TableDocument.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "bench/Utf.h"

namespace tgx::bench {
namespace {

constexpr int kRows = 20;
constexpr int kCells = 10;
constexpr int kRepeatedHead = kRows / 2;  // the row that says again what the first says

std::string Reference(std::size_t object) { return std::to_string(object) + " 0 R"; }

/// Numbers objects and writes them one after the other.
class PdfFile {
 public:
  explicit PdfFile(const std::string& path) : out_(path, std::ios::binary) { Write("%PDF-1.7\n%\xE2\xE3\xCF\xD3\n"); }

  std::size_t NewNumber() {
    offsets_.push_back(0);
    return offsets_.size();
  }
  void Put(std::size_t number, const std::string& value) {
    offsets_[number - 1] = position_;
    Write(std::to_string(number) + " 0 obj\n" + value + "\nendobj\n");
  }
  std::size_t Add(const std::string& value) {
    const std::size_t number = NewNumber();
    Put(number, value);
    return number;
  }
  void Finish(std::size_t catalog) {
    const std::size_t start = position_;
    const std::string size = std::to_string(offsets_.size() + 1);
    Write("xref\n0 " + size + "\n0000000000 65535 f \n");
    char entry[24];
    for (const std::size_t offset : offsets_) {
      std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", offset);
      Write(entry);
    }
    Write("trailer\n<</Size " + size + "/Root " + Reference(catalog) + ">>\nstartxref\n" + std::to_string(start) +
          "\n%%EOF\n");
    if (!out_.flush()) throw std::runtime_error("the document cannot be written");
  }

 private:
  void Write(const std::string& text) {
    out_ << text;
    position_ += text.size();
  }

  std::ofstream out_;
  std::size_t position_ = 0;
  std::vector<std::size_t> offsets_;
};

std::string Literal(const std::string& bytes) {
  std::string text = "(";
  for (const char byte : bytes) {
    if (byte == '(' || byte == ')' || byte == '\\') text += '\\';
    if (byte == '\r') {
      text += "\\r";
    } else {
      text += byte;
    }
  }
  return text + ")";
}

std::string CellDescription(int row, int cell) {
  char text[200];
  if (row == 0 || row == kRepeatedHead || cell == 0) {
    std::snprintf(text, sizeof text, R"(<Cell type="0" row="%d" index="%d"/>)", row, cell);
  } else {
    std::snprintf(text, sizeof text,
                  R"(<Cell type="1" row="%d" index="%d"><Cell row="0" index="%d"/><Cell row="%d" index="0"/></Cell>)", row,
                  cell, cell, row);
  }
  return text;
}

std::string Description(int type) {
  std::string xml = "[ATT]<Tables><Table type=\"" + std::to_string(type) + "\" rows=\"1\" cols=\"1\">";
  for (int row = 0; type == 3 && row < kRows; ++row) {
    xml += "<Row index=\"" + std::to_string(row) + "\">";
    for (int cell = 0; cell < kCells; ++cell) xml += CellDescription(row, cell);
    xml += "</Row>";
  }
  return xml + "</Table></Tables>";
}

/// Writes the pages with their tables.
class Composer {
 public:
  explicit Composer(const std::string& path)
      : file_(path),
        pages_(file_.NewNumber()),
        root_(file_.NewNumber()),
        document_(file_.NewNumber()),
        font_(file_.Add("<</Type/Font/Subtype/Type1/BaseFont/Courier>>")) {}

  std::size_t Compose(std::size_t tables) {
    for (std::size_t table = 0; table < tables; ++table) AddTable(static_cast<int>(table % 4) + 1);
    file_.Put(document_, Element("Document", root_, kidsOfDocument_));
    file_.Put(pages_, "<</Type/Pages/Count " + std::to_string(tables) + "/Kids[" + kidsOfPages_ + "]>>");
    const std::size_t parentTree = file_.Add("<</Nums[" + parents_ + "]>>");
    file_.Put(root_, "<</Type/StructTreeRoot/K " + Reference(document_) + "/ParentTree " + Reference(parentTree) +
                         "/ParentTreeNextKey " + std::to_string(tables) + ">>");
    file_.Finish(file_.Add("<</Type/Catalog/Pages " + Reference(pages_) + "/StructTreeRoot " + Reference(root_) +
                           "/MarkInfo<</Marked true>>>>"));
    return elements_;
  }

 private:
  std::string Element(const std::string& type, std::size_t parent, const std::string& kids, const std::string& more = "") {
    ++elements_;
    return "<</Type/StructElem/S/" + type + "/P " + Reference(parent) + "/K[" + kids + "]" + more + ">>";
  }

  void AddTable(int type) {
    page_ = file_.NewNumber();
    content_.clear();
    owners_.clear();
    mcid_ = 0;
    hasTaggedHeaders_ = type == 1;
    const std::size_t table = file_.NewNumber();
    std::string kids =
        Reference(file_.Add(Element("Figure", table, "", "/Alt" + Literal(Utf16Of(Description(type)))))) + " ";
    for (int row = 0; row < kRows; row += kRepeatedHead) {
      kids += Reference(AddRows("THead", table, row, row + 1)) + " ";
      kids += Reference(AddRows("TBody", table, row + 1, row + kRepeatedHead)) + " ";
    }
    file_.Put(table, Element("Table", document_, kids));
    kidsOfDocument_ += Reference(table) + " ";
    FinishPage();
  }

  std::size_t AddRows(const std::string& type, std::size_t table, int from, int to) {
    const std::size_t group = file_.NewNumber();
    std::string kids;
    for (int row = from; row < to; ++row) {
      const std::size_t element = file_.NewNumber();
      std::string cells;
      for (int cell = 0; cell < kCells; ++cell) cells += Reference(AddCell(element, row, cell)) + " ";
      file_.Put(element, Element("TR", group, cells));
      kids += Reference(element) + " ";
    }
    file_.Put(group, Element(type, table, kids));
    return group;
  }

  std::size_t AddCell(std::size_t row, int line, int column) {
    char text[120];
    std::snprintf(text, sizeof text, "/TD<</MCID %d>>BDC BT/F 9 Tf 1 0 0 1 %d %d Tm(%d.%d)Tj ET EMC\n", mcid_,
                  40 + 50 * column, 740 - 30 * line, line, column);
    content_ += text;
    const bool isTaggedHeader = hasTaggedHeaders_ && line % kRepeatedHead == 0;
    const std::size_t cell =
        file_.Add(Element(isTaggedHeader ? "TH" : "TD", row, std::to_string(mcid_++), "/Pg " + Reference(page_)));
    owners_ += Reference(cell) + " ";
    return cell;
  }

  void FinishPage() {
    const std::size_t content =
        file_.Add("<</Length " + std::to_string(content_.size()) + ">>\nstream\n" + content_ + "\nendstream");
    const std::string key = std::to_string(keys_++);
    parents_ += key + " " + Reference(file_.Add("[" + owners_ + "]")) + " ";
    file_.Put(page_, "<</Type/Page/Parent " + Reference(pages_) + "/MediaBox[0 0 612 792]/Resources<</Font<</F " +
                         Reference(font_) + ">>>>/Contents " + Reference(content) + "/StructParents " + key + ">>");
    kidsOfPages_ += Reference(page_) + " ";
  }

  PdfFile file_;
  std::size_t pages_, root_, document_, font_;
  std::size_t page_ = 0, keys_ = 0, elements_ = 0;
  std::string kidsOfDocument_, kidsOfPages_, parents_;
  std::string content_, owners_;  // of the open page
  int mcid_ = 0;
  bool hasTaggedHeaders_ = false;
};

}  // namespace

std::size_t MakeTableDocument(std::size_t tables, const std::string& path) {
  std::ofstream file(path.substr(0, path.rfind(".pdf")) + ".tables.tsv");
  for (std::size_t number = 4; number <= tables; number += 4) file << "Table\t" << number << "\nLayout\n";
  return Composer(path).Compose(tables);
}

}  // namespace tgx::bench
