#include "tests/host/pdfedit/ContentFixture.h"

namespace tgx::host {
namespace {

std::string Data(PDEImage image) {
  std::string data(static_cast<std::size_t>(ReadContent().PDEImageGetDataLen(image)), '\0');
  ReadContent().PDEImageGetData(image, 0, reinterpret_cast<ASUns8*>(data.data()));
  return data;
}

PDEImageAttrs Attributes(PDEImage image) {
  PDEImageAttrs attributes{};
  ReadContent().PDEImageGetAttrs(image, &attributes, sizeof attributes);
  return attributes;
}

TEST(ImageOperations, ReadAnXObject) {
  ContentDocument document("/Im Do");
  const PDEImageAttrs attributes = Attributes(document.At({0}));
  EXPECT_EQ(attributes.width, 1);
  EXPECT_EQ(attributes.height, 1);
  EXPECT_EQ(attributes.bitsPerComponent, 8);
  EXPECT_EQ(attributes.flags & kPDEImageExternal, ASUns32{kPDEImageExternal});
  EXPECT_EQ(Data(document.At({0})), "\x80");
}

TEST(ImageOperations, ReadAnInlineImage) {
  ContentDocument document("BI /W 3 /H 2 /BPC 8 /CS /G ID abcdef EI");
  const PDEImageAttrs attributes = Attributes(document.At({0}));
  EXPECT_EQ(attributes.width, 3);
  EXPECT_EQ(attributes.height, 2);
  EXPECT_EQ(attributes.flags & kPDEImageExternal, 0U);
  EXPECT_EQ(Data(document.At({0})), "abcdef");
  EXPECT_EQ(Data(document.At({0})), "abcdef");
}

TEST(ImageOperations, SurviveADamagedInlineDictionary) {
  ContentDocument document("BI /W /H 2 /BPC (x) << ID abcdef EI");
  EXPECT_EQ(Attributes(document.At({0})).flags & kPDEImageExternal, 0U);
  Data(document.At({0}));
}

TEST(ImageOperations, RaiseForAnotherRecordSizeAndKind) {
  ContentDocument document("/Im Do /Fm Do");
  PDEImageAttrs attributes{};
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEImageGetAttrs(document.At({0}), &attributes, 48); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEImageGetAttrs(document.At({1}), &attributes, 52); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { ReadContent().PDEImageGetDataLen(document.At({1})); }), kASWrongType);
}

}  // namespace
}  // namespace tgx::host
