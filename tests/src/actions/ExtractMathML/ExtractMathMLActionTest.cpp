#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/actions/ExtractMathML/FormulaMarker.h"
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
  for (const char* text : {"MATHML_0_START", "MATHML_-3_START", "MATHML_x_START", "MATHML__START"}) {
    EXPECT_FALSE(ParseFormulaMarker(Bytes(text))) << text;
  }
}

TEST(FormulaMarker, TakesAContentWithoutANameForNone) { EXPECT_FALSE(ParseFormulaMarker(Bytes("MATHML_1_CONTENT:x"))); }

TEST(FormulaMarker, KnowsNothingElse) {
  for (const char* text : {"", "MATHML", "MATHML_1", "MathML_1_START", "MATHML_1_BEGIN", "a:MATHML_1_START"}) {
    EXPECT_FALSE(ParseFormulaMarker(Bytes(text))) << text;
  }
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

  TestDocument document_;
  test::Page& page_ = document_.AddPage();
  std::string saved_;
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

TEST_F(ExtractMathML, FailsForAKidOfUnknownKind) {
  EXPECT_EQ(Run({Element("P").Text(page_, "a").Add(Marked("MATHML_1_START")).RawKid("(odd)").Add(Marked("MATHML_1_END"))}),
            test::HardFailure("unknown node type"));
}

}  // namespace
}  // namespace tgx
