#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/actions/ExtractMathML/FormulaMarker.h"
#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::OpenDocument;
using test::TestDocument;

constexpr int kMathML = 17;

ByteVector Bytes(const std::string& text) { return {text.begin(), text.end()}; }

TEST(FormulaMarker, ReadsTheThreeKinds) {
  const auto start = ParseFormulaMarker(Bytes("MATHML_7_START"));
  ASSERT_TRUE(start);
  EXPECT_EQ(start->id, 7);
  EXPECT_EQ(start->kind, FormulaMarker::Kind::Start);
  EXPECT_EQ(ParseFormulaMarker(Bytes("MATHML_7_END"))->kind, FormulaMarker::Kind::End);
  const auto content = ParseFormulaMarker(Bytes("MATHML_7_CONTENT_MathML:<a>:b"));
  ASSERT_TRUE(content);
  EXPECT_EQ(content->name, "MathML");
  EXPECT_EQ(content->text, "<a>:b") << "further colons belong to the text";
}

TEST(FormulaMarker, ReadsTwoByteTextWithAMark) {
  EXPECT_TRUE(ParseFormulaMarker(Bytes(std::string("\xFE\xFF\0M\0A\0T\0H\0M\0L\0_\0001\0_\0E\0N\0D", 26))));
}

TEST(FormulaMarker, WantsANumberAboveZero) {
  for (const char* text : {"MATHML_0_START", "MATHML_-3_START", "MATHML_x_START", "MATHML__START", "MATHML_+1_START",
                           "MATHML_ 1_START", "MATHML_-99999999999_START"}) {
    EXPECT_FALSE(ParseFormulaMarker(Bytes(text))) << text;
  }
}

TEST(FormulaMarker, ReadsTheLeadingDigitsOfANumber) { EXPECT_EQ(ParseFormulaMarker(Bytes("MATHML_12a3_END"))->id, 12); }

TEST(FormulaMarker, TakesANumberThatIsTooLargeForTheLargest) {
  EXPECT_EQ(ParseFormulaMarker(Bytes("MATHML_99999999999999999999_END"))->id, 0x7FFFFFFF);
  EXPECT_EQ(ParseFormulaMarker(Bytes("MATHML_4000000000_END"))->id, 0x7FFFFFFF);
}

TEST(FormulaMarker, TakesAContentWithoutANameForNone) {
  EXPECT_FALSE(ParseFormulaMarker(Bytes("MATHML_1_CONTENT:x")));
  EXPECT_FALSE(ParseFormulaMarker(Bytes("MATHML_1_CONTENT_:x"))) << "an empty last part is none";
}

TEST(FormulaMarker, TakesAnEmptyNameBetweenTwoSeparators) {
  EXPECT_EQ(ParseFormulaMarker(Bytes("MATHML_1_CONTENT__:x"))->name, "");
}

TEST(FormulaMarker, HasNoTextWithoutAColon) { EXPECT_EQ(ParseFormulaMarker(Bytes("MATHML_1_CONTENT_MathML"))->text, ""); }

TEST(FormulaMarker, KnowsNothingElse) {
  for (const char* text : {"", "MATHML", "MATHML_1", "MathML_1_START", "MATHML_1_BEGIN", "a:MATHML_1_START"}) {
    EXPECT_FALSE(ParseFormulaMarker(Bytes(text))) << text;
  }
}

TEST(FormulaMarker, TakesMorePartsThanItNeeds) {
  EXPECT_EQ(ParseFormulaMarker(Bytes("MATHML_1_START_more"))->kind, FormulaMarker::Kind::Start);
  EXPECT_EQ(ParseFormulaMarker(Bytes("MATHML_1_END_"))->kind, FormulaMarker::Kind::End);
  EXPECT_EQ(ParseFormulaMarker(Bytes("MATHML_1_CONTENT_a_b:x"))->name, "a");
  EXPECT_EQ(ParseFormulaMarker(Bytes("MATHML_1_END:x"))->kind, FormulaMarker::Kind::End);
}

