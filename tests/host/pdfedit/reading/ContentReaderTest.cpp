#include "host/pdfedit/reading/ContentReader.h"

#include <gtest/gtest.h>
#include <zlib.h>

namespace tgx::host {
namespace {

/// The operators with their operands, "|" between them.
std::string Operators(std::string_view content) {
  std::string text;
  ContentReader reader(content);
  while (reader.Next()) text += (text.empty() ? "" : "|") + std::string(reader.Text());
  return text;
}

std::string ImageData(const std::string& content) {
  ContentReader reader(content);
  while (reader.Next()) {
    if (reader.Code() == Opcode::kInlineImage) return std::string(reader.Image().Data(content));
  }
  return "(no image)";
}

TEST(ContentReader, KnowsEveryOperator) {
  struct Known {
    Opcode code;
    const char* keyword;
  };
  const Known all[] = {
#define TGX_KNOWN(name, keyword) {Opcode::k##name, keyword},
      TGX_CONTENT_OPERATORS(TGX_KNOWN)
#undef TGX_KNOWN
  };
  EXPECT_EQ(std::size(all), 73U);  // Annex A of ISO 32000-1
  for (const auto& [code, keyword] : all) EXPECT_EQ(OpcodeOf(keyword), code) << keyword;
  EXPECT_EQ(OpcodeOf("Tjj"), Opcode::kUnknown);
  EXPECT_EQ(OpcodeOf(""), Opcode::kUnknown);
}

TEST(ContentReader, GroupsOperandsWithTheirOperator) {
  EXPECT_EQ(Operators("q 1 0 0 1 5 5 cm\n(a) Tj Q"), "q|1 0 0 1 5 5 cm|(a) Tj|Q");
}

TEST(ContentReader, KeepsUnknownOperators) { EXPECT_EQ(Operators("1 2 frob q"), "1 2 frob|q"); }

TEST(ContentReader, TakesTrueAndFalseAsOperands) { EXPECT_EQ(Operators("true false frob"), "true false frob"); }

TEST(ContentReader, TakesTheNearestOfTooManyOperands) {
  ContentReader reader("9 9 1 2 m");
  ASSERT_TRUE(reader.Next());
  EXPECT_TRUE(reader.HasNumbers(2));
  EXPECT_EQ(reader.Number(0, 2), 1);
  EXPECT_EQ(reader.Number(1, 2), 2);
}

TEST(ContentReader, SurvivesAnyNumberOfOperands) {
  std::string content;
  for (int i = 0; i < 1000; ++i) content += std::to_string(i) + ' ';
  ContentReader reader(content += 'm');
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.Begin(), 0U);
  EXPECT_EQ(reader.Number(0, 2), 998);
  EXPECT_EQ(reader.Number(1, 2), 999);
}

TEST(ContentReader, TakesASignBehindDigitsForTheNextNumber) {
  ContentReader reader("0-12 Td 1.5-3+2 m 50- Tc");
  ASSERT_TRUE(reader.Next());
  ASSERT_TRUE(reader.HasNumbers(2));
  EXPECT_EQ(reader.Number(1, 2), -12);
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.Number(0, 2), 1.53);
  EXPECT_EQ(reader.Number(1, 2), 2);
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.Number(0, 1), 0);
}

TEST(ContentReader, SeesThatOperandsAreMissingOrWrong) {
  ContentReader reader("1 (a) m 1 m");
  ASSERT_TRUE(reader.Next());
  EXPECT_FALSE(reader.HasNumbers(2));
  ASSERT_TRUE(reader.Next());
  EXPECT_FALSE(reader.HasNumbers(2));
}

TEST(ContentReader, IgnoresOperandsWithoutAnOperator) { EXPECT_EQ(Operators("q 1 2 3"), "q"); }

TEST(ContentReader, SkipsStrayBracketsAndGarbage) { EXPECT_EQ(Operators("] q )\x80\xFF >> Q"), "q|\x80\xFF|Q"); }

TEST(ContentReader, ReadsNothingFromNothing) { EXPECT_EQ(Operators(""), ""); }

TEST(InlineImages, AreOneOperator) {
  EXPECT_EQ(Operators("q BI /W 2 /H 1 /BPC 8 /CS /G ID ab EI Q"), "q|BI /W 2 /H 1 /BPC 8 /CS /G ID ab EI|Q");
}

TEST(InlineImages, EndWhereTheirSamplesDo) { EXPECT_EQ(ImageData("BI /W 4 /H 1 /BPC 8 /CS /G ID  EI  EI Q"), " EI "); }

TEST(InlineImages, EndWhereTheirLengthSays) { EXPECT_EQ(ImageData("BI /L 6 /F /DCT ID a EI b EI q"), "a EI b"); }

TEST(InlineImages, AreSearchedWhenTheLengthIsWrong) { EXPECT_EQ(ImageData("BI /L 50 /F /DCT ID abc\nEI q"), "abc"); }

TEST(InlineImages, CountMasksAsOneBit) { EXPECT_EQ(ImageData("BI /W 9 /H 2 /IM true ID  EI \nEI Q"), " EI "); }

TEST(InlineImages, CountIndexedColoursAsOneComponent) {
  EXPECT_EQ(ImageData("BI /W 4 /H 1 /BPC 8 /CS [/I /RGB 1 <000000FFFFFF>] ID  EI  EI Q"), " EI ");
}

