#include "src/fixes/MainLangResolver/CMainLangResolver.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using std::string_literals::operator""s;
using test::Element;
using test::OpenDocument;
using test::TestDocument;

constexpr std::uint32_t kMainLanguage = 0x4;

/// Marked content with as many runs of text. One of them counts for nothing: counting starts below zero.
test::Content Runs(int count) {
  std::string strings;
  for (int i = 0; i < count; ++i) strings += "(w) 10 ";
  return test::Ops("BT /F1 12 Tf 72 700 Td [" + strings + "] TJ ET");
}

class MainLang : public testing::Test {
 protected:
  MainLang() { page_.Add(test::Text("font")); }

  Element Paragraph(const test::Bytes& language, int runs) { return Element("P").Lang(language).Mark(page_, Runs(runs)); }

  /// "Lang" of the first top-level element of type Document after the fix; "(none)" without one.
  std::string Resolved(const std::vector<Element>& elements, const std::string& type = "Document") {
    document_.Tree({Element(type)(elements)});
    return Run();
  }

  std::string Run(int topIndex = 0) {
    OpenDocument open(document_.Write());
    EXPECT_EQ(open.Fixups(kMainLanguage), test::kSuccess);
    test::ReadBack file(open.Save());
    QPDFObjectHandle kids = file.TreeRoot().getKey("/K");
    QPDFObjectHandle language = (kids.isArray() ? kids.getArrayItem(topIndex) : kids).getKey("/Lang");
    return language.isString() ? language.getStringValue() : "(none)";
  }

  TestDocument document_;
  test::Page& page_ = document_.AddPage();
};

TEST_F(MainLang, TakesTheLanguageOfMostText) {
  EXPECT_EQ(Resolved({Paragraph("de", 3), Paragraph("fr", 6), Paragraph("de", 3)}), "fr");
}

TEST_F(MainLang, AddsUpTheTextOfALanguage) {
  EXPECT_EQ(Resolved({Paragraph("de", 5), Paragraph("fr", 6), Paragraph("de", 5)}), "de");
}

TEST_F(MainLang, StoresNothingWithoutAnyLanguage) { EXPECT_EQ(Resolved({Element("P").Mark(page_, Runs(5))}), "(none)"); }

TEST_F(MainLang, DoesNotCountTheFirstRunOfAPieceOfContent) {
  EXPECT_EQ(Resolved({Paragraph("de", 1), Paragraph("de", 1), Paragraph("de", 1), Paragraph("fr", 2)}), "fr");
}

TEST_F(MainLang, StoresNothingForEmptyContent) { EXPECT_EQ(Resolved({Paragraph("de", 0)}), "(none)"); }

TEST_F(MainLang, TakesTheSmallerKeyAmongEqualCounts) { EXPECT_EQ(Resolved({Paragraph("fr", 4), Paragraph("de", 4)}), "de"); }

TEST_F(MainLang, TakesBytesAbove7FForTheSmaller) {
  EXPECT_EQ(Resolved({Paragraph("aa", 4), Paragraph("\xFE\xFF\0d\0e"s, 4)}),
            "\xFE\xFF"
            "de");
}

TEST_F(MainLang, TakesAPrefixForTheSmaller) { EXPECT_EQ(Resolved({Paragraph("de-AT", 4), Paragraph("de", 4)}), "de"); }

TEST_F(MainLang, InheritsTheLanguageOfElementsAround) {
  EXPECT_EQ(
      Resolved({Element("Sect").Lang("de")({Element("P")({Element("Span").Mark(page_, Runs(5))})}), Paragraph("fr", 3)}),
      "de");
}

TEST_F(MainLang, CountsNothingForALanguageWhoseElementHasEnded) {
  EXPECT_EQ(Resolved({Paragraph("de", 3), Element("P").Mark(page_, Runs(9)), Paragraph("fr", 5)}), "fr");
}

TEST_F(MainLang, CountsContentAgainAtEachPlaceInTheTree) {
  page_.Add(test::Marked("Span", "<</MCID 7>>", {Runs(4)}));
  EXPECT_EQ(Resolved({Element("P").Lang("de").Mcid(page_, 7), Element("P").Lang("de").Mcid(page_, 7), Paragraph("fr", 5)}),
            "de");
}

TEST_F(MainLang, CountsNothingForObjects) {
  EXPECT_EQ(Resolved({Element("Link").Lang("de").Object(page_.Link("https://example.org/")), Paragraph("fr", 2)}), "fr");
}

TEST_F(MainLang, DropsTheZeroBytesOfAnElementsLanguage) {
  EXPECT_EQ(Resolved({Paragraph("\0d\0e"s, 3), Paragraph("fr", 5), Paragraph("de", 4)}), "de");
}

