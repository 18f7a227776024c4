// What becomes of single marks: bullets, formulas, alternate texts, buttons, languages.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>

#include "tests/src/samples/Samples.h"
#include "tests/support/Rendering.h"

namespace tgx {
namespace {

using test::ReadBack;
using test::SampleAfterAction;
using test::SampleAfterFixes;
using test::SampleBytes;
using testing::HasSubstr;
using testing::Not;

constexpr std::uint32_t kDoubleBullets = 0x1;
constexpr std::uint32_t kButtons = 0x100;
constexpr int kUserAltText = 8;
constexpr int kMathML = 17;

std::vector<QPDFObjectHandle> KidsOf(QPDFObjectHandle element) {
  QPDFObjectHandle kids = element.getKey("/K");
  if (kids.isNull()) return {};
  return kids.isArray() ? kids.getArrayAsVector() : std::vector<QPDFObjectHandle>{kids};
}

void CollectAlts(QPDFObjectHandle element, std::vector<std::string>& alts) {
  for (QPDFObjectHandle kid : KidsOf(element)) {
    if (!kid.isDictionary()) continue;
    if (QPDFObjectHandle alt = kid.getKey("/Alt"); alt.isString()) alts.push_back(alt.getUTF8Value());
    CollectAlts(kid, alts);
  }
}

std::vector<QPDFObjectHandle> Annotations(ReadBack& file, const std::string& subtype) {
  std::vector<QPDFObjectHandle> found;
  for (QPDFObjectHandle page : file->getAllPages()) {
    QPDFObjectHandle annotations = page.getKey("/Annots");
    if (!annotations.isArray()) continue;
    for (QPDFObjectHandle annotation : annotations.getArrayAsVector()) {
      if (annotation.getKey("/Subtype").unparse() == subtype) found.push_back(annotation);
    }
  }
  return found;
}

/// The targets of all links that open a URI.
std::vector<std::string> Uris(const std::string& pdf) {
  ReadBack file(pdf);
  std::vector<std::string> uris;
  for (QPDFObjectHandle link : Annotations(file, "/Link")) {
    QPDFObjectHandle uri = link.getKey("/A").getKey("/URI");
    if (uri.isString()) uris.push_back(uri.getStringValue());
  }
  return uris;
}

struct BulletSample {
  const char* name;
  std::vector<int> hidden;   ///< MCIDs of the copies that go, on the first page
  std::vector<int> visible;  ///< those of the bullets beside them
};

class SampleBullets : public testing::TestWithParam<BulletSample> {
 protected:
  const std::string before_ = SampleBytes(GetParam().name);
  const std::string after_ = SampleAfterFixes(GetParam().name, kDoubleBullets);

  static bool IsInTree(const std::string& pdf, int mcid) {
    return test::TreeText(pdf).find("mcid " + std::to_string(mcid) + " page 1\n") != std::string::npos;
  }
  static bool IsOnPage(const std::string& pdf, int mcid) {
    const std::string content = ReadBack(pdf).Content(1);
    return std::regex_search(content, std::regex("/MCID " + std::to_string(mcid) + "[^0-9]"));
  }
};

INSTANTIATE_TEST_SUITE_P(Samples, SampleBullets,
                         testing::Values(BulletSample{"annual-report", {2, 4, 6}, {37, 38, 39}},
                                         BulletSample{"travel-guide", {16, 17, 18}, {1, 3, 5}},
                                         BulletSample{"handbook", {5, 7, 9}, {77, 78, 79}}),
                         [](const auto& sample) {
                           std::string name = sample.param.name;
                           name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
                           return name;
                         });

TEST_P(SampleBullets, LoseTheirHiddenCopiesFromTreeAndPage) {
  for (const int mcid : GetParam().hidden) {
    EXPECT_TRUE(IsInTree(before_, mcid) && IsOnPage(before_, mcid)) << mcid;
    EXPECT_FALSE(IsInTree(after_, mcid)) << mcid;
    EXPECT_FALSE(IsOnPage(after_, mcid)) << mcid;
  }
}

TEST_P(SampleBullets, KeepTheVisibleOnes) {
  for (const int mcid : GetParam().visible) {
    EXPECT_TRUE(IsInTree(after_, mcid)) << mcid;
    EXPECT_TRUE(IsOnPage(after_, mcid)) << mcid;
  }
}

TEST_P(SampleBullets, AreStillSeenAndNothingElseChanges) {
  const auto before = test::RenderPages(before_);
  const auto after = test::RenderPages(after_);
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t page = 1; page < after.size(); ++page) EXPECT_TRUE(test::Compare(before[page], after[page]).IsEmpty());
  // Two bullets over each other are darker at their edges than one.
  const test::Difference bullets = test::Compare(before[0], after[0]);
  EXPECT_LT(bullets.right - bullets.left, 8) << "a column as wide as a bullet";
  int seen = 0;
  bool isInBullet = false;
  for (int y = bullets.top; y < bullets.bottom; ++y) {
    bool isDark = false;
    for (int x = bullets.left; x < bullets.right; ++x) {
      const auto at = static_cast<std::size_t>(y * after[0].width + x) * 3;
      isDark = isDark || static_cast<unsigned char>(after[0].pixels[at]) < 64;
    }
    if (isDark && !isInBullet) ++seen;
    isInBullet = isDark;
  }
  EXPECT_EQ(seen, 3);
}

struct FormulaSample {
  const char* name;
  std::vector<int> complete;  ///< identifiers of the formulas that have all their marks
};

class SampleFormulas : public testing::TestWithParam<FormulaSample> {
 protected:
  /// The MathML of the marks, by identifier.
  static std::map<int, std::string> Sources(const std::string& pdf) {
    ReadBack file(pdf);
    std::vector<std::string> alts;
    CollectAlts(file.TreeRoot(), alts);
    std::map<int, std::string> sources;
    const std::regex marker("MATHML_([0-9]+)_CONTENT_MathML:([^]*)");
    for (const std::string& alt : alts) {
      std::smatch match;
      if (std::regex_match(alt, match, marker)) sources[std::stoi(match[1])] = match[2];
    }
    return sources;
  }

