#include "src/common/ContentCommands.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "src/common/PageContentGuards.h"
#include "tests/src/common/StructureFixture.h"
#include "tests/support/Hosts.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Element;
using test::Image;
using test::InlineImage;
using test::kSuccess;
using test::Marked;
using test::OpenDocument;
using test::Operation;
using test::Page;
using test::ReadBack;
using test::RecordingHost;
using test::TestDocument;
using test::Text;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr int kRemoveDummyImages = 13;

class ContentCommandsTest : public test::StructureTest {
 protected:
  CosObj CosPage(int index = 0) { return PDPageGetCosObj(PDDocAcquirePage(Opened().Handle(), index)); }
  std::string SavedContent(int page = 1) {
    const std::string saved = Opened().Save();
    test::ExpectSound(saved);
    return ReadBack(saved).Content(page);
  }
  std::string RemoveImages(int page = 1) {
    Open();
    RemoveDummyImagesCmd command;
    command.cosPage = CosPage(page - 1);
    command.Execute();
    return SavedContent(page);
  }
  void RemoveContent(int mcid, int page = 1) {
    RemoveMarkedContentCmd command;
    command.cosPage = CosPage(page - 1);
    command.mcid = mcid;
    command.Execute();
  }
  void Move(PDSElement from, PDSElement to, int mcid, int page = 1) {
    MoveTaggedMcCmd command;
    command.page = PDDocAcquirePage(Opened().Handle(), page - 1);
    command.source = from;
    command.destination = to;
    command.mcid = mcid;
    command.Execute();
  }
};

std::size_t CountOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST_F(ContentCommandsTest, RemoveImagesOfOneSample) {
  doc.AddPage().Add(Text("a")).Add(Image(1, 1)).Add(InlineImage(1, 1)).Add(Text("b"));
  const std::string content = RemoveImages();
  EXPECT_THAT(content, Not(HasSubstr("Do")));
  EXPECT_THAT(content, Not(HasSubstr("BI")));
  EXPECT_EQ(CountOf(content, "Tj"), 2U);
}

TEST_F(ContentCommandsTest, KeepImagesOfMoreSamples) {
  doc.AddPage().Add(Image(2, 1)).Add(Image(1, 2)).Add(InlineImage(2, 1));
  const std::string content = RemoveImages();
  EXPECT_EQ(CountOf(content, " Do"), 2U);
  EXPECT_EQ(CountOf(content, "BI"), 1U);
}

TEST_F(ContentCommandsTest, RemoveSeveralImagesInARow) {
  Page& page = doc.AddPage();
  for (int image = 0; image < 5; ++image) page.Add(Image(1, 1));
  EXPECT_EQ(CountOf(RemoveImages(), "Do"), 0U);
}

TEST_F(ContentCommandsTest, RemoveImagesInsideContainers) {
  doc.AddPage().Add(Marked("P", "<</MCID 0>>", {Text("a"), Marked("Span", "", {Image(1, 1)})}));
  const std::string content = RemoveImages();
  EXPECT_THAT(content, Not(HasSubstr("Do")));
  EXPECT_EQ(CountOf(content, "BDC") + CountOf(content, "BMC"), 2U);
}

TEST_F(ContentCommandsTest, LeaveAnImageBehindAContainerThatHasNoElementAtItsPlace) {
  doc.AddPage().Add(Marked("P", "<</MCID 0>>", {Text("a")})).Add(Image(1, 1)).Add(Text("b"));
  const std::string content = RemoveImages();
  EXPECT_EQ(CountOf(content, " Do"), 1U);
  EXPECT_EQ(CountOf(content, "Tj"), 2U);
}

TEST_F(ContentCommandsTest, RemoveFromTheContainerWhatStandsAtThePlaceOfAnImageBehindIt) {
  doc.AddPage().Add(Marked("P", "<</MCID 0>>", {Text("a"), Text("gone")})).Add(Image(1, 1)).Add(Text("b"));
  const std::string content = RemoveImages();
  EXPECT_EQ(CountOf(content, " Do"), 1U);
  EXPECT_THAT(content, Not(HasSubstr("(gone)")));
  EXPECT_EQ(CountOf(content, "Tj"), 2U);
}

TEST_F(ContentCommandsTest, RemoveImagesInFrontOfContainers) {
  doc.AddPage().Add(Image(1, 1)).Add(Marked("P", "<</MCID 0>>", {Text("a")}));
  EXPECT_EQ(CountOf(RemoveImages(), "Do"), 0U);
}

