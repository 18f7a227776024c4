#include "tests/src/api/SweptOperations.h"

#include "tests/support/TestDocument.h"
#include "tests/support/TwoByteFont.h"

namespace tgx::test {
namespace {

/// Images of one sample on two pages, on their own and inside marked content.
std::string WithDummyImages() {
  TestDocument doc;
  for (int i = 0; i < 2; ++i) {
    Page& page = doc.AddPage();
    page.Add(Image(1, 1));
    doc.Tree({Element("Document")({Element("Figure").Image(page, 1, 1), Element("P").Text(page, "text")})});
  }
  return doc.Write();
}

/// Empty elements on top, in the middle and deep down, beside content of every kind.
std::string WithEmptyTags() {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({
      Element("Document")({
          Element("H1").Text(page, "Title"),
          Element("L")({Element("LI")({Element("Lbl"), Element("LBody")})}),
          Element("Link").Text(page, "here").Object(page.Link("https://example.org/")).Add(Element("Span")),
      }),
      Element("P"),
  });
  return doc.Write();
}

/// A form with a field of each way in which entries cross.
std::string FormWith(const std::string& value) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Field(page, "name", "Tx", value).Set("A", "<</S/Named/N/NextPage>>").Set("Opt", "[(a)[1 2.5 true]]").Set("Ff", "2");
  doc.Field(page, "go", "Btn", "/On").Set("AP", "<</N $face>>");
  doc.Stream("face", "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]>>", "0 0 9 9 re f");
  doc.Patch([value](QPDF& pdf) {
    QPDFObjectHandle form = pdf.getRoot().getKey("/AcroForm");
    form.getKey("/Fields").appendItem(QPDFObjectHandle::parse("<</T(group)/Kids[<</FT/Tx/V" + value + ">>]>>"));
    form.replaceKey("/CO", QPDFObjectHandle::parse("[<</T(name)>>]"));
    form.replaceKey("/DR", QPDFObjectHandle::parse("<</Font<</" + value.substr(1, 5) + "<</Type/Font>>>>/Encoding<<>>>>"));
    form.replaceKey("/SigFlags", QPDFObjectHandle::newInteger(3));
  });
  doc.Tree({});
  return doc.Write();
}

std::string WithForm() { return FormWith("(empty)"); }
std::string FilledForm() { return FormWith("(value)"); }

/// A table of each kind of metadata.
std::string WithTableMetadata() {
  const auto placeholder = [](const std::u16string& tables) {
    return Element("Figure").Alt(std::u16string_view(u"[ATT]<Tables>" + tables + u"</Tables>"));
  };
  const auto row = [] { return Element("TR")({Element("TH"), Element("TD").Attributes("<</O/Layout>>")}); };
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Table")({placeholder(u"<Table type='1'/>"), row()}),
            Element("Table")({placeholder(u"<Table type='2' rows='1' cols='1'/>"), row(), row()}),
            Element("Table")({placeholder(u"<Table type='3'><Row><Cell row='1' index='1'/><Cell type='1' row='1' index='2'>"
                                          u"<Cell row='1' index='1'/></Cell></Row></Table>"),
                              row()}),
            Element("Table")({placeholder(u"<Table type='4'/>"), row()})});
  return doc.Write();
}

/// A table of contents with a title, a line, and what is none.
std::string WithContents() {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("Div")({
      Element("P").Add(Element("Span").Text(page, "Contents")),
      Element("P").Add(Element("Figure").Alt(u"TOC_FRAME").Image(page, 1, 1)),
      Element("P").Add(Element("Link").Object(page.Link("https://example.org/")).Text(page, "one")),
      Element("P").Text(page, "7"),
  })})});
  return doc.Write();
}

std::string WithLayoutTables() {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({
      Element("Table")({Element("TR")({Element("TD")({Element("P").Text(page, "one"), Element("P")})})}),
      Element("Table")({Element("TR")({Element("TD").Text(page, "two")})}),
  })});
  return doc.Write();
}

