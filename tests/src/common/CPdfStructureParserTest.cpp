#include "src/common/CPdfStructureParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/support/DataFiles.h"
#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/Paths.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Annotation;
using test::Element;
using test::kSuccess;
using test::Marked;
using test::OpenDocument;
using test::Operation;
using test::Ops;
using test::Page;
using test::ReadBack;
using test::TestDocument;
using test::Text;
using testing::ElementsAre;

constexpr int kDescribeLinks = 1;
constexpr char kUri[] = "https://example.org/";
// An annotation without "Contents".
constexpr char kNone[] = "none";

/// "Contents" of the links of all pages, in UTF-8. A text that was written has two zero bytes behind it; they are not shown.
std::vector<std::string> Contents(const std::string& pdf) {
  std::vector<std::string> contents;
  ReadBack file(pdf);
  for (const QPDFObjectHandle& page : file->getAllPages()) {
    QPDFObjectHandle annotations = QPDFObjectHandle(page).getKey("/Annots");
    if (!annotations.isArray()) continue;
    for (QPDFObjectHandle annotation : annotations.getArrayAsVector()) {
      QPDFObjectHandle value = annotation.getKey("/Contents");
      std::string text = value.isString() ? value.getUTF8Value() : value.unparse();
      if (value.isNull()) text = kNone;
      if (text.ends_with('\0')) text.pop_back();
      contents.push_back(text);
    }
  }
  return contents;
}

class LinkContents : public testing::Test {
 protected:
  LinkContents() {
    CPdfStructureParser::LinkDepth() = 0;
    doc.Stream("map", "<<>>", "1 begincodespacerange <00><FF> endcodespacerange 1 beginbfrange <00><FF><0000> endbfrange");
  }

  /// A page whose text can be read: its font has a ToUnicode map.
  Page& AddPage() {
    Page& added = doc.AddPage();
    added.Resource("Font", "F1", "<</Type/Font/Subtype/Type1/BaseFont/Helvetica/ToUnicode $map>>");
    return added;
  }
  /// A link annotation with this action.
  Annotation Link(const std::string& action) { return page.Annotate("Link").Set("A", action); }

  /// For documents with damage that stays.
  std::string DescribeDamaged(const std::vector<Element>& tree) {
    doc.Tree(tree);
    OpenDocument open(doc.Write());
    EXPECT_EQ(open.Action(kDescribeLinks), kSuccess);
    return open.Save();
  }
  std::string Describe(const std::vector<Element>& tree) {
    std::string saved = DescribeDamaged(tree);
    test::ExpectSound(saved);
    return saved;
  }
  std::vector<std::string> ContentsAfter(const std::vector<Element>& tree) { return Contents(Describe(tree)); }

  TestDocument doc;
  Page& page = AddPage();
};

TEST_F(LinkContents, EndsWhereWhatManyOpenLinksGatheredWouldFillTheMemory) {
  // The depth is below 0 after the paragraphs, so the links stay open until the nest brings it back.
  const std::u16string text(1600, u'x');
  std::vector<Element> tree;
  for (int i = 0; i < 5; ++i) tree.emplace_back("P");
  for (int i = 0; i < 300; ++i) {
    tree.push_back(Element("Link").Alt(std::u16string_view(text)).Object(page.Annotate("Link")));
  }
  Element nest("Span");
  Element innermost = nest;
  for (int i = 0; i < 5; ++i) innermost = innermost.AddNew("Span");
  tree.push_back(nest);
  doc.Tree(tree);
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kDescribeLinks), test::HardFailure("the texts of the links are longer than 256 MiB in all"));
}

TEST_F(LinkContents, AreTheTextAndTheTargetInParentheses) {
  EXPECT_THAT(ContentsAfter({Element("P")({Element("Link").Text(page, "here").Object(page.Link(kUri))})}),
              ElementsAre("here(https://example.org/)"));
}

