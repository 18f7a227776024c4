#include <gtest/gtest.h>

#include "tests/support/OpenDocument.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"

namespace tgx {
namespace {

using test::Annotation;
using test::Element;
using test::OpenDocument;
using test::TestDocument;

constexpr int kUserAltText = 8;

// "A cat" in UTF-16BE.
constexpr char kPayload[] = "AEEAIABjAGEAdA==";

class UserAltText : public testing::Test {
 protected:
  Annotation Link(const std::string& uri) { return page_.Link(uri); }

  void Repair(const std::vector<Element>& elements, test::Outcome expected = test::kSuccess) {
    document_.Tree(elements);
    OpenDocument open(document_.Write());
    EXPECT_EQ(open.Action(kUserAltText), expected);
    saved_ = open.Save();
    test::ExpectSound(saved_);
  }

  std::string Tree() const { return test::TreeText(saved_); }

  /// The URIs of the annotations that are left on the page.
  std::vector<std::string> Uris() const {
    test::ReadBack file(saved_);
    std::vector<std::string> uris;
    QPDFObjectHandle annotations = file.Page(1).getKey("/Annots");
    if (!annotations.isArray()) return uris;
    for (QPDFObjectHandle annotation : annotations.getArrayAsVector()) {
      uris.push_back(annotation.getKey("/A").getKey("/URI").getStringValue());
    }
    return uris;
  }

