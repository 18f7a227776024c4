#include "src/actions/Toc/TocProcessorV2.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "src/logging/SimpleFileLogger.h"
#include "tests/src/actions/Toc/TocFixture.h"
#include "tests/support/StateFolder.h"

namespace tgx {
namespace {

using test::Element;
using test::Item;
using test::kSuccess;
using test::kToc;
using test::OpenDocument;
using test::ReadBack;
using test::Toc;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class TocProcessorV2Test : public test::TocTest {
 protected:
  /// The outline of a "Div" of these kids and a placeholder after the action.
  std::string Rebuilt(const std::vector<Element>& kids, const std::string& metadata) {
    doc.Tree({Element("Div")(kids).Add(Placeholder())});
    return OutlineAfter(metadata);
  }
  /// The kids of that "Div".
  static std::string Div(const std::string& kids) { return "Div(" + kids + ")"; }
};

TEST_F(TocProcessorV2Test, BuildsANestedListUnderTheTitle) {
  doc.Tree({Element("Document")({
      Element("Div")(
          {Element("P").Text(page, "Contents"), Placeholder(), Line("1 Birds"), Line("1.1 Owls"), Line("2 Fish")}),
      Element("P").Text(page, "Contents"),
  })});
  EXPECT_EQ(OutlineAfter(Metadata(Entry(1, "1 Birds") + Entry(2, "1.1 Owls") + Entry(1, "2 Fish"), "Contents")),
            "Document(Div(H1(Contents) TOC(" + Item("1 Birds", Item("1.1 Owls")) + " " + Item("2 Fish") + ")) P(Contents))");
}

TEST_F(TocProcessorV2Test, TakesThePlaceholderAndItsContentAway) {
  page.Add(test::Text("before"));
  const std::string saved = [&] {
    doc.Tree({Element("Div")({Placeholder(), Element("Figure").Alt(u"a picture").Image(page, 2, 2)})});
    return SavedAfter(Metadata(""));
  }();
  ReadBack file(saved);
  EXPECT_EQ(test::TreeText(file.Pdf()), "Div\n  Figure alt=u\"a picture\"\n    mcid 1 page 1\n  TOC\n");
  EXPECT_THAT(file.Content(1), Not(HasSubstr("/MCID 0")));
  EXPECT_THAT(file.Content(1), HasSubstr("/MCID 1"));
  EXPECT_THAT(file.Content(1), HasSubstr("(before)"));
}

TEST_F(TocProcessorV2Test, FindsThePlaceholderByNineCharactersAnywhereInItsAlt) {
  for (const char16_t* alt : {u"TOC_FRAME", u"a TOC_FRAME b", u"TOC_FRAME_2"}) {
    test::TestDocument other;
    other.AddPage();
    other.Tree({Element("Div")({Element("P").Add(Element("Figure").Alt(alt))})});
    OpenDocument open(other.Write());
    EXPECT_EQ(open.Action(kToc, "/no/file"), kSuccess);
    EXPECT_EQ(test::Outline(open), "Div(TOC)");
  }
}

TEST_F(TocProcessorV2Test, FindsNoPlaceholderInOtherTexts) {
  const std::vector<test::Bytes> texts = {u"TOC_FRAM", u"toc_frame", u"TOC_ FRAME",   "TOC_FRAME", "",
                                          "T",         "\xFE\xFF",   "\xFE\xFF\\000", "TOC",       "\xFF\xFET"};
  for (const test::Bytes& alt : texts) {
    test::TestDocument other;
    other.AddPage();
    other.Tree({Element("Div")({Element("P").Add(Element("Figure").Alt(alt))})});
    OpenDocument open(other.Write());
    EXPECT_EQ(open.Action(kToc, "/no/file"), kSuccess);
    EXPECT_EQ(test::Outline(open), "Div(P(Figure))") << alt.value;
  }
}

TEST_F(TocProcessorV2Test, DoesNotLookAtTheByteOrderMarkOfAnAlt) {
  std::string alt = "xx";
  for (const char character : std::string("TOC_FRAME")) alt += {'\0', character};
  doc.Tree({Element("Div")({Element("P").Add(Element("Figure").Alt(alt))})});
  EXPECT_EQ(OutlineAfter(""), "Div(TOC)");
}

TEST_F(TocProcessorV2Test, PassesOverAPlaceholderInATopLevelElement) {
  doc.Tree({Element("Div")({Element("Figure").Alt(u"TOC_FRAME"), Line("a")}), Element("Figure").Alt(u"TOC_FRAME")});
  EXPECT_EQ(OutlineAfter(Metadata(Entry(1, "a"))), "Div(Figure P(Link(* a))) Figure");
}

TEST_F(TocProcessorV2Test, LeavesADocumentWithoutAPlaceholderAlone) {
  doc.Tree({Element("Div")({Element("P").Text(page, "Contents"), Line("a"), Element("P")})});
  const std::string before = OpenDocument(doc.Write()).Save();
  EXPECT_EQ(SavedAfter(Metadata(Entry(1, "a"), "Contents")), before);
}

TEST_F(TocProcessorV2Test, DoesNothingWithoutAStructureTree) {
  page.Add(test::Text("text"));
  EXPECT_EQ(OutlineAfter(Metadata(Entry(1, "a"))), "no tree");
}

TEST_F(TocProcessorV2Test, TakesOnePlaceholderOfEachTopLevelElement) {
  doc.Tree({Element("Part")({Element("Div")({Placeholder(), Line("a")}), Element("Div")({Placeholder(), Line("b")})}),
            Element("Part")({Element("Div")({Placeholder(), Line("c")})})});
  EXPECT_EQ(OutlineAfter(Metadata(Entry(1, "a") + Entry(1, "b") + Entry(1, "c"))),
            "Part(Div(" + Toc(Item("a")) + ") Div(P(Figure(image)) P(Link(* b)))) Part(Div(" + Toc(Item("c")) + "))");
}

TEST_F(TocProcessorV2Test, AppendsWhatIsNoLineToTheLineBeforeIt) {
  EXPECT_EQ(Rebuilt({Element("Note").Text(page, "first"), Line("a"), Line("b").Text(page, "two kids"), Line("c"),
                     Element("Span").Text(page, "7")},
                    Metadata(Entry(1, "a") + Entry(1, "b") + Entry(1, "c"))),
            Div("Note(first) TOC(TOCI(P(Reference(Link(* a))) P(Link(* b) two kids)) TOCI(P(Reference(Link(* c))) "
                "Span(7)))"));
}

TEST_F(TocProcessorV2Test, TakesOnlyLinksOfObjectAndContentForLines) {
  const auto link = [&](const char* type) { return Element(type).Object(page.Link("u")); };
  EXPECT_EQ(Rebuilt({Element("P").Add(Element("Link").Text(page, "a")),                    // one kid
                     Element("P").Add(link("Link").Object(page.Link("u"))),                // an object second
                     Element("P").Add(link("Link").Add(Element("Span").Text(page, "a"))),  // an element second
                     Element("P").Add(link("Reference").Text(page, "a")),                  // of another type
                     link("Link").Text(page, "a"),                                         // not inside an element
                     Element("P").Text(page, "a")},
                    Metadata(Entry(1, "a"))),
            Div("P(Link(a)) P(Link(* *)) P(Link(* Span(a))) P(Reference(* a)) Link(* a) P(a) TOC"));
}

TEST_F(TocProcessorV2Test, TakesTypesMappedToLinkForNoLinks) {
  doc.RoleMap({{"Verweis", "Link"}});
  EXPECT_EQ(Rebuilt({Element("P").Add(Element("Verweis").Object(page.Link("u")).Text(page, "a"))}, Metadata(Entry(1, "a"))),
            Div("P(Verweis(* a)) TOC"));
}

TEST_F(TocProcessorV2Test, RecognisesLinesWhateverStandsAroundTheirText) {
  EXPECT_EQ(Rebuilt({Line("1  Birds ... 7")}, Metadata(Entry(1, "Birds"))), Div(Toc(Item("1  Birds ... 7"))));
}

TEST_F(TocProcessorV2Test, LetsTheFirstEntryThatOccursWinNotTheLongest) {
  EXPECT_EQ(Rebuilt({Line("x"), Line("Bird cages")}, Metadata(Entry(1, "x") + Entry(2, "Bird") + Entry(1, "Bird cages"))),
            Div(Toc(Item("x", Item("Bird cages")))));
}

TEST_F(TocProcessorV2Test, TakesAnEntryWithoutTextForEveryLineThatHasAny) {
  EXPECT_EQ(Rebuilt({Line("a"), Line(""), Line("b")}, Metadata(Entry(1, ""))),
            Div("TOC(TOCI(P(Reference(Link(* a))) P(Link(* image))) " + Item("b") + ")"));
}

TEST_F(TocProcessorV2Test, TakesAnyOfTheTextsOfAnEntry) {
  const std::string entry =
      "<TOC_Entry level='1'><TOC_EntryText>a</TOC_EntryText><Other>b</Other><TOC_EntryText>c</TOC_EntryText></TOC_Entry>";
  EXPECT_EQ(Rebuilt({Line("a"), Line("b"), Line("c"), Line("d")}, Metadata(entry)),
            Div("TOC(" + Item("a") + " " + Item("b") + " TOCI(P(Reference(Link(* c))) P(Link(* d))))"));
}

// A font with codes for a tab and a carriage return.
const char kFontWithControls[] =
    "<</Type/Font/Subtype/Type1/BaseFont/Helvetica/Encoding<</Differences[1/uni0009/uni000D]>>>>";

TEST_F(TocProcessorV2Test, PassesOverTabsAndCarriageReturnsInLines) {
  page.Resource("Font", "F2", kFontWithControls);
  const Element line =
      Element("P").Add(Element("Link").Object(page.Link("u")).Mark(page, test::Text("1\1Bi\2rds").Font("F2")));
  EXPECT_EQ(Rebuilt({line}, Metadata(Entry(1, "1Birds&#9;&#13;"))), Div(Toc(Item("1\tBi\rrds"))));
}

TEST_F(TocProcessorV2Test, PassesOverTabsInTitlesOfTheFileButNotOfTheDocument) {
  page.Resource("Font", "F2", kFontWithControls);
  EXPECT_EQ(Rebuilt({Element("P").Mark(page, test::Text("Con\1tents").Font("F2")), Element("P").Text(page, "Contents")},
                    Metadata("", "Conten&#9;ts")),
            Div("P(Con\ttents) H1(Contents) TOC"));
}

TEST_F(TocProcessorV2Test, ComparesInUnicode) {
  page.Resource("Font", "F2", "<</Type/Font/Subtype/Type1/BaseFont/Helvetica/Encoding/WinAnsiEncoding>>");
  const Element line = Element("P").Add(Element("Link")
                                            .Object(page.Link("u"))
                                            .Mark(page, test::Text("\xDC"
                                                                   "ber \x80")
                                                            .Font("F2")));
  doc.Tree({Element("Div")({line, Placeholder()})});
  EXPECT_THAT(OutlineAfter(Metadata(Entry(1, "\u00dcber \u20ac"))), HasSubstr("TOC(TOCI("));
}

TEST_F(TocProcessorV2Test, HasNoLinesOfLevelMinusOne) {
  EXPECT_EQ(Rebuilt({Line("a")}, Metadata(Entry(-1, "a") + Entry(1, "a"))), Div("P(Link(* a)) TOC"));
}

TEST_F(TocProcessorV2Test, UnwrapsATitleThatHoldsOneElement) {
  EXPECT_EQ(
      Rebuilt({Element("P").Add(Element("Span").Text(page, "Contents")), Line("a")}, Metadata(Entry(1, "a"), "Contents")),
      Div("H1(Contents) " + Toc(Item("a"))));
}

TEST_F(TocProcessorV2Test, KeepsATitleThatHoldsMoreOrContent) {
  EXPECT_EQ(Rebuilt({Element("P").Add(Element("Span").Text(page, "Contents")).Text(page, "!")}, Metadata("", "Contents")),
            Div("H1(Span(Contents) !) TOC"));
}

TEST_F(TocProcessorV2Test, TakesTheKidWithWhichTheTitleIsCompleteForIt) {
  EXPECT_EQ(
      Rebuilt({Element("P").Text(page, "Table of "), Element("P").Text(page, "contents"), Element("P").Text(page, "x")},
              Metadata("", "Table of contents")),
      Div("P(Table of ) H1(contents) P(x) TOC"));
}

TEST_F(TocProcessorV2Test, LooksForTheTitlesOfLaterItemsInAllTextThatWasRead) {
  EXPECT_EQ(Rebuilt({Element("P").Text(page, "x"), Element("P").Text(page, "Figures")},
                    Metadata("", "Tables") + Metadata("", "Figures")),
            Div("H1(x) P(Figures) TOC"));
}

TEST_F(TocProcessorV2Test, TakesAMissingTitleForTheFirstText) {
  EXPECT_EQ(
      Rebuilt({Element("P").Image(page, 2, 2), Element("P").Text(page, "x"), Element("P").Text(page, "y")}, "<TOC_Item/>"),
      Div("P(image) H1(x) P(y) TOC"));
}

TEST_F(TocProcessorV2Test, MakesTheLinkOfALineTheHeadingWhenTheLineIsTheTitle) {
  EXPECT_EQ(Rebuilt({Line("a"), Line("b")}, Metadata(Entry(1, "a") + Entry(1, "b"), "a")),
            Div("H1(* a) TOC(TOCI(P(Reference)) " + Item("b") + ")"));
}

TEST_F(TocProcessorV2Test, DropsElementsWithoutKids) {
  EXPECT_EQ(Rebuilt({Element("P"), Line("a"), Element("Span")}, Metadata(Entry(1, "a"))), Div(Toc(Item("a"))));
}

TEST_F(TocProcessorV2Test, KeepsWhatElseTheParentOfThePlaceholderHolds) {
  doc.Tree({Element("Div")({Line("a"), Placeholder().Text(page, "beside")})});
  EXPECT_EQ(OutlineAfter(Metadata(Entry(1, "a"))), Div("TOC(TOCI(P(Reference(Link(* a))) P(beside)))"));
}

TEST_F(TocProcessorV2Test, TakesPlaceholdersWithoutContentOfTheirOwnAway) {
  const auto frame = [] { return Element("Figure").Alt(u"TOC_FRAME"); };
  doc.Tree({Element("Part")({Element("Div")({Element("P").Add(frame())})}),
            Element("Part")({Element("Div")({Element("P").Add(frame().Add(Element("Span").Text(page, "inner")))})}),
            Element("Part")({Element("Div")({Element("P").Add(frame().Object(page.Link("u")))})}),
            Element("Part")({Element("Div")({Element("P").Add(frame().Mcid(page, 77))})}),
            Element("Part")({Element("Div")({Element("P").Add(frame().Set("Pg", "null").RawKid("0"))})})});
  const std::string saved = SavedAfter("");
  EXPECT_EQ(test::TreeText(saved).find("Figure"), std::string::npos);
  EXPECT_THAT(ReadBack(saved).Content(1), HasSubstr("(inner)"));
}

TEST_F(TocProcessorV2Test, FailsBeforeItTouchesTheTreeWhenThePageOfThePlaceholderIsNone) {
  doc.Tree(
      {Element("Div")({Line("a"), Element("P").Add(Element("Figure").Alt(u"TOC_FRAME").Set("Pg", "$tree").RawKid("0"))})});
  OpenDocument open(doc.Write());
  const std::string before = test::Outline(open);
  EXPECT_EQ(open.Action(kToc, "/no/file").result, TGX_FAILED);
  EXPECT_EQ(test::Outline(open), before);
}

TEST_F(TocProcessorV2Test, LeavesMarkedContentOfTheContainerWhereItIs) {
  doc.Tree({Element("Div")
                .Text(page, "first")
                .Add(Line("a"))
                .Text(page, "second")
                .Add(Placeholder())
                .Add(Line("b"))
                .Text(page, "third")});
  EXPECT_EQ(OutlineAfter(Metadata(Entry(1, "a") + Entry(1, "b"))),
            Div("first second third " + Toc(Item("a") + " " + Item("b"))));
}

TEST_F(TocProcessorV2Test, TakesAnnotationsOfTheContainerIntoTheLineBefore) {
  doc.Tree({Element("Div").Object(page.Link("u")).Add(Line("a")).Object(page.Link("v")).Add(Placeholder())});
  EXPECT_EQ(OutlineAfter(Metadata(Entry(1, "a"))), Div("* TOC(TOCI(P(Reference(Link(* a))) *))"));
}

TEST_F(TocProcessorV2Test, LosesNoContentAndNoAnnotationAndHasNoneTwice) {
  test::Page& second = doc.AddPage();
  const Element frame = Element("Figure").Alt(u"TOC_FRAME").Image(doc.AddPage(), 1, 1);
  doc.Tree(
      {Element("Document")
           .Text(page, "outside")
           .Add(
               Element("Div")
                   .Text(second, "loose")
                   .Object(second.Link("u"))
                   .Add(Element("P").Add(Element("Span").Text(page, "Contents")))
                   .Add(Element("P").Add(frame).Text(page, "beside").Object(page.Link("v")))
                   .Add(Line("a"))
                   .Text(page, "1")
                   .Add(Line("b").Text(page, "extra"))
                   .Object(page.Link("w"))
                   .Add(Element("Note").Text(second, "note").Add(Element("Link").Object(second.Link("x")).Text(second, "y")))
                   .Add(Line("c"))
                   .Mcr(second, 99)
                   .Add(Element("P"))
                   .RawKid("<</Type/Strange>>"))});
  auto before = test::Leaves(OpenDocument(doc.Write()).Save());
  const auto isFrame = std::find(before.begin(), before.end(), "mcid 0 page 3");
  ASSERT_NE(isFrame, before.end());
  before.erase(isFrame);
  const std::string saved = SavedAfter(Metadata(Entry(1, "a") + Entry(2, "b") + Entry(2, "c"), "Contents"));
  EXPECT_EQ(test::Leaves(saved), before);
}

TEST_F(TocProcessorV2Test, NestsALevelBelowTheOneBefore) {
  EXPECT_EQ(NestingOf({1, 2, 3, 2, 1}), Div(Toc(Item("a", Item("b", Item("c")) + " " + Item("d")) + " " + Item("e"))));
}

TEST_F(TocProcessorV2Test, GoesBelowTheLineBeforeTheLastOneOfTheSameLevel) {
  EXPECT_EQ(NestingOf({2, 2, 2}), Div(Toc(Item("a", Item("c")) + " " + Item("b"))));
}

TEST_F(TocProcessorV2Test, NestsTheThirdLineOfALevelBelowTheFirst) {
  EXPECT_EQ(NestingOf({1, 2, 2, 2, 2}), Div(Toc(Item("a", Item("b", Item("d")) + " " + Item("c", Item("e"))))));
}

TEST_F(TocProcessorV2Test, PutsALevelWithoutAnEarlierLineIntoTheOutermostList) {
  EXPECT_EQ(NestingOf({1, 3, 7}), Div(Toc(Item("a") + " " + Item("b") + " " + Item("c"))));
}

TEST_F(TocProcessorV2Test, PutsTheFirstLineIntoTheOutermostListWhateverItsLevel) {
  EXPECT_EQ(NestingOf({5, 6}), Div(Toc(Item("a", Item("b")))));
}

TEST_F(TocProcessorV2Test, ReturnsToTheOutermostListForALevelOfTheFirstLine) {
  EXPECT_EQ(NestingOf({3, 1, 3}), Div(Toc(Item("a") + " " + Item("b") + " " + Item("c"))));
}

TEST_F(TocProcessorV2Test, TakesExtremeLevels) {
  EXPECT_EQ(NestingOf({2147483647, -2147483647 - 1, 2147483647}), Div(Toc(Item("a") + " " + Item("b") + " " + Item("c"))));
}

TEST_F(TocProcessorV2Test, KeepsAnUnendingNestingWithinWhatCanBeOpened) {
  Element rows("Div");
  rows.Add(Placeholder());
  std::string entries;
  constexpr int kLines = 600;
  for (int line = 0; line < kLines; ++line) {
    const std::string name = "<" + std::to_string(line) + ">";
    rows.Add(Line(name));
    entries += Entry(line + 1, "&lt;" + std::to_string(line) + "&gt;");
  }
  doc.Tree({rows});
  const std::string outline = OutlineAfter(Metadata(entries));
  for (int line = 0; line < kLines; ++line) EXPECT_THAT(outline, HasSubstr("* <" + std::to_string(line) + ">"));
}

TEST_F(TocProcessorV2Test, RebuildsWithoutLinesWhenTheFileIsWrong) {
  doc.Tree({Element("Div")({Element("P").Text(page, "Contents"), Placeholder(), Line("a")})});
  const std::string good = Metadata(Entry(1, "a"), "Contents");
  std::string utf16 = "\xFF\xFE";
  for (const char character : good) utf16 += {character, '\0'};
  for (const std::string& text :
       {std::string(), std::string("no XML"), std::string("<TOC_Item title='Contents'"), "<Other>" + good + "</Other>",
        Entry(1, "a"), utf16, std::string(1000, '\0'), std::string(10000, '<'), "<a/>" + good.substr(0, 60)}) {
    EXPECT_EQ(OutlineAfter(text), Div("P(Contents) P(Link(* a)) TOC")) << text.substr(0, 40);
  }
}

TEST_F(TocProcessorV2Test, RebuildsWithoutLinesWhenThereIsNoFile) {
  doc.Tree({Element("Div")({Placeholder(), Line("a")})});
  for (const std::string& path : {std::string(), std::string("/no/such/file"), testing::TempDir()}) {
    OpenDocument open(doc.Write());
    EXPECT_EQ(open.Action(kToc, path), kSuccess);
    EXPECT_EQ(test::Outline(open), Div("P(Link(* a)) TOC"));
  }
}

TEST_F(TocProcessorV2Test, TakesFilesWithMissingPartsWithoutHarm) {
  doc.Tree({Element("Div")({Element("P").Image(page, 2, 2), Placeholder(), Line("a")})});
  for (const char* text : {"<TOC_Item title='t'/>", "<TOC_Item title='t'><TOC_Entry/></TOC_Item>",
                           "<TOC_Item title='t'><TOC_Entry><TOC_EntrySourceStyle/><TOC_EntryStyle/></TOC_Entry></TOC_Item>",
                           "<TOC_Item title='t'><TOC_Entry level='x'/><Other/></TOC_Item>"}) {
    EXPECT_THAT(OutlineAfter(text), testing::StartsWith("Div(P(image) ")) << text;
  }
}

TEST_F(TocProcessorV2Test, TakesAnEntryWithoutALevelForLevelNought) {
  const std::string entry = "<TOC_Entry><TOC_EntryText>a</TOC_EntryText></TOC_Entry>";
  EXPECT_EQ(Rebuilt({Line("x"), Line("a")}, Metadata(Entry(1, "x") + entry)), Div(Toc(Item("x") + " " + Item("a"))));
}

TEST_F(TocProcessorV2Test, TakesBytesOfOtherEncodingsForNoText) {
  doc.Tree({Element("Div")({Placeholder(), Line("a")})});
  EXPECT_EQ(OutlineAfter("<?xml version='1.0' encoding='ISO-8859-1'?>" + Metadata(Entry(1, "\xFC") + Entry(1, "a"), "\xE4")),
            Div(Toc(Item("a"))));
}

TEST_F(TocProcessorV2Test, TakesHugeTextsWithoutHarm) {
  doc.Tree({Element("Div")({Element("P").Text(page, std::string(3000, 'A')), Placeholder(), Line("a")})});
  const std::string huge(std::size_t{5} << 20U, 'A');
  EXPECT_EQ(OutlineAfter(Metadata(Entry(1, huge) + Entry(1, "a"), huge)),
            Div("P(" + std::string(3000, 'A') + ") " + Toc(Item("a"))));
}

TEST_F(TocProcessorV2Test, ExpandsNoEntitiesOfTheFile) {
  doc.Tree({Element("Div")({Placeholder(), Line("a")})});
  std::string bomb = "<!DOCTYPE x [<!ENTITY a \"a\">";
  for (char name = 'b'; name <= 'z'; ++name) {
    bomb += std::string("<!ENTITY ") + name + " \"";
    for (int copy = 0; copy < 10; ++copy) bomb += std::string("&") + static_cast<char>(name - 1) + ";";
    bomb += "\">";
  }
  EXPECT_EQ(OutlineAfter(bomb + "]>" + Metadata(Entry(1, "&z;") + Entry(1, "a"))), Div(Toc(Item("a"))));
}

TEST_F(TocProcessorV2Test, RunsAlsoWithoutMetadata) {
  doc.Tree({Element("P")});
  OpenDocument open(doc.Write());
  const test::HostSession session;
  TocProcessorV2 worker;
  worker.SetDocument(open.Handle());
  EXPECT_TRUE(worker.LoadMetaData(""));
  EXPECT_TRUE(worker.Run());
}

TEST_F(TocProcessorV2Test, ReplacesTheMetadataOfAnEarlierFile) {
  doc.Tree({Element("Div")({Placeholder(), Line("a"), Line("b")})});
  OpenDocument open(doc.Write());
  const test::HostSession session;
  TocProcessorV2 worker;
  test::TestDocument other;
  OpenDocument without(other.Write());
  worker.SetDocument(without.Handle());
  worker.LoadMetaData(WriteFile(Metadata(Entry(1, "a"))));
  worker.SetDocument(open.Handle());
  EXPECT_TRUE(worker.LoadMetaData(WriteFile(Metadata(Entry(1, "b")))));
  EXPECT_EQ(test::Outline(open), Div("P(Link(* a)) " + Toc(Item("b"))));
}

/// What the common log has got since this was made.
class LogSince {
 public:
  LogSince() : before_(Size()) {}
  std::string Text() const { return Read().substr(before_); }

