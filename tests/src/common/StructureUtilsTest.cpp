#include "src/common/StructureUtils.h"

#include <gmock/gmock.h>

#include <list>
#include <stdexcept>
#include <string>
#include <vector>

#include "src/common/SplitString.h"
#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::OpenDocument;
using test::Operation;
using test::Page;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<char> Bytes(std::string_view text) { return {text.begin(), text.end()}; }

std::string Text(const std::vector<char>& bytes) { return {bytes.begin(), bytes.end()}; }

class StructureUtilsTest : public test::StructureTest {
 protected:
  std::vector<std::string> Types(const std::list<PDSElement>& elements) {
    std::vector<std::string> types;
    for (const PDSElement element : elements) types.push_back(Type(element));
    return types;
  }
  std::string Language(PDSElement element) {
    std::vector<char> lang;
    return GetLanguage(element, lang) ? Text(lang) : "none";
  }

  Removals removals_;
};

TEST_F(StructureUtilsTest, FindsTheIndexOfAKidOfAnyKind) {
  Page& page = doc.AddPage();
  doc.Tree(
      {Element("P").Text(page, "text").Add(Element("Span")).Object(page.Link("https://example.org/")), Element("Part")});
  Open();
  for (int index = 0; index < 3; ++index) EXPECT_EQ(GetKidIndex(Top(), Kid(Top(), index)), index);
  EXPECT_EQ(GetKidIndex(Top(), Top(1)), -1);
  EXPECT_EQ(GetKidIndex(Root(), Top(1)), 1);
  EXPECT_EQ(GetKidIndex(CosNewNull(), Top()), -1);
}

TEST_F(StructureUtilsTest, TakesTheTreeRootForAParent) {
  doc.AddPage();
  doc.Tree({Element("Document")({Element("P"), Element("P")}), Element("Part")});
  Open();
  EXPECT_NE(CosObjEqual(GetParent(At({0, 1})), Top()), 0);
  EXPECT_NE(CosObjEqual(GetParent(Top()), Root()), 0);
  EXPECT_TRUE(IsNull(GetParent(CosNewNull())));
  EXPECT_EQ(GetIndexInParent(At({0, 1})), 1);
  EXPECT_EQ(GetIndexInParent(Top(1)), 1);
  EXPECT_EQ(GetIndexInParent(CosNewNull()), -1);
}

TEST_F(StructureUtilsTest, ReadsTextsWithTwoZeroBytesBehindThem) {
  doc.AddPage();
  doc.Tree({Element("P").Title("head").Alt(u"ä")});
  Open();
  std::vector<char> text;
  EXPECT_EQ(GetTitle(Top(), text), 6);
  EXPECT_EQ(Text(text), std::string("head\0\0", 6));
  EXPECT_EQ(GetAlt(Top(), text), 6);
  EXPECT_EQ(Text(text), std::string("\xFE\xFF\x00\xE4\0\0", 6));
  GetAltInto(Top(), text);
  EXPECT_EQ(Text(text), std::string("\xFE\xFF\x00\xE4\0\0", 6));
  ByteVector bytes;
  PDSElement element = Top();
  ReadAltBytes(element, bytes);
  EXPECT_EQ(bytes, (ByteVector{0xFE, 0xFF, 0x00, 0xE4, 0, 0}));
}

TEST_F(StructureUtilsTest, GivesNothingForAMissingText) {
  doc.AddPage();
  doc.Tree({Element("P")});
  Open();
  std::vector<char> text = {'x'};
  EXPECT_EQ(GetTitle(Top(), text), 0);
  EXPECT_THAT(text, IsEmpty());
  text = {'x'};
  EXPECT_EQ(GetAlt(Top(), text), 0);
  EXPECT_THAT(text, IsEmpty());
}

TEST_F(StructureUtilsTest, SizesTheBufferOfAMissingAltWhereTheCallerWantsOne) {
  doc.AddPage();
  doc.Tree({Element("P")});
  Open();
  std::vector<char> text = {'x', 'y', 'z'};
  GetAltInto(Top(), text);
  EXPECT_THAT(text, ElementsAre('\0', '\0'));
}

TEST_F(StructureUtilsTest, DropsZeroBytesOfALanguage) {
  doc.AddPage();
  doc.Tree({Element("P").Lang("en-US"), Element("P").Lang(u"de"), Element("P"), Element("P").Lang("")});
  Open();
  EXPECT_EQ(Language(Top(0)), "en-US");
  EXPECT_EQ(Language(Top(1)),
            "\xFE\xFF"
            "de");
  EXPECT_EQ(Language(Top(2)), "none");
  EXPECT_EQ(Language(Top(3)), "none");
}