TEST_F(LinkContents, EndWithTwoZeroBytes) {
  ReadBack file(Describe({Element("Link").Text(page, "a").Object(page.Link("b"))}));
  EXPECT_EQ(file.Page(1).getKey("/Annots").getArrayItem(0).getKey("/Contents").getStringValue(),
            std::string("\xFE\xFF\0a\0(\0b\0)\0\0", 12));
}

TEST_F(LinkContents, StayWhereTheyAreNotEmpty) {
  EXPECT_THAT(ContentsAfter({Element("Link").Text(page, "here").Object(page.Link(kUri).Set("Contents", "(mine)"))}),
              ElementsAre("mine"));
}

TEST_F(LinkContents, TakeThePlaceOfEmptyOnes) {
  EXPECT_THAT(ContentsAfter({Element("Link").Text(page, "here").Object(page.Link(kUri).Set("Contents", "()"))}),
              ElementsAre("here(https://example.org/)"));
}

TEST_F(LinkContents, StayWhereTheyAreNoText) {
  EXPECT_THAT(ContentsAfter({Element("Link").Text(page, "here").Object(page.Link(kUri).Set("Contents", "/Mine"))}),
              ElementsAre("/Mine"));
}

TEST_F(LinkContents, NameTheFileOfALaunchAction) {
  EXPECT_THAT(ContentsAfter({Element("Link").Text(page, "a").Object(Link("<</S/Launch/F(report.pdf)>>"))}),
              ElementsAre("a(report.pdf)"));
}

TEST_F(LinkContents, NameTheFileOfAFileSpecification) {
  EXPECT_THAT(
      ContentsAfter({Element("Link").Text(page, "a").Object(Link("<</S/Launch/F<</Type/Filespec/F(report.pdf)>>>>"))}),
      ElementsAre("a(report.pdf)"));
}

TEST_F(LinkContents, NameNoTargetOfOtherActions) {
  EXPECT_THAT(ContentsAfter({Element("P")({Element("Link").Text(page, "a").Object(Link("<</S/Named/N/NextPage>>")),
                                           Element("Link").Text(page, "b").Object(Link("<</S/GoTo/D(there)>>")),
                                           Element("Link").Text(page, "c").Object(page.Annotate("Link"))})}),
              ElementsAre("a", "b", "c"));
}

TEST_F(LinkContents, NameNoTargetOfDamagedActions) {
  EXPECT_THAT(ContentsAfter({Element("P")({Element("Link").Text(page, "a").Object(Link("(no dictionary)")),
                                           Element("Link").Text(page, "b").Object(Link("<</S(URI)/URI(x)>>")),
                                           Element("Link").Text(page, "c").Object(Link("<</S/URI/URI/x>>")),
                                           Element("Link").Text(page, "d").Object(Link("<</S/URI>>")),
                                           Element("Link").Text(page, "e").Object(Link("<</S/Launch/F 5>>")),
                                           Element("Link").Text(page, "f").Object(Link("<</S/Launch/F<</UF(x)>>>>")),
                                           Element("Link").Text(page, "g").Object(Link("<</URI(x)>>"))})}),
              ElementsAre("a", "b", "c", "d", "e", "f", "g"));
}

TEST_F(LinkContents, HaveNoParenthesesForAnEmptyTarget) {
  EXPECT_THAT(ContentsAfter({Element("Link").Text(page, "a").Object(page.Link(""))}), ElementsAre("a"));
}

TEST_F(LinkContents, NameTheTargetInTheEncodingsOfTexts) {
  EXPECT_THAT(ContentsAfter({Element("P")({Element("Link").Object(Link("<</S/URI/URI<FEFF00E4D83DDE00>>>")),
                                           Element("Link").Object(Link("<</S/URI/URI<E480>>>"))})}),
              ElementsAre("(\u00E4\U0001F600)", "(\u00E4\u2022)"));
}