  const std::string before_ = SampleBytes(GetParam().name);
  const std::string after_ = SampleAfterAction(GetParam().name, kMathML);
};

INSTANTIATE_TEST_SUITE_P(Samples, SampleFormulas,
                         testing::Values(FormulaSample{"annual-report", {1, 2}}, FormulaSample{"travel-guide", {3}},
                                         FormulaSample{"handbook", {4}}),
                         [](const auto& sample) {
                           std::string name = sample.param.name;
                           name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
                           return name;
                         });

TEST_P(SampleFormulas, HaveTheirMathMLInTheAnnotationByteForByte) {
  std::map<int, std::string> sources = Sources(before_);
  ReadBack file(after_);
  std::vector<QPDFObjectHandle> highlights = Annotations(file, "/Highlight");
  ASSERT_EQ(highlights.size(), GetParam().complete.size());
  for (std::size_t i = 0; i < highlights.size(); ++i) {
    const std::string& source = sources.at(GetParam().complete[i]);
    EXPECT_EQ(source.compare(0, 5, "<math"), 0) << source;
    EXPECT_EQ(highlights[i].getKey("/Contents").getStringValue(), source);
  }
}

TEST_P(SampleFormulas, StandInAnAnnotBehindItsAnnotation) {
  ReadBack file(after_);
  const std::regex formula("( *)Annot\n\\1  objr Highlight page [0-9]+\n\\1  Formula\n\\1    ");
  const std::string tree = test::TreeText(file.Pdf());
  const auto found = std::distance(std::sregex_iterator(tree.begin(), tree.end(), formula), std::sregex_iterator());
  EXPECT_EQ(static_cast<std::size_t>(found), GetParam().complete.size());
}

TEST_P(SampleFormulas, LoseTheirMarksAndTheHolder) {
  const std::string tree = test::TreeText(after_);
  EXPECT_THAT(tree, Not(HasSubstr("_CONTENT_")));
  EXPECT_THAT(tree, Not(HasSubstr("\\u{0CF1}")));
  for (const int id : GetParam().complete) EXPECT_THAT(tree, Not(HasSubstr("MATHML_" + std::to_string(id))));
}

TEST(Handbook, KeepsTheMarkOfAFormulaThatHasNoEnd) {
  EXPECT_THAT(test::TreeText(SampleAfterAction("handbook", kMathML)), HasSubstr("MATHML_5_START"));
}

TEST(AnnualReport, GetsTheUsersTextForItsFigureInThePlaceOfTheLink) {
  const std::string before = SampleBytes("annual-report");
  const std::string after = SampleAfterAction("annual-report", kUserAltText);
  EXPECT_THAT(test::TreeText(after), HasSubstr("\n  Figure alt=u\"A blue crane on the east quay, seen from the water\""));
  EXPECT_EQ(Uris(after).size() + 1, Uris(before).size()) << "the annotation leaves the page";
}

TEST(TravelGuide, GetsTheUsersTextsForItsFigures) {
  const std::string before = SampleBytes("travel-guide");
  const std::string after = SampleAfterAction("travel-guide", kUserAltText);
  const std::string tree = test::TreeText(after);
  EXPECT_THAT(tree, HasSubstr("Figure alt=u\"Blue water under a grey sky, seen over the rail of the ferry\""));
  EXPECT_THAT(tree,
              HasSubstr("Figure alt=u\"Sketch of the paths: one line from the village to the saddle, three from there\""));
  EXPECT_THAT(tree, Not(HasSubstr("A round red seal"))) << "its link has three kids";
  const std::vector<std::string> uris = Uris(after);
  EXPECT_EQ(std::count(uris.begin(), uris.end(), "https://example.org/crossing"), 1);
  EXPECT_EQ(uris.size() + 2, Uris(before).size()) << "links that lead nowhere leave the page, that of the seal too";
}

TEST(Handbook, GetsTheUsersTextForItsFigureAndKeepsTheLink) {
  const std::string after = SampleAfterAction("handbook", kUserAltText);
  EXPECT_THAT(test::TreeText(after),
              HasSubstr("Figure alt=u\"Ein flacher Steinbogen \\u{00FC}ber einem Bach, links eine Weide\""));
  EXPECT_THAT(Uris(after), testing::Contains("https://example.org/bogen?nr=7"));
}

TEST(AnnualReport, HasStampsInThePlaceOfItsButtons) {
  ReadBack before(SampleBytes("annual-report"));
  ReadBack after(SampleAfterFixes("annual-report", kButtons));
  EXPECT_EQ(Annotations(before, "/Stamp").size(), 0U);
  ASSERT_EQ(Annotations(after, "/Stamp").size(), 2U);
  EXPECT_EQ(Annotations(before, "/Widget").size(), Annotations(after, "/Widget").size() + 2);
  std::string onClick;
  for (QPDFObjectHandle widget : Annotations(before, "/Widget")) {
    QPDFObjectHandle action = widget.getKey("/AA").getKey("/D");
    if (!action.isNull()) onClick = action.unparseResolved();
  }
  ASSERT_NE(onClick, "");
  const auto stamps = Annotations(after, "/Stamp");
  const auto isClicked = [&](QPDFObjectHandle stamp) { return stamp.getKey("/A").unparseResolved() == onClick; };
  EXPECT_EQ(std::count_if(stamps.begin(), stamps.end(), isClicked), 1);
  for (QPDFObjectHandle stamp : stamps) EXPECT_FALSE(stamp.hasKey("/AA"));
}

TEST(AnnualReport, LooksAsBeforeWithStampsForButtons) {
  const auto before = test::RenderPages(SampleBytes("annual-report"));
  const auto after = test::RenderPages(SampleAfterFixes("annual-report", kButtons));
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t page = 0; page < after.size(); ++page)
    EXPECT_TRUE(test::Compare(before[page], after[page]).IsEmpty()) << page;
}