TEST(FormulaHolder, IsKnownByTheBeginningOfItsTitle) {
  const std::string sentinel = "\x0C\xF1\x23\x18\x23\x28";
  EXPECT_TRUE(IsFormulaHolderTitle(Bytes(sentinel)));
  EXPECT_TRUE(IsFormulaHolderTitle(Bytes("\xFE\xFF" + sentinel + "more")));
  EXPECT_TRUE(IsFormulaHolderTitle(Bytes("\xFF\xFE" + sentinel)));
  EXPECT_FALSE(IsFormulaHolderTitle(Bytes(sentinel.substr(0, 5))));
  EXPECT_FALSE(IsFormulaHolderTitle(Bytes("x" + sentinel)));
  EXPECT_FALSE(IsFormulaHolderTitle({}));
}

class ExtractMathML : public testing::Test {
 protected:
  static Element Marked(const std::string& alt) {
    return Element("Span").Alt(std::u16string_view(std::u16string(alt.begin(), alt.end())));
  }
  static Element Holder(const std::vector<Element>& kids) {
    return Element("Sect").Title(u"\x0CF1\x2318\x2328 holder")(kids);
  }

  test::Outcome Run(const std::vector<Element>& elements) {
    document_.Tree({Element("Document")(elements)});
    OpenDocument open(document_.Write());
    const test::Outcome outcome = open.Action(kMathML);
    saved_ = open.Save();
    test::ExpectSound(saved_);
    return outcome;
  }
  std::string Tree() const { return test::TreeText(saved_); }
  QPDFObjectHandle Annotation() {
    file_ = std::make_unique<test::ReadBack>(saved_);
    QPDFObjectHandle annotations = file_->Page(1).getKey("/Annots");
    return annotations.getArrayItem(annotations.getArrayNItems() - 1);
  }
  std::string Contents() { return Annotation().getKey("/Contents").getStringValue(); }
  std::vector<double> Rect() {
    std::vector<double> numbers;
    for (QPDFObjectHandle number : Annotation().getKey("/Rect").getArrayAsVector())
      numbers.push_back(number.getNumericValue());
    return numbers;
  }

  TestDocument document_;
  test::Page& page_ = document_.AddPage();
  std::string saved_;
  std::unique_ptr<test::ReadBack> file_;
};

TEST_F(ExtractMathML, GivesAFormulaItsSource) {
  EXPECT_EQ(Run({Element("P")
                     .Text(page_, "with")
                     .Add(Marked("MATHML_1_START"))
                     .Text(page_, "x")
                     .Add(Element("Span").Text(page_, "y"))
                     .Add(Marked("MATHML_1_END"))
                     .Text(page_, "it is"),
                 Holder({Marked("MATHML_1_CONTENT_MathML:<math>x:y</math>")})}),
            test::kSuccess);
  EXPECT_EQ(Tree(),
            "Document\n"
            "  P\n"
            "    mcid 0 page 1\n"
            "    Annot\n"
            "      objr Highlight page 1\n"
            "      Formula\n"
            "        mcid 1 page 1\n"
            "        Span\n"
            "          mcid 3 page 1\n"
            "    mcid 2 page 1\n");
  test::ReadBack file(saved_);
  QPDFObjectHandle annotation = file.Page(1).getKey("/Annots").getArrayItem(0);
  EXPECT_EQ(annotation.getKey("/Contents").getStringValue(), "<math>x:y</math>");
  EXPECT_EQ(annotation.getKey("/T").getStringValue(), "MathML");
  EXPECT_EQ(annotation.getKey("/C").unparse(), "[ 1.0 1.0 0.0 ]");
  EXPECT_EQ(annotation.getKey("/CA").unparse(), "0.3");
  EXPECT_EQ(annotation.getKey("/F").unparse(), "4");
}

TEST_F(ExtractMathML, ChangesNothingWithoutMarkers) {
  EXPECT_EQ(Run({Element("P").Text(page_, "x"), Holder({Element("P")})}), test::kSuccess);
  EXPECT_THAT(Tree(), testing::HasSubstr("holder")) << "the holder stays without formulas";
}