TEST_F(MainLang, CountsContentWithALanguageOfItsOwnForThatOne) {
  page_.Add(test::Marked("Span", "<</MCID 7/Lang(fr)>>", {Runs(9)}));
  EXPECT_EQ(Resolved({Paragraph("de", 5), Element("P").Lang("de").Mcid(page_, 7)}), "fr");
}

TEST_F(MainLang, CountsForTheElementAgainBehindContentWithALanguageOfItsOwn) {
  page_.Add(test::Marked("Span", "<</MCID 7/Lang(fr)>>", {Runs(4)}));
  EXPECT_EQ(Resolved({Element("P").Lang("de").Mark(page_, Runs(3)).Mcid(page_, 7).Mark(page_, Runs(3))}), "de");
}

TEST_F(MainLang, LeavesTheTextOfContentWithoutALanguageToTheElement) {
  page_.Add(test::Marked("Span", "<</MCID 7/Lang/fr>>", {Runs(9)}));
  EXPECT_EQ(Resolved({Element("P").Lang("de").Mcid(page_, 7), Paragraph("fr", 5)}), "de") << "a name is no language";
}

TEST_F(MainLang, InheritsTheLanguageWhereAnElementHasOneOfZeroBytesAlone) {
  EXPECT_EQ(Resolved({Element("Sect").Lang("de")({Paragraph("\0\0"s, 5)}), Paragraph("fr", 3)}), "de");
}

TEST_F(MainLang, StoresTheBytesOfUtf16WithItsMarkAndWithoutItsZeroBytes) {
  EXPECT_EQ(Resolved({Paragraph(u"de", 3)}),
            "\xFE\xFF"
            "de");
}

TEST_F(MainLang, GoesOnBehindContentOnAPageWithoutAny) {
  test::Page& bare = document_.AddPage().Add(test::Text("bare"));
  EXPECT_EQ(Resolved({Element("P").Lang("fr").Mcr(bare, 0), Paragraph("de", 3)}), "de");
}

TEST_F(MainLang, DoesNotCountBeyondTheLargestNumber) {
  static PDFEditReadTable read = *test::EmbeddedTables()->pdfEditRead;
  static HostTables tables = *test::EmbeddedTables();
  read.PDETextGetNumRuns = [](PDEText) { return std::numeric_limits<ASInt32>::max(); };
  tables.pdfEditRead = &read;
  const test::HostSession session(&tables);
  EXPECT_EQ(Resolved({Paragraph("de", 2), Paragraph("fr", 2), Paragraph("fr", 2), Paragraph("fr", 2)}), "fr");
}

TEST_F(MainLang, TakesZeroBytesInALanguageOfContentForAnotherLanguage) {
  page_.Add(test::Marked("Span", "<</MCID 7/Lang<00640065>>>", {Runs(4)}));
  EXPECT_EQ(Resolved({Element("P").Mcid(page_, 7), Paragraph("de", 3), Paragraph("fr", 5)}), "fr")
      << "three and two runs would make five of one language";
}

TEST_F(MainLang, StoresTheZeroBytesOfALanguageOfContent) {
  page_.Add(test::Marked("Span", "<</MCID 7/Lang<00640065>>>", {Runs(6)}));
  EXPECT_EQ(Resolved({Element("P").Mcid(page_, 7), Paragraph("de", 3)}), "\0d\0e"s);
}

TEST_F(MainLang, FindsTheDocumentThroughTheRoleMap) {
  document_.RoleMap({{"Story", "Document"}});
  EXPECT_EQ(Resolved({Paragraph("de", 3)}, "Story"), "de");
}

TEST_F(MainLang, PassesOverTopLevelElementsThatAreNoDocument) {
  document_.Tree({Element("Part"), Element("Document")({Paragraph("de", 3)})});
  EXPECT_EQ(Run(1), "de");
}

TEST_F(MainLang, DoesNotLookForTheDocumentBelowTheTop) {
  document_.Tree({Element("Part")({Element("Document")({Paragraph("de", 3)})})});
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Fixups(kMainLanguage), test::kSuccess);
  EXPECT_EQ(SavedTree(open), "Part\n  Document\n    P lang=\"de\"\n      mcid 0 page 1\n");
}

TEST_F(MainLang, TakesMissingContentForTheLastOfThePage) {
  // The finder answers with the last container of the page, and its text counts.
  EXPECT_EQ(Resolved({Element("P").Lang("fr").Mcid(page_, 99), Paragraph("de", 3), Element("P").Mark(page_, Runs(8))}),
            "fr");
}

TEST(MainLangOfBareDocuments, FailsWithoutADocument) { EXPECT_FALSE(CMainLangResolver().Run(nullptr)); }

TEST(MainLangOfBareDocuments, FailsWithoutATextForADocumentWithoutAStructureTree) {
  TestDocument document;
  document.AddPage();
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kMainLanguage), test::kSoftFailure);
}

}  // namespace
}  // namespace tgx