TEST_F(StructureUtilsTest, SetsALanguageByteForByte) {
  doc.AddPage();
  doc.Tree({Element("P")});
  Open();
  EXPECT_TRUE(SetLanguage(Top(), Bytes(std::string_view("d\0e", 3))));
  std::string stored(static_cast<std::size_t>(PDSElementGetLanguage(Top(), nullptr)), '?');
  PDSElementGetLanguage(Top(), reinterpret_cast<ASUns8*>(stored.data()));
  EXPECT_EQ(stored, std::string("d\0e", 3));
}

TEST_F(StructureUtilsTest, SetsNoEmptyLanguage) {
  doc.AddPage();
  doc.Tree({Element("P").Lang("en")});
  Open();
  PDSElement element = Top();
  test::RecordingHost host;
  const test::HostSession session(host.Tables());
  EXPECT_FALSE(SetLanguage(element, {}));
  EXPECT_THAT(host.Calls(), IsEmpty());
}

TEST_F(StructureUtilsTest, SetsTheLanguageOfTheFirstDocumentElement) {
  doc.AddPage();
  doc.Tree({Element("Part"), Element("Whole"), Element("Document")}).RoleMap({{"Whole", "Document"}});
  const PDDoc document = Open();
  SetDocumentLanguage(document, Bytes("fr"));
  EXPECT_EQ(Language(Top(0)), "none");
  EXPECT_EQ(Language(Top(1)), "fr");
  EXPECT_EQ(Language(Top(2)), "none");
}

TEST_F(StructureUtilsTest, SetsNoLanguageWithoutADocumentElement) {
  doc.AddPage();
  doc.Tree({Element("Part")({Element("Document")}), Element("DocumentX")});
  const PDDoc document = Open();
  SetDocumentLanguage(document, Bytes("fr"));
  EXPECT_EQ(Language(Top(0)), "none");
  EXPECT_EQ(Language(At({0, 0})), "none");
  EXPECT_EQ(Language(Top(1)), "none");
}

TEST_F(StructureUtilsTest, NeedsADocumentAndALanguageToSetOne) {
  doc.AddPage();
  doc.Tree({Element("Document")});
  const PDDoc document = Open();
  SetDocumentLanguage(nullptr, Bytes("fr"));
  SetDocumentLanguage(document, {});
  EXPECT_EQ(Language(Top()), "none");
}

TEST_F(StructureUtilsTest, GoesOnWithoutATreeAndLetsTheHostRaise) {
  doc.AddPage();
  const PDDoc document = Open();
  const std::size_t frames = TGXHost_FrameDepth();
  EXPECT_ANY_THROW(SetDocumentLanguage(document, Bytes("fr")));
  TGXHost_CutFrames(frames);
}

TEST_F(StructureUtilsTest, ResolvesARoleInOneStep) {
  doc.AddPage();
  doc.Tree({Element("P")}).RoleMap({{"Lead", "Body"}, {"Body", "P"}});
  const PDDoc document = Open();
  EXPECT_EQ(ResolveRole(document, "Lead"), "Body");
  EXPECT_EQ(ResolveRole(document, "Body"), "P");
  EXPECT_EQ(ResolveRole(document, "P"), "P");
}

TEST_F(StructureUtilsTest, LeavesATypeWithoutARoleMapAsItIs) {
  doc.AddPage();
  doc.Tree({Element("P")});
  EXPECT_EQ(ResolveRole(Open(), "Lead"), "Lead");
}

TEST_F(StructureUtilsTest, LeavesATypeWithoutATreeAsItIs) {
  doc.AddPage();
  EXPECT_EQ(ResolveRole(Open(), "Lead"), "Lead");
}

TEST_F(StructureUtilsTest, FindsElementsByAltKidsFirst) {
  doc.AddPage();
  doc.Tree({Element("Sect").Alt("a mark here")(
      {Element("P").Alt("mark"), Element("H1").Alt("none"), Element("H2").Title("mark"), Element("Span").Alt("the mark")})});
  Open();
  std::list<PDSElement> found;
  FindByAlt(Top(), Bytes("mark"), found);
  EXPECT_THAT(Types(found), ElementsAre("P", "Span", "Sect"));
}