 private:
  static std::string Read() {
    std::ostringstream text;
    text << std::ifstream(SimpleFileLogger::DefaultPath()).rdbuf();
    return text.str();
  }
  static std::size_t Size() {
    test::UseOwnStateFolder();
    return Read().size();
  }
  std::size_t before_;
};

TEST_F(TocProcessorV2Test, LogsTheFileAndEveryComparison) {
  doc.Tree({Element("Div")({Placeholder(), Line("b\t\u00e9")})});
  const std::string path = WriteFile(Metadata(Entry(1, "a\t") + Entry(1, "b") + Entry(1, "c")));
  const LogSince log;
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kToc, path), kSuccess);
  std::string text = log.Text();
  EXPECT_THAT(text, HasSubstr(" INFO: LoadMetaData"));
  EXPECT_THAT(text, HasSubstr(" INFO: XML file '" + path + "' loaded"));
  EXPECT_THAT(text, HasSubstr(" ? a"));
  EXPECT_THAT(text, EndsWith(" ? b"));
  EXPECT_THAT(text, Not(HasSubstr(" ? c")));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 0);
}

TEST_F(TocProcessorV2Test, LogsAFileThatCannotBeRead) {
  doc.Tree({Element("P")});
  const LogSince log;
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kToc, "/no/such/%s"), kSuccess);
  EXPECT_THAT(log.Text(), EndsWith(" EXCEPTION: failed to load XML file '/no/such/%s'"));
}

}  // namespace
}  // namespace tgx