TEST_F(ExtractMathML, LeavesAStartWithoutAnEndAndDropsTheHolder) {
  EXPECT_EQ(Run({Element("P").Add(Marked("MATHML_1_START")).Text(page_, "x"), Holder({})}), test::kSuccess);
  EXPECT_EQ(Tree(), "Document\n  P\n    Span alt=u\"MATHML_1_START\"\n    mcid 0 page 1\n");
}

TEST_F(ExtractMathML, WritesNoSourceForAnotherName) {
  EXPECT_EQ(Run({Element("P").Add(Marked("MATHML_1_START")).Text(page_, "x").Add(Marked("MATHML_1_END")),
                 Holder({Marked("MATHML_1_CONTENT_TeX:x")})}),
            test::kSuccess);
  test::ReadBack file(saved_);
  EXPECT_EQ(file.Page(1).getKey("/Annots").getArrayItem(0).getKey("/Contents").getStringValue(), "");
}

TEST_F(ExtractMathML, DoesNotReadTheMarkerOfAHolder) {
  EXPECT_EQ(Run({Element("P").Add(Marked("MATHML_1_START")).Text(page_, "x"), Holder({}).Alt(u"MATHML_1_END")}),
            test::kSuccess);
  EXPECT_THAT(Tree(), testing::HasSubstr("MATHML_1_START"));
}

TEST_F(ExtractMathML, TakesAllThatFollowsAStartBehindItsEnd) {
  EXPECT_EQ(Run({Element("P")
                     .Add(Marked("MATHML_1_END"))
                     .Text(page_, "a")
                     .Add(Marked("MATHML_1_START"))
                     .Text(page_, "b")
                     .Text(page_, "c")}),
            test::kSuccess);
  EXPECT_EQ(Tree(),
            "Document\n"
            "  P\n"
            "    mcid 0 page 1\n"
            "    Annot\n"
            "      objr Highlight page 1\n"
            "      Formula\n"
            "        mcid 1 page 1\n"
            "        mcid 2 page 1\n");
}

TEST_F(ExtractMathML, LeavesAnEndWithoutAStart) {
  EXPECT_EQ(Run({Element("P").Text(page_, "x").Add(Marked("MATHML_1_END"))}), test::kSuccess);
  EXPECT_EQ(Tree(), "Document\n  P\n    mcid 0 page 1\n    Span alt=u\"MATHML_1_END\"\n");
}

TEST_F(ExtractMathML, TakesTheLastOfTwoMarkersOfAKind) {
  EXPECT_EQ(Run({Element("P").Add(Marked("MATHML_1_START")).Text(page_, "x").Add(Marked("MATHML_1_END")),
                 Holder({Marked("MATHML_1_CONTENT_MathML:first"), Marked("MATHML_1_CONTENT_MathML:second")})}),
            test::kSuccess);
  EXPECT_EQ(Contents(), "second");
}

TEST_F(ExtractMathML, TakesTheLastHolder) {
  EXPECT_EQ(Run({Holder({Element("P")}), Element("P").Add(Marked("MATHML_1_START")), Holder({Element("H1")})}),
            test::kSuccess);
  EXPECT_THAT(Tree(), testing::HasSubstr("holder"));
  EXPECT_THAT(Tree(), testing::Not(testing::HasSubstr("H1")));
}

TEST_F(ExtractMathML, NeedsNoHolder) {
  EXPECT_EQ(Run({Element("P")
                     .Add(Marked("MATHML_1_CONTENT_MathML:<math/>"))
                     .Add(Marked("MATHML_1_START"))
                     .Text(page_, "x")
                     .Add(Marked("MATHML_1_END"))}),
            test::kSuccess);
  EXPECT_EQ(Contents(), "<math/>");
  EXPECT_THAT(Tree(), testing::HasSubstr("CONTENT")) << "a source outside a holder stays";
}

