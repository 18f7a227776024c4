#include "tool/ToolSteps.h"

#include <gtest/gtest.h>

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