TEST_F(LinkContents, AreWrittenThoughTheHostCannotReadTheTarget) {
  doc.Tree({Element("Link").Text(page, "a").Object(page.Link(kUri))});
  OpenDocument open(doc.Write());
  const test::HookedHost host(test::EmbeddedTables(), [](const test::HostCall& call) {
    if (call.Is(Operation::ASTextSetPDText)) test::RaiseAsHost(kASInternalError, "no");
  });
  {
    const test::HostSession session(host.Tables());
    EXPECT_EQ(open.Action(kDescribeLinks), kSuccess);
  }
  EXPECT_THAT(Contents(open.Save()), ElementsAre("a"));
}

TEST_F(LinkContents, HaveTheTextsOfAllMarkedContent) {
  EXPECT_THAT(
      ContentsAfter(
          {Element("Link").Text(page, "a").Text(page, "b").Add(Element("Span").Text(page, "c")).Object(page.Link("x"))}),
      ElementsAre("abc(x)"));
}

TEST_F(LinkContents, HaveTheFirstTextOfAPieceOfMarkedContentAlone) {
  EXPECT_THAT(ContentsAfter({Element("Link")
                                 .Mark(page, Ops("BT /F1 12 Tf 72 700 Td (one) Tj ET BT /F1 12 Tf 72 680 Td (two) Tj ET"))
                                 .Object(page.Link("x"))}),
              ElementsAre("one(x)"));
}

TEST_F(LinkContents, LackTextThatStandsInContentNestedInTheMarkedContent) {
  EXPECT_THAT(
      ContentsAfter({Element("Link").Mark(page, Marked("Span", "<</Lang(en)>>", {Text("inner")})).Object(page.Link("x"))}),
      ElementsAre("(x)"));
}

TEST_F(LinkContents, TellContentOfTheSameMcidApartByPage) {
  Page& second = AddPage();
  EXPECT_THAT(ContentsAfter({Element("P")({Element("Link").Text(page, "one").Object(page.Link("x")),
                                           Element("Link").Text(second, "two").Object(second.Link("y"))})}),
              ElementsAre("one(x)", "two(y)"));
}

TEST_F(LinkContents, PassOverContentWithoutAPage) {
  EXPECT_THAT(Contents(DescribeDamaged(
                  {Element("Link").RawKid("0").RawKid("<</Type/MCR/MCID 0/Pg $catalog>>").Object(page.Link("x"))})),
              ElementsAre("(x)"));
}

TEST_F(LinkContents, TakeTextWithoutAnMcidForTheContentOfAForm) {
  doc.Stream("form", "<</Type/XObject/Subtype/Form/BBox[0 0 9 9]>>", "");
  page.Add(Marked("Artifact", "", {Text("art")}));
  EXPECT_THAT(ContentsAfter({Element("Link").RawKid("<</Type/MCR/Pg $page1/MCID 0/Stm $form>>").Object(page.Link("x"))}),
              ElementsAre("art(x)"));
}

