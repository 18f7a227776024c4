// Footnotes of documents that a word processor and a browser have laid out and tagged, seen through a viewer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include "tests/support/DataFiles.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/Paths.h"
#include "tests/support/Rendering.h"
#include "tests/support/TestDocument.h"
#include "tests/support/TreeText.h"
#include "tests/support/Viewers.h"

namespace tgx {
namespace {

using test::Box;
using test::OpenDocument;
using test::ReadBack;

constexpr int kFootnoteLinks = 10;

std::vector<QPDFObjectHandle> KidsOf(QPDFObjectHandle element) {
  QPDFObjectHandle kids = element.getKey("/K");
  if (kids.isNull()) return {};
  return kids.isArray() ? kids.getArrayAsVector() : std::vector<QPDFObjectHandle>{kids};
}

bool IsObjectReference(QPDFObjectHandle kid) { return kid.isDictionaryOfType("/OBJR"); }

/// Every element below, parents before kids.
void CollectElements(QPDFObjectHandle element, std::vector<QPDFObjectHandle>& elements) {
  for (QPDFObjectHandle kid : KidsOf(element)) {
    if (!kid.isDictionary() || !kid.hasKey("/S")) continue;
    elements.push_back(kid);
    CollectElements(kid, elements);
  }
}

std::vector<QPDFObjectHandle> ElementsOfType(QPDF& pdf, const std::string& type) {
  std::vector<QPDFObjectHandle> elements;
  CollectElements(pdf.getRoot().getKey("/StructTreeRoot"), elements);
  elements.erase(std::remove_if(elements.begin(), elements.end(),
                                [&](QPDFObjectHandle element) { return element.getKey("/S").getName() != type; }),
                 elements.end());
  return elements;
}

/// A word processor links a note by itself, with a "Link" around its mark. Takes these links off and leaves bare references,
/// as the exporter does that this is for.
std::string WithBareReferences(const std::string& bytes) {
  ReadBack file(bytes);
  for (QPDFObjectHandle element : ElementsOfType(file.Pdf(), "/Link")) {
    element.replaceKey("/S", QPDFObjectHandle::newName("/Reference"));
    std::vector<QPDFObjectHandle> kids = KidsOf(element);
    kids.erase(std::remove_if(kids.begin(), kids.end(), IsObjectReference), kids.end());
    element.replaceKey("/K", QPDFObjectHandle::newArray(kids));
  }
  for (QPDFObjectHandle page : file->getAllPages()) page.removeKey("/Annots");
  return test::WriteToString(file.Pdf());
}

struct Footnotes {
  const char* name;
  const char* file;
  int count;
  int inFrame = 0;  ///< the number of the note whose reference stands in a text frame
  bool linksItself = false;
};

std::string Bytes(const Footnotes& document) {
  std::string bytes = test::ReadBytes(test::DataPath(document.file));
  return document.linksItself ? WithBareReferences(bytes) : bytes;
}

class FootnoteDocuments : public testing::TestWithParam<Footnotes> {
 protected:
  void SetUp() override {
    before_ = Bytes(GetParam());
    OpenDocument open(before_);
    ASSERT_EQ(open.Action(kFootnoteLinks), test::kSuccess);
    after_ = open.Save();
    file_ = std::make_unique<ReadBack>(after_);
    FindLinks();
  }

  struct Link {
    int page;
    QPDFObjectHandle annotation;
    Box Area() const { return BoxOf(QPDFObjectHandle(annotation).getKey("/Rect"), 0); }
    /// "D" of the action: a page, the kind, and a rectangle.
    QPDFObjectHandle Destination() const { return QPDFObjectHandle(annotation).getKey("/A").getKey("/D"); }
    Box Target() const { return BoxOf(Destination(), 2); }

    static Box BoxOf(QPDFObjectHandle array, int at) {
      const auto number = [&](int index) { return array.getArrayItem(at + index).getNumericValue(); };
      return {number(0), number(1), number(2), number(3)};
    }
  };

  const Link& Forth(int number) const { return links_.at("Footnote " + std::to_string(number)); }
  const Link& Back(int number) const { return links_.at("Footnote reference " + std::to_string(number)); }

  /// The words that lie under a link, and the box around them.
  std::pair<std::string, Box> Under(const Link& link) const { return WordsIn(link.page, link.Area()); }

