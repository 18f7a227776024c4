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

TEST(HasCrowdedTag, AllowsAHundredAttributes) {
  EXPECT_FALSE(HasCrowdedTag("<a" + Attributes(100) + "/>"));
  EXPECT_TRUE(HasCrowdedTag("<a" + Attributes(101) + "/>"));
}

TEST(HasCrowdedTag, CountsTheAttributesOfEachTagAlone) {
  EXPECT_FALSE(HasCrowdedTag("<a" + Attributes(60) + "><b" + Attributes(60) + "/></a>"));
}

TEST(HasCrowdedTag, LooksAtEveryTag) {
  EXPECT_TRUE(HasCrowdedTag("<?xml version='1.0'?><!DOCTYPE a>text<a>text<b" + Attributes(101)));
}

TEST(HasCrowdedTag, IsNotLedAstrayByValues) {
  for (const char* value : {"'>'", "'<'", "'\"'", "\"'\"", "'-->'", "'<!--'"}) {
    EXPECT_TRUE(HasCrowdedTag("<a" + Attributes(101, value) + "/>")) << value;
  }
}

TEST(HasCrowdedTag, IsNotLedAstrayByWhatIsNoElement) {
  for (const char* other : {"<!-- it's > 1 -->", "<![CDATA[it's > 1 \"]]>", "<!ELEMENT it's>", "<? it's > 1 ?>", "it's"}) {
    EXPECT_TRUE(HasCrowdedTag(std::string(other) + "<a" + Attributes(101) + "/>")) << other;
  }
}

TEST(HasCrowdedTag, CountsNoQuotesOutsideTags) {
  const std::string quotes(1000, '"');
  EXPECT_FALSE(HasCrowdedTag("<a>" + quotes + "</a>" + quotes + "<!--" + quotes + "--><![CDATA[" + quotes + "]]>"));
}

TEST(HasCrowdedTag, EndsWithTheText) {
  for (const char* text : {"", "<", "<a", "<a b='", "<!--", "<!", "<?", "<![CDATA[", "<a b='c'"}) {
    EXPECT_FALSE(HasCrowdedTag(text)) << text;
  }
}

}  // namespace
}  // namespace tgx