TEST(InlineImages, EndWhereTheirDeflatedDataDo) {
  std::string packed(100, '\0');
  uLongf size = packed.size();
  compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>("x EI y"), 6);
  packed.resize(size);
  EXPECT_EQ(ImageData("BI /W 6 /H 1 /F /Fl ID " + packed + "\nEI q"), packed);
}

TEST(InlineImages, EndWhereTheirRunsDo) { EXPECT_EQ(ImageData("BI /F /RL ID \3 EI \x80 EI q"), "\3 EI \x80"); }

TEST(InlineImages, AreNotEndedByDataThatLookLikeTheEnd) {
  EXPECT_EQ(ImageData("BI /F /DCT ID a EI \1\2\3\4 b\nEI\nQ"), "a EI \1\2\3\4 b");
}

TEST(InlineImages, MayLackTheSpaceInFrontOfTheirEnd) { EXPECT_EQ(ImageData("BI /F /DCT ID abcEI\nQ"), "abc"); }

TEST(InlineImages, ReachToTheEndOfTheContentWithoutOne) {
  EXPECT_EQ(ImageData("BI /F /DCT ID abc"), "abc");
  EXPECT_EQ(Operators("q BI /F /DCT ID abc"), "q|BI /F /DCT ID abc");
}

TEST(InlineImages, AreNoneWithoutTheirData) { EXPECT_EQ(Operators("BI /W 1 q Q"), "BI|/W 1 q|Q"); }

TEST(InlineImages, TakeOneLineEndBehindTheirBeginning) { EXPECT_EQ(ImageData("BI /F /DCT ID\r\nabc\nEI q"), "abc"); }

TEST(InlineImages, WithThousandsOfFalseEndsCostLittle) {
  std::string content;
  for (int i = 0; i < 100000; ++i) content += "BI ID EI \x80 ";
  ContentReader reader(content);
  int operators = 0;
  while (reader.Next()) ++operators;
  EXPECT_EQ(operators, 200000) << "each image, and the byte behind it";
}

std::size_t CountImages(const std::string& content) {
  ContentReader reader(content);
  std::size_t images = 0;
  while (reader.Next()) images += reader.Code() == Opcode::kInlineImage ? 1 : 0;
  return images;
}

constexpr std::size_t kManyImages = 500'000;  // which would take minutes if each were followed to the end of the content

TEST(InlineImages, WhoseRunsNeverEndCostInProportion) {
  std::string content;
  for (std::size_t i = 0; i < kManyImages; ++i) content += "BI /F /RL ID \1\1 EI q Q q Q q Q q Q q Q\n";
  EXPECT_EQ(CountImages(content), kManyImages);
}

/// Each image is a stored block behind which the block of an image further on follows.
TEST(InlineImages, WhoseDeflatedDataNeverEndCostInProportion) {
  constexpr std::size_t kImagesOfABlock = 500;
  constexpr std::size_t kBlockHeader = 5;
  const std::string begin = "BI/F/Fl ID \x78\x01";
  const std::string end = "\nEI q Q q Q q Q q Q q Q q Q\n";
  const std::size_t length = kImagesOfABlock * (begin.size() + kBlockHeader + end.size()) - kBlockHeader;
  ASSERT_LT(length, 0x10000U);
  std::string header(1, '\0');
  for (const std::size_t number : {length, ~length}) {
    header += static_cast<char>(number & 0xFFU);
    header += static_cast<char>((number >> 8U) & 0xFFU);
  }
  std::string content;
  for (std::size_t i = 0; i < kManyImages; ++i) content.append(begin).append(header).append(end);
  EXPECT_EQ(CountImages(content), kManyImages);
}

/// The last images of a row have false ends enough of their own, and then nothing but bytes that are almost an end.
TEST(InlineImages, WithFalseEndsInFrontOfMuchElseCostInProportion) {
  constexpr std::size_t kImages = 250;
  std::string content;
  for (std::size_t i = 0; i < kImages; ++i) content += "BI ID EI \x80 ";
  for (std::size_t i = 0; i < 64'000'000; ++i) content += i % 2 == 0 ? 'E' : 'F';
  EXPECT_EQ(CountImages(content), kImages);
}

TEST(InlineImages, AreFollowedPastWhatLooksLikeTheirEnd) {
  std::string bytes = " EI q Q q Q q Q q Q q Q q Q";
  bytes.resize(128, 'x');
  const std::string runs = "\x7F" + bytes + "\x80";
  EXPECT_EQ(ImageData("BI /F /RL ID " + runs + " EI q"), runs);
}

/// Where an image ends depends on what stands behind it, so a reader of a part must see the rest as well.
TEST(InlineImages, EndAtTheSamePlaceForReadersOfAPart) {
  const std::string content = "BI /F /DCT ID a EI q Q\x80\nEI q Q q Q q Q q Q q Q q Q";
  ContentReader whole(content);
  ASSERT_TRUE(whole.Next());
  EXPECT_EQ(whole.Image().Data(content), "a EI q Q\x80");
  ContentReader part(content);
  EXPECT_FALSE(part.NextUpTo(content.find('\x80')));
  ContentReader same(content);
  EXPECT_TRUE(same.NextUpTo(whole.End()));
  EXPECT_FALSE(same.NextUpTo(whole.End()));
}

}  // namespace
}  // namespace tgx::host