TEST_F(LinkContents, LackTextWhoseFontHasNoToUnicodeMap) {
  page.Resource("Font", "F2", "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
  EXPECT_THAT(ContentsAfter({Element("Link")
                                 .Mark(page, Ops("BT /F1 12 Tf 72 700 Td (ab) Tj /F2 12 Tf (cd) Tj /F1 12 Tf (ef) Tj ET"))
                                 .Object(page.Link("x"))}),
              ElementsAre("ab(x)"))
      << "and nothing behind it";
}

TEST_F(LinkContents, TakeOneByteCodesForTheCharactersThemselves) {
  EXPECT_THAT(ContentsAfter({Element("Link").Text(page, "\xE4").Object(page.Link("x"))}), ElementsAre("\u00E4(x)"));
}

TEST_F(LinkContents, TranslateLongerCodes) {
  doc.Stream("wide", "<<>>",
             "1 begincodespacerange <0000><FFFF> endcodespacerange "
             "3 beginbfchar <0001><00E4> <0002><D83DDE00> <0003><006600660069> endbfchar");
  page.Resource("Font", "F2",
                "<</Type/Font/Subtype/Type0/BaseFont/Wide/Encoding/Identity-H/ToUnicode $wide/DescendantFonts[<</Type/Font"
                "/Subtype/CIDFontType2/BaseFont/Wide/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>"
                "/FontDescriptor<</Type/FontDescriptor/FontName/Wide/Flags 4>>>>]>>");
  EXPECT_THAT(
      ContentsAfter(
          {Element("Link").Mark(page, Ops("BT /F2 12 Tf 72 700 Td <00010002000900030001> Tj ET")).Object(page.Link("x"))}),
      ElementsAre("\u00E4\U0001F600ffi\u00E4(x)"))
      << "a code that stands for nothing gives nothing";
}

TEST_F(LinkContents, HaveTheAltOfElementsInsideBetweenBlanks) {
  EXPECT_THAT(ContentsAfter(
                  {Element("Link").Text(page, "a").Add(Element("Figure").Alt(u"b").Text(page, "c")).Object(page.Link("x"))}),
              ElementsAre("a b c(x)"));
}

TEST_F(LinkContents, LackTheAltOfTheLinkElement) {
  EXPECT_THAT(ContentsAfter({Element("Link").Alt(u"b").Text(page, "a").Object(page.Link("x"))}), ElementsAre("a(x)"));
}

TEST_F(LinkContents, TakeEveryAltForUtf16WithAMark) {
  EXPECT_THAT(ContentsAfter({Element("P")({Element("Link").Add(Element("Span").Alt("abcd")).Object(page.Link("x")),
                                           Element("Link").Add(Element("Span").Alt("abcde")).Object(page.Link("x")),
                                           Element("Link").Add(Element("Span").Alt("a")).Object(page.Link("x"))})}),
              ElementsAre(" \u6364 (x)", " \u6463 (x)", "  (x)"))
      << "the last two bytes of an odd number are not swapped";
}

TEST_F(LinkContents, GoToAllAnnotationsOfTheLink) {
  EXPECT_THAT(ContentsAfter({Element("Link").Object(page.Link("x")).Text(page, "a").Object(page.Link("y"))}),
              ElementsAre("a(x)", "a(y)"));
}

TEST_F(LinkContents, AreWrittenToTheLastAnnotationFirst) {
  doc.Tree({Element("Link").Object(page.Link("x")).Object(page.Link("y"))});
  OpenDocument open(doc.Write());
  std::vector<std::uint64_t> written;
  const test::HookedHost host(test::EmbeddedTables(), [&](const test::HostCall& call) {
    if (call.Is(Operation::CosDictPutKeyString)) written.push_back(call.values[0]);
  });
  const test::HostSession session(host.Tables());
  EXPECT_EQ(open.Action(kDescribeLinks), kSuccess);
  ASSERT_EQ(written.size(), 2U);
  const PDPage first = PDDocAcquirePage(open.Handle(), 0);
  const auto bits = [](PDAnnot annotation) { return std::uint64_t{annotation.b} << 32U | annotation.a; };
  EXPECT_THAT(written, ElementsAre(bits(PDPageGetAnnot(first, 1)), bits(PDPageGetAnnot(first, 0))));
}

TEST_F(LinkContents, OfLinksInOneAnotherAreTheSame) {
  EXPECT_THAT(ContentsAfter({Element("Link")
                                 .Text(page, "a")
                                 .Add(Element("Link").Text(page, "b").Object(page.Link("y")))
                                 .Object(page.Link("x"))}),
              testing::UnorderedElementsAre("ab(x)", "ab(y)"));
}

TEST_F(LinkContents, AreTheTextAloneForOtherAnnotations) {
  EXPECT_THAT(ContentsAfter({Element("Link").Text(page, "a").Object(page.Annotate("Text").Set("A", "<</S/URI/URI(x)>>"))}),
              ElementsAre("a"));
}

TEST_F(LinkContents, AreNotWrittenToWhatIsNoAnnotation) {
  doc.Object("other", "<</Type/Other/Subtype/Link>>");
  const std::string saved = DescribeDamaged({Element("Link")
                                                 .Text(page, "a")
                                                 .Object(page.Annotate("Link").Set("Type", "null"))
                                                 .Object(page.Annotate("Link").Set("Type", "(Annot)"))
                                                 .Object(page.Annotate("Link").Set("Subtype", "null"))
                                                 .RawKid("<</Type/OBJR/Pg $page1/Obj $other>>")
                                                 .RawKid("<</Type/OBJR/Pg $page1/Obj 9999 0 R>>")});
  EXPECT_THAT(Contents(saved), ElementsAre(kNone, kNone, kNone));
  EXPECT_EQ(saved.find("Contents("), std::string::npos);
}

TEST_F(LinkContents, AreNotWrittenForTypesThatAreOnlyMappedToLink) {
  doc.RoleMap({{"Hyperlink", "Link"}});
  EXPECT_THAT(ContentsAfter({Element("Hyperlink").Text(page, "a").Object(page.Link("x"))}), ElementsAre(kNone));
}

TEST_F(LinkContents, AreNotWrittenWithoutAStructureTree) {
  page.Add(Text("a"));
  page.Link("x");
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kDescribeLinks), kSuccess);
  EXPECT_THAT(Contents(open.Save()), ElementsAre(kNone));
}

