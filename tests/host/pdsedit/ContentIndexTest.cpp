// Elements into which much marked content is put: none of it twice, whatever happens between.
#include <algorithm>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/pdsedit/StructureFixture.h"

namespace tgx::host::structure {
namespace {

using test::Marked;
using test::Page;
using test::Text;

constexpr int kPieces = 24;  // on each of two pages, with the same MCIDs

/// A and B are on page 1, C has no page of its own. None has kids.
class MuchContent : public testing::Test {
 protected:
  using Piece = std::pair<int, int>;  // index of the page, MCID

  static std::string File() {
    TestDocument source;
    for (int page = 0; page < 2; ++page) {
      Page& added = source.AddPage();
      for (int i = 0; i < kPieces; ++i) added.Add(Marked("P", "<</MCID " + std::to_string(i) + ">>", {Text("x")}));
    }
    source.Tree({Element("A").Set("Pg", "$page1"), Element("B").Set("Pg", "$page1"), Element("C")});
    return source.Write();
  }

  PDEContainer Container(Piece piece) {
    const PDPage handle = Tables()->pdModel->PDDocAcquirePage(document_.Handle(), piece.first);
    const PDEContent content = Tables()->pagePDEContent->PDPageAcquirePDEContent(handle, nullptr);
    return Tables()->pdfEditRead->PDEContentGetElem(content, piece.second);
  }
  void Insert(PDSElement element, Piece piece, ASInt32 insertAfter = kPDSAfterLast) {
    Write().PDSElementInsertMCAsKid(element, document_.PageObject(piece.first), Container(piece), insertAfter);
  }
  void Remove(PDSElement element, Piece piece) {
    Write().PDSElementRemoveKidMC(element, document_.PageObject(piece.first), Container(piece));
  }
  void InsertAll(PDSElement element) {
    for (int mcid = 0; mcid < kPieces; ++mcid) Insert(element, {0, mcid});
  }
  ASInt32 Count(PDSElement element) { return Read().PDSElementGetNumKids(element); }

  StructureDocument document_{File()};
};

TEST_F(MuchContent, StandsInAnElementOnceAfterRandomEdits) {
  std::mt19937 random(7);
  const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
  std::vector<std::vector<Piece>> model(3);
  int place = 0;
  for (int step = 0; step < 6000; ++step) {
    if (below(50) == 0) place = below(3);
    const PDSElement element = document_.At({place});
    std::vector<Piece>& kids = model[static_cast<std::size_t>(place)];
    const Piece piece = {below(2), below(kPieces)};
    const auto found = std::find(kids.begin(), kids.end(), piece);
    if (below(3) == 0) {
      Remove(element, piece);
      if (found != kids.end()) kids.erase(found);
    } else {
      const bool isFirst = below(2) == 0;
      Insert(element, piece, isFirst ? kPDSBeforeFirst : kPDSAfterLast);
      if (found == kids.end()) kids.insert(isFirst ? kids.begin() : kids.end(), piece);
    }
    ASSERT_EQ(Count(element), static_cast<ASInt32>(kids.size())) << "step " << step;
    if (step % 100 != 0) continue;
    for (std::size_t i = 0; i < kids.size(); ++i) {
      const SeenKid seen = KidOf(element, static_cast<ASInt32>(i));
      ASSERT_EQ(seen.mcid, kids[i].second) << "step " << step;
      ASSERT_EQ(seen.page, document_.PageObject(kids[i].first)) << "step " << step;
    }
  }
}

TEST_F(MuchContent, IsThatOfAnotherPageOnceTheElementNamesThatPage) {
  const PDSElement element = document_.At({0});
  InsertAll(element);
  Cos().CosDictPutKeyString(element, "Pg", document_.PageObject(1));
  Insert(element, {1, 3});
  EXPECT_EQ(Count(element), kPieces);
  Insert(element, {0, 3});
  EXPECT_EQ(Count(element), kPieces + 1);
}

TEST_F(MuchContent, CanBePutInAgainAfterAClientTookTheKidsAway) {
  const PDSElement element = document_.At({0});
  InsertAll(element);
  Cos().CosDictRemoveKeyString(element, "K");
  EXPECT_EQ(Count(element), 0);
  Insert(element, {0, 3});
  EXPECT_EQ(Count(element), 1);
}

TEST_F(MuchContent, IsThereUntilTheLastOfItIsTakenAway) {
  const PDSElement element = document_.At({0});
  InsertAll(element);
  // A second kid for MCID 3, which only a client can make.
  Cos().CosArrayPut(Cos().CosDictGetKeyString(element, "K"), kPieces,
                    Cos().CosNewInteger(Tables()->pdModel->PDDocGetCosDoc(document_.Handle()), 0, 3));
  ASSERT_EQ(Count(element), kPieces + 1);
  Insert(element, {0, 0});  // not there twice
  Remove(element, {0, 3});
  Insert(element, {0, 3});
  EXPECT_EQ(Count(element), kPieces);
}

}  // namespace
}  // namespace tgx::host::structure
