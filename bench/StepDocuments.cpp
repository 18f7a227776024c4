#include "bench/StepDocuments.h"

#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include "bench/TaggedPages.h"
#include "bench/Utf.h"

namespace tgx::bench {
namespace {

const char* const kLine = "The ferry leaves at noon and comes back in the evening. ";

QPDFObjectHandle Utf16(const std::string& utf8) { return QPDFObjectHandle::newString(Utf16Of(utf8)); }

void Write(QPDF& pdf, const std::string& path) {
  QPDFWriter writer(pdf, path.c_str());
  writer.setDeterministicID(true);
  writer.setObjectStreamMode(qpdf_o_generate);
  writer.write();
}

Node* Paragraph(TaggedPages& pages, Node* parent, int lines) {
  Node* paragraph = pages.Add("P", parent);
  for (int i = 0; i < lines; ++i) {
    pages.Text(paragraph, "P", kLine);
    pages.Down(0.5);
  }
  return paragraph;
}

void Bullet(TaggedPages& pages, Node* parent) {
  Node* label = pages.Add("Lbl", pages.Add("LI", pages.Add("L", parent)));
  pages.Text(pages.Add("Span", label), "Span", "\u2022", 40, 9, " /ActualText <FEFF2022>");
  pages.Text(pages.Add("Span", label), "Span", "\u2022", 40);
}

/// An element that stands for a mark of the exporter.
void Mark(TaggedPages& pages, Node* parent, const std::string& alt) {
  Node* mark = pages.Add("Figure", parent);
  mark->element.replaceKey("/Alt", Utf16(alt));
  pages.Mark(mark, "Figure", "q .24 0 0 .24 0 20 cm /Dot Do Q");
}

QPDFObjectHandle Appearance(QPDF& pdf, const std::string& text) {
  QPDFObjectHandle stream = pdf.newStream("/Tx BMC q BT /F1 9 Tf 2 3 Td (" + text + ") Tj ET Q EMC");
  stream.replaceDict(QPDFObjectHandle::parse(
      "<</Type/XObject/Subtype/Form/BBox[0 0 200 12]/Resources<</Font<</F1<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>"
      ">>>>>>"));
  return QPDFObjectHandle::newDictionary({{"/N", stream}});
}

}  // namespace

void MakeCrowdedPage(int sequences, const std::string& fontFrom, const std::string& path) {
  SubsetFont font(fontFrom);
  TaggedPages pages(font);
  Node* document = pages.Add("Document", nullptr);
  pages.BeginPage();
  for (int paragraph = 0; pages.MarkedContentCount() < static_cast<std::size_t>(sequences); ++paragraph) {
    Bullet(pages, document);
    Node* lines = Paragraph(pages, document, 6);
    lines->element.replaceKey("/Lang", QPDFObjectHandle::newString(paragraph % 3 == 0 ? "[Lang=fr]" : "[Lang=en]"));
    for (int footnote = 0; footnote < 2; ++footnote) {
      pages.Text(pages.Add("Reference", lines), "Reference", "1", 330, 6);
      pages.Text(pages.Add("Note", document), "Note", kLine, 36, 7);
    }
  }
  pages.EndPage();
  pages.Finish(QPDFObjectHandle::newDictionary());
  Write(pages.Pdf(), path);
}

void MakeFormulaDocument(int pageCount, int formulasOnPage, const std::string& fontFrom, const std::string& path) {
  SubsetFont font(fontFrom);
  TaggedPages pages(font);
  pages.AddResource("XObject", "Dot", pages.Image(1, 1));
  Node* document = pages.Add("Document", nullptr);
  std::vector<std::string> sources;
  for (int page = 0; page < pageCount; ++page) {
    pages.BeginPage();
    for (int formula = 0; formula < formulasOnPage; ++formula) {
      Paragraph(pages, document, 50 / (formulasOnPage + 1));
      const std::string mark = "MATHML_" + std::to_string(sources.size() + 1) + "_";
      Node* paragraph = Paragraph(pages, document, 1);
      Mark(pages, paragraph, mark + "START");
      pages.Text(pages.Add("Span", paragraph), "Span", "h", 110);
      Mark(pages, paragraph, mark + "END");
      sources.push_back(mark + "CONTENT_MathML:<math><mi>h</mi><mo>=</mo><mn>" + std::to_string(page) + "</mn></math>");
    }
    Paragraph(pages, document, 50 / (formulasOnPage + 1));
    if (page + 1 < pageCount) pages.EndPage();
  }
  Node* holder = pages.Add("Sect", document);
  holder->element.replaceKey("/T", Utf16("\u0cf1\u2318\u2328"));
  for (const std::string& source : sources) Mark(pages, holder, source);
  pages.EndPage();
  pages.Finish(QPDFObjectHandle::newDictionary());
  Write(pages.Pdf(), path);
}

void MakeForm(int fieldCount, bool filled, const std::string& path) {
  constexpr int kFieldsOfAPage = 50;
  QPDF pdf;
  pdf.emptyPDF();
  std::vector<QPDFObjectHandle> fields;
  QPDFObjectHandle page;
  for (int i = 0; i < fieldCount; ++i) {
    const int place = i % kFieldsOfAPage;
    if (place == 0) {
      page = pdf.makeIndirectObject(QPDFObjectHandle::parse("<</Type/Page/MediaBox[0 0 420 820]/Resources<<>>/Annots[]>>"));
      page.replaceKey("/Contents", pdf.newStream("0 0 9 9 re f"));
      QPDFPageDocumentHelper(pdf).addPage(QPDFPageObjectHelper(page), false);
    }
    const std::string bottom = std::to_string(800 - 15 * place);
    QPDFObjectHandle field = pdf.makeIndirectObject(
        QPDFObjectHandle::parse("<</Type/Annot/Subtype/Widget/FT/Tx/F 4/DA(/F1 9 Tf 0 g)/MK<</BC[0 0 0]>>/Rect[36 " +
                                bottom + " 236 " + std::to_string(812 - 15 * place) + "]>>"));
    field.replaceKey("/T", QPDFObjectHandle::newString("field " + std::to_string(i)));
    field.replaceKey("/P", page);
    const std::string value = filled ? "value of field " + std::to_string(i) : "";
    if (filled) field.replaceKey("/V", QPDFObjectHandle::newString(value));
    if (filled) field.replaceKey("/TU", QPDFObjectHandle::newString("help for field " + std::to_string(i)));
    field.replaceKey("/AP", Appearance(pdf, value));
    page.getKey("/Annots").appendItem(field);
    fields.push_back(field);
  }
  QPDFObjectHandle form = QPDFObjectHandle::parse("<</DR<</Font<</F1<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>>>>>>>");
  form.replaceKey("/Fields", QPDFObjectHandle::newArray(fields));
  pdf.getRoot().replaceKey("/AcroForm", form);
  Write(pdf, path);
}

}  // namespace tgx::bench