/// How often each "Lang" stands in the tree.
std::map<std::string, int> Languages(const std::string& bytes) {
  ReadBack file(bytes);
  std::map<std::string, int> languages;
  for (QPDFObjectHandle& object : file->getAllObjects()) {
    if (!object.isDictionary() || !object.hasKey("/S") || !object.hasKey("/P")) continue;
    if (QPDFObjectHandle language = object.getKey("/Lang"); language.isString()) ++languages[language.getStringValue()];
  }
  return languages;
}

/// The tag of a language as the exporter's format has it: each character behind U+000E, between U+007F and U+0001.
std::string TagOf(const std::string& language) {
  std::string tag = {'\xFE', '\xFF', '\0', '\x0E', '\0', '\x7F', '\0', '\x0E'};
  for (const char c : language) tag += {'\0', c, '\0', '\x0E'};
  return tag + std::string{'\0', '\x01'};
}

TEST(TravelGuide, GetsTheTagsOfItsLanguages) {
  EXPECT_EQ(Languages(SampleBytes("travel-guide")), (std::map<std::string, int>{{"[Lang=en]", 1}, {"[Lang=fr]", 5}}));
  EXPECT_EQ(Languages(SampleAfterFixes("travel-guide", 0x10)),
            (std::map<std::string, int>{{TagOf("en"), 1}, {TagOf("fr"), 5}}));
}

TEST(TravelGuide, KeepsItsLanguagesInTheModeBackToBrackets) {
  EXPECT_EQ(Languages(SampleAfterFixes("travel-guide", 0x20)), Languages(SampleBytes("travel-guide")));
}

}  // namespace
}  // namespace tgx
