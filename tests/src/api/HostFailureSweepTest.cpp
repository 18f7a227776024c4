// Every operation meets a host failure at each of its calls. A new worker joins with a line in kOperations.

#include <cstdio>
#include <fstream>
#include <functional>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "src/common/CPdfStructureParser.h"
#include "tests/support/HostFailureSweep.h"
#include "tests/support/TestDocument.h"

namespace tgx {
namespace {

using test::Element;
using test::OpenDocument;
using test::Outcome;
using test::Page;
using test::SweepHostFailures;
using test::SweepOptions;
using test::TestDocument;

struct SweptOperation {
  const char* name;
  std::string (*document)();
  Outcome (*run)(OpenDocument& document);
  SweepOptions options = {};
};

void PrintTo(const SweptOperation& operation, std::ostream* out) { *out << operation.name; }

/// Images of one sample on two pages, on their own and inside marked content.
std::string WithDummyImages() {
  TestDocument doc;
  for (int i = 0; i < 2; ++i) {
    Page& page = doc.AddPage();
    page.Add(test::Image(1, 1));
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
std::string WithForm() {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Field(page, "name", "Tx", "(value)")
      .Set("A", "<</S/Named/N/NextPage>>")
      .Set("Opt", "[(a)[1 2.5 true]]")
      .Set("Ff", "2");
  doc.Field(page, "go", "Btn", "/On").Set("AP", "<</N $face>>");
  doc.Stream("face", "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]>>", "0 0 9 9 re f");
  doc.Tree({});
  return doc.Write();
}

/// Action 4 with the document itself as the second one.
Outcome SynchroniseForms(OpenDocument& document) {
  const std::string path = testing::TempDir() + "/HostFailureSweep.form.pdf";
  std::ofstream(path, std::ios::binary) << WithForm();
  Outcome outcome = document.Action(4, path);
  std::remove(path.c_str());
  return outcome;
}

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

Outcome RetagLayoutTables(OpenDocument& document) {
  const std::string path = testing::TempDir() + "/HostFailureSweep.tables.tsv";
  std::ofstream(path) << "Table\t1\nLayout\nTable\t4\nLayout\n";
  Outcome outcome = document.Action(9, path);
  std::remove(path.c_str());
  return outcome;
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

Outcome BuildContents(OpenDocument& document) {
  const std::string path = testing::TempDir() + "/HostFailureSweep.toc.xml";
  std::ofstream(path) << "<TOC_Item title='Contents'><TOC_Entry level='1'><TOC_EntryText>one</TOC_EntryText></TOC_Entry>"
                         "</TOC_Item>";
  Outcome outcome = document.Action(5, path);
  std::remove(path.c_str());
  return outcome;
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

/// Languages in both forms over texts, and a table that repeats its head.
std::string WithLanguagesAndHeads() {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({
      Element("P").Lang("[Lang=de]").Text(page, "one"),
      Element("Table")({Element("THead")({Element("TR")({Element("TH").Text(page, "h")})}),
                        Element("THead")({Element("TR")({Element("TH").Text(page, "h")})})}),
  })});
  return doc.Write();
}

std::string WithFootnotesAndFormulas() {
  const auto marker = [](const std::u16string& alt) { return Element("Span").Alt(std::u16string_view(alt)); };
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({
      Element("P").Add(Element("Reference").Text(page, "1")),
      Element("Note").Text(page, "a note"),
      Element("P").Add(marker(u"MATHML_1_START")).Text(page, "x").Add(marker(u"MATHML_1_END")),
      Element("Lbl")({Element("Span").Text(page, "-"), Element("Span").Text(page, "-")}),
  })});
  return doc.Write();
}

/// A frame in a holder, with all that leaves the pages with it.
std::string WithFrames() {
  const auto mark = [](const std::u16string& alt) { return Element("Span").Alt(std::u16string_view(alt)); };
  TestDocument doc;
  Page& page = doc.AddPage();
  page.Add(test::Ops("q 1 0 0 1 0 100 cm BI /W 1 /H 1 /BPC 8 /CS /RGB /F /AHx ID 000000> EI Q"));
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

const SweptOperation kOperations[] = {
    {"DescribeLinks",
     WithLinks,
     [](OpenDocument& document) {
       CPdfStructureParser::LinkDepth() = 0;
       return document.Action(1);
     },
     {.mayStayOpen = {"pages", "contents"}, .mayHandleFailures = true}},
    {"ReshuffleFramesByHolder",
     WithFrames,
     [](OpenDocument& document) { return document.Action(0); },
     {.mayStayOpen = {"pages", "contents"}}},
    {"CutText", WithFrames, [](OpenDocument& document) { return document.Action(3); }},
    {"LinkFootnotes",
     WithFootnotesAndFormulas,
     [](OpenDocument& document) { return document.Action(10); },
     {.mayStayOpen = {"pages", "contents"}}},
    {"ExtractMathML",
     WithFootnotesAndFormulas,
     [](OpenDocument& document) { return document.Action(17); },
     {.mayStayOpen = {"pages", "contents"}}},
    {"RemoveDoubleBullets",
     WithFootnotesAndFormulas,
     [](OpenDocument& document) { return document.Fixups(0x1); },
     {.mayStayOpen = {"pages", "contents"}}},
    {"FindMainLanguage",
     WithLanguagesAndHeads,
     [](OpenDocument& document) { return document.Fixups(0x4); },
     {.mayStayOpen = {"pages", "contents"}}},
    {"MapLanguages",
     WithLanguagesAndHeads,
     [](OpenDocument& document) { return document.Fixups(0x30); },
     {.mayStayOpen = {"pages", "contents"}}},
    {"DropRepeatedHeads", WithLanguagesAndHeads, [](OpenDocument& document) { return document.Fixups(0x40); }},
    {"MoveUserAltTexts",
     WithLinksAndButtons,
     [](OpenDocument& document) { return document.Action(8); },
     {.mayStayOpen = {"pages"}}},
    {"MakeStampsOfButtons", WithLinksAndButtons, [](OpenDocument& document) { return document.Fixups(0x100); }},
    {"DissolveLayoutTables", WithLayoutTables, [](OpenDocument& document) { return document.Fixups(0x80); }},
    {"BuildContents", WithContents, BuildContents, {.mayStayOpen = {"contents"}}},
    {"RetagLayoutTables", WithTableMetadata, RetagLayoutTables},
    {"ApplyTableMetadata", WithTableMetadata, [](OpenDocument& document) { return document.Action(12); }},
    {"SynchroniseForms", WithForm, SynchroniseForms, {.mayStayOpen = {"documents", "paths"}}},
    {"RemoveDummyImages",
     WithDummyImages,
     [](OpenDocument& document) { return document.Action(13); },
     {.mayStayOpen = {"pages", "contents"}}},
    {"RemoveEmptyTags", WithEmptyTags, [](OpenDocument& document) { return document.Action(6); }},
    {"MarkEmptyTags", WithEmptyTags, [](OpenDocument& document) { return document.Action(7); }},
};

class HostFailureSweep : public testing::TestWithParam<SweptOperation> {};

TEST_P(HostFailureSweep, EveryFailureEndsWithItsTextAndASoundDocument) {
  SweepHostFailures(GetParam().document(), GetParam().run, GetParam().options);
}

INSTANTIATE_TEST_SUITE_P(Operations, HostFailureSweep, testing::ValuesIn(kOperations),
                         [](const auto& swept) { return std::string(swept.param.name); });

}  // namespace
}  // namespace tgx
