#include "src/actions/Toc/TocMetaData.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tgx {
namespace {

std::vector<TocItem> Read(const char* text) {
  tinyxml2::XMLDocument file;
  EXPECT_EQ(file.Parse(text), tinyxml2::XML_SUCCESS) << text;
  return ReadTocItems(file);
}

TEST(TocMetaData, ReadsAllThatAFileHolds) {
  const auto items = Read(
      "<?xml version='1.0'?><TOC_Item name='n' title='T &amp; t' default='1'><TOC_Entry level='2'>"
      "<TOC_EntrySourceStyle id='7' name='a' location='b' path='c'/><TOC_EntryStyle id='8' name='d' location='e' path='f'/>"
      "<TOC_EntryText> one </TOC_EntryText><TOC_EntryText>two</TOC_EntryText></TOC_Entry></TOC_Item>");
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0].name, "n");
  EXPECT_EQ(items[0].title, "T & t");
  EXPECT_TRUE(items[0].isDefault);
  ASSERT_EQ(items[0].entries.size(), 1U);
  const TocEntry& entry = items[0].entries[0];
  EXPECT_EQ(entry.level, 2);
  EXPECT_EQ(entry.texts, (std::vector<std::string>{" one ", "two"}));
  EXPECT_EQ(entry.sourceStyle.id, 7);
  EXPECT_EQ(entry.sourceStyle.name + entry.sourceStyle.location + entry.sourceStyle.path, "abc");
  EXPECT_EQ(entry.entryStyle.id, 8);
  EXPECT_EQ(entry.entryStyle.name + entry.entryStyle.location + entry.entryStyle.path, "def");
}

TEST(TocMetaData, TakesMissingTextsForEmptyAndMissingNumbersForNought) {
  const auto items = Read("<TOC_Item><TOC_Entry><TOC_EntryStyle/><TOC_EntryText/></TOC_Entry></TOC_Item>");
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0].name + items[0].title, "");
  EXPECT_FALSE(items[0].isDefault);
  ASSERT_EQ(items[0].entries.size(), 1U);
  EXPECT_EQ(items[0].entries[0].level, 0);
  EXPECT_EQ(items[0].entries[0].entryStyle.id, 0);
  EXPECT_EQ(items[0].entries[0].texts, std::vector<std::string>{""});
}

TEST(TocMetaData, CountsWhatFollowsTheFirstWhateverItsName) {
  const auto items = Read(
      "<Other/><TOC_Item><Other/><TOC_Entry><TOC_EntryText>a</TOC_EntryText><TOC_EntryStyle>b</TOC_EntryStyle></TOC_Entry>"
      "<Other/></TOC_Item><Other title='t'/>");
  ASSERT_EQ(items.size(), 2U);
  EXPECT_EQ(items[1].title, "t");
  ASSERT_EQ(items[0].entries.size(), 2U);
  EXPECT_EQ(items[0].entries[0].texts, (std::vector<std::string>{"a", "b"}));
}

TEST(TocMetaData, FindsNothingInFilesOfOtherKinds) {
  EXPECT_TRUE(Read("<Other><TOC_Item/></Other>").empty());
  EXPECT_TRUE(Read("<TOC_Entry/>").empty());
}

}  // namespace
}  // namespace tgx