TEST_F(ExtractMathML, MovesObjectsOfTheFormulaToo) {
  const test::Annotation link = page_.Link("https://example.org/");
  EXPECT_EQ(Run({Element("P").Add(Marked("MATHML_1_START")).Text(page_, "x").Object(link).Add(Marked("MATHML_1_END"))}),
            test::kSuccess);
  EXPECT_EQ(Tree(),
            "Document\n"
            "  P\n"
            "    Annot\n"
            "      objr Highlight page 1\n"
            "      Formula\n"
            "        mcid 0 page 1\n"
            "        objr Link page 1\n");
}

TEST_F(ExtractMathML, TakesTheMarkersOffThePage) {
  EXPECT_EQ(Run({Element("P")
                     .Add(Marked("MATHML_1_START").Text(page_, "start"))
                     .Text(page_, "x")
                     .Add(Marked("MATHML_1_END").Text(page_, "end")),
                 Holder({Marked("MATHML_1_CONTENT_MathML:m").Text(page_, "source")})}),
            test::kSuccess);
  const std::string content = test::ReadBack(saved_).Content(1);
  for (const char* gone : {"(start)", "(end)", "(source)"}) EXPECT_THAT(content, testing::Not(testing::HasSubstr(gone)));
  EXPECT_THAT(content, testing::HasSubstr("(x)"));
}

TEST_F(ExtractMathML, LaysTheAnnotationOverTheParagraphUpToItsLowestTop) {
  EXPECT_EQ(Run({Element("P")
                     .Mark(page_, test::Text("high").At(100, 700))
                     .Add(Marked("MATHML_1_START"))
                     .Mark(page_, test::Text("low").At(50, 600))
                     .Add(Marked("MATHML_1_END"))
                     .Mark(page_, test::Text("middle").At(200, 650))}),
            test::kSuccess);
  const std::vector<double> rect = Rect();
  EXPECT_NEAR(rect[0], 50, 0.01);
  EXPECT_NEAR(rect[1], 600, 4) << "the lowest bottom";
  EXPECT_GT(rect[2], 220) << "the rightmost right";
  EXPECT_NEAR(rect[3], 610, 5) << "the lowest top";
}

TEST_F(ExtractMathML, TakesContentThatPaintsNothingForABoxAtTheOrigin) {
  EXPECT_EQ(Run({Element("P")
                     .Mark(page_, test::Ops("q Q"))
                     .Mark(page_, test::Text("x").At(100, 700))
                     .Add(Marked("MATHML_1_START"))
                     .Add(Marked("MATHML_1_END"))}),
            test::kSuccess);
  EXPECT_NEAR(Rect()[0], 100, 0.01) << "before the first box it counts for nothing";
  TestDocument another;
  test::Page& page = another.AddPage();
  another.Tree({Element("P")
                    .Mark(page, test::Text("x").At(100, 700))
                    .Mark(page, test::Ops("q Q"))
                    .Add(Marked("MATHML_1_START"))
                    .Add(Marked("MATHML_1_END"))});
  OpenDocument open(another.Write());
  ASSERT_EQ(open.Action(kMathML), test::kSuccess);
  saved_ = open.Save();
  EXPECT_EQ(Rect()[0], 0);
  EXPECT_EQ(Rect()[3], 0);
}

TEST_F(ExtractMathML, EndsWithTheHostsRaiseForAFormulaWithoutAPage) {
  TestDocument bare;
  bare.AddPage();
  bare.Tree({Element("P")({Marked("MATHML_1_START"), Marked("MATHML_1_END")})});
  OpenDocument open(bare.Write());
  const test::Outcome outcome = open.Action(kMathML);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
}

TEST_F(ExtractMathML, WritesTheSourceUpToAZeroByteAsItStands) {
  // Zero bytes are dropped with the encoding, so a source in UTF-16 has lost those of its characters.
  EXPECT_EQ(Run({Element("P").Add(Marked("MATHML_1_START")).Text(page_, "x").Add(Marked("MATHML_1_END")),
                 Holder({Element("Span").Alt(u"MATHML_1_CONTENT_MathML:\u2212")})}),
            test::kSuccess);
  EXPECT_EQ(Contents(), "\x22\x12");
}