TEST_F(LinkContents, SurviveTypesWithTheNamesOfKinds) {
  EXPECT_THAT(ContentsAfter({Element("Link")
                                 .Text(page, "a")
                                 .Add(Element("StructElem").Text(page, "b"))
                                 .Add(Element("OBJR"))
                                 .Add(Element("MC"))
                                 .Object(page.Link("x"))}),
              ElementsAre("ab(x)"));
}

TEST_F(LinkContents, LeaveNothingOpenButThePages) {
  doc.Tree({Element("Link").Text(page, "a").Object(page.Link("x"))});
  OpenDocument open(doc.Write());
  const test::CountingHost host;
  const test::HostSession session(host.Tables());
  EXPECT_EQ(open.Action(kDescribeLinks), kSuccess);
  EXPECT_THAT(host.Uneven(), ElementsAre("pages +1"));
}

using LinkDepth = LinkContents;

TEST_F(LinkDepth, LetsLinksSideBySideEnd) {
  EXPECT_THAT(ContentsAfter({Element("Document")({Element("P")({Element("Link").Text(page, "a").Object(page.Link("x")),
                                                                Element("Link").Text(page, "b").Object(page.Link("y"))})})}),
              ElementsAre("a(x)", "b(y)"));
}

TEST_F(LinkDepth, KeepsLinksFromEndingOnceAnElementHasEndedOutside) {
  EXPECT_THAT(ContentsAfter({Element("Document")(
                  {Element("H1"), Element("P")({Element("Link").Text(page, "a").Object(page.Link("x"))})})}),
              ElementsAre(kNone));
  EXPECT_EQ(CPdfStructureParser::LinkDepth(), -4) << "one for each element";
}

TEST_F(LinkDepth, KeepsTheLinksOfASecondParagraphFromEnding) {
  EXPECT_THAT(ContentsAfter({Element("P")({Element("Link").Text(page, "a").Object(page.Link("x"))}),
                             Element("P")({Element("Link").Text(page, "b").Object(page.Link("y"))})}),
              ElementsAre("a(x)", kNone));
}