  std::pair<std::string, Box> WordsIn(int page, const Box& area) const {
    static std::map<std::string, std::vector<test::SeenWord>> known;
    auto& words = known[GetParam().name];
    if (words.empty()) words = test::WordsSeen(after_);
    std::string text;
    Box around = {1e9, 1e9, -1e9, -1e9};
    for (const test::SeenWord& word : words) {
      const double x = (word.box.left + word.box.right) / 2;
      const double y = (word.box.bottom + word.box.top) / 2;
      if (word.page != page || x < area.left || x > area.right || y < area.bottom || y > area.top) continue;
      text += (text.empty() ? "" : " ") + word.text;
      around = {std::min(around.left, word.box.left), std::min(around.bottom, word.box.bottom),
                std::max(around.right, word.box.right), std::max(around.top, word.box.top)};
    }
    return {text, around};
  }

  /// The link that a viewer has in the place of this one.
  test::FollowedLink Followed(const Link& link) const {
    static std::map<std::string, std::vector<test::FollowedLink>> known;
    auto& followed = known[GetParam().name];
    if (followed.empty()) followed = test::LinksFollowed(after_);
    const Box area = link.Area();
    for (const test::FollowedLink& candidate : followed) {
      const Box& box = candidate.box;
      if (candidate.page == link.page && std::abs(box.left - area.left) < 0.1 && std::abs(box.top - area.top) < 0.1)
        return candidate;
    }
    ADD_FAILURE() << "there is no such link";
    return {};
  }

  static void ExpectNear(const Box& box, const Box& other, double points) {
    EXPECT_NEAR(box.left, other.left, points);
    EXPECT_NEAR(box.bottom, other.bottom, points);
    EXPECT_NEAR(box.right, other.right, points);
    EXPECT_NEAR(box.top, other.top, points);
  }

  std::string before_;
  std::string after_;
  std::unique_ptr<ReadBack> file_;
  std::map<std::string, Link> links_;  ///< by title

