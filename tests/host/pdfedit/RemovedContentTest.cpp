#include "tests/host/pdfedit/ContentFixture.h"

#include <tgx/embedded_host.h>

namespace tgx::host {
namespace {

/// What the host tells of the content that a page lost: `image 1x1 #3`, with the MCID around it.
std::vector<std::string> Lost(ContentDocument& document) {
  const PDDoc handle = document.Host()->Handle();
  std::vector<std::string> lost;
  for (std::size_t i = 0; i < TGXHost_RemovedContentCount(handle); ++i) {
    TGXHostRemovedContent content = {};
    content.size = sizeof content;
    EXPECT_EQ(TGXHost_RemovedContent(handle, i, &content), kASNoError) << TGXHost_LastError();
    std::string line = content.kind == kPDEText    ? "text"
                       : content.kind == kPDEPath  ? "path"
                       : content.kind == kPDEImage ? "image"
                                                   : std::to_string(content.kind);
    if (content.width != 0) line += " " + std::to_string(content.width) + "x" + std::to_string(content.height);
    if (content.mcid >= 0) line += " #" + std::to_string(content.mcid);
    lost.push_back(line);
  }
  return lost;
}

using Lines = std::vector<std::string>;

TEST(RemovedContent, IsNothingOnAPageThatNobodyEdited) {
  ContentDocument document("/Im Do 0 0 9 9 re f");
  document.Root();
  document.Commit();
  EXPECT_EQ(Lost(document), Lines());
}

TEST(RemovedContent, CountsFromTheCommitOn) {
  ContentDocument document("/Im Do 0 0 9 9 re f");
  document.Remove({0});
  EXPECT_EQ(Lost(document), Lines());
  document.Commit();
  EXPECT_EQ(Lost(document), Lines({"image 1x1"}));
}

TEST(RemovedContent, IsEverythingInsideARemovedContainerWithItsInnermostMcid) {
  ContentDocument document("/P <</MCID 3>> BDC /Im Do /Span <</MCID 4>> BDC 0 0 9 9 re f EMC /Tag MP EMC");
  document.Remove({0});
  document.Commit();
  EXPECT_EQ(Lost(document), Lines({"image 1x1 #3", "path #4"}));
}

TEST(RemovedContent, IsToldOnceWhereItsContainerGoesLater) {
  ContentDocument document("/P <</MCID 3>> BDC /Im Do 0 0 9 9 re f EMC");
  document.Remove({0, 0});
  document.Commit();
  document.Remove({0});
  document.Commit();
  EXPECT_EQ(Lost(document), Lines({"image 1x1 #3", "path #3"}));
}

TEST(RemovedContent, IsToldOnceWhereItIsRemovedFromARemovedContainer) {
  ContentDocument document("/P <</MCID 3>> BDC /Im Do 0 0 9 9 re f EMC");
  const PDEContent inside = document.ListAt({0});
  document.Remove({0});
  WriteContent().PDEContentRemoveElem(inside, 0);
  document.Commit();
  EXPECT_EQ(Lost(document), Lines({"image 1x1 #3", "path #3"}));
}

TEST(RemovedContent, IsATextThatLostCharacters) {
  ContentDocument document("BT /F1 10 Tf (abc) Tj ET /Im Do BT (d) Tj ET");
  WriteContent().PDETextRemove(document.At({0}), kPDETextChar, 1, 1);
  document.Commit();
  EXPECT_EQ(Lost(document), Lines({"text"}));
  document.Commit();
  EXPECT_EQ(Lost(document), Lines({"text"}));
  WriteContent().PDETextRemove(document.At({0}), kPDETextChar, 1, 1);
  document.Commit();
  EXPECT_EQ(Lost(document), Lines({"text", "text"}));
}

TEST(RemovedContent, IsNotWhatARetaggedContainerHolds) {
  ContentDocument document("/P <</MCID 3>> BDC /Im Do EMC");
  WriteContent().PDEContainerSetMCTag(document.At({0}), Tables()->core->ASAtomFromString("Artifact"));
  document.Commit();
  EXPECT_EQ(Lost(document), Lines());
}

TEST(RemovedContent, HasTheBoxThatItHadOnThePage) {
  ContentDocument document("q 20 0 0 30 5 7 cm /Im Do Q BT /F1 10 Tf 50 60 Td (ab) Tj ET");
  const PDDoc handle = document.Host()->Handle();
  WriteContent().PDETextRemove(document.At({1}), kPDETextRun, 0, 1);
  document.Remove({0});
  document.Commit();
  ASFixedRect image = {}, text = {};
  ASSERT_EQ(TGXHost_RemovedContentBox(handle, 0, &image), kASNoError);
  ASSERT_EQ(TGXHost_RemovedContentBox(handle, 1, &text), kASNoError);
  constexpr ASFixed kOne = 0x10000;
  EXPECT_EQ(image.left, 5 * kOne);
  EXPECT_EQ(image.bottom, 7 * kOne);
  EXPECT_EQ(image.right, 25 * kOne);
  EXPECT_EQ(image.top, 37 * kOne);
  EXPECT_EQ(text.left, 50 * kOne);
  EXPECT_EQ(text.right, 62 * kOne);
}

TEST(RemovedContent, OutlivesContentThatAClientPutsInItsPlace) {
  ContentDocument document("/Im Do q 20 0 0 30 5 7 cm /P <</MCID 3>> BDC /Im Do EMC Q");
  const PDDoc handle = document.Host()->Handle();
  document.Remove({1, 0});
  document.Commit();
  Cos().CosDictPutKeyString(document.Host()->HandleOf(document.Dictionary()), "Contents",
                            document.Host()->HandleOf(document.Host()->Pdf().newStream("0 0 9 9 re f")));
  EXPECT_EQ(document.Tree(), "path");
  TGXHost_DropUnchangedContent(handle);
  EXPECT_EQ(Lost(document), Lines({"image 1x1 #3"}));
  ASFixedRect box = {};
  ASSERT_EQ(TGXHost_RemovedContentBox(handle, 0, &box), kASNoError);
  EXPECT_EQ(box.right, 25 * 0x10000);
}

TEST(RemovedContent, RefusesAnIndexPastTheLastAndARecordOfAnotherSize) {
  ContentDocument document("/Im Do");
  const PDDoc handle = document.Host()->Handle();
  TGXHostRemovedContent content = {};
  ASFixedRect box = {};
  EXPECT_EQ(TGXHost_RemovedContent(handle, 0, &content), kASBadParameter);
  content.size = sizeof content;
  EXPECT_EQ(TGXHost_RemovedContent(handle, 0, &content), kASOutOfRange);
  EXPECT_EQ(TGXHost_RemovedContentBox(handle, 0, &box), kASOutOfRange);
  EXPECT_EQ(TGXHost_RemovedContent(handle, 0, nullptr), kASBadParameter);
  EXPECT_EQ(TGXHost_RemovedContentCount(nullptr), 0U);
}

}  // namespace
}  // namespace tgx::host