TEST_F(ContentCommandsTest, LeaveAPageWithoutDummyImagesAsItIs) {
  doc.AddPage().Add(Image(2, 2)).Add(Marked("P", "<</MCID 0>>", {Text("a")}));
  const std::string before = ReadBack(doc.Write()).Content(1);
  EXPECT_EQ(RemoveImages(), before);
}

TEST_F(ContentCommandsTest, CanBeUsedForAnotherPage) {
  doc.AddPage().Add(Image(1, 1));
  doc.AddPage().Add(Image(1, 1));
  Open();
  RemoveDummyImagesCmd command;
  for (int page = 0; page < 2; ++page) {
    command.cosPage = CosPage(page);
    command.Execute();
  }
  EXPECT_EQ(CountOf(SavedContent(1), "Do"), 0U);
  EXPECT_EQ(CountOf(SavedContent(2), "Do"), 0U);
}

TEST_F(ContentCommandsTest, RemoveTheContainerOfAnMcid) {
  doc.AddPage()
      .Add(Marked("P", "<</MCID 0>>", {Text("stays")}))
      .Add(Marked("Sect", "", {Marked("P", "<</MCID 1>>", {Text("goes")})}))
      .Add(Text("tail"));
  Open();
  RemoveContent(1);
  const std::string content = SavedContent();
  EXPECT_THAT(content, HasSubstr("(stays)"));
  EXPECT_THAT(content, HasSubstr("(tail)"));
  EXPECT_THAT(content, Not(HasSubstr("(goes)")));
  EXPECT_THAT(content, Not(HasSubstr("MCID 1")));
}

TEST_F(ContentCommandsTest, RemoveTheFirstOfTwoContainersOfOneMcid) {
  doc.AddPage().Add(Marked("P", "<</MCID 3>>", {Text("first")})).Add(Marked("P", "<</MCID 3>>", {Text("second")}));
  Open();
  RemoveContent(3);
  const std::string content = SavedContent();
  EXPECT_THAT(content, Not(HasSubstr("(first)")));
  EXPECT_THAT(content, HasSubstr("(second)"));
}

TEST_F(ContentCommandsTest, RemoveAnOuterContainerBeforeAnInnerOneOfTheSameMcid) {
  doc.AddPage().Add(Marked("P", "<</MCID 3>>", {Text("a"), Marked("P", "<</MCID 3>>", {Text("b")})})).Add(Text("c"));
  Open();
  RemoveContent(3);
  EXPECT_EQ(CountOf(SavedContent(), "Tj"), 1U);
}

TEST_F(ContentCommandsTest, RemoveNothingForAnMcidThatThePageLacks) {
  doc.AddPage().Add(Marked("P", "<</MCID 0>>", {Text("a")})).Add(Marked("P", "<</MCID/Name>>", {Text("b")}));
  const std::string before = ReadBack(doc.Write()).Content(1);
  Open();
  RecordingHost host;
  {
    const test::HostSession session(host.Tables());
    RemoveContent(7);
  }
  EXPECT_EQ(SavedContent(), before);
  EXPECT_EQ(host.Count(Operation::PDPageSetPDEContent), 1U);
}

/// Containers in containers, several of one MCID, some with other content in front and between.
void AddNestedContainers(Page& page) {
  page.Add(Text("0"))
      .Add(Marked("P", "<</MCID 3>>", {Text("1"), Marked("P", "<</MCID 3>>", {Text("2")}), Text("3")}))
      .Add(Marked("Sect", "",
                  {Marked("P", "<</MCID 4>>", {Text("4")}), Text("5"), Marked("P", "<</MCID 3>>", {Text("6")}),
                   Marked("P", "<</MCID 5>>", {Text("7"), Marked("P", "<</MCID 4>>", {Text("8")})})}))
      .Add(Text("9"))
      .Add(Marked("P", "<</MCID 3>>", {Text("10")}))
      .Add(Marked("P", "<</MCID -1>>", {Text("11")}));
}

TEST_F(ContentCommandsTest, RemoveTheSameWithAnIndexAsWithAWalkEach) {
  AddNestedContainers(doc.AddPage());
  for (const std::vector<int>& mcids : std::vector<std::vector<int>>{
           {3, 3, 3, 3, 3}, {4, 4, 3, 3}, {5, 4, 4}, {3, 5, 4, 3, 3}, {-1, 9, 4, 5}, {-1, -1}, {9}}) {
    std::string contents[2];
    for (const bool isIndexed : {false, true}) {
      Open();
      MarkedContentIndex index;
      RemoveMarkedContentCmd command;
      command.cosPage = CosPage();
      if (isIndexed) command.index = &index;
      for (const int mcid : mcids) {
        command.mcid = mcid;
        command.Execute();
      }
      contents[isIndexed ? 1 : 0] = SavedContent();
    }
    EXPECT_EQ(contents[0], contents[1]) << testing::PrintToString(mcids);
  }
}

