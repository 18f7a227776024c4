#include "bench/MarkedDocument.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <vector>

#include <qpdf/QPDFWriter.hh>

#include "bench/SideFiles.h"
#include "bench/TaggedPages.h"
#include "bench/Utf.h"

namespace tgx::bench {
namespace {

constexpr int kPagesOfAChapter = 10;
constexpr int kEntriesOfAContentsPage = 60;
constexpr double kLine = 10.5;

// Written with the characters that the font has.
const char* const kEnglish[] = {
    "The ferry leaves at noon and comes back in the evening. ",     "A lamp is lit in the harbour when the tide is low. ",
    "Most of the walls were built from stone of the north shore. ", "In spring the road is under water for a week or two. ",
    "Bread and cheese can be bought in the mill by the bridge. ",   "The light on the rock was first lit in 1874. ",
    "Those who want to see the birds should bring a good coat. ",   "No one has counted the steps that lead to the tower. "};
const char* const kFrench[] = {"Le bateau part à midi et revient le soir. ",
                               "La lampe est allumée dans le port à marée basse. ",
                               "Le pain et le fromage se trouvent au moulin. ", "La route est sous la mer au printemps. "};

std::string Format(const char* format, auto... values) {
  char text[1000];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

QPDFObjectHandle Plain(const std::string& text) { return QPDFObjectHandle::newString(text); }
QPDFObjectHandle Utf16(const std::string& utf8) { return QPDFObjectHandle::newString(Utf16Of(utf8)); }

/// Writes one document, chapter by chapter.
class Composer {
 public:
  Composer(std::size_t pages, bool withLongContents, SubsetFont& font)
      : pages_(static_cast<int>(pages)), withLongContents_(withLongContents), doc_(font) {
    doc_.AddResource("XObject", "Dot", doc_.Image(1, 1));
    doc_.AddResource("XObject", "Pic", doc_.Image(24, 16));
    document_ = doc_.Add("Document", nullptr);
    document_->element.replaceKey("/Lang", Plain("[Lang=en]"));
  }

  DocumentSize Compose() {
    Plan();
    Cover();
    std::vector<QPDFObjectHandle> links = Contents();
    formulas_ = doc_.AddLoose("Sect");
    formulas_->element.replaceKey("/T", Utf16("\u0cf1\u2318\u2328"));
    for (int page = 0; page < bodyPages_; ++page) {
      if (page % kPagesOfAChapter == 0) BeginChapter(page / kPagesOfAChapter + 1);
      BodyPage(page);
    }
    Index();
    for (std::size_t i = 0; i < links.size(); ++i) {
      links[i].replaceKey("/Dest", QPDFObjectHandle::newArray({targets_.at(i), QPDFObjectHandle::newName("/Fit")}));
    }
    for (Node* holder : holders_) doc_.Adopt(document_, holder);
    doc_.Adopt(document_, formulas_);
    doc_.Finish(RoleMap());
    return {static_cast<std::size_t>(pages_), doc_.ElementCount(), doc_.MarkedContentCount()};
  }

  QPDF& Pdf() { return doc_.Pdf(); }
  const std::vector<ContentsEntry>& Entries() const { return entries_; }
  int Tables() const { return tables_; }
  const std::vector<int>& LayoutTables() const { return layoutTables_; }

 private:
  /// How many pages are left for the body beside the cover, the index and the contents, which grow with the body.
  void Plan() {
    int contentsPages = 1;
    do {
      bodyPages_ = pages_ - 2 - contentsPages;
      if (bodyPages_ < 1) throw std::runtime_error("a marked document has four pages at least");
      entries_.clear();
      for (int page = 0; page < bodyPages_; ++page) {
        if (IsListed(page)) entries_.push_back({page % kPagesOfAChapter == 0 ? 1 : 2, TitleOf(page)});
      }
    } while (contentsPages < ContentsPages() && (contentsPages = ContentsPages()) > 0);
    if (ContentsPages() < contentsPages) bodyPages_ += contentsPages - ContentsPages();
  }
  int ContentsPages() const {
    return (static_cast<int>(entries_.size()) + kEntriesOfAContentsPage - 1) / kEntriesOfAContentsPage;
  }
  bool IsListed(int page) const {
    const int section = page % kPagesOfAChapter;
    return section <= 1 || section == 5 || (withLongContents_ && (section == 3 || section == 7));
  }
  static std::string TitleOf(int page) {
    const int chapter = page / kPagesOfAChapter + 1, section = page % kPagesOfAChapter;
    return section == 0 ? Format("%d Chapter of the shore", chapter)
                        : Format("%d.%d The walk to bay %d", chapter, section, page + 1);
  }

  void Cover() {
    doc_.BeginPage();
    doc_.Text(doc_.Add("H1", document_), "H1", "Three shores", 36, 24);
    doc_.Down(40);
    List(document_, 0);
    doc_.EndPage();
  }

  std::vector<QPDFObjectHandle> Contents() {
    std::vector<QPDFObjectHandle> links;
    Node* division = nullptr;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      if (i % kEntriesOfAContentsPage == 0) BeginContentsPage(division);
      Node* link = doc_.Add("Link", doc_.Add("pst2", division));
      links.push_back(doc_.Link(link, 36, 260, "Dest", QPDFObjectHandle::newNull()));
      doc_.Text(link, "Link", entries_[i].text, 26 + 10 * entries_[i].level);
      doc_.Down(11);
      if ((i + 1) % kEntriesOfAContentsPage == 0 || i + 1 == entries_.size()) doc_.EndPage();
    }
    return links;
  }
  void BeginContentsPage(Node*& division) {
    doc_.BeginPage();
    dots_ = 0;
    if (division != nullptr) return;
    division = doc_.Add("Div", document_);
    doc_.Text(doc_.Add("pst1", division), "P", "Contents", 36, 16);
    doc_.Down(22);
    MarkOf(doc_.Add("P", division), "TOC_FRAME");
  }

  void BeginChapter(int number) {
    chapter_ = doc_.Add("Sect", document_);
    holders_.push_back(doc_.AddLoose("Sect"));
    holders_.back()->element.replaceKey("/T", Utf16(Format("\u2230frames %d", number)));
  }

  void BodyPage(int page) {
    doc_.BeginPage();
    dots_ = 0;
    if (IsListed(page)) targets_.push_back(doc_.Page());
    doc_.Text(doc_.Add(page % kPagesOfAChapter == 0 ? "H1" : "H2", chapter_), "H", TitleOf(page), 36, 15);
    doc_.Down(20);
    Paragraphs(page);
    List(chapter_, page);
    if (page % 5 == 3) Formula(page);
    Table(page);
    Figure(page);
    Notes(page);
    EmptyElements();
    if (page % 2 == 1) doc_.Operators("/Artifact BMC " + Dot(page % 4 == 1 ? 0 : 20) + " EMC");
    doc_.EndPage();
  }

  void Paragraphs(int page) {
    Node* first = Paragraph(chapter_, "pst3", page, 6);
    doc_.Text(doc_.Add("Reference", first), "Reference", Format("%d", page + 1), 330, 6);
    Node* second = Paragraph(chapter_, "pst3", page + 1, 4, page % 3 == 0);
    Node* link = doc_.Add("Link", second);
    doc_.Text(link, "Link", "see the old map", 250);
    doc_.Link(link, 250, 90, "A", UriAction(Format("https://example.org/map/%d", page)));
    doc_.Down(kLine);
    if (page % 6 == 4) MarkOf(chapter_, "TEXTFRAME_START");
    Paragraph(chapter_, "pst3", page + 2, 5);
    if (page % 6 == 4) MarkOf(chapter_, "TEXTFRAME_END");
    if (page % 3 == 1) Frame(page, first);
  }

  /// A paragraph, a line a marked-content sequence.
  Node* Paragraph(Node* parent, const std::string& style, int seed, int lines, bool french = false) {
    Node* paragraph = doc_.Add(style, parent);
    if (french) paragraph->element.replaceKey("/Lang", Plain("[Lang=fr]"));
    for (int i = 0; i < lines; ++i) {
      doc_.Text(paragraph, "P", french ? kFrench[(seed + i) % 4] : kEnglish[(5 * seed + 3 * i) % 8]);
      doc_.Down(kLine);
    }
    doc_.Down(3);
    return paragraph;
  }

  void Frame(int page, Node* anchored) {
    const std::string identifier = Format("u%05d", page);
    Node* holder = holders_.back();
    MarkLoose(holder, "\u2264" + identifier);
    Node* frame = doc_.AddLoose(page % 2 == 1 ? "Story" : "Sect");
    doc_.Adopt(holder, frame);
    Paragraph(frame, "pst4", page + 5, 1);
    Paragraph(frame, "pst5", page + 6, 2);
    MarkLoose(holder, "\u2265" + identifier);
    MarkOf(anchored, "\u222e" + identifier, 2);
  }

  void List(Node* parent, int page) {
    Node* list = doc_.Add("L", parent);
    list->element.replaceKey("/A", QPDFObjectHandle::parse("<</O /List /ListNumbering /Disc>>"));
    for (int item = 0; item < 3; ++item) {
      Node* entry = doc_.Add("LI", list);
      Node* label = doc_.Add("Lbl", entry);
      doc_.Text(doc_.Add("Span", label), "Span", "\u2022", 40, 9, " /ActualText <FEFF2022>");
      doc_.Text(doc_.Add("Span", label), "Span", "\u2022", 40);
      doc_.Text(doc_.Add("LBody", entry), "LBody", kEnglish[(page + item) % 8], 52);
      doc_.Down(kLine);
    }
    doc_.Down(3);
  }

  void Formula(int page) {
    const std::string mark = Format("MATHML_%d_", page + 1);
    Node* paragraph = doc_.Add("pst3", chapter_);
    doc_.Text(paragraph, "P", "The height is ");
    MarkOf(paragraph, mark + "START");
    doc_.Text(doc_.Add("Span", paragraph), "Span", Format("h is %d", page), 110);
    MarkOf(paragraph, mark + "END");
    MarkLoose(formulas_,
              mark + "CONTENT_MathML:" +
                  Format("<math xmlns=\"http://www.w3.org/1998/Math/MathML\"><mi>h</mi><mo>=</mo><mn>%d</mn></math>", page));
    doc_.Down(kLine + 3);
  }

  void Table(int page) {
    constexpr int kRows = 5, kColumns = 4;
    const bool layout = page % 8 == 5, repeatsHeads = page % 5 == 2;
    if (page % 3 != 0) Caption("GT_CaptionTableAtTop", Format("Table %d", page + 1));
    ++tables_;
    if (layout) layoutTables_.push_back(tables_);
    Node* table = doc_.Add("Table", page % 4 == 1 ? doc_.Add("P", chapter_) : chapter_);
    for (int row = 0; row < kRows; ++row) {
      Node* group = repeatsHeads ? doc_.Add(row < 2 ? "THead" : "TFoot", table) : table;
      Node* line = doc_.Add("TR", group);
      for (int column = 0; column < kColumns; ++column) {
        Node* cell = doc_.Add(row == 0 && page % 3 == 0 && !layout ? "TH" : "TD", line);
        if (row == 0 && column == 0 && !layout) {
          MarkOf(page % 2 == 1 ? cell : table, "[ATT]" + Description(page % 3 + 1, kRows, kColumns), 0);
        }
        doc_.Text(cell, "TD", Format("%d.%02d", (page * (row + 2)) % 97, (31 * column + page) % 60), 36 + 85 * column, 8);
      }
      doc_.Down(11);
    }
    doc_.Down(4);
  }

  std::string Description(int type, int rows, int columns) const {
    const std::string start = Format("<Tables><Table type=\"%d\" index=\"%d\"", type, tables_);
    if (type == 1) return start + "/></Tables>";
    if (type == 2) return start + " rows=\"1\" cols=\"1\"/></Tables>";
    std::string text = start + ">";
    for (int row = 0; row < rows; ++row) {
      text += Format("<Row index=\"%d\">", row);
      for (int column = 0; column < columns; ++column) {
        const bool head = row == 0 || column == 0;
        text += Format("<Cell type=\"%d\" row=\"%d\" index=\"%d\">", head ? 0 : 1, row, column);
        if (!head) text += Format("<Cell row=\"0\" index=\"%d\"/><Cell row=\"%d\" index=\"0\"/>", column, row);
        text += "</Cell>";
      }
      text += "</Row>";
    }
    return text + "</Table></Tables>";
  }

  void Figure(int page) {
    const std::string picture = Format("q 60 0 0 40 36 %g cm /Pic Do Q", doc_.Height() - 40);
    const std::string alt = Format("The sea on day %d", page);
    if (page % 4 == 2) {
      Node* link = doc_.Add("Link", chapter_);
      doc_.Mark(doc_.Add("Figure", link), "Figure", picture);
      const std::string target = page % 8 == 2 ? Format("https://example.org/sea/%d", page) : "";
      doc_.Link(link, 36, 60, "A", UriAction(target + "?id_useralttext=" + Base64Of(Utf16Of(alt, false))));
    } else {
      Node* figure = doc_.Add("Figure", chapter_);
      figure->element.replaceKey("/Alt", Utf16(alt));
      doc_.Mark(figure, "Figure", picture);
    }
    doc_.Down(52);
    Caption("GT_Figure", alt);
  }

  void Notes(int page) {
    Paragraph(chapter_, "pst3", page + 3, 4);
    Paragraph(chapter_, "pst3", page + 9, 4);
    doc_.Text(doc_.Add("Note", chapter_), "Note", Format("%d ", page + 1) + kEnglish[page % 8], 36, 7);
    doc_.Down(9);
    if (page % kPagesOfAChapter != kPagesOfAChapter - 1) return;
    doc_.Text(doc_.Add("Endnote", chapter_), "Note", std::string("i ") + kEnglish[3 * page % 8], 36, 7);
  }

  void EmptyElements() {
    doc_.Add("P", chapter_);
    doc_.Add("P", doc_.Add("Sect", chapter_));
  }

  void Index() {
    doc_.BeginPage();
    dots_ = 0;
    for (const char* word : {"birds 4", "bread 5", "light 6", "tide 2"}) Caption("GT_Index", word);
    doc_.EndPage();
  }

  void Caption(const std::string& type, const std::string& text) {
    doc_.Text(doc_.Add(type, chapter_), "P", text, 36, 8);
    doc_.Down(11);
  }

  /// An element that is a mark of the exporter: a text in "Alt", and an image of one sample.
  void MarkOf(Node* parent, const std::string& alt, int index = -1) { FillMark(doc_.Add("Figure", parent, index), alt); }
  /// The same for a parent that stands in the tree only at the end.
  void MarkLoose(Node* parent, const std::string& alt) {
    Node* mark = doc_.AddLoose("Figure");
    doc_.Adopt(parent, mark);
    FillMark(mark, alt);
  }
  void FillMark(Node* mark, const std::string& alt) {
    mark->element.replaceKey("/Alt", Utf16(alt));
    doc_.Mark(mark, "Figure", Dot(0));
  }
  std::string Dot(int left) { return Format("q .24 0 0 .24 %d %d cm /Dot Do Q", left, 20 + dots_++); }

  QPDFObjectHandle UriAction(const std::string& uri) {
    QPDFObjectHandle action = QPDFObjectHandle::parse("<</S /URI>>");
    action.replaceKey("/URI", Plain(uri));
    return action;
  }

  static QPDFObjectHandle RoleMap() {
    return QPDFObjectHandle::parse(
        "<</pst1 /P /pst2 /P /pst3 /P /pst4 /P /pst5 /P /GT_CaptionTableAtTop /P /GT_Figure /P /GT_Index /P /Story /Sect"
        " /Table /Table>>");
  }

  int pages_, bodyPages_ = 0;
  bool withLongContents_;
  TaggedPages doc_;
  Node* document_ = nullptr;
  Node* chapter_ = nullptr;
  Node* formulas_ = nullptr;
  std::vector<Node*> holders_;
  std::vector<ContentsEntry> entries_;
  std::vector<QPDFObjectHandle> targets_;  // the pages that the entries lead to
  int tables_ = 0, dots_ = 0;
  std::vector<int> layoutTables_;
};

}  // namespace

DocumentSize MakeMarkedDocument(std::size_t pages, const std::string& fontFrom, const std::string& path,
                                bool withLongContents) {
  SubsetFont font(fontFrom);
  Composer composer(pages, withLongContents, font);
  const DocumentSize size = composer.Compose();
  QPDFWriter writer(composer.Pdf(), path.c_str());
  writer.setDeterministicID(true);
  writer.setObjectStreamMode(qpdf_o_generate);
  writer.write();
  const std::string base = path.ends_with(".pdf") ? path.substr(0, path.size() - 4) : path;
  WriteContents(base + ".toc.xml", composer.Entries());
  WriteStyles(base + ".styles.xml");
  WriteTables(base + ".tables.tsv", composer.Tables(), composer.LayoutTables());
  return size;
}

}  // namespace tgx::bench
