#include <gtest/gtest.h>

#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::OpenDocument;
using test::TestDocument;

constexpr int kFootnoteLinks = 10;

class FootnoteLinks : public testing::Test {
 protected:
  Element Reference(test::Page& page, double x, double y) {
    return Element("Reference").Mark(page, test::Text("1").At(x, y));
  }
  Element Note(test::Page& page, double x, double y) { return Element("Note").Mark(page, test::Text("a note").At(x, y)); }
  Element Marker(const std::string& text) {
    return Element("Figure").Alt(std::u16string_view(std::u16string(text.begin(), text.end())));
  }

  test::Outcome Run(const std::vector<Element>& elements) {
    document_.Tree(elements);
    OpenDocument open(document_.Write());
    const test::Outcome outcome = open.Action(kFootnoteLinks);
    saved_ = open.Save();
    test::ExpectSound(saved_);
    file_ = std::make_unique<test::ReadBack>(saved_);
    return outcome;
  }

  QPDFObjectHandle Annotation(int page, int index) { return file_->Page(page).getKey("/Annots").getArrayItem(index); }
  int Annotations(int page) {
    QPDFObjectHandle annotations = file_->Page(page).getKey("/Annots");
    return annotations.isArray() ? annotations.getArrayNItems() : 0;
  }
  static double Number(QPDFObjectHandle array, int index) { return array.getArrayItem(index).getNumericValue(); }

  TestDocument document_;
  test::Page& page_ = document_.AddPage();
  std::string saved_;
  std::unique_ptr<test::ReadBack> file_;
};

TEST_F(FootnoteLinks, LinkReferenceAndNoteInBothDirections) {
  EXPECT_EQ(Run({Element("P")({Reference(page_, 100, 600)}), Note(page_, 72, 100)}), test::kSuccess);
  EXPECT_EQ(test::TreeText(saved_),
            "P\n"
            "  Reference\n"
            "    Link\n"
            "      mcid 0 page 1\n"
            "      objr Link page 1\n"
            "Note\n"
            "  Link\n"
            "    mcid 1 page 1\n"
            "    objr Link page 1\n");
  ASSERT_EQ(Annotations(1), 2);
  EXPECT_EQ(Annotation(1, 0).getKey("/T").getStringValue(), "Footnote 1");
  EXPECT_EQ(Annotation(1, 1).getKey("/T").getStringValue(), "Footnote reference 1");
}

TEST_F(FootnoteLinks, LieOverTheTextAndLeadToTheOtherOne) {
  EXPECT_EQ(Run({Reference(page_, 100, 600), Note(page_, 72, 100)}), test::kSuccess);
  QPDFObjectHandle forth = Annotation(1, 0);
  QPDFObjectHandle back = Annotation(1, 1);
  EXPECT_NEAR(Number(forth.getKey("/Rect"), 0), 100, 0.01);
  EXPECT_NEAR(Number(back.getKey("/Rect"), 0), 72, 0.01);
  QPDFObjectHandle target = forth.getKey("/A").getKey("/D");
  EXPECT_EQ(target.getArrayItem(1).unparse(), "/FitR");
  EXPECT_NEAR(Number(target, 2), 72, 0.01);
  EXPECT_NEAR(Number(back.getKey("/A").getKey("/D"), 2), 100, 0.01);
  EXPECT_EQ(forth.getKey("/Border").unparse(), "[ 0 0 0 ]");
}

TEST_F(FootnoteLinks, LeadBackToThePageOfTheNoteWithTheAreaOfTheReference) {
  test::Page& second = document_.AddPage();
  EXPECT_EQ(Run({Reference(page_, 100, 600), Note(second, 72, 100)}), test::kSuccess);
  ASSERT_EQ(Annotations(1), 1);
  ASSERT_EQ(Annotations(2), 1);
  QPDFObjectHandle target = Annotation(2, 0).getKey("/A").getKey("/D");
  EXPECT_EQ(target.getArrayItem(0).getObjGen(), file_->Page(2).getObjGen());
  EXPECT_NEAR(Number(target, 2), 100, 0.01);
}

TEST_F(FootnoteLinks, DoNothingInADocumentWithoutFootnotes) {
  EXPECT_EQ(Run({Element("P").Text(page_, "x")}), test::kSuccess);
  EXPECT_EQ(Annotations(1), 0);
}

TEST_F(FootnoteLinks, FailWhereNotesAndReferencesAreNotAsMany) {
  EXPECT_EQ(Run({Reference(page_, 100, 600), Reference(page_, 200, 600), Note(page_, 72, 100), Note(page_, 72, 80),
                 Note(page_, 72, 60)}),
            test::kSoftFailure);
  EXPECT_EQ(Annotations(1), 0);
}

TEST_F(FootnoteLinks, PassOverNotesThatLieInALink) {
  EXPECT_EQ(Run({Element("Link")({Note(page_, 72, 100)}), Reference(page_, 100, 600)}), test::kSoftFailure);
}

TEST_F(FootnoteLinks, SkipAReferenceWithoutContentAndKeepItsNumber) {
  EXPECT_EQ(Run({Element("Reference"), Reference(page_, 100, 600), Note(page_, 72, 100), Note(page_, 72, 80)}),
            test::kSuccess);
  ASSERT_EQ(Annotations(1), 2);
  EXPECT_EQ(Annotation(1, 0).getKey("/T").getStringValue(), "Footnote 2");
}

TEST_F(FootnoteLinks, FindNothingToDoTheSecondTime) {
  document_.Tree({Reference(page_, 100, 600), Note(page_, 72, 100)});
  OpenDocument open(document_.Write());
  ASSERT_EQ(open.Action(kFootnoteLinks), test::kSuccess);
  const std::string once = SavedTree(open);
  EXPECT_EQ(open.Action(kFootnoteLinks), test::kSuccess);
  EXPECT_EQ(SavedTree(open), once);
}

TEST_F(FootnoteLinks, LeadBackToTheFrameAroundTheReference) {
  const auto body = [this](double x, double y) { return Element("P").Mark(page_, test::Text("frame").At(x, y)); };
  EXPECT_EQ(Run({Marker("TEXTFRAME_START"), body(50, 700), Reference(page_, 60, 600), body(90, 500), Marker("TEXTFRAME_END"),
                 Note(page_, 72, 100)}),
            test::kSuccess);
  QPDFObjectHandle target = Annotation(1, 1).getKey("/A").getKey("/D");
  EXPECT_NEAR(Number(target, 2), 50, 0.01) << "left of the frame";
  EXPECT_LT(Number(target, 3), 501) << "bottom of the frame";
  EXPECT_GT(Number(target, 5), 700) << "top of the frame";
}

TEST_F(FootnoteLinks, DoNotMixContentOfOneNumberOnDifferentPages) {
  test::Page& second = document_.AddPage();
  second.Mark("P", test::Text("other").At(300, 300));
  EXPECT_EQ(Run({Reference(page_, 100, 600), Note(page_, 72, 100)}), test::kSuccess);
  EXPECT_NEAR(Number(Annotation(1, 0).getKey("/Rect"), 0), 100, 0.01);
}

TEST_F(FootnoteLinks, DoNothingInADocumentWithoutAStructureTree) {
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Action(kFootnoteLinks), test::kSuccess);
}

}  // namespace
}  // namespace tgx