TEST_F(StructureUtilsTest, FindsElementsByTitle) {
  doc.AddPage();
  doc.Tree({Element("Sect").Title("mark")({Element("P").Alt("mark"), Element("H1").Title("a mark and a mark")})});
  Open();
  std::list<PDSElement> found;
  FindByTitle(Top(), Bytes("mark"), found);
  EXPECT_THAT(Types(found), ElementsAre("H1", "Sect"));
}

TEST_F(StructureUtilsTest, AddsToWhatWasFoundBefore) {
  doc.AddPage();
  doc.Tree({Element("Sect").Alt("mark")});
  Open();
  std::list<PDSElement> found = {Root()};
  FindByAlt(Top(), Bytes("mark"), found);
  EXPECT_EQ(found.size(), 2U);
}

TEST_F(StructureUtilsTest, SearchesTheZeroBytesBehindATextToo) {
  doc.AddPage();
  doc.Tree({Element("P").Alt("mark"), Element("H1").Alt("marks")});
  Open();
  std::list<PDSElement> found;
  FindByAlt(Top(0), Bytes(std::string_view("mark\0\0", 6)), found);
  FindByAlt(Top(1), Bytes(std::string_view("mark\0\0", 6)), found);
  FindByAlt(Top(0), Bytes(std::string_view("mark\0\0\0", 7)), found);
  EXPECT_THAT(Types(found), ElementsAre("P"));
}

TEST_F(StructureUtilsTest, FindsAnEmptyNeedleInEveryText) {
  doc.AddPage();
  doc.Tree({Element("Sect")({Element("P").Alt(""), Element("H1").Alt("text"), Element("H2").Title("")})});
  Open();
  std::list<PDSElement> found;
  FindByAlt(Top(), {}, found);
  EXPECT_THAT(Types(found), ElementsAre("P", "H1"));
  found.clear();
  FindByTitle(Top(), {}, found);
  EXPECT_THAT(found, IsEmpty());
}

TEST_F(StructureUtilsTest, FindsAnObjectInAList) {
  doc.AddPage();
  doc.Tree({Element("P"), Element("P"), Element("P")});
  Open();
  EXPECT_TRUE(ContainsCosObj({Top(0), Top(1)}, Top(1)));
  EXPECT_FALSE(ContainsCosObj({Top(0), Top(1)}, Top(2)));
  EXPECT_FALSE(ContainsCosObj({}, CosNewNull()));
}

TEST_F(StructureUtilsTest, FindsAPageByItsDictionary) {
  for (int page = 0; page < 3; ++page) doc.AddPage();
  const PDDoc document = Open();
  test::CountingHost host;
  const test::HostSession session(host.Tables());
  const PDPage expected = PDDocAcquirePage(document, 1);
  const PDPage found = AcquirePageByCos(PDPageGetCosObj(expected));
  EXPECT_EQ(found, expected);
  EXPECT_EQ(host.Open("pages"), 2);
}

TEST_F(StructureUtilsTest, GoesThroughThePagesOnceForManySearches) {
  for (int page = 0; page < 5; ++page) doc.AddPage();
  const PDDoc document = Open();
  std::vector<CosObj> dictionaries;
  for (int page = 0; page < 5; ++page) dictionaries.push_back(PDPageGetCosObj(PDDocAcquirePage(document, page)));
  test::RecordingHost host;
  const test::HostSession session(host.Tables());
  for (int page = 4; page >= 0; --page) {
    EXPECT_NE(CosObjEqual(PDPageGetCosObj(removals_.pages.Acquire(dictionaries[page])), dictionaries[page]), 0) << page;
  }
  EXPECT_EQ(host.Count(Operation::PDDocAcquirePage), 5U + 5U);
}

TEST_F(StructureUtilsTest, ThrowsForWhatIsNoPageAfterTryingEveryPage) {
  for (int page = 0; page < 3; ++page) doc.AddPage();
  doc.Tree({Element("P")});
  Open();
  const CosObj element = Top();
  test::CountingHost counting;
  test::RecordingHost host(counting.Tables());
  const test::HostSession session(host.Tables());
  try {
    AcquirePageByCos(element);
    FAIL() << "nothing thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "failed to acquire PDPage by CosPage");
  }
  EXPECT_EQ(host.Count(Operation::PDDocAcquirePage), 3U);
  EXPECT_EQ(counting.Open("pages"), 0);
}

