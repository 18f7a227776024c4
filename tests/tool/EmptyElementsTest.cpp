#include <gtest/gtest.h>

#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

/// The tree of a document with one table, after the command has removed what is empty.
class EmptyElements : public testing::Test {
 protected:
  Element Filled(const char* type = "TD") { return Element(type).Text(page_, "x"); }

  std::string TreeAfter(const std::string& command, const std::vector<Element>& rows) {
    document_.Tree({Element("Document")({Element("Table")(rows)})});
    folder_.Write("in.pdf", document_.Write());
    std::vector<std::string> arguments = {command, "in.pdf", "-o", "out.pdf"};
    if (command == "run") arguments.emplace_back("remove-empty-tags");
    EXPECT_EQ(Tool(arguments).In(folder_.Path()).Run().status, 0);
    const std::string bytes = ReadFile(folder_ / "out.pdf");
    ExpectSound(bytes);
    return TreeWithoutContent(bytes);
  }

  TestDocument document_;

 private:
  Page& page_ = document_.AddPage();
  TempFolder folder_;
};

TEST_F(EmptyElements, StayInTheirPlacesWhenADocumentIsFixed) {
  EXPECT_EQ(TreeAfter("fix", {Element("TR")({Element("TH"), Filled("TH"), Element("TD"), Filled(), Element("TD")})}),
            "Document\n"
            "  Table\n"
            "    TR\n"
            "      TH\n"
            "      TH\n"
            "      TD\n"
            "      TD\n"
            "      TD\n");
}

TEST_F(EmptyElements, LoseTheEmptyElementsInThem) {
  EXPECT_EQ(TreeAfter("fix", {Element("TR")({Element("TD")({Element("P")({Element("Span")}), Element("P")}), Filled()})}),
            "Document\n"
            "  Table\n"
            "    TR\n"
            "      TD\n"
            "      TD\n");
}

TEST_F(EmptyElements, GoWithARowThatHoldsNothing) {
  EXPECT_EQ(TreeAfter("fix", {Element("TR")({Filled()}), Element("TR")({Element("TD"), Element("TD")})}),
            "Document\n"
            "  Table\n"
            "    TR\n"
            "      TD\n");
}

TEST_F(EmptyElements, DoNotBringBackOtherEmptyElementsOfTheRow) {
  EXPECT_EQ(TreeAfter("fix", {Element("TR")({Element("Span"), Element("TD"), Filled()})}),
            "Document\n"
            "  Table\n"
            "    TR\n"
            "      TD\n"
            "      TD\n");
}

TEST_F(EmptyElements, AreKnownByTheRoleMap) {
  document_.RoleMap({{"Cell", "TD"}, {"Row", "TR"}});
  EXPECT_EQ(TreeAfter("fix", {Element("Row")({Element("Cell"), Filled()})}),
            "Document\n"
            "  Table\n"
            "    Row\n"
            "      Cell\n"
            "      TD\n");
}

TEST_F(EmptyElements, WithTextsOfTheirOwnStay) {
  EXPECT_EQ(TreeAfter("fix", {Element("TR")({Filled()}), Element("Caption")({
                                                             Element("Span"),
                                                             Filled("Span"),
                                                             Element("Figure").Alt("A grain"),
                                                             Element("Formula").Set("AF", "[]"),
                                                             Element("Span").ActualText("x"),
                                                             Element("Span").String("E", "for example"),
                                                         })}),
            "Document\n"
            "  Table\n"
            "    TR\n"
            "      TD\n"
            "    Caption\n"
            "      Span\n"
            "      Figure alt=\"A grain\"\n"
            "      Formula\n"
            "      Span actual=\"x\"\n"
            "      Span\n");
}

TEST_F(EmptyElements, StayWithTheEmptyElementsAroundThemAndNoOthers) {
  EXPECT_EQ(TreeAfter("fix", {Element("TR")({Filled()}),
                              Element("Caption")({
                                  Element("P")({Element("Span"), Element("Div")({Element("Figure").Alt("A grain")})}),
                                  Element("P"),
                              })}),
            "Document\n"
            "  Table\n"
            "    TR\n"
            "      TD\n"
            "    Caption\n"
            "      P\n"
            "        Div\n"
            "          Figure alt=\"A grain\"\n");
}

TEST_F(EmptyElements, GoWhereTheirTextIsEmptyOrAMark) {
  EXPECT_EQ(TreeAfter("fix", {Element("TR")({Filled()}),
                              Element("Caption")({Filled("Span"), Element("Figure").Alt(""),
                                                  Element("Figure").Alt(u"MATHML_1_START"), Element("P").Title("x")})}),
            "Document\n"
            "  Table\n"
            "    TR\n"
            "      TD\n"
            "    Caption\n"
            "      Span\n");
}

TEST_F(EmptyElements, AreRemovedByTheStepAlone) {
  EXPECT_EQ(TreeAfter("run", {Element("TR")({Element("TD"), Filled()})}),
            "Document\n"
            "  Table\n"
            "    TR\n"
            "      TD\n");
}

}  // namespace
}  // namespace tgx::test