TEST_F(LinkDepth, LivesOnFromRunToRun) {
  doc.Tree({Element("P")({Element("Link").Text(page, "a").Object(page.Link("x"))})});
  const std::string bytes = doc.Write();
  OpenDocument first(bytes);
  EXPECT_EQ(first.Action(kDescribeLinks), kSuccess);
  EXPECT_THAT(Contents(first.Save()), ElementsAre("a(x)"));
  EXPECT_EQ(CPdfStructureParser::LinkDepth(), -1);
  OpenDocument second(bytes);
  EXPECT_EQ(second.Action(kDescribeLinks), kSuccess);
  EXPECT_THAT(Contents(second.Save()), ElementsAre(kNone));
}

TEST_F(LinkDepth, LetsAnOpenLinkGatherUntilAnElementEndsAtZero) {
  EXPECT_THAT(
      ContentsAfter({Element("Span"), Element("Link").Text(page, "a").Object(page.Link("x")),
                     Element("Sect")({Element("P").Text(page, "b").Object(page.Link("y")), Element("P").Text(page, "c")})}),
      ElementsAre("ab(x)", "ab(y)"));
}

TEST_F(LinkDepth, EndsALinkWithAnElementInsideThatEndsAtZero) {
  EXPECT_THAT(ContentsAfter({Element("Span"), Element("Link")
                                                  .Text(page, "a")
                                                  .Object(page.Link("x"))
                                                  .Add(Element("Span").Text(page, "b"))
                                                  .Text(page, "c")
                                                  .Object(page.Link("y"))}),
              ElementsAre("ab(x)", kNone));
}

TEST_F(LinkDepth, GoesAroundTheEndOfItsRange) {
  CPdfStructureParser::LinkDepth() = std::numeric_limits<std::int32_t>::min();
  Describe({Element("P")});
  EXPECT_EQ(CPdfStructureParser::LinkDepth(), std::numeric_limits<std::int32_t>::max());
}

/// Documents with all their first links in one paragraph, see tests/data/links/README.md.
class ExportedLinks : public LinkContents {
 protected:
  static std::string Bytes(const std::string& name) { return test::ReadBytes(test::DataPath("links/" + name)); }
  static std::vector<std::string> Described(const std::string& bytes) {
    OpenDocument open(bytes);
    EXPECT_EQ(open.Action(kDescribeLinks), kSuccess);
    const std::string saved = open.Save();
    test::ExpectSound(saved);
    return Contents(saved);
  }
};

TEST_F(ExportedLinks, OfChromiumGetTheirContents) {
  EXPECT_THAT(Contents(Bytes("chromium.pdf")), testing::Each(kNone));
  const std::string sheet = "Sheet four of the map(https://example.org/map?sheet=4)";
  // The image's "Alt" is no UTF-16.
  const std::string crest = " \u2065\u7263\u7365 (https://example.org/crest)";
  EXPECT_THAT(Described(Bytes("chromium.pdf")),
              ElementsAre("The ferry(https://example.org/ferry)", sheet, sheet, sheet,
                          "Write to the quay(mailto:quay@example.org)", "Tides", crest, crest, kNone));
}

TEST_F(ExportedLinks, OfLibreOfficeKeepTheContentsThatItGivesThem) {
  EXPECT_THAT(Described(Bytes("writer.pdf")), testing::ContainerEq(Contents(Bytes("writer.pdf"))));
}

TEST_F(ExportedLinks, OfLibreOfficeGetTheCodesOfItsFontsWhereTheyHaveNoContents) {
  ReadBack file(Bytes("writer.pdf"));
  for (QPDFObjectHandle annotation : file.Page(1).getKey("/Annots").getArrayAsVector()) annotation.removeKey("/Contents");
  // Its fonts number the characters that they have, in one byte: "Berths" is 16, 3, 6, 15, 2, 11.
  EXPECT_THAT(Described(test::WriteToString(file.Pdf())),
              testing::UnorderedElementsAre(
                  testing::EndsWith("(https://example.org/harbour)"), testing::EndsWith("(https://example.org/fees?year=3)"),
                  testing::EndsWith("(mailto:master@example.org)"), "\x10\x03\x06\x0F\x02\x0B", kNone));
}

}  // namespace
}  // namespace tgx
