#include "src/common/XmlGuard.h"

#include <gtest/gtest.h>

#include <string>

namespace tgx {
namespace {

std::string Attributes(int count, const std::string& value = "\"\"") {
  std::string text;
  for (int i = 0; i < count; ++i) text += " a" + std::to_string(i) + "=" + value;
  return text;
}

TEST(IsTooMuchXml, AllowsAHundredAttributes) {
  EXPECT_FALSE(IsTooMuchXml("<a" + Attributes(100) + "/>"));
  EXPECT_TRUE(IsTooMuchXml("<a" + Attributes(101) + "/>"));
}

TEST(IsTooMuchXml, CountsTheAttributesOfEachTagAlone) {
  EXPECT_FALSE(IsTooMuchXml("<a" + Attributes(60) + "><b" + Attributes(60) + "/></a>"));
}

TEST(IsTooMuchXml, LooksAtEveryTag) {
  EXPECT_TRUE(IsTooMuchXml("<?xml version='1.0'?><!DOCTYPE a>text<a>text<b" + Attributes(101)));
}

TEST(IsTooMuchXml, IsNotLedAstrayByValues) {
  for (const char* value : {"'>'", "'<'", "'\"'", "\"'\"", "'-->'", "'<!--'"}) {
    EXPECT_TRUE(IsTooMuchXml("<a" + Attributes(101, value) + "/>")) << value;
  }
}

TEST(IsTooMuchXml, IsNotLedAstrayByWhatIsNoElement) {
  for (const char* other : {"<!-- it's > 1 -->", "<![CDATA[it's > 1 \"]]>", "<!ELEMENT it's>", "<? it's > 1 ?>", "it's"}) {
    EXPECT_TRUE(IsTooMuchXml(std::string(other) + "<a" + Attributes(101) + "/>")) << other;
  }
}

TEST(IsTooMuchXml, CountsNoQuotesOutsideTags) {
  const std::string quotes(1000, '"');
  EXPECT_FALSE(IsTooMuchXml("<a>" + quotes + "</a>" + quotes + "<!--" + quotes + "--><![CDATA[" + quotes + "]]>"));
}

std::string Repeated(const std::string& text, std::size_t count) {
  std::string all;
  all.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

TEST(IsTooMuchXml, AllowsAMillionTags) {
  EXPECT_FALSE(IsTooMuchXml(Repeated("<a/>", 1'000'000)));
  EXPECT_TRUE(IsTooMuchXml(Repeated("<a/>", 1'000'001)));
}

TEST(IsTooMuchXml, CountsAttributesAndWhatIsNoElementLikeTags) {
  EXPECT_FALSE(IsTooMuchXml(Repeated("<a b='' c=''/>x<!---->", 250'000)));
  EXPECT_TRUE(IsTooMuchXml(Repeated("<a b='' c=''/>x<!---->", 250'001)));
}

TEST(IsTooMuchXml, AllowsSixtyFourMebibytesOfText) {
  const std::size_t most = std::size_t{64} << 20U;
  EXPECT_FALSE(IsTooMuchXml(std::string(most, 'x')));
  EXPECT_TRUE(IsTooMuchXml(std::string(most + 1, 'x')));
}

TEST(IsTooMuchXml, EndsWithTheText) {
  for (const char* text : {"", "<", "<a", "<a b='", "<!--", "<!", "<?", "<![CDATA[", "<a b='c'"}) {
    EXPECT_FALSE(IsTooMuchXml(text)) << text;
  }
}

}  // namespace
}  // namespace tgx