TEST_F(ContentCommandsTest, RemoveNothingInsideWhatIsRemovedAlready) {
  AddNestedContainers(doc.AddPage());
  Open();
  MarkedContentIndex index;
  RemoveMarkedContentCmd command;
  command.cosPage = CosPage();
  command.mcid = 3;
  command.index = &index;
  command.Execute();
  EXPECT_THAT(SavedContent(), HasSubstr("(6)"));
  command.Execute();
  EXPECT_THAT(SavedContent(), Not(HasSubstr("(6)")));
}

TEST_F(ContentCommandsTest, ReleaseThePageThatTheyAcquire) {
  doc.AddPage().Add(Image(1, 1));
  Open();
  const CosObj page = CosPage();
  test::CountingHost host;
  const test::HostSession session(host.Tables());
  RemoveDummyImagesCmd images;
  images.cosPage = page;
  images.Execute();
  RemoveMarkedContentCmd content;
  content.cosPage = page;
  content.Execute();
  EXPECT_EQ(host.Open("pages"), 0);
  EXPECT_EQ(host.Open("contents"), 2) << "walks leave the content acquired";
}

TEST_F(ContentCommandsTest, LetTheHostRaiseForWhatIsNoPage) {
  doc.AddPage();
  doc.Tree({Element("P")});
  Open();
  const std::size_t frames = TGXHost_FrameDepth();
  RemoveMarkedContentCmd command;
  command.cosPage = Top();
  EXPECT_ANY_THROW(command.Execute());
  command.cosPage = CosNewNull();
  EXPECT_ANY_THROW(command.Execute());
  TGXHost_CutFrames(frames);
}

TEST_F(ContentCommandsTest, MoveTheReferenceToTheEndOfAnotherElement) {
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("P").Text(page, "a").Text(page, "b"), Element("Span").Text(page, "c")})});
  const std::string before = ReadBack(doc.Write()).Content(1);
  Open();
  Move(At({0, 0}), At({0, 1}), 0);
  EXPECT_EQ(test::SavedTree(Opened()),
            "Document\n"
            "  P\n"
            "    mcid 1 page 1\n"
            "  Span\n"
            "    mcid 2 page 1\n"
            "    mcid 0 page 1\n");
  EXPECT_EQ(SavedContent(), before);
}

TEST_F(ContentCommandsTest, MoveNothingForNoMcid) {
  Page& page = doc.AddPage();
  page.Add(Marked("Span", "", {Text("x")}));
  doc.Tree({Element("Document")({Element("P").Text(page, "a"), Element("Span")})});
  Open();
  const std::string before = test::SavedTree(Opened());
  Move(At({0, 0}), At({0, 1}), -1);
  EXPECT_EQ(test::SavedTree(Opened()), before);
}

TEST_F(ContentCommandsTest, MoveOneReferenceForSeveralContainersOfAnMcid) {
  Page& page = doc.AddPage();
  page.Add(Marked("P", "<</MCID 5>>", {Text("a")})).Add(Marked("P", "<</MCID 5>>", {Text("b")}));
  doc.Tree({Element("Document")({Element("P").Mcid(page, 5), Element("Span")})});
  Open();
  Move(At({0, 0}), At({0, 1}), 5);
  EXPECT_EQ(test::SavedTree(Opened()), "Document\n  P\n  Span\n    mcid 5 page 1\n");
}

TEST_F(ContentCommandsTest, MoveReferencesToContainersThatTheCallerKnowsWithoutAWalk) {
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("P").Text(page, "a").Text(page, "b"), Element("Span")})});
  Open();
  const PDPage opened = PDDocAcquirePage(Opened().Handle(), 0);
  const PDEContent content = PDPageAcquirePDEContent(opened, nullptr);
  const std::vector<PDEContainer> known = {PDEContentGetElem(content, 0), PDEContentGetElem(content, 1)};
  MoveTaggedMcCmd command;
  command.page = opened;
  command.source = At({0, 0});
  command.destination = At({0, 1});
  command.mcid = 1;
  command.containers = &known;
  RecordingHost host;
  {
    const test::HostSession session(host.Tables());
    command.Execute();
  }
  EXPECT_EQ(host.Count(test::Operation::PDPageSetPDEContent), 0U);
  EXPECT_EQ(test::SavedTree(Opened()), "Document\n  P\n    mcid 0 page 1\n  Span\n    mcid 1 page 1\n");
}