  using Strings = std::vector<std::string>;
  TestDocument document_;
  test::Page& page_ = document_.AddPage();
  std::string saved_;
};

TEST_F(UserAltText, DissolvesALinkThatOnlyCarriesTheText) {
  Repair({Element("Sect")({Element("P"),
                           Element("Link")({Element("Figure")}).Object(Link(std::string("?id_useralttext=") + kPayload)),
                           Element("P")})});
  EXPECT_EQ(Tree(), "Sect\n  P\n  Figure alt=u\"A cat\"\n  P\n");
  EXPECT_EQ(Uris(), Strings{});
}

TEST_F(UserAltText, FindsTheElementBehindTheAnnotationToo) {
  Element link("Link");
  link.Object(Link(std::string("?id_useralttext=") + kPayload)).Add(Element("Figure"));
  Repair({Element("Sect")({link})});
  EXPECT_EQ(Tree(), "Sect\n  Figure alt=u\"A cat\"\n");
}

TEST_F(UserAltText, DissolvesALinkAtTheTopOfTheTree) {
  Repair({Element("P"), Element("Link")({Element("Figure")}).Object(Link(std::string("?id_useralttext=") + kPayload))});
  EXPECT_EQ(Tree(), "P\nFigure alt=u\"A cat\"\n");
}

TEST_F(UserAltText, KeepsALinkWithATargetOfItsOwn) {
  Repair({Element("Sect")(
      {Element("Link")({Element("Figure")}).Object(Link(std::string("https://example.org/?id_useralttext=") + kPayload))})});
  EXPECT_EQ(Tree(), "Sect\n  Link\n    Figure alt=u\"A cat\"\n    objr Link page 1\n");
  EXPECT_EQ(Uris(), Strings{"https://example.org/"});
}

TEST_F(UserAltText, LeavesAnUnmarkedUriAsItIs) {
  Repair({Element("Sect")({Element("Link")({Element("Figure")}).Object(Link("https://example.org/"))})});
  EXPECT_EQ(Tree(), "Sect\n  Link\n    Figure\n    objr Link page 1\n");
  EXPECT_EQ(Uris(), Strings{"https://example.org/"});
}

TEST_F(UserAltText, DropsTheZeroBytesOfAUri) {
  Annotation link = page_.Annotate("Link");
  link.Set("A", "<</S/URI/URI<006100620000>>>");
  Repair({Element("Sect")({Element("Link")({Element("Figure")}).Object(link)})});
  EXPECT_EQ(Uris(), Strings{"ab"});
}

TEST_F(UserAltText, LosesTheTextBesideASingleKid) {
  Repair({Element("Sect")({Element("Link").Object(Link(std::string("?id_useralttext=") + kPayload))})});
  EXPECT_EQ(Tree(), "Sect\n  Link\n    objr Link page 1\n");
  EXPECT_EQ(Uris(), Strings{}) << "the emptied link leaves the page all the same";
}

TEST_F(UserAltText, LosesTheTextAmongThreeKids) {
  Repair({Element("Sect")(
      {Element("Link")({Element("Figure"), Element("P")}).Object(Link(std::string("x?id_useralttext=") + kPayload))})});
  EXPECT_EQ(Tree(), "Sect\n  Link\n    Figure\n    P\n    objr Link page 1\n");
  EXPECT_EQ(Uris(), Strings{"x"});
}

TEST_F(UserAltText, TakesASecondMarkerForPartOfTheText) {
  Repair({Element("Sect")({Element("Link")({Element("Figure")}).Object(Link("x?id_useralttext=AEE?id_useralttext=Q"))})});
  EXPECT_EQ(Uris(), Strings{"x"});
  // "AEEiduseralttextQ" in base 64: 12 whole bytes.
  EXPECT_NE(Tree().find("Figure alt=u\"A"), std::string::npos) << Tree();
}

TEST_F(UserAltText, SetsNoTextForAnOddNumberOfBytes) {
  Repair({Element("Sect")({Element("Link")({Element("Figure").Alt("old")}).Object(Link("?id_useralttext=AEEA"))})});
  EXPECT_EQ(Tree(), "Sect\n  Figure\n") << "the wrapper goes, and a text that stood there";
}

TEST_F(UserAltText, DoesNotMatchAUriShorterThanTheMarker) {
  Repair({Element("Sect")({Element("Link")({Element("Figure")}).Object(Link("?id_useralttext"))})});
  EXPECT_EQ(Uris(), Strings{"?id_useralttext"});
}

TEST_F(UserAltText, RemovesLinksThatWereEmptyBefore) {
  Link("");
  Link("https://example.org/");
  Link("");
  Repair({Element("P")});
  EXPECT_EQ(Uris(), Strings{"https://example.org/"});
}

TEST_F(UserAltText, KeepsLinksWithoutAUri) {
  page_.Annotate("Link").Set("A", "<</S/Named/N/NextPage>>");
  page_.Annotate("Link");
  page_.Annotate("Text").Set("A", "<</S/URI/URI()>>");
  document_.Tree({Element("P")});
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Action(kUserAltText), test::kSuccess);
  test::ReadBack file(open.Save());
  EXPECT_EQ(file.Page(1).getKey("/Annots").getArrayNItems(), 3);
}

TEST_F(UserAltText, OnlyPurgesADocumentWithoutAStructureTree) {
  Link("");
  Link(std::string("?id_useralttext=") + kPayload);
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Action(kUserAltText), test::kSuccess);
  saved_ = open.Save();
  EXPECT_EQ(Uris(), Strings{std::string("?id_useralttext=") + kPayload});
}

TEST_F(UserAltText, EndsWithTheHostsRaiseForAnActionWhoseKindIsNoName) {
  Annotation link = page_.Annotate("Link");
  link.Set("A", "<</S(URI)/URI(x)>>");
  document_.Tree({Element("Link")({Element("Figure")}).Object(link)});
  OpenDocument open(document_.Write());
  const test::Outcome outcome = open.Action(kUserAltText);
  EXPECT_EQ(outcome.result, TGX_FAILED);
  EXPECT_NE(outcome.text, "");
}

TEST_F(UserAltText, EndsWithTheHostsRaiseWhereContentStandsBesideTheAnnotation) {
  document_.Tree(
      {Element("Sect")({Element("Link").Text(page_, "x").Object(Link(std::string("?id_useralttext=") + kPayload))})});
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Action(kUserAltText).result, TGX_FAILED);
}

}  // namespace
}  // namespace tgx