/// Links that carry alternate texts, with and without a target, and buttons.
std::string WithLinksAndButtons() {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Stream("face", "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]>>", "0 0 9 9 re f");
  doc.Field(page, "go", "Btn").Set("AP", "<</N $face>>").Set("AA", "<</D<</S/Named/N/NextPage>>>>");
  doc.Tree({Element("Sect")({
      Element("Link")({Element("Figure")}).Object(page.Link("?id_useralttext=AEE=")),
      Element("Link")({Element("Figure")}).Object(page.Link("https://example.org/?id_useralttext=AEE=")),
  })});
  return doc.Write();
}

/// Languages of elements and of content, of which one has the most text.
std::string WithLanguages() {
  TestDocument doc;
  Page& page = doc.AddPage();
  page.Add(Marked("Span", "<</MCID 50/Lang([Lang=fr])>>", {Text("one"), Text("two")}));
  const auto runs = [] { return Ops("BT /F1 12 Tf 72 700 Td [(a)(b)(c)(d)] TJ ET"); };
  doc.Tree({Element("Part"), Element("Story").Lang("en")({
                                 Element("P").Lang("[Lang=de]").Mark(page, runs()),
                                 Element("P").Mcid(page, 50).Mark(page, runs()),
                                 Element("P").Lang("[Lang=de]").Mark(page, runs()),
                             })})
      .RoleMap({{"Story", "Document"}});
  return doc.Write();
}

/// A table that repeats its head.
std::string WithRepeatedHeads() {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({
      Element("Table")({Element("THead")({Element("TR")({Element("TH").Text(page, "h")})}),
                        Element("THead")({Element("TR")({Element("TH").Text(page, "h")})})}),
  })});
  return doc.Write();
}

/// A footnote in a text frame, and one whose reference stands beside it.
std::string WithFootnotes() {
  const auto mark = [](const std::u16string& alt) { return Element("Figure").Alt(std::u16string_view(alt)); };
  TestDocument doc;
  Page& page = doc.AddPage();
  Page& second = doc.AddPage();
  doc.Tree({Element("Document")({
      mark(u"TEXTFRAME_START"),
      Element("P").Text(page, "text in a frame").Add(Element("Reference").Text(page, "1")).Text(page, "goes on"),
      mark(u"TEXTFRAME_END"),
      Element("P").Add(Element("Reference").Text(second, "2")),
      Element("Note").Text(page, "a note").Add(Element("P").Text(page, "of two paragraphs")),
      Element("Note").Text(second, "another"),
  })});
  return doc.Write();
}

std::string WithFormulas() {
  const auto mark = [](const std::u16string& alt) { return Element("Span").Alt(std::u16string_view(alt)); };
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({
      Element("P")
          .Add(mark(u"MATHML_1_START").Text(page, "start"))
          .Text(page, "x")
          .Add(Element("Span").Text(page, "y"))
          .Object(page.Link("https://example.org/"))
          .Add(mark(u"MATHML_1_END")),
      Element("Sect").Title(u"\x0CF1\x2318\x2328")({mark(u"MATHML_1_CONTENT_MathML:m").Text(page, "source")}),
  })});
  return doc.Write();
}

/// Bullets that are there twice, the copy before and behind the other one.
std::string WithDoubleBullets() {
  TestDocument doc;
  Page& page = doc.AddPage();
  AddTwoByteFont(doc, page, {{"0001", "2022"}});
  const auto shown = [&] { return Element("Span").Mark(page, Ops("BT /F2 12 Tf 72 700 Td <0001> Tj ET")); };
  const auto hidden = [&](int mcid) {
    const std::string properties = "<</MCID " + std::to_string(mcid) + "/ActualText<FEFF2022>>>";
    page.Add(Marked("Span", properties, {Text("-")}));
    return Element("Span").Mcid(page, mcid);
  };
  doc.Tree({Element("L")({
      Element("LI")({Element("Lbl")({hidden(50), shown()}), Element("LBody").Text(page, "one")}),
      Element("LI")({Element("Lbl")({shown(), hidden(51)}), Element("LBody").Text(page, "two")}),
  })});
  return doc.Write();
}

