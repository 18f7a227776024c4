// What a whole repair keeps and mends around its steps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Json = nlohmann::ordered_json;

class FixCare : public testing::Test {
 protected:
  Element Mark(const char16_t* alt) { return Element("Figure").Alt(alt).Image(page_, 1, 1); }
  Element Text(const char* type, std::string_view text) { return Element(type).Text(page_, text); }

  /// Repairs a document with these elements; gives its tree without the marked content.
  std::string TreeAfterFix(const std::vector<Element>& elements, const std::vector<std::string>& options = {}) {
    document_.Tree({Element("Document")(elements)});
    folder_.Write("in.pdf", document_.Write());
    std::vector<std::string> command = {"fix", "in.pdf", "-o", "out.pdf", "--json"};
    command.insert(command.end(), options.begin(), options.end());
    const ProcessResult result = Tool(command).In(folder_.Path()).Run();
    EXPECT_EQ(result.status, 0) << result.err;
    report_ = Json::parse(result.out);
    ExpectSound(Output());
    return TreeWithoutContent(Output());
  }
  std::string Output() { return ReadFile(folder_ / "out.pdf"); }
  std::vector<std::string> Notes() {
    std::vector<std::string> notes;
    for (const Json& note : report_["notes"]) notes.push_back(note["text"]);
    return notes;
  }
  std::string ContentsOfAnnotation() {
    ReadBack file(Output());
    return file.Page(1).getKey("/Annots").getArrayItem(0).getKey("/Contents").getUTF8Value();
  }

  TestDocument document_;
  Page& page_ = document_.AddPage();
  TempFolder folder_;
  Json report_;
};

TEST_F(FixCare, FramesWithOneIdentifierGoToTheirOwnAnchors) {
  const std::string tree = TreeAfterFix({
      Element("P")({Mark(u"\u222Ea"), Text("Span", "one")}),
      Element("P")({Mark(u"\u222Ea"), Text("Span", "two")}),
      Element("Sect").Title(u"\u2230")({Mark(u"\u2264a"), Text("H1", "first"), Mark(u"\u2265a"), Mark(u"\u2264a"),
                                        Text("H2", "second"), Mark(u"\u2265a")}),
  });
  EXPECT_EQ(tree,
            "Document\n"
            "  P\n"
            "    H1\n"
            "    Span\n"
            "  P\n"
            "    H2\n"
            "    Span\n");
  EXPECT_THAT(Notes(), IsEmpty());
}

TEST_F(FixCare, FrameWithoutAnAnchorStaysWhereItIs) {
  const std::string tree = TreeAfterFix({
      Text("P", "before"),
      Element("Sect").Title(u"\u2230")({Mark(u"\u2264a"), Text("H1", "lost"), Mark(u"\u2265a")}),
      Element("Sect").Title(u"\u2230")({Mark(u"\u2264b"), Element("Story")({Text("H2", "lost too")})}),
      Element("Sect").Title(u"\u2230")({Mark(u"\u2264c"), Mark(u"\u2265c")}),
      Text("P", "after"),
  });
  EXPECT_EQ(tree,
            "Document\n"
            "  P\n"
            "  Sect\n"
            "    H1\n"
            "  Sect\n"
            "    H2\n"
            "  P\n");
  EXPECT_THAT(Notes(), ElementsAre("no anchor asks for a frame; what it holds stays where the exporter has put it",
                                   "no anchor asks for a frame; what it holds stays where the exporter has put it"));
}

TEST_F(FixCare, MarksThatTheirStepsHaveLeftGoAndAreTold) {
  const std::string tree = TreeAfterFix({
      Element("P")({Mark(u"\u222Ea"), Text("Span", "one"), Mark(u"MATHML_1_START")}),
      Element("P")({Mark(u"\u222Eb")}),
  });
  EXPECT_EQ(tree,
            "Document\n"
            "  P\n"
            "    Span\n");
  EXPECT_THAT(Notes(),
              ElementsAre("the mark \"\u222E"
                          "a\" was taken out of the structure tree: no whole frame belongs to it",
                          "the mark \"MATHML_1_START\" was taken out of the structure tree: its formula is not complete",
                          "the mark \"\u222E"
                          "b\" was taken out of the structure tree: no whole frame belongs to it"));
}

TEST_F(FixCare, MarkThatShowsSomethingStaysAndIsTold) {
  const std::string tree = TreeAfterFix({Element("Figure").Alt(u"\u222Ea").Image(page_, 9, 9), Text("P", "one")});
  EXPECT_THAT(tree, HasSubstr("Figure alt=u\"\\u{222E}a\""));
  EXPECT_THAT(Notes(), ElementsAre("the mark \"\u222E"
                                   "a\" stays a mark: no whole frame belongs to it"));
}

TEST_F(FixCare, MarksOfStepsThatWereLeftOutStay) {
  const std::string tree =
      TreeAfterFix({Mark(u"\u222Ea"), Mark(u"TOC_FRAME"), Text("P", "one")}, {"--skip", "reshuffle-frames"});
  EXPECT_THAT(tree, HasSubstr("\\u{222E}a"));
  EXPECT_THAT(tree, HasSubstr("TOC_FRAME"));
  EXPECT_THAT(Notes(), IsEmpty());
}

