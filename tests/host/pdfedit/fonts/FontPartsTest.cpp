#include "host/pdfedit/fonts/FontParts.h"

#include <gtest/gtest.h>

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>

namespace tgx::host {
namespace {

/// A file whose streams count how often they are read.
class FontPartsTest : public testing::Test {
 protected:
  FontPartsTest() { file_.emptyPDF(); }

  QPDFObjectHandle CountedStream(const std::string& text) {
    QPDFObjectHandle stream = file_.newStream();
    const auto write = [this, text](Pipeline* pipeline) {
      ++reads;
      pipeline->writeString(text);
      pipeline->finish();
    };
    stream.replaceStreamData(write, QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull());
    return stream;
  }
  static std::unique_ptr<Font> Read(const std::string& dictionary, const char* key, const QPDFObjectHandle& value,
                                    FontParts& parts) {
    QPDFObjectHandle font = QPDFObjectHandle::parse(dictionary);
    font.replaceKey(key, value);
    return Font::Read(font, parts);
  }
  static std::u16string Character(const Font& font, Font::Code code) {
    std::u16string text;
    font.AppendUnicode(code, text);
    return text;
  }

  FontParts parts;
  int reads = 0;

 private:
  QPDF file_;
};

TEST_F(FontPartsTest, FontsOfOneMapReadItOnce) {
  QPDFObjectHandle map = CountedStream("1 beginbfchar <0041> <0062> endbfchar");
  const auto simple = Read("<</Subtype/Type1>>", "/ToUnicode", map, parts);
  const auto other = Read("<</Subtype/TrueType>>", "/ToUnicode", map, parts);
  const auto composite = Read("<</Subtype/Type0/Encoding/Identity-H/DescendantFonts[<<>>]>>", "/ToUnicode", map, parts);
  EXPECT_EQ(reads, 1);
  EXPECT_EQ(Character(*simple, {'A', 1}), u"b");
  EXPECT_EQ(Character(*other, {'A', 1}), u"b");
  EXPECT_EQ(Character(*composite, {'A', 2}), u"b");
}

TEST_F(FontPartsTest, FontsOfTwoMapsReadBoth) {
  const char* font = "<</Subtype/Type1>>";
  EXPECT_EQ(Character(*Read(font, "/ToUnicode", CountedStream("1 beginbfchar <41> <0062> endbfchar"), parts), {'A', 1}),
            u"b");
  EXPECT_EQ(Character(*Read(font, "/ToUnicode", CountedStream("1 beginbfchar <41> <0063> endbfchar"), parts), {'A', 1}),
            u"c");
}

TEST_F(FontPartsTest, CMapsOfOneBaseReadItOnce) {
  QPDFObjectHandle base =
      CountedStream("1 begincodespacerange <00> <FF> endcodespacerange 1 begincidrange <00> <FF> 100 endcidrange");
  for (int i = 0; i < 3; ++i) {
    QPDFObjectHandle encoding = CountedStream("1 begincidchar <41> 7 endcidchar");
    encoding.getDict().replaceKey("/UseCMap", base);
    const auto font = Read("<</Subtype/Type0/DescendantFonts[<</W[166[500]]>>]>>", "/Encoding", encoding, parts);
    EXPECT_EQ(font->Advance({'B', 1}), 0.5);
  }
  EXPECT_EQ(reads, 4) << "the base, and three upon it";
}

/// As deep as maps may rest on one another, so that a code is never looked up in more of them; whichever is read first.
TEST_F(FontPartsTest, ChainsOfCMapsAreCutAtOneDepthInAnyOrder) {
  std::vector<QPDFObjectHandle> chain;
  for (int i = 0; i < 20; ++i) {
    QPDFObjectHandle map = CountedStream(i == 0 ? "1 begincidrange <00> <FF> 100 endcidrange" : "");
    map.getDict().replaceKey("/UseCMap", i == 0 ? QPDFObjectHandle::newNull() : chain.back());
    chain.push_back(map);
  }
  for (const bool isDeepestFirst : {false, true}) {
    FontParts anew;
    std::vector<std::uint32_t> cids(chain.size());
    for (std::size_t i = 0; i < chain.size(); ++i) {
      const std::size_t at = isDeepestFirst ? i : chain.size() - 1 - i;
      cids[at] = anew.CMapOf(chain[at])->CidOf({1, 1});
    }
    for (std::size_t i = 0; i < chain.size(); ++i) {
      EXPECT_EQ(cids[i] == 101, i <= static_cast<std::size_t>(CMap::kDeepestChain)) << i;
    }
  }
}

TEST_F(FontPartsTest, FontsOfOneProgramReadItOnce) {
  QPDFObjectHandle descriptor = QPDFObjectHandle::newDictionary();
  descriptor.replaceKey("/FontFile", CountedStream("%!PS-AdobeFont-1.0"));
  for (int i = 0; i < 3; ++i) Read("<</Subtype/Type1>>", "/FontDescriptor", descriptor, parts);
  EXPECT_EQ(reads, 1);
}

TEST_F(FontPartsTest, FontsOfOneDescendantShareItsMetrics) {
  const QPDFObjectHandle descendant = QPDFObjectHandle::parse("<</DW 400 /DW2 [500 -300]>>");
  EXPECT_EQ(parts.MetricsOf(descendant, false), parts.MetricsOf(descendant, false));
  EXPECT_NE(parts.MetricsOf(descendant, false), parts.MetricsOf(descendant, true));
  EXPECT_EQ(parts.MetricsOf(descendant, true)->VerticalAdvance(1), -0.3);
}

}  // namespace
}  // namespace tgx::host