 private:
  void FindLinks() {
    int number = 0;
    for (QPDFObjectHandle page : (*file_)->getAllPages()) {
      ++number;
      QPDFObjectHandle annotations = page.getKey("/Annots");
      if (!annotations.isArray()) continue;
      for (QPDFObjectHandle annotation : annotations.getArrayAsVector()) {
        QPDFObjectHandle title = annotation.getKey("/T");
        if (annotation.getKey("/Subtype").unparse() != "/Link" || !title.isString()) continue;
        EXPECT_TRUE(links_.emplace(title.getStringValue(), Link{number, annotation}).second) << title.getStringValue();
      }
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Documents, FootnoteDocuments,
                         testing::Values(Footnotes{"AnnualReport", "samples/annual-report.pdf", 2},
                                         Footnotes{"TravelGuide", "samples/travel-guide.pdf", 2, 1},
                                         Footnotes{"Handbook", "samples/handbook.pdf", 3, 2},
                                         Footnotes{"Mill", "libreoffice/footnotes.pdf", 5, 0, true}),
                         [](const auto& document) { return document.param.name; });

TEST_P(FootnoteDocuments, GetTwoLinksANote) {
  EXPECT_EQ(links_.size(), 2U * static_cast<std::size_t>(GetParam().count));
  for (int number = 1; number <= GetParam().count; ++number) {
    EXPECT_EQ(links_.count("Footnote " + std::to_string(number)), 1U);
    EXPECT_EQ(links_.count("Footnote reference " + std::to_string(number)), 1U);
  }
}

TEST_P(FootnoteDocuments, StaySoundWithATrueParentTree) { test::ExpectSound(after_); }

TEST_P(FootnoteDocuments, HaveTheirLinksOverTheMarks) {
  for (int number = 1; number <= GetParam().count; ++number) {
    const auto [text, around] = Under(Forth(number));
    EXPECT_EQ(text, std::to_string(number));
    ExpectNear(Forth(number).Area(), around, 1);
  }
}

TEST_P(FootnoteDocuments, HaveTheLinksBackOverTheNotes) {
  for (int number = 1; number <= GetParam().count; ++number) {
    const auto [text, around] = Under(Back(number));
    EXPECT_EQ(text.substr(0, text.find_first_not_of("0123456789")), std::to_string(number)) << text;
    Box area = Back(number).Area();
    // A line of a note ends with the space before its next word, which no viewer takes for a part of a word.
    constexpr double kSpace = 4;
    if (area.right > around.right && area.right < around.right + kSpace) area.right = around.right;
    ExpectNear(area, around, 1);
  }
}

TEST_P(FootnoteDocuments, LeadToTheAreaOfTheNote) {
  for (int number = 1; number <= GetParam().count; ++number) {
    QPDFObjectHandle destination = Forth(number).Destination();
    EXPECT_EQ(destination.getArrayItem(0).getObjGen(), file_->Page(Back(number).page).getObjGen());
    EXPECT_EQ(destination.getArrayItem(1).unparse(), "/FitR");
    ExpectNear(Forth(number).Target(), Back(number).Area(), 0.01);
  }
}

TEST_P(FootnoteDocuments, LeadBackToThePageOfTheNote) {
  for (int number = 1; number <= GetParam().count; ++number) {
    QPDFObjectHandle destination = Back(number).Destination();
    EXPECT_EQ(destination.getArrayItem(0).getObjGen(), file_->Page(Back(number).page).getObjGen());
    EXPECT_EQ(destination.getArrayItem(1).unparse(), "/FitR");
  }
}

TEST_P(FootnoteDocuments, LeadBackToTheAreaOfTheMarkOrOfTheTextFrameAroundIt) {
  for (int number = 1; number <= GetParam().count; ++number) {
    const Box target = Back(number).Target();
    const Box mark = Forth(number).Area();
    if (number == GetParam().inFrame) {
      EXPECT_LT(target.left, mark.left);
      EXPECT_GT(target.right, mark.right);
      EXPECT_GT(target.top, mark.top);
    } else {
      ExpectNear(target, mark, 0.01);
    }
  }
}

TEST_P(FootnoteDocuments, HaveLinksThatAViewerFollows) {
  const std::vector<test::SeenLink> seen = test::LinksSeen(after_);
  for (int number = 1; number <= GetParam().count; ++number) {
    const auto isForth = [&](const test::SeenLink& link) {
      return link.page == Forth(number).page && link.targetPage == Back(number).page && link.text == std::to_string(number);
    };
    EXPECT_TRUE(std::any_of(seen.begin(), seen.end(), isForth)) << "Footnote " << number;
  }
}

TEST_P(FootnoteDocuments, LeadAViewerToTheWordsOfTheNote) {
  for (int number = 1; number <= GetParam().count; ++number) {
    const test::FollowedLink link = Followed(Forth(number));
    EXPECT_EQ(link.targetPage, Back(number).page);
    EXPECT_EQ(WordsIn(link.targetPage, link.target).first, Under(Back(number)).first);
  }
}

TEST_P(FootnoteDocuments, LeadAViewerBackToTheMarkOrTheTextFrameAroundIt) {
  for (int number = 1; number <= GetParam().count; ++number) {
    const test::FollowedLink link = Followed(Back(number));
    EXPECT_EQ(link.targetPage, Back(number).page) << "its own page, whichever the mark is on";
    const auto [text, around] = WordsIn(link.targetPage, link.target);
    if (number == GetParam().inFrame) {
      EXPECT_GT(text.size(), 50U) << text;
    } else {
      EXPECT_EQ(text, std::to_string(number));
      ExpectNear(link.target, around, 1);
    }
  }
}

TEST_P(FootnoteDocuments, HaveAllKidsOfReferencesAndNotesInALink) {
  for (const char* type : {"/Reference", "/Note"}) {
    const std::vector<QPDFObjectHandle> elements = ElementsOfType(file_->Pdf(), type);
    EXPECT_EQ(elements.size(), static_cast<std::size_t>(GetParam().count));
    for (QPDFObjectHandle element : elements) {
      std::vector<QPDFObjectHandle> kids = KidsOf(element);
      ASSERT_EQ(kids.size(), 1U);
      EXPECT_EQ(kids[0].getKey("/S").unparse(), "/Link");
      std::vector<QPDFObjectHandle> inside = KidsOf(kids[0]);
      ASSERT_GE(inside.size(), 2U) << "the content, and the annotation behind it";
      EXPECT_TRUE(IsObjectReference(inside.back()));
    }
  }
}

TEST_P(FootnoteDocuments, LookAsBefore) {
  const auto before = test::RenderPages(before_);
  const auto after = test::RenderPages(after_);
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t page = 0; page < after.size(); ++page) EXPECT_TRUE(test::Compare(before[page], after[page]).IsEmpty());
}

TEST(FootnotesOfAWordProcessor, FailWhereTheirMarksAreNoReferences) {
  // Its notes have links in the place of references, so there are none to pair the notes with.
  const std::string bytes = test::ReadBytes(test::DataPath("libreoffice/footnotes.pdf"));
  OpenDocument open(bytes);
  EXPECT_EQ(open.Action(kFootnoteLinks), test::kSoftFailure);
  EXPECT_EQ(SavedTree(open), test::TreeText(bytes));
}

}  // namespace
}  // namespace tgx