TEST_F(ExtractMathML, MovesMarkersAtTheTopOfTheTree) {
  document_.Tree(
      {Element("P").Text(page_, "before"), Marked("MATHML_1_START"), Element("P").Text(page_, "x"), Marked("MATHML_1_END")});
  OpenDocument open(document_.Write());
  ASSERT_EQ(open.Action(kMathML), test::kSuccess);
  EXPECT_EQ(test::TreeText(open.Save()),
            "P\n"
            "  mcid 0 page 1\n"
            "Annot\n"
            "  objr Highlight page 1\n"
            "  Formula\n"
            "    P\n"
            "      mcid 1 page 1\n");
}

TEST_F(ExtractMathML, BuildsFormulasByTheirNumbers) {
  const auto formula = [this](const std::string& number) {
    return Element("P")
        .Add(Marked("MATHML_" + number + "_START"))
        .Text(page_, number)
        .Add(Marked("MATHML_" + number + "_END"));
  };
  EXPECT_EQ(Run({formula("12"), formula("3"), formula("7"),
                 Holder({Marked("MATHML_3_CONTENT_MathML:three"), Marked("MATHML_7_CONTENT_MathML:seven"),
                         Marked("MATHML_12_CONTENT_MathML:twelve")})}),
            test::kSuccess);
  test::ReadBack file(saved_);
  std::vector<std::string> contents;
  for (QPDFObjectHandle annotation : file.Page(1).getKey("/Annots").getArrayAsVector()) {
    contents.push_back(annotation.getKey("/Contents").getStringValue());
  }
  EXPECT_THAT(contents, testing::ElementsAre("three", "seven", "twelve"));
}

TEST_F(ExtractMathML, TakesAllBehindAStartWhoseEndStandsElsewhere) {
  EXPECT_EQ(Run({Element("P").Add(Marked("MATHML_1_START")).Text(page_, "a").Text(page_, "b"),
                 Element("P").Text(page_, "c").Add(Marked("MATHML_1_END")).Text(page_, "d")}),
            test::kSuccess);
  EXPECT_EQ(Tree(),
            "Document\n"
            "  P\n"
            "    Annot\n"
            "      objr Highlight page 1\n"
            "      Formula\n"
            "        mcid 0 page 1\n"
            "        mcid 1 page 1\n"
            "  P\n"
            "    mcid 2 page 1\n"
            "    mcid 3 page 1\n");
}

TEST_F(ExtractMathML, BuildsAFormulaInsideAnother) {
  EXPECT_EQ(Run({Element("P")
                     .Add(Marked("MATHML_1_START"))
                     .Text(page_, "a")
                     .Add(Marked("MATHML_2_START"))
                     .Text(page_, "b")
                     .Add(Marked("MATHML_2_END"))
                     .Add(Marked("MATHML_1_END"))}),
            test::kSuccess);
  EXPECT_EQ(Tree(),
            "Document\n"
            "  P\n"
            "    Annot\n"
            "      objr Highlight page 1\n"
            "      Formula\n"
            "        mcid 0 page 1\n"
            "        Annot\n"
            "          objr Highlight page 1\n"
            "          Formula\n"
            "            mcid 1 page 1\n");
}

TEST_F(ExtractMathML, DropsTheHolderForASourceWithoutMarkers) {
  EXPECT_EQ(Run({Element("P").Text(page_, "x"), Holder({Marked("MATHML_1_CONTENT_MathML:m")})}), test::kSuccess);
  EXPECT_EQ(Tree(), "Document\n  P\n    mcid 0 page 1\n");
}

TEST_F(ExtractMathML, MakesTheTreeOfADocumentWithoutOne) {
  OpenDocument open(document_.Write());
  ASSERT_EQ(open.Action(kMathML), test::kSuccess);
  EXPECT_TRUE(test::ReadBack(open.Save())->getRoot().hasKey("/StructTreeRoot"));
}

