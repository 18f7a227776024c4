#include "host/pdfedit/writing/Deflater.h"

#include <gtest/gtest.h>
#include <qpdf/Pl_Buffer.hh>
#include <qpdf/Pl_Flate.hh>

namespace tgx::host {
namespace {

std::string BytesOf(const Buffer& bytes) { return {reinterpret_cast<const char*>(bytes.getBuffer()), bytes.getSize()}; }

std::string Inflated(const Buffer& packed) {
  Pl_Buffer plain("plain");
  Pl_Flate inflate("inflate", &plain, Pl_Flate::a_inflate);
  inflate.write(const_cast<unsigned char*>(packed.getBuffer()), packed.getSize());
  inflate.finish();
  return BytesOf(*plain.getBufferSharedPointer());
}

/// Texts of different lengths, enough of them for threads and for the caller to help.
std::vector<std::string> ManyContents() {
  std::vector<std::string> contents;
  for (int i = 0; i < 500; ++i) {
    std::string content;
    for (int line = 0; line < 20 + i; ++line) content += "BT 1 0 0 1 72 " + std::to_string(line * i) + " Tm (x) Tj ET\n";
    contents.push_back(std::move(content));
  }
  return contents;
}

TEST(Deflater, GivesContentsBackInTheirOrder) {
  const std::vector<std::string> contents = ManyContents();
  Deflater deflater;
  for (const std::string& content : contents) deflater.Add(content);
  const auto packed = deflater.Finish();
  ASSERT_EQ(packed.size(), contents.size());
  for (std::size_t i = 0; i < packed.size(); ++i) ASSERT_EQ(Inflated(*packed[i]), contents[i]) << i;
}

TEST(Deflater, MakesOfEachContentWhatItMakesOfItAlone) {
  const std::vector<std::string> contents = ManyContents();
  Deflater deflater;
  for (const std::string& content : contents) deflater.Add(content);
  const auto packed = deflater.Finish();
  for (std::size_t i = 0; i < packed.size(); ++i) ASSERT_EQ(BytesOf(*packed[i]), BytesOf(*Deflate(contents[i]))) << i;
}

TEST(Deflater, HasNothingToGiveWithoutContents) { EXPECT_TRUE(Deflater().Finish().empty()); }

TEST(Deflater, CanBeLeftInTheMiddle) {
  Deflater deflater;
  for (std::string& content : ManyContents()) deflater.Add(std::move(content));
}

}  // namespace
}  // namespace tgx::host
