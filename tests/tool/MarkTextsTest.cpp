#include "tool/MarkTexts.h"

#include <gtest/gtest.h>

#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"
#include "tests/tool/RunTool.h"
#include "tool/Marks.h"

namespace tgx::tool {
namespace {

/// UTF-16BE with its mark.
std::string Utf16(const char16_t* text) { return test::Bytes(text).value; }

TEST(RewrittenText, IsForMarksInUtf8WithAndWithoutItsMark) {
  EXPECT_EQ(RewrittenText("\xEF\xBB\xBF\u222E"
                          "a1"),
            Utf16(u"\u222E"
                  u"a1"));
  EXPECT_EQ(RewrittenText("\u2264"
                          "a1"),
            Utf16(u"\u2264"
                  u"a1"));
  EXPECT_EQ(RewrittenText("\u0CF1\u2318\u2328"), Utf16(u"\u0CF1\u2318\u2328"));
}

TEST(RewrittenText, IsForMarkerWordsInPDFDocEncoding) {
  EXPECT_EQ(RewrittenText("[ATT]<Tables/>"), Utf16(u"[ATT]<Tables/>"));
  EXPECT_EQ(RewrittenText("MATHML_1_START"), Utf16(u"MATHML_1_START"));
  EXPECT_EQ(RewrittenText("my TEXTFRAME_END"), Utf16(u"my TEXTFRAME_END"));
  EXPECT_EQ(RewrittenText("TOC_FRAME \x80 \xE9"), Utf16(u"TOC_FRAME \u2022 \u00E9"));
}

TEST(RewrittenText, IsForMarksInUtf16OfTheOtherByteOrder) {
  EXPECT_EQ(RewrittenText(std::string("\xFF\xFE\x2E\x22\x61\x00", 6)), Utf16(u"\u222E"
                                                                             u"a"));
}

TEST(RewrittenText, KeepsCharactersOutsideTheBasicPlane) {
  EXPECT_EQ(RewrittenText("\u222E\U0001D465"), Utf16(u"\u222E\U0001D465"));
}

TEST(RewrittenText, IsNotForTextsWithoutMarks) {
  EXPECT_EQ(RewrittenText(""), "");
  EXPECT_EQ(RewrittenText("A crane"), "");
  EXPECT_EQ(RewrittenText("\xEF\xBB\xBF\u00E9t\u00E9"), "");
  EXPECT_EQ(RewrittenText("textframe_start"), "");
}

TEST(RewrittenText, IsNotForTextsThatAreAsTheLibraryReadsThem) {
  EXPECT_EQ(RewrittenText(Utf16(u"\u222E"
                                u"a1")),
            "");
  EXPECT_EQ(RewrittenText(Utf16(u"[ATT]<Tables/>")), "");
}

TEST(RewrittenLanguage, IsPlainWhateverItsEncoding) {
  EXPECT_EQ(RewrittenLanguage(Utf16(u"[Lang=en-GB]")), "[Lang=en-GB]");
  EXPECT_EQ(RewrittenLanguage("\xEF\xBB\xBF[Lang=de]"), "[Lang=de]");
  EXPECT_EQ(RewrittenLanguage(Utf16(u"en-GB")), "en-GB");
  EXPECT_EQ(RewrittenLanguage("\xEF\xBB\xBF"
                              "de"),
            "de");
}

TEST(RewrittenLanguage, IsNotForLanguagesThatArePlainOrNone) {
  EXPECT_EQ(RewrittenLanguage(""), "");
  EXPECT_EQ(RewrittenLanguage("de"), "");
  EXPECT_EQ(RewrittenLanguage("[Lang=de]"), "");
  EXPECT_EQ(RewrittenLanguage(Utf16(u"")), "");
  EXPECT_EQ(RewrittenLanguage(Utf16(u"Deutsch (alt)")), "");
  EXPECT_EQ(RewrittenLanguage(Utf16(u"[Lang=d\u00E9]")), "");
}

TEST(Marks, AreToldByTheBeginningOfAltAndTitleOrByAWord) {
  EXPECT_EQ(MarkOfAlt("\u222E"
                      "a"),
            kAnchor);
  EXPECT_EQ(MarkOfAlt("a \u222E"), 0U);
  EXPECT_EQ(MarkOfAlt("some TEXTFRAME_START"), kTextFrame);
  EXPECT_EQ(MarkOfTitle("\u2230story"), kFrameHolder);
  EXPECT_EQ(MarkOfTitle("\u222E"
                        "a"),
            0U);
}

/// The tree of a document with texts of marks in other encodings after a command with these arguments.
std::string TreeAfter(std::vector<std::string> command) {
  test::TestDocument document;
  test::Page& page = document.AddPage();
  document.Tree({test::Element("Document")({
      test::Element("P").Text(page, "before").Lang(u"[Lang=de]"),
      test::Element("Figure").Alt("TEXTFRAME_START"),
      test::Element("Figure").Alt("A crane").Text(page, "x"),
      test::Element("P").Text(page, "after").Title("\u2230 not among marks of their own"),
  })});
  const test::TempFolder folder;
  folder.Write("in.pdf", document.Write());
  const test::ProcessResult result = test::Tool(std::move(command)).In(folder.Path()).Run();
  EXPECT_EQ(result.status, 0) << result.err;
  return test::TreeText(test::ReadFile(folder / "out.pdf"));
}

TEST(MarkTexts, AreRewrittenByFix) {
  EXPECT_EQ(TreeAfter({"fix", "in.pdf", "-o", "out.pdf", "--skip", "remove-frame-markers,remove-empty-tags,main-language",
                       "--skip", "plain-languages,reshuffle-frames"}),
            "Document\n"
            "  P lang=\"[Lang=de]\"\n"
            "    mcid 0 page 1\n"
            "  Figure alt=u\"TEXTFRAME_START\"\n"
            "  Figure alt=\"A crane\"\n"
            "    mcid 1 page 1\n"
            "  P title=u\"\\u{2230} not among marks of their own\"\n"
            "    mcid 2 page 1\n");
}

TEST(MarkTexts, OfLanguagesInUtf16LeaveTheDocumentOneThatReadersKnow) {
  test::TestDocument document;
  test::Page& page = document.AddPage();
  document.Tree(
      {test::Element("Document")({test::Element("P").Lang(u"de").Mark(page, test::Ops("BT /F1 9 Tf [(a)(b)(c)] TJ ET"))})});
  page.Add(test::Text("font"));
  const test::TempFolder folder;
  folder.Write("in.pdf", document.Write());
  const test::ProcessResult result = test::Tool({"fix", "in.pdf", "-o", "out.pdf"}).In(folder.Path()).Run();
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(test::TreeText(test::ReadFile(folder / "out.pdf")),
            "Document lang=\"de\"\n"
            "  P lang=\"de\"\n"
            "    mcid 0 page 1\n");
}

TEST(MarkTexts, AreLeftAloneByRun) {
  EXPECT_EQ(TreeAfter({"run", "in.pdf", "-o", "out.pdf", "reserved"}),
            "Document\n"
            "  P lang=u\"[Lang=de]\"\n"
            "    mcid 0 page 1\n"
            "  Figure alt=\"TEXTFRAME_START\"\n"
            "  Figure alt=\"A crane\"\n"
            "    mcid 1 page 1\n"
            "  P title=\"\\u{00E2}\\u{2039}\\u{00B0} not among marks of their own\"\n"
            "    mcid 2 page 1\n");
}

}  // namespace
}  // namespace tgx::tool
