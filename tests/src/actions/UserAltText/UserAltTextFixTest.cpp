#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/Hosts.h"
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

  static std::string TwoByteHex(const std::string& text) {
    std::string hex;
    for (const char c : text) {
      char digits[5];
      std::snprintf(digits, sizeof digits, "%04X", static_cast<unsigned>(c));
      hex += digits;
    }
    return hex;
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
  EXPECT_EQ(Tree(),
            "Sect\n  Link\n    Figure alt=u\"A\\u{2276}\\u{EB1E}\\u{ADA9}\\u{6DB5}\\u{EC6D}\"\n    objr Link page 1\n");
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

TEST_F(UserAltText, GoesOnceOverAnArrayThatManyPagesHave) {
  document_.Object("empty", "<</Type/Annot/Subtype/Link/Rect[0 0 1 1]/A<</S/URI/URI()>>>>");
  document_.Object("full", "<</Type/Annot/Subtype/Link/Rect[0 0 1 1]/A<</S/URI/URI(x)>>>>");
  document_.Object("shared", "[$empty $full $empty $full]").Object("untouched", "[$full]");
  for (int i = 0; i < 2; ++i) document_.AddPage().Set("Annots", "$untouched");
  for (int i = 0; i < 3; ++i) document_.AddPage().Set("Annots", "$shared");
  OpenDocument open(document_.Write());
  test::RecordingHost host;
  const test::HostSession session(host.Tables());
  EXPECT_EQ(open.Action(kUserAltText), test::kSuccess);
  EXPECT_EQ(host.Count(test::Operation::PDPageGetAnnot), 1U + 4U);
  test::ReadBack file(open.Save());
  for (int page = 4; page <= 6; ++page) EXPECT_EQ(file.Page(page).getKey("/Annots").getArrayNItems(), 2) << page;
  EXPECT_EQ(file.Page(4).getKey("/Annots").getObjGen(), file.Page(6).getKey("/Annots").getObjGen());
}

TEST_F(UserAltText, LeavesThePagesToTheHost) {
  document_.AddPage();
  OpenDocument open(document_.Write());
  test::CountingHost host;
  const test::HostSession session(host.Tables());
  EXPECT_EQ(open.Action(kUserAltText), test::kSuccess);
  EXPECT_EQ(host.Open("pages"), 2) << "the pass over the annotations releases none";
}

TEST_F(UserAltText, WorksByTheTreeThatItFound) {
  Element inner("Link");
  inner.Add(Element("Figure")).Object(Link(std::string("?id_useralttext=") + kPayload));
  const std::string target = "https://example.org/";
  Repair({Element("Sect")({Element("Link")({inner}).Object(Link(target + "?id_useralttext=AEI="))})});
  EXPECT_EQ(Tree(), "Sect\n  Link\n    Figure alt=u\"A cat\"\n    objr Link page 1\n")
      << "the outer text goes to the inner link, which is no longer there";
  EXPECT_EQ(Uris(), Strings{target});
}

TEST_F(UserAltText, EndsWithTheHostsRaiseWhereTheElementBesideALinkIsGone) {
  Element inner("Link");
  inner.Add(Element("Figure")).Object(Link(std::string("?id_useralttext=") + kPayload));
  document_.Tree({Element("Sect")({Element("Link")({inner}).Object(Link("?id_useralttext=AEI="))})});
  OpenDocument open(document_.Write());
  EXPECT_EQ(open.Action(kUserAltText).result, TGX_FAILED);
  EXPECT_EQ(test::TreeText(open.Save()), "Sect\n  Link\n    Figure alt=u\"A cat\"\n    objr Link page 1\n");
}

TEST_F(UserAltText, DissolvesLinksSideBySide) {
  const auto link = [&](const char* type) {
    return Element("Link")({Element(type)}).Object(Link(std::string("?id_useralttext=") + kPayload));
  };
  Repair({Element("Sect")({link("Figure"), Element("P"), link("Formula"), link("Form")})});
  EXPECT_EQ(Tree(), "Sect\n  Figure alt=u\"A cat\"\n  P\n  Formula alt=u\"A cat\"\n  Form alt=u\"A cat\"\n");
}

TEST_F(UserAltText, SkipsBytesThatAreNotInTheAlphabet) {
  Repair({Element("Sect")({Element("Link")({Element("Figure")}).Object(Link("x?id_useralttext=A-EE_=\nA.Qg"))})});
  EXPECT_EQ(Tree(), "Sect\n  Link\n    Figure alt=u\"AB\"\n    objr Link page 1\n");
}

TEST_F(UserAltText, ReadsAUriOfTwoBytesACharacter) {
  Annotation link = page_.Annotate("Link");
  link.Set("A", "<</S/URI/URI<" + TwoByteHex("y?id_useralttext=AEE=") + ">>>");
  Repair({Element("Sect")({Element("Link")({Element("Figure")}).Object(link)})});
  EXPECT_EQ(Tree(), "Sect\n  Link\n    Figure alt=u\"A\"\n    objr Link page 1\n");
  EXPECT_EQ(Uris(), Strings{"y"});
}

TEST_F(UserAltText, TakesNoAnnotationWithoutAType) {
  Annotation link = Link(std::string("x?id_useralttext=") + kPayload);
  link.Set("Type", "null");
  Repair({Element("Sect")({Element("Link")({Element("Figure")}).Object(link)})});
  EXPECT_EQ(Uris(), Strings{std::string("x?id_useralttext=") + kPayload});
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