/// A frame in a holder, with all that leaves the pages with it.
std::string WithFrames() {
  const auto mark = [](const std::u16string& alt) { return Element("Span").Alt(std::u16string_view(alt)); };
  TestDocument doc;
  Page& page = doc.AddPage();
  page.Add(Ops("q 1 0 0 1 0 100 cm BI /W 1 /H 1 /BPC 8 /CS /RGB /F /AHx ID 000000> EI Q"));
  doc.Tree({Element("Document")({
      Element("P").Text(page, "text").Add(mark(u"\u222Ef").Text(page, "a")),
      Element("Sect").Title(u"\u2230")({mark(u"\u2264f").Text(page, "s"),
                                        Element("Sect")({Element("Story"), Element("H2").Text(page, "one")}),
                                        mark(u"\u2265f").Text(page, "e")}),
  })});
  return doc.Write();
}

/// Links with targets of all kinds.
std::string WithLinks() {
  TestDocument doc;
  Page& page = doc.AddPage();
  page.Resource("Font", "F1", "<</Type/Font/Subtype/Type1/BaseFont/Helvetica/ToUnicode $map>>");
  doc.Stream("map", "<<>>", "1 begincodespacerange <00><FF> endcodespacerange");
  const auto link = [&](const std::string& action) { return page.Annotate("Link").Set("A", action); };
  doc.Tree({Element("P")({
      Element("Link").Add(Element("Span").Alt(u"a").Text(page, "one")).Object(link("<</S/URI/URI(x)>>")),
      Element("Link").Text(page, "two").Object(link("<</S/Launch/F<</F(y)>>>>").Set("Contents", "()")),
  })});
  return doc.Write();
}

/// Anchored frames in a holder, and an image of one sample.
std::string WithAnchoredFrames() {
  const auto mark = [](const std::u16string& alt) { return Element("Span").Alt(std::u16string_view(alt)); };
  TestDocument doc;
  Page& page = doc.AddPage();
  page.Add(Image(1, 1));
  doc.Tree({Element("Document")({
      Element("P").Text(page, "text").Add(mark(u"\u222Ef")),
      Element("Sect").Title(u"\u2230 holder")(
          {mark(u"\u2264f"), Element("Story")({Element("H2").Text(page, "one")}), mark(u"\u2265f")}),
  })});
  return doc.Write();
}

std::string WithTextFrameMarks() {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({
      Element("Span").Alt(u"TEXTFRAME_START").Text(page, "start"),
      Element("P").Text(page, "text"),
      Element("Span").Alt(u"TEXTFRAME_END").Object(page.Link("https://example.org/")),
  })});
  return doc.Write();
}

/// Structure types of an exporter's own.
std::string WithOwnTypes() {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({
               Element("ps1")({Element("ps2").Text(page, "text"), Element("P")}),
               Element("Endnote").Text(page, "note"),
               Element("GT_Index").Text(page, "a"),
               Element("GT_Index"),
               Element("GT_CaptionListAtTop"),
               Element("L"),
               Element("Table"),
               Element("GT_CaptionTableAtBottom"),
           })})
      .RoleMap({{"ps1", "P"}, {"GT_Index", "P"}});
  return doc.Write();
}

std::string StyleNames() {
  return "<ID_Document><ID_ParaStyleList><ID_ParaStyle id=\"ps1\" hex_name=\"0041\"/>"
         "<ID_ParaStyle id=\"ps2\" hex_name=\"00420063\"/></ID_ParaStyleList></ID_Document>";
}

/// Paragraphs with nothing but a table in them.
std::string WithExtraParagraphs() {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Sect")({Element("P")({Element("Table")({Element("TR")})}), Element("P").Text(page, "text")})})
      .RoleMap({{"Foo", "P"}});
  return doc.Write();
}