TEST_F(ContentCommandsTest, GuardsCommitWhatIsDoneWhileTheyLive) {
  doc.AddPage().Add(Image(2, 2)).Add(Text("a"));
  const PDDoc document = Open();
  const CosObj cosPage = CosPage();
  const PDEContent content = PDPageAcquirePDEContent(PDDocAcquirePage(document, 0), nullptr);
  RecordingHost host;
  {
    const test::HostSession session(host.Tables());
    const McChangeSaver saver(document, cosPage);
    EXPECT_EQ(saver.GetDocument(), document);
    PDEContentRemoveElem(content, 0);
  }
  EXPECT_THAT(host.Names(),
              ElementsAre("PDPageNumFromCosObj", "PDDocAcquirePage", "PDPageAcquirePDEContent", "PDEContentRemoveElem",
                          "PDPageSetPDEContent", "PDPageReleasePDEContent", "PDPageRelease"));
  EXPECT_EQ(CountOf(SavedContent(), "Do"), 0U);
}

TEST_F(ContentCommandsTest, GuardsCommitAlsoWhenAnExceptionPasses) {
  doc.AddPage().Add(Image(2, 2)).Add(Text("a"));
  const PDDoc document = Open();
  try {
    const PageContent guard(document, PDDocAcquirePage(document, 0));
    PDEContentRemoveElem(guard.GetContent(), 0);
    throw std::runtime_error("in between");
  } catch (const std::runtime_error&) {
    EXPECT_EQ(CountOf(SavedContent(), "Do"), 0U);
  }
}

TEST_F(ContentCommandsTest, GuardsTakeOverTheReferenceOnThePage) {
  doc.AddPage().Add(Text("a"));
  const PDDoc document = Open();
  test::CountingHost host;
  const test::HostSession session(host.Tables());
  {
    const PageContent guard(document, PDDocAcquirePage(document, 0));
    EXPECT_EQ(PDEContentGetNumElems(guard.GetContent()), 1);
    EXPECT_EQ(guard.GetDocument(), document);
  }
  EXPECT_THAT(host.Uneven(), testing::IsEmpty());
}

TEST(RemoveDummyImages, ServesEveryPage) {
  TestDocument doc;
  doc.AddPage().Add(Image(1, 1)).Add(Text("a"));
  doc.AddPage().Add(Image(2, 1)).Add(Text("b"));
  doc.AddPage().Add(Text("c")).Add(Image(1, 1));
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kRemoveDummyImages), kSuccess);
  ReadBack saved(open.Save());
  EXPECT_EQ(CountOf(saved.Content(1), "Do"), 0U);
  EXPECT_EQ(CountOf(saved.Content(2), "Do"), 1U);
  EXPECT_EQ(CountOf(saved.Content(3), "Do"), 0U);
}

TEST(RemoveDummyImages, KeepsTwoByOneImage) {
  TestDocument doc;
  doc.AddPage().Add(Image(2, 1));
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kRemoveDummyImages), kSuccess);
  EXPECT_EQ(CountOf(ReadBack(open.Save()).Content(1), "Do"), 1U);
}

TEST(RemoveDummyImages, LeavesTheStructureAlone) {
  TestDocument doc;
  Page& page = doc.AddPage();
  doc.Tree({Element("Document")({Element("Figure").Image(page, 1, 1), Element("P").Text(page, "a")})});
  OpenDocument open(doc.Write());
  const std::string before = test::SavedTree(open);
  EXPECT_EQ(open.Action(kRemoveDummyImages), kSuccess);
  EXPECT_EQ(test::SavedTree(open), before);
}

TEST(RemoveDummyImages, NeedsNoStructureTree) {
  TestDocument doc;
  doc.AddPage();
  OpenDocument open(doc.Write());
  EXPECT_EQ(open.Action(kRemoveDummyImages), kSuccess);
  EXPECT_FALSE(ReadBack(open.Save()).TreeRoot().isDictionary());
}

TEST(RemoveDummyImages, KeepsOneReferenceOnEachPage) {
  TestDocument doc;
  doc.AddPage();
  doc.AddPage();
  OpenDocument open(doc.Write());
  test::CountingHost host;
  const test::HostSession session(host.Tables());
  EXPECT_EQ(open.Action(kRemoveDummyImages), kSuccess);
  EXPECT_EQ(host.Open("pages"), 2);
}

}  // namespace
}  // namespace tgx
