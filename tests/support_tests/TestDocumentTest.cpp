#include "tests/support/TestDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/OpenDocument.h"
#include "tests/support/TreeText.h"

namespace tgx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(TestDocument, WritesTheTreeThatItSays) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({
      Element("H1").Title("First").Text(page, "Title"),
      Element("Figure").Alt(u"\u222E").Image(page, 1, 1),
      Element("Link").Lang("de").Text(page, "here").Object(page.Link("https://example.org/")),
      Element("P"),
  })});
  const std::string bytes = doc.Write();
  ExpectSound(bytes);
  EXPECT_EQ(TreeText(bytes), R"(Document
  H1 title="First"
    mcid 0 page 1
  Figure alt=u"\u{222E}"
    mcid 1 page 1
  Link lang="de"
    mcid 2 page 1
    objr Link page 1
  P
)");
}

TEST(TestDocument, WithoutATreeHasNone) {
  TestDocument doc;
  doc.AddPage().Add(Text("plain"));
  const std::string bytes = doc.Write();
  ExpectSound(bytes);
  EXPECT_EQ(TreeText(bytes), "(no structure tree)\n");
}

TEST(TestDocument, ContentOnAnotherPageIsAnMcr) {
  TestDocument doc;
  Page& first = doc.AddPage();
  Page& second = doc.AddPage();
  doc.Tree({Element("P").Text(first, "a").Text(second, "b")});
  const std::string bytes = doc.Write();
  ExpectSound(bytes);
  EXPECT_EQ(TreeText(bytes), "P\n  mcid 0 page 1\n  mcr 0 page 2\n");
}

TEST(TestDocument, NestsMarkedContentAndArtifactsAndResourceProperties) {
  TestDocument doc;
  Page& page = doc.AddPage();
  page.Add(Marked("P", "<</MCID 0>>", {Text("a"), MarkedByResource("Span", "<</MCID 1>>", {InlineImage(2, 1)})}));
  page.Add(Artifact({Text("header")}));
  doc.Tree({Element("P").Mcid(page, 0), Element("Span").Mcr(page, 1)});
  const std::string bytes = doc.Write();
  ExpectSound(bytes);
  ReadBack file(bytes);
  const std::string text = file.Content(1);
  EXPECT_THAT(text, HasSubstr("/P <</MCID 0>> BDC\nBT "));
  EXPECT_THAT(text, HasSubstr("/Span /MC0 BDC\nq 2 0 0 1 72 72 cm BI"));
  EXPECT_THAT(text, HasSubstr("/Artifact BMC\n"));
}

TEST(TestDocument, TakesDamageAsPdfText) {
  TestDocument doc;
  doc.AddPage();
  doc.Tree({Element("Sect").Named("loop").RawKid("$loop").Set("P", "null")});
  ReadBack file(doc.Write());
  QPDFObjectHandle sect = file.TreeRoot().getKey("/K").getArrayItem(0);
  EXPECT_EQ(sect.getKey("/K").getObjGen(), sect.getObjGen());
  EXPECT_FALSE(sect.hasKey("/P"));
}

TEST(TestDocument, PutsFieldsIntoTheFormAndOnThePage) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Field(page, u"N\u00E4me", "Tx", "(value)");
  ReadBack file(doc.Write());
  QPDFObjectHandle field = file->getRoot().getKey("/AcroForm").getKey("/Fields").getArrayItem(0);
  EXPECT_EQ(field.getKey("/T").getUTF8Value(), "N\xC3\xA4me");
  EXPECT_EQ(field.getKey("/V").getStringValue(), "value");
  EXPECT_EQ(file.Page(1).getKey("/Annots").getArrayItem(0).getObjGen(), field.getObjGen());
}

TEST(TestDocument, StreamsAndObjectsAreReachedByName) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Stream("icon", "<</Type/XObject/Subtype/Form/BBox[0 0 1 1]>>", "0 0 1 1 re f").Object("list", "[1 $icon]");
  page.Annotate("Widget").Set("AP", "<</N $icon>>").Set("X", "$list");
  ReadBack file(doc.Write());
  QPDFObjectHandle widget = file.Page(1).getKey("/Annots").getArrayItem(0);
  EXPECT_EQ(widget.getKey("/AP").getKey("/N").getDict().getKey("/Subtype").getName(), "/Form");
  EXPECT_EQ(widget.getKey("/X").getArrayItem(1).getObjGen(), widget.getKey("/AP").getKey("/N").getObjGen());
}

TEST(TestDocument, TakesTenThousandLevels) {
  TestDocument doc;
  doc.AddPage();
  Element top("Sect");
  Element deepest = top;
  for (int i = 0; i < 10000; ++i) deepest = deepest.AddNew("Sect");
  doc.Tree({top});
  EXPECT_THAT(TreeText(doc.Write()), HasSubstr("(too deep)"));
}

TEST(TestDocument, GivesTheSameBytesAgain) {
  TestDocument doc;
  doc.Tree({Element("P").Text(doc.AddPage(), "same")});
  EXPECT_EQ(doc.Write(), doc.Write());
}

TEST(ParentTreeProblems, NamesAnMcidThatLeadsElsewhere) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("P").Text(page, "a"), Element("P").Named("second").Text(page, "b")});
  doc.SetTree("ParentTree", "<</Nums[0 [$second $second]]>>");
  ReadBack file(doc.Write());
  EXPECT_THAT(ParentTreeProblems(file.Pdf()), ElementsAre(HasSubstr("MCID 0 of page")));
}

TEST(ParentTreeProblems, NamesAReferenceWithoutWayBackAndAStrayElement) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Object("stray", "<</S/P>>");
  doc.Tree({Element("Link").Object(page.Link("https://example.org/").Set("StructParent", "7"))});
  doc.SetTree("ParentTree", "<</Nums[0 $stray]>>");
  ReadBack file(doc.Write());
  EXPECT_THAT(ParentTreeProblems(file.Pdf()), ElementsAre(HasSubstr("object "), HasSubstr("not in the tree")));
}

TEST(FileProblems, ReportsContentThatEndsInsideAString) {
  TestDocument doc;
  doc.AddPage().Add(Ops("BT (never closed"));
  EXPECT_THAT(FileProblems(doc.Write()), testing::Not(IsEmpty()));
}

TEST(OpenDocument, GivesTheTreeItWasOpenedWith) {
  TestDocument doc;
  doc.Tree({Element("P").Text(doc.AddPage(), "a")});
  OpenDocument open(doc.Write());
  EXPECT_NE(open.Handle(), nullptr);
  EXPECT_EQ(SavedTree(open), "P\n  mcid 0 page 1\n");
}

}  // namespace
}  // namespace tgx::test