TEST_F(FixCare, FormulaGetsItsMathMLAsALineOfText) {
  const std::string tree = TreeAfterFix({
      Element("P")({Mark(u"MATHML_1_START"), Text("Span", "x"), Mark(u"MATHML_1_END")}),
      Element("Sect").Title(u"\u0CF1\u2318\u2328")({
          Mark(u"MATHML_1_CONTENT_MathML:<math><mi>\u03B1</mi><mo>:</mo><mn>2</mn></math>"),
      }),
  });
  EXPECT_THAT(tree, HasSubstr("Formula alt=u\"\\u{03B1} : 2\"\n"));
}

TEST_F(FixCare, FormulaWithoutUsableMathMLGetsNoText) {
  const std::string tree = TreeAfterFix({
      Element("P")({Mark(u"MATHML_1_START"), Text("Span", "x"), Mark(u"MATHML_1_END")}),
      Element("Sect").Title(u"\u0CF1\u2318\u2328")({Mark(u"MATHML_1_CONTENT_MathML:x = 1")}),
  });
  EXPECT_THAT(tree, HasSubstr("Formula\n"));
}

TEST_F(FixCare, LinkIsDescribedByItsText) {
  document_.SetCatalog("Lang", "(en)");
  const Annotation link = page_.Annotate("Link").Set("A", "<</S/GoTo/D(x)>>");
  TreeAfterFix({Element("P")({Text("Link", " the  house").Object(link)})});
  EXPECT_EQ(ContentsOfAnnotation(), "the house");
}

TEST_F(FixCare, LinkIsNotDescribedInALanguageThatNobodyKnows) {
  const Annotation link = page_.Annotate("Link").Set("A", "<</S/GoTo/D(x)>>").Set("T", "(Footnote 1)");
  TreeAfterFix({Element("P")({Text("Link", "1").Object(link)})});
  EXPECT_THAT(ContentsOfAnnotation(), Not(HasSubstr("Footnote")));
}

TEST_F(FixCare, LinkIsDescribedByItsTitleFirst) {
  document_.SetCatalog("Lang", "(en)");
  const Annotation link = page_.Annotate("Link").Set("A", "<</S/GoTo/D(x)>>").Set("T", "(Footnote 1)");
  TreeAfterFix({Element("P")({Text("Link", "1").Object(link)})});
  EXPECT_EQ(ContentsOfAnnotation(), "Footnote 1");
}

TEST_F(FixCare, LinkKeepsItsDescription) {
  const Annotation link = page_.Annotate("Link").Set("A", "<</S/GoTo/D(x)>>").Set("Contents", "(to x)");
  TreeAfterFix({Element("P")({Text("Link", "the house").Object(link)})});
  EXPECT_EQ(ContentsOfAnnotation(), "to x");
}

TEST_F(FixCare, PageThatGetsItsFirstLinkGoesByTheStructure) {
  document_.AddPage();
  TreeAfterFix({Text("Reference", "1"), Text("Note", "one")});
  ReadBack file(Output());
  EXPECT_EQ(file.Page(1).getKey("/Tabs").unparse(), "/S");
  EXPECT_FALSE(file.Page(2).hasKey("/Tabs"));
}

TEST_F(FixCare, StringIsNoOrderOfAnnotations) {
  page_.Set("Tabs", "(S)");
  TreeAfterFix({Text("Reference", "1"), Text("Note", "one")});
  EXPECT_EQ(ReadBack(Output()).Page(1).getKey("/Tabs").unparse(), "/S");
}

TEST_F(FixCare, PageKeepsItsOrderOfAnnotations) {
  page_.Set("Tabs", "/R");
  TreeAfterFix({Text("Reference", "1"), Text("Note", "one")});
  EXPECT_EQ(ReadBack(Output()).Page(1).getKey("/Tabs").unparse(), "/R");
}

TEST_F(FixCare, TableCellsNameOnlyHeaderCellsThatAreThere) {
  const Element description = Mark(
      u"[ATT]<Tables><Table type='3'><Row><Cell row='1' index='1'/><Cell type='1' row='1' index='2'>"
      u"<Cell row='1' index='1'/><Cell row='9' index='9'/></Cell></Row></Table></Tables>");
  const std::string tree = TreeAfterFix({Element("Table")({
      description,
      Element("TR")({Text("TD", "head"), Text("TD", "value")}),
      Element("TR")({Text("TD", "other").Attributes("[<</O/Table/Headers[(gone)(too)]>>]")}),
  })});
  EXPECT_EQ(tree,
            "Document\n"
            "  Table\n"
            "    TR\n"
            "      TH id=\"1_1_1\"\n"
            "      TD id=\"1_1_2\" attributes=<< /Headers [ (1_1_1) ] /O /Table >>\n"
            "    TR\n"
            "      TD attributes=[ << /O /Table >> ]\n");
  EXPECT_THAT(Notes(), ElementsAre("3 mentions of header cells that do not exist were taken out of table cells"));
}

TEST_F(FixCare, NotesMadeOfEndnotesGetIdentifiersOfTheirOwn) {
  document_.RoleMap({{"Endnote", "P"}});
  const std::string tree = TreeAfterFix({Text("Endnote", "one"), Text("Note", "two").Id("note-1"), Text("Endnote", "three")},
                                        {"--skip", "footnote-links"});
  EXPECT_EQ(tree,
            "Document\n"
            "  Endnote id=\"note-2\"\n"
            "  Note id=\"note-1\"\n"
            "  Endnote id=\"note-3\"\n");
}

}  // namespace
}  // namespace tgx::test
