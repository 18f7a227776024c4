#include "src/common/contentvisitors/CContentEraser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "src/common/ContentUtils.h"
#include "tests/support/Hosts.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Content;
using test::Marked;
using test::TestDocument;
using test::Text;

constexpr int kErased = 3;

std::string Mcid(int mcid) { return "<</MCID " + std::to_string(mcid) + ">>"; }
Content Erased(std::vector<Content> kids = {}) { return Marked("P", Mcid(kErased), std::move(kids)); }
Content Kept(std::vector<Content> kids) { return Marked("Sect", "", std::move(kids)); }

std::string PageOf(const std::vector<Content>& contents) {
  TestDocument document;
  test::Page& page = document.AddPage();
  for (const Content& content : contents) page.Add(content);
  document.Tree({});
  return document.Write();
}

/// The content of the only page after `erase(document, page)`.
template <typename Erase>
std::string ContentAfter(const std::string& bytes, Erase erase) {
  const test::HostSession session;
  test::OpenDocument open(bytes);
  const PDPage page = PDDocAcquirePage(open.Handle(), 0);
  erase(open.Handle(), page);
  PDPageRelease(page);
  return test::ReadBack(open.Save()).Content(1);
}

std::string ContentAfterErasing(const std::vector<Content>& contents) {
  return ContentAfter(PageOf(contents),
                      [](PDDoc document, PDPage page) { CContentEraser().Erase(document, page, kErased); });
}

/// What the eraser does, in so many words: after each removal everything from the second element of the list on is searched
/// again.
void EraseStepByStep(PDEContent content) {
  for (ASInt32 i = 0; i < PDEContentGetNumElems(content); ++i) {
    const PDEElement element = PDEContentGetElem(content, i);
    if (PDEObjectGetType(element) != kPDEContainer) continue;
    if (GetContainerMCID(element) == kErased) {
      PDEContentRemoveElem(content, i);
      i = 0;
    } else {
      EraseStepByStep(PDEContainerGetContent(element));
    }
  }
}

/// Marked content as deep as `depth`, half of it to be erased.
std::vector<Content> RandomContents(std::mt19937& random, int depth, int& number) {
  std::vector<Content> contents;
  for (auto left = random() % 5; left > 0; --left) {
    const auto choice = random() % 8;
    if (choice == 0 || depth == 0) {
      contents.push_back(Text("t" + std::to_string(++number)));
    } else if (choice < 4) {
      contents.push_back(Erased({Text("t" + std::to_string(++number))}));
    } else {
      contents.push_back(Kept(RandomContents(random, depth - 1, number)));
    }
  }
  return contents;
}

TEST(CContentEraser, ErasesWhatASearchFromTheSecondElementOnErases) {
  std::mt19937 random(1);
  for (int i = 0; i < 400; ++i) {
    int number = 0;
    const std::string bytes = PageOf(RandomContents(random, 6, number));
    const std::string expected = ContentAfter(bytes, [](PDDoc, PDPage page) {
      EraseStepByStep(PDPageAcquirePDEContent(page, ExtensionId()));
      PDPageSetPDEContent(page, ExtensionId());
      PDPageReleasePDEContent(page, ExtensionId());
    });
    const std::string erased =
        ContentAfter(bytes, [](PDDoc document, PDPage page) { CContentEraser().Erase(document, page, kErased); });
    ASSERT_EQ(erased, expected) << test::ReadBack(bytes).Content(1);
  }
}

TEST(CContentEraser, KeepsASecondContainerThatHasBecomeTheFirstOfItsList) {
  const std::string content = ContentAfterErasing({Kept({Erased({Text("first")}), Erased({Text("second")})}), Text("x")});
  EXPECT_EQ(content.find("first"), std::string::npos);
  EXPECT_NE(content.find("second"), std::string::npos);
}

TEST(CContentEraser, ErasesThatOneWhenALaterRemovalStartsTheSearchAgain) {
  const std::string content =
      ContentAfterErasing({Text("x"), Kept({Erased({Text("first")}), Erased({Text("second")})}), Erased({Text("third")})});
  EXPECT_EQ(content.find("second"), std::string::npos);
}

/// Calls to the host in one Erase.
std::size_t Calls(const std::vector<Content>& contents) {
  test::OpenDocument open(PageOf(contents));
  std::size_t calls = 0;
  test::HookedHost host(test::EmbeddedTables(), [&calls](const test::HostCall&) { ++calls; });
  const test::HostSession session(host.Tables());
  const PDPage page = PDDocAcquirePage(open.Handle(), 0);
  CContentEraser().Erase(open.Handle(), page, kErased);
  PDPageRelease(page);
  return calls;
}

std::vector<Content> Repeated(int count, const std::vector<Content>& contents) {
  std::vector<Content> all = {Text("x")};
  for (int i = 0; i < count; ++i) all.insert(all.end(), contents.begin(), contents.end());
  return all;
}

void ExpectCallsInProportion(const std::vector<Content>& contents) {
  const std::size_t few = Calls(Repeated(50, contents));
  EXPECT_LT(Calls(Repeated(400, contents)), 9 * few);
}

TEST(CContentEraser, AsksTheHostInProportionToThePiecesOfTheMcid) { ExpectCallsInProportion({Erased()}); }

TEST(CContentEraser, AsksTheHostInProportionToWhatStandsBetweenThePieces) {
  ExpectCallsInProportion({Erased(), Kept({Text("a")}), Text("b")});
}

TEST(CContentEraser, AsksTheHostInProportionToListsInWhichSomethingStays) {
  ExpectCallsInProportion({Kept({Erased(), Erased(), Kept({Erased(), Erased()})}), Erased()});
}

}  // namespace
}  // namespace tgx
