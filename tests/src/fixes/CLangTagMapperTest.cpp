#include "src/fixes/LangEncoderFix/CLangTagMapper.h"

#include <gtest/gtest.h>

#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using std::string_literals::operator""s;
using test::Element;
using test::OpenDocument;
using test::TestDocument;

constexpr std::uint32_t kToTags = 0x10;
constexpr std::uint32_t kToBrackets = 0x20;

const std::string kTagOfDe = "\xFE\xFF\0\x0E\0\x7F\0\x0E\0d\0\x0E\0e\0\x0E\0\x01"s;

/// "Lang" of the only element of a document after the fixes.
std::string Mapped(const test::Bytes& language, std::uint32_t mask) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("P").Lang(language)});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(mask), test::kSuccess);
  test::ReadBack file(open.Save());
  QPDFObjectHandle kids = file.TreeRoot().getKey("/K");
  return (kids.isArray() ? kids.getArrayItem(0) : kids).getKey("/Lang").getStringValue();
}

TEST(LangTagMapper, WritesTheTagOfABracketForm) { EXPECT_EQ(Mapped("[Lang=de]", kToTags), kTagOfDe); }

TEST(LangTagMapper, ReadsABracketFormStoredAsUtf16WithoutAMark) {
  EXPECT_EQ(Mapped("\0[\0L\0a\0n\0g\0=\0d\0e\0]"s, kToTags), kTagOfDe);
}

TEST(LangTagMapper, TakesTheMarkOfUtf16ForCharactersOfTheLanguage) {
  EXPECT_EQ(Mapped(u"[Lang=d]", kToTags), "\xFE\xFF\0\x0E\0\x7F\0\x0E\0\xFE\0\x0E\0\xFF\0\x0E\0d\0\x0E\0\x01"s);
}

TEST(LangTagMapper, LeavesALanguageOfZeroBytesAlone) { EXPECT_EQ(Mapped("\0\0"s, kToTags), "\0\0"s); }

TEST(LangTagMapper, FailsWithoutADocument) { EXPECT_FALSE(CLangTagMapper().Run(nullptr)); }

TEST(LangTagMapper, LeavesAPlainLanguageAloneInBothModes) {
  EXPECT_EQ(Mapped("en-US", kToTags), "en-US");
  EXPECT_EQ(Mapped("en-US", kToBrackets), "en-US");
}

TEST(LangTagMapper, LeavesTwoBracketFormsAlone) { EXPECT_EQ(Mapped("[Lang=de][Lang=fr]", kToTags), "[Lang=de][Lang=fr]"); }

TEST(LangTagMapper, RewritesBracketsInTheWrongOrder) {
  EXPECT_EQ(Mapped("de]x[Lang=", kToTags), "\xFE\xFF\0\x0E\0\x7F\0\x0E\0d\0\x0E\0e\0\x0E\0x\0\x0E\0\x01"s);
}

TEST(LangTagMapper, WritesATagWithoutALanguage) {
  EXPECT_EQ(Mapped("[Lang=]", kToTags), "\xFE\xFF\0\x0E\0\x7F\0\x0E\0\x01"s);
}

TEST(LangTagMapper, ChangesNothingInTheModeBackToBrackets) {
  EXPECT_EQ(Mapped("[Lang=de]", kToBrackets), "[Lang=de]");
  EXPECT_EQ(Mapped(kTagOfDe, kToBrackets), kTagOfDe) << "without its zero bytes a tag is none";
}

TEST(LangTagMapper, KeepsTheTagsWhenBothModesRun) { EXPECT_EQ(Mapped("[Lang=de]", kToTags | kToBrackets), kTagOfDe); }

TEST(LangTagMapper, LeavesItsOwnTagsAloneTheSecondTime) { EXPECT_EQ(Mapped(kTagOfDe, kToTags), kTagOfDe); }

TEST(LangTagMapper, VisitsTheKidsOfElementsWithoutALanguage) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("Document")({Element("P")({Element("Span").Lang("[Lang=de]")})})});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kToTags), test::kSuccess);
  EXPECT_EQ(SavedTree(open).find("[Lang=de]"), std::string::npos);
}

TEST(LangTagMapper, GoesOnWhereContentIsNotOnItsPage) {
  TestDocument document;
  test::Page& page = document.AddPage();
  document.Tree({Element("P").Mcid(page, 5).Add(Element("Span").Lang("[Lang=de]"))});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kToTags), test::kSuccess);
  EXPECT_EQ(SavedTree(open).find("[Lang=de]"), std::string::npos);
}

TEST(LangTagMapper, LeavesLanguagesOfContentAlone) {
  TestDocument document;
  test::Page& page = document.AddPage();
  page.Add(test::Marked("Span", "<</MCID 0/Lang([Lang=de])>>", {test::Text("x")}));
  document.Tree({Element("P").Mcid(page, 0)});
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kToTags), test::kSuccess);
  EXPECT_NE(test::ReadBack(open.Save()).Content(1).find("[Lang=de]"), std::string::npos);
}

TEST(LangTagMapper, EndsWithTheHostsRaiseForContentWithoutAPageAndKeepsWhatItWrote) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("P").Lang("[Lang=de]"), Element("P").RawKid("7")});
  OpenDocument open(document.Write());
  const test::Outcome outcome = open.Fixups(kToTags);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
  EXPECT_EQ(SavedTree(open).find("[Lang=de]"), std::string::npos);
}

TEST(LangTagMapper, FailsWithoutATextForADocumentWithoutAStructureTree) {
  TestDocument document;
  document.AddPage();
  OpenDocument open(document.Write());
  EXPECT_EQ(open.Fixups(kToTags), test::kSoftFailure);
}

}  // namespace
}  // namespace tgx