/// The operations on content and kids of a run on one formula.
class MovesOfExtractMathML : public ExtractMathML {
 protected:
  std::vector<std::string> Moves(OpenDocument& open) {
    test::RecordingHost host;
    const test::HostSession session(host.Tables());
    EXPECT_EQ(open.Action(kMathML), test::kSuccess);
    std::vector<std::string> moves;
    bool isMoving = false;
    for (const std::string& name : host.Names()) {
      if (name == "PDSElementInsertOBJAsKid") isMoving = true;  // the annotation's reference comes first
      if (isMoving && name == "PDSElementGetParent") break;     // the removal of the markers
      const bool isKept = name == "PDPageAcquirePDEContent" || name == "PDPageSetPDEContent" ||
                          name == "PDSElementRemoveKid" || name == "PDSElementRemoveKidMC" ||
                          name == "PDSElementInsertKid" || name == "PDSElementInsertMCAsKid";
      if (isMoving && isKept) moves.push_back(name);
    }
    return moves;
  }
};

TEST_F(MovesOfExtractMathML, EachCommitTheContentOfThePage) {
  document_.Tree({Element("P").Add(Marked("MATHML_1_START")).Text(page_, "x").Add(Marked("MATHML_1_END"))});
  OpenDocument open(document_.Write());
  EXPECT_THAT(Moves(open), testing::ElementsAre("PDPageAcquirePDEContent", "PDSElementRemoveKidMC", "PDPageSetPDEContent",
                                                "PDPageAcquirePDEContent", "PDSElementInsertMCAsKid", "PDPageSetPDEContent",
                                                "PDSElementInsertKid", "PDSElementInsertKid"));
}

TEST_F(MovesOfExtractMathML, OfAnElementWithoutAPageCommitNone) {
  page_.Add(test::Marked("Span", "<</MCID 0>>", {test::Text("x")}));
  document_.Tree({Element("Div")({Marked("MATHML_1_START"), Element("Span"), Marked("MATHML_1_END")})});
  document_.Patch([](QPDF& pdf) {
    for (QPDFObjectHandle& object : pdf.getAllObjects()) {
      if (!object.isDictionary() || !object.hasKey("/S")) continue;
      object.removeKey("/Pg");
      if (object.getKey("/S").unparse() != "/Div") continue;
      auto content = QPDFObjectHandle::parse("<</Type/MCR/MCID 0>>");
      content.replaceKey("/Pg", pdf.getAllPages().at(0));
      object.getKey("/K").appendItem(content);
    }
  });
  OpenDocument open(document_.Write());
  EXPECT_THAT(Moves(open), testing::ElementsAre("PDSElementRemoveKid", "PDSElementInsertKid", "PDSElementInsertKid",
                                                "PDSElementInsertKid"));
}

TEST_F(ExtractMathML, EndsWithTheHostsRaiseForAKidWithoutContent) {
  document_.Tree({Element("P").Text(page_, "x").Add(Marked("MATHML_1_START")).RawKid("77").Add(Marked("MATHML_1_END"))});
  OpenDocument open(document_.Write());
  const test::Outcome outcome = open.Action(kMathML);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text.find("no container"), std::string::npos) << outcome;
}

TEST_F(ExtractMathML, EndsWithTheHostsRaiseForAnEndInsideItsStart) {
  document_.Tree({Element("P").Text(page_, "x").Add(Marked("MATHML_1_START")({Marked("MATHML_1_END")}))});
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Action(kMathML).result, TGX_FAILED);
}

TEST_F(ExtractMathML, KeepsThePagesOnlyForTheRun) {
  document_.Tree({Element("P").Add(Marked("MATHML_1_START")).Text(page_, "x").Add(Marked("MATHML_1_END"))});
  OpenDocument open(document_.Write());
  test::CountingHost host;
  const test::HostSession session(host.Tables());
  EXPECT_EQ(open.Action(kMathML), test::kSuccess);
  EXPECT_EQ(host.Open("pages"), 0);
}

