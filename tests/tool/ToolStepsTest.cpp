#include "tool/ToolSteps.h"

#include <gtest/gtest.h>

#include "host/core/HostError.h"
#include "tests/support/HostFailureSweep.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"
#include "tests/tool/RunTool.h"

namespace tgx::tool {
namespace {

using test::Element;

TEST(LanguageInBrackets, IsTheCodeInAnyEncoding) {
  EXPECT_EQ(LanguageInBrackets("[Lang=de]"), "de");
  EXPECT_EQ(LanguageInBrackets("[Lang=zh-Hant-TW]"), "zh-Hant-TW");
  EXPECT_EQ(LanguageInBrackets(test::Bytes(u"[Lang=en-GB]").value), "en-GB");
  EXPECT_EQ(LanguageInBrackets("\xEF\xBB\xBF[Lang=fr]"), "fr");
  EXPECT_EQ(LanguageInBrackets("\xFE\xFF[Lang=en-GB]"), "en-GB") << "UTF-16 without its zero bytes";
}

TEST(LanguageInBrackets, HasHyphensInPlaceOfUnderscores) {
  EXPECT_EQ(LanguageInBrackets("[Lang=de_DE]"), "de-DE");
  EXPECT_EQ(LanguageInBrackets("[Lang=zh_Hant_TW]"), "zh-Hant-TW");
}

TEST(LanguageInBrackets, IsNothingForOtherForms) {
  for (const char* text : {"", "de", "[Lang=]", "[Lang=de", "Lang=de]", "[lang=de]", " [Lang=de]", "[Lang=de][Lang=fr]",
                           "[Lang=d e]", "[Lang=d\xE9]"}) {
    EXPECT_EQ(LanguageInBrackets(text), "") << text;
  }
}

TEST(PlainLanguages, RewritesElementsAndTheDocument) {
  test::TestDocument document;
  test::Page& page = document.AddPage();
  document.Lang("[Lang=de]");
  document.Tree({Element("Document")
                     .Lang(u"[Lang=en-GB]")({
                         Element("P").Lang("[Lang=fr]").Text(page, "Bonjour"),
                         Element("P").Lang("it").Text(page, "Buongiorno"),
                         Element("P").Text(page, "Hello"),
                     })});
  const test::TempFolder folder;
  folder.Write("in.pdf", document.Write());
  const test::ProcessResult result =
      test::Tool({"run", "in.pdf", "-o", "out.pdf", "--json", "plain-languages"}).In(folder.Path()).Run();
  EXPECT_EQ(result.out, R"({"version":1,"input":"in.pdf","output":"out.pdf",)"
                        R"("steps":[{"step":"plain-languages","result":0,"error":""}],"saved":true})"
                        "\n");
  const std::string bytes = test::ReadFile(folder / "out.pdf");
  test::ExpectSound(bytes);
  EXPECT_EQ(test::TreeText(bytes),
            "Document lang=\"en-GB\"\n"
            "  P lang=\"fr\"\n"
            "    mcid 0 page 1\n"
            "  P lang=\"it\"\n"
            "    mcid 1 page 1\n"
            "  P\n"
            "    mcid 2 page 1\n");
  EXPECT_EQ(test::ReadBack(bytes)->getRoot().getKey("/Lang").getStringValue(), "de");
}

TEST(PlainLanguage, IsTheCodeOfBracketsAndOfUtf16WithoutItsZeroBytes) {
  EXPECT_EQ(PlainLanguage("[Lang=de]"), "de");
  EXPECT_EQ(PlainLanguage("\xFE\xFF[Lang=de]"), "de");
  EXPECT_EQ(PlainLanguage("\xFE\xFF"
                          "en-GB"),
            "en-GB");
}

TEST(PlainLanguage, IsNothingForWhatReadersKnowAlreadyAndForWhatIsNoLanguage) {
  EXPECT_EQ(PlainLanguage("de"), "");
  EXPECT_EQ(PlainLanguage(test::Bytes(u"de").value), "");
  EXPECT_EQ(PlainLanguage("\xFE\xFF"), "");
  EXPECT_EQ(PlainLanguage("\xFE\xFF"
                          "d e"),
            "");
}

/// A document after plain-languages alone, which must go well.
std::string AfterPlainLanguages(test::TestDocument& document) {
  const test::TempFolder folder;
  folder.Write("in.pdf", document.Write());
  const test::ProcessResult result =
      test::Tool({"run", "in.pdf", "-o", "out.pdf", "plain-languages"}).In(folder.Path()).Run();
  EXPECT_EQ(result.status, 0) << result.err;
  std::string bytes = test::ReadFile(folder / "out.pdf");
  test::ExpectSound(bytes);
  return bytes;
}

TEST(PlainLanguages, RewritesThePropertiesOfMarkedContent) {
  test::TestDocument document;
  test::Page& page = document.AddPage();
  page.Add(test::Marked("Span", "<</MCID 0/Lang([Lang=de])>>", {test::Text("a")}));
  page.Add(test::Marked("Span", "<</Lang(it)>>",
                        {test::Marked("Span", "<</Lang<FEFF005B004C0061006E0067003D00660072005D>>>", {test::Text("b")})}));
  page.Add(test::MarkedByResource("Span", "<</MCID 1/Lang([Lang=es])>>", {test::Text("c")}));
  document.Tree({Element("P").Mcid(page, 0).Mcid(page, 1)});
  test::ReadBack file(AfterPlainLanguages(document));
  const std::string content = file.Content(1);
  EXPECT_EQ(content.find("[Lang="), std::string::npos) << content;
  EXPECT_NE(content.find("(de)"), std::string::npos) << content;
  EXPECT_NE(content.find("(it)"), std::string::npos) << content;
  EXPECT_NE(content.find("(fr)"), std::string::npos) << content;
  QPDFObjectHandle properties = file.Page(1).getKey("/Resources").getKey("/Properties");
  ASSERT_EQ(properties.getKeys().size(), 1U);
  EXPECT_EQ(properties.getKey(*properties.getKeys().begin()).getKey("/Lang").getStringValue(), "es");
}

TEST(PlainLanguages, LeavesContentWithoutSuchLanguagesByteForByte) {
  test::TestDocument document;
  test::Page& page = document.AddPage();
  page.Add(test::Ops("/Span   <</Lang  (de) /E(etc)>>BDC q   Q EMC"));
  document.Tree({Element("P").Lang("[Lang=de]").Text(page, "x")});
  const std::string before = test::ReadBack(document.Write()).Content(1);
  EXPECT_EQ(test::ReadBack(AfterPlainLanguages(document)).Content(1), before);
}

TEST(PlainLanguages, EndsAtEveryHostFailureWithItsTextAndASoundDocument) {
  test::TestDocument document;
  test::Page& page = document.AddPage();
  page.Add(test::Marked("Span", "<</MCID 0/Lang([Lang=de])>>", {test::Marked("Span", "<</Lang(it)>>", {test::Text("a")})}));
  page.Add(test::MarkedByResource("Span", "<</MCID 1/Lang([Lang=es])>>", {test::Text("c")}));
  document.Lang("[Lang=de]");
  document.Tree({Element("Document").Lang("[Lang=fr]")({Element("P").Lang(u"[Lang=en]").Mcid(page, 0).Mcid(page, 1)})});
  test::SweepHostFailures(document.Write(), [](test::OpenDocument& open) {
    try {
      const StepResult result = RunToolStep(open.Handle(), "plain-languages");
      return test::Outcome{result.code, result.error};
    } catch (const host::HostError& failure) {
      // Only the call that makes the step's own frame fails without one.
      return test::HardFailure(failure.what());
    }
  });
}

TEST(PlainLanguages, ReportsATreeThatTheHostRefuses) {
  test::TestDocument document;
  document.AddPage();
  document.Tree({Element("Sect").Named("loop").RawKid("$loop")});
  const test::TempFolder folder;
  folder.Write("in.pdf", document.Write());
  const test::ProcessResult result =
      test::Tool({"run", "in.pdf", "-o", "out.pdf", "plain-languages"}).In(folder.Path()).Run();
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("in.pdf: step plain-languages failed with 2: "), std::string::npos) << result.err;
  EXPECT_FALSE(test::Exists(folder / "out.pdf"));
}

}  // namespace
}  // namespace tgx::tool
