#include "src/common/CPdfContentParser.h"

#include <gmock/gmock.h>

#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"

namespace tgx {
namespace {

using test::Marked;
using test::Text;

class CPdfContentParserTest : public test::StructureTest {
 protected:
  CPdfContentParserTest() {
    doc.Stream("map", "<<>>", "1 begincodespacerange <00><FF> endcodespacerange 1 beginbfrange <00><FF><0000> endbfrange");
  }
  test::Page& AddPage() {
    return doc.AddPage().Resource("Font", "F1", "<</Type/Font/Subtype/Type1/BaseFont/Helvetica/ToUnicode $map>>");
  }
  ContentTextRecord Find(ASInt32 mcid, ASInt32 page = 0) {
    CPdfContentParser parser;
    parser.SetDoc(Open());
    parser.Parse();
    ContentTextRecord record;
    parser.FindRecord(mcid, page, record);
    return record;
  }
};

TEST_F(CPdfContentParserTest, FindsTheTextOfAnMcidOnAPage) {
  AddPage().Add(Marked("P", "<</MCID 4>>", {Text("one")}));
  AddPage().Add(Marked("P", "<</MCID 4>>", {Text("two")}));
  const ContentTextRecord record = Find(4, 1);
  EXPECT_EQ(record.mcid, 4);
  EXPECT_EQ(record.page, 1);
  EXPECT_EQ(record.text, u"two");
}

TEST_F(CPdfContentParserTest, EmptiesTheRecordWhereThereIsNone) {
  AddPage().Add(Marked("P", "<</MCID 4>>", {Text("one")}));
  CPdfContentParser parser;
  parser.SetDoc(Open());
  parser.Parse();
  ContentTextRecord record = {4, 0, u"old"};
  parser.FindRecord(5, 0, record);
  EXPECT_EQ(record.mcid, -1);
  EXPECT_EQ(record.page, -1);
  EXPECT_EQ(record.text, u"");
}

TEST_F(CPdfContentParserTest, IgnoresTextOutsideOfMarkedContent) {
  AddPage().Add(Text("bare"));
  EXPECT_EQ(Find(-1).page, -1);
}

TEST_F(CPdfContentParserTest, CountsTextToTheInnermostContainer) {
  AddPage().Add(Marked("P", "<</MCID 0>>", {Marked("Span", "<</MCID 1>>", {Text("inner")}), Text("outer")}));
  EXPECT_EQ(Find(0).text, u"outer");
  EXPECT_EQ(Find(1).text, u"inner");
}

TEST_F(CPdfContentParserTest, KeepsTheFirstTextThoughItCannotBeRead) {
  AddPage()
      .Resource("Font", "F2", "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>")
      .Add(Marked("P", "<</MCID 0>>", {Text("no").Font("F2"), Text("yes")}));
  EXPECT_EQ(Find(0).text, u"");
  EXPECT_EQ(Find(0).mcid, 0);
}

TEST_F(CPdfContentParserTest, ForgetsTheDocumentBefore) {
  AddPage().Add(Marked("P", "<</MCID 0>>", {Text("one")}));
  CPdfContentParser parser;
  parser.SetDoc(Open());
  parser.Parse();
  test::TestDocument other;
  other.AddPage();
  test::OpenDocument open(other.Write());
  parser.SetDoc(open.Handle());
  parser.Parse();
  ContentTextRecord record;
  parser.FindRecord(0, 0, record);
  EXPECT_EQ(record.mcid, -1);
  parser.SetDoc(Opened().Handle());
}

TEST_F(CPdfContentParserTest, HoldsContentsUntilItTakesAnotherDocument) {
  AddPage().Add(Marked("P", "<</MCID 0>>", {Text("one")}));
  Open();
  test::TestDocument other;
  other.AddPage();
  test::OpenDocument open(other.Write());
  const test::CountingHost host;
  const test::HostSession session(host.Tables());
  CPdfContentParser parser;
  parser.SetDoc(Opened().Handle());
  parser.Parse();
  EXPECT_EQ(host.Open("contents"), 1);
  parser.SetDoc(nullptr);
  EXPECT_EQ(host.Open("contents"), 1) << "null is ignored";
  parser.SetDoc(open.Handle());
  EXPECT_EQ(host.Open("contents"), 0);
}

TEST_F(CPdfContentParserTest, KnowsPagesByTheirDictionaries) {
  AddPage();
  AddPage();
  CPdfContentParser parser;
  parser.SetDoc(Open());
  parser.Parse();
  EXPECT_EQ(parser.PageNumberOf(PDPageGetCosObj(PDDocAcquirePage(Opened().Handle(), 1))), 1);
  EXPECT_EQ(parser.PageNumberOf(CosNewNull()), -1);
}

class CPdfDocumentTest : public test::StructureTest {};

TEST_F(CPdfDocumentTest, HoldsOneReferenceOnItsDocument) {
  doc.AddPage();
  Open();
  const test::CountingHost host;
  const test::HostSession session(host.Tables());
  {
    CPdfDocument document;
    EXPECT_EQ(document.GetDoc(), nullptr);
    document.SetDoc(Opened().Handle());
    EXPECT_EQ(host.Open("document references"), 1);
    document.SetDoc(Opened().Handle());
    EXPECT_EQ(host.Open("document references"), 1) << "that on the document before is given back";
    document.SetDoc(nullptr);
    EXPECT_EQ(document.GetDoc(), Opened().Handle()) << "null is ignored";
    EXPECT_EQ(host.Open("document references"), 1);
  }
  EXPECT_EQ(host.Open("document references"), 0);
}

}  // namespace
}  // namespace tgx