TEST_F(ExtractMathML, FailsForAKidOfUnknownKind) {
  EXPECT_EQ(Run({Element("P").Text(page_, "a").Add(Marked("MATHML_1_START")).RawKid("(odd)").Add(Marked("MATHML_1_END"))}),
            test::HardFailure("unknown node type"));
}

/// The calls of the host that a run takes on formulas in one paragraph, with a mark's number for each.
std::size_t CallsFor(const std::vector<std::size_t>& numbers) {
  TestDocument document;
  test::Page& page = document.AddPage();
  Element paragraph("P");
  const auto mark = [&](std::size_t number, const std::string& kind) {
    const std::string alt = "MATHML_" + std::to_string(number) + kind;
    return Element("Span").Alt(std::u16string_view(std::u16string(alt.begin(), alt.end()))).Text(page, "m");
  };
  for (const std::size_t number : numbers) {
    paragraph.Add(mark(number, "_START")).Text(page, "x").Add(mark(number, "_END"));
  }
  document.Tree({paragraph});
  OpenDocument open(document.Write());
  test::RaisingHost host(test::EmbeddedTables(), 0);
  const test::HostSession session(host.Tables());
  EXPECT_EQ(open.Action(kMathML), test::kSuccess);
  return host.Calls();
}

std::vector<std::size_t> NumbersTo(std::size_t last) {
  std::vector<std::size_t> numbers(last);
  std::iota(numbers.begin(), numbers.end(), 1);
  return numbers;
}

TEST(CostOfExtractMathML, GrowsWithTheFormulasOfAParagraph) {
  EXPECT_LT(CallsFor(NumbersTo(400)), 5 * CallsFor(NumbersTo(100)));
}

TEST(CostOfExtractMathML, GrowsWithTheFormulasOfAParagraphInTurnedOrder) {
  std::vector<std::size_t> few = NumbersTo(100);
  std::vector<std::size_t> many = NumbersTo(400);
  std::reverse(few.begin(), few.end());
  std::reverse(many.begin(), many.end());
  EXPECT_LT(CallsFor(many), 5 * CallsFor(few));
}

TEST_F(ExtractMathML, TakesContentInsideTheMarkOfAnEarlierFormulaForGone) {
  // The first end mark has the left one of the paragraph's contents inside it, and takes it off the page.
  page_.Add(test::Marked("Span", "<</MCID 0>>", {test::Marked("Span", "<</MCID 1>>", {test::Text("left")})}));
  Run({Element("P")
           .Mcid(page_, 1)
           .Add(Marked("MATHML_1_START"))
           .Add(Marked("MATHML_1_END").Mcid(page_, 0))
           .Text(page_, "right")
           .Add(Marked("MATHML_2_START"))
           .Add(Marked("MATHML_2_END"))});
  const std::vector<double> second = Rect();
  test::ReadBack file(saved_);
  std::vector<double> first;
  for (QPDFObjectHandle number : file.Page(1).getKey("/Annots").getArrayItem(0).getKey("/Rect").getArrayAsVector())
    first.push_back(number.getNumericValue());
  EXPECT_NE(first, second);
}

TEST_F(ExtractMathML, TakesWhatFollowsEachPlaceOfAStart) {
  document_.Tree({Element("P").Text(page_, "a").Add(Marked("MATHML_1_START")).Text(page_, "b").Add(Marked("MATHML_1_END"))});
  document_.Patch([](QPDF& pdf) {
    for (QPDFObjectHandle& object : pdf.getAllObjects()) {
      if (!object.isDictionary() || object.getKey("/S").unparse() != "/P") continue;
      QPDFObjectHandle kids = object.getKey("/K");
      kids.appendItem(kids.getArrayItem(1));
      kids.appendItem(QPDFObjectHandle::parse("0"));
      kids.eraseItem(0);
    }
  });
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Action(kMathML), test::kSuccess);
  EXPECT_EQ(test::TreeText(open.Save()),
            "P\n  Annot\n    objr Highlight page 1\n    Formula\n      mcid 1 page 1\n      mcid 0 page 1\n"
            "  Span alt=u\"MATHML_1_START\"\n");
}

}  // namespace
}  // namespace tgx