TEST_F(StructureUtilsTest, RemovesAnElementWithEverythingBelowIt) {
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")(
      {Element("Sect")({Element("P"), Element("Link").Object(page.Link("https://example.org/"))}), Element("Art")})});
  Open();
  PDSElement sect = At({0, 0});
  PDSElement link = At({0, 0, 1});
  RemoveElementWithContent(sect, removals_);
  EXPECT_EQ(test::SavedTree(Opened()), "Document\n  Art\n");
  EXPECT_EQ(PDSElementGetNumKids(sect), 0);
  EXPECT_EQ(PDSElementGetNumKids(link), 0);
}

TEST_F(StructureUtilsTest, RemovesAnElementOnTop) {
  doc.AddPage();
  doc.Tree({Element("Document"), Element("Part")});
  Open();
  PDSElement document = Top();
  RemoveElementWithContent(document, removals_);
  EXPECT_EQ(test::SavedTree(Opened()), "Part\n");
}

TEST_F(StructureUtilsTest, RemovesKidsOfUnknownTypeAndComesToAnEnd) {
  doc.AddPage();
  doc.Tree({Element("Document")({Element("P").RawKid("<</Type/Whatever>>").RawKid("(text)").RawKid("true")})});
  Open();
  PDSElement paragraph = At({0, 0});
  RemoveElementWithContent(paragraph, removals_);
  EXPECT_EQ(test::SavedTree(Opened()), "Document\n");
}

TEST_F(StructureUtilsTest, RemovesTheContentOfWhatItRemoves) {
  Page& first = doc.AddPage();
  Page& second = doc.AddPage();
  doc.Tree(
      {Element("Document")({Element("Sect").Text(first, "one").Add(Element("P").Text(second, "two").Text(second, "three")),
                            Element("P").Text(second, "stays")})});
  Open();
  RemoveElementWithContent(At({0, 0}), removals_);
  test::ReadBack saved(Opened().Save());
  EXPECT_EQ(test::TreeText(saved.Pdf()), "Document\n  P\n    mcid 2 page 2\n");
  EXPECT_THAT(saved.Content(1), testing::Not(testing::HasSubstr("(one)")));
  EXPECT_THAT(saved.Content(2), testing::Not(testing::HasSubstr("(two)")));
  EXPECT_THAT(saved.Content(2), testing::Not(testing::HasSubstr("(three)")));
  EXPECT_THAT(saved.Content(2), testing::HasSubstr("(stays)"));
}

TEST_F(StructureUtilsTest, LeavesContentInsideAnotherContainerOnThePage) {
  Page& page = doc.AddPage();
  page.Add(test::Marked("Sect", "", {test::Marked("P", "<</MCID 4>>", {test::Text("nested")})}));
  doc.Tree({Element("Document")({Element("P").Mcid(page, 4)})});
  Open();
  RemoveElementWithContent(At({0, 0}), removals_);
  test::ReadBack saved(Opened().Save());
  EXPECT_EQ(test::TreeText(saved.Pdf()), "Document\n");
  EXPECT_THAT(saved.Content(1), testing::HasSubstr("(nested)"));
}

TEST_F(StructureUtilsTest, RemovesAKidWhoseContentIsGone) {
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("P").Mcid(page, 4)})});
  Open();
  RemoveElementWithContent(At({0, 0}), removals_);
  EXPECT_EQ(test::SavedTree(Opened()), "Document\n");
}

TEST(SplitString, KeepsEmptyFieldsBetweenDelimiters) {
  std::vector<std::string> fields = {"old"};
  SplitString("a,,b", ',', fields);
  EXPECT_THAT(fields, ElementsAre("a", "", "b"));
  SplitString(",a", ',', fields);
  EXPECT_THAT(fields, ElementsAre("", "a"));
}

TEST(SplitString, AddsNoEmptyFieldAtTheEnd) {
  std::vector<std::string> fields;
  SplitString("a,b,", ',', fields);
  EXPECT_THAT(fields, ElementsAre("a", "b"));
  SplitString("a,b,,", ',', fields);
  EXPECT_THAT(fields, ElementsAre("a", "b", ""));
}

TEST(SplitString, GivesNothingForNothing) {
  std::vector<std::string> fields = {"old"};
  SplitString("", ',', fields);
  EXPECT_THAT(fields, IsEmpty());
}

}  // namespace
}  // namespace tgx