/// A type that is mapped to itself.
std::string WithRoles() {
  TestDocument doc;
  doc.Tree({Element("P").Text(doc.AddPage(), "text")}).RoleMap({{"P", "P"}, {"Foo", "P"}});
  return doc.Write();
}

std::string KindsOfTables() { return "Table\t1\nLayout\nTable\t4\nLayout\n"; }

std::string ContentsDescription() {
  return "<TOC_Item title='Contents'><TOC_Entry level='1'><TOC_EntryText>one</TOC_EntryText></TOC_Entry></TOC_Item>";
}

const std::set<std::string> kPages = {"pages"};
const std::set<std::string> kContents = {"contents"};
const std::set<std::string> kPagesAndContents = {"pages", "contents"};

// clang-format off
const SweptOperation kOperations[] = {
    {"ReshuffleFramesByHolder", 0, 0, WithFrames, nullptr, {.staysOpen = kPagesAndContents}},
    {"DescribeLinks", 1, 0, WithLinks, nullptr, {.mayStayOpen = kContents, .staysOpen = kPages, .mayHandleFailures = true}},
    {"NameStyles", 2, 0, WithOwnTypes, StyleNames},
    {"CutText", 3, 0, WithFrames},
    {"SynchroniseForms", 4, 0, WithForm, FilledForm, {.mayStayOpen = {"documents", "paths"}}},
    {"BuildContents", 5, 0, WithContents, ContentsDescription, {.staysOpen = kContents}},
    {"RemoveEmptyTags", 6, 0, WithEmptyTags},
    {"MarkEmptyTags", 7, 0, WithEmptyTags},
    {"MoveUserAltTexts", 8, 0, WithLinksAndButtons, nullptr, {.staysOpen = kPages}},
    {"RetagLayoutTables", 9, 0, WithTableMetadata, KindsOfTables},
    {"LinkFootnotes", 10, 0, WithFootnotes, nullptr, {.staysOpen = kContents}},
    {"RemoveFrameMarkers", 11, 0, WithTextFrameMarks, nullptr, {.staysOpen = kContents}},
    {"ApplyTableMetadata", 12, 0, WithTableMetadata},
    {"RemoveDummyImages", 13, 0, WithDummyImages, nullptr, {.staysOpen = kPagesAndContents}},
    {"ReshuffleFrames", 14, 0, WithAnchoredFrames, nullptr, {.staysOpen = kPagesAndContents}},
    {"MakeNotesOfEndNotes", 15, 0, WithOwnTypes},
    {"FixGroupTags", 16, 0, WithOwnTypes},
    {"ExtractMathML", 17, 0, WithFormulas, nullptr, {.mayStayOpen = kPages, .staysOpen = kContents}},
    {"DoNothing", 18, 0, WithOwnTypes, nullptr, {.changesNothing = true}},
    {"RemoveDoubleBullets", -1, 0x1, WithDoubleBullets, nullptr, {.staysOpen = kPagesAndContents}},
    {"RemoveExtraParagraphs", -1, 0x2, WithExtraParagraphs},
    {"FindMainLanguage", -1, 0x4, WithLanguages, nullptr, {.staysOpen = kPagesAndContents}},
    {"WriteLanguagesAsTags", -1, 0x10, WithLanguages, nullptr, {.staysOpen = kPagesAndContents}},
    {"WriteLanguagesInBrackets", -1, 0x20, WithLanguages, nullptr,
     {.staysOpen = kPagesAndContents, .changesNothing = true}},
    {"DropRepeatedHeads", -1, 0x40, WithRepeatedHeads},
    {"DissolveLayoutTables", -1, 0x80, WithLayoutTables},
    {"MakeStampsOfButtons", -1, 0x100, WithLinksAndButtons},
    {"UnmapRoles", -1, 0x200, WithRoles, nullptr, {.mayHandleFailures = true}},
};
// clang-format on

}  // namespace

std::ostream& operator<<(std::ostream& out, const SweptOperation& operation) { return out << operation.name; }

std::span<const SweptOperation> SweptOperations() { return kOperations; }

}  // namespace tgx::test
