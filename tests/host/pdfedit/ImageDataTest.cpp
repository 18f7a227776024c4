#include "host/pdfedit/ImageData.h"

#include <gtest/gtest.h>

#include <qpdf/Pl_DCT.hh>
#include <qpdf/Pl_Flate.hh>
#include <qpdf/Pl_String.hh>
#include <qpdf/QPDF.hh>

#include "host/core/Atoms.h"
#include "host/core/Fixed.h"

namespace tgx::host {
namespace {

using namespace std::string_literals;

std::string Deflated(const std::string& bytes) {
  std::string out;
  Pl_String buffer("buffer", nullptr, out);
  Pl_Flate flate("flate", &buffer, Pl_Flate::a_deflate);
  flate.writeString(bytes);
  flate.finish();
  return out;
}

std::string Jpeg(unsigned width, unsigned height) {
  std::string out;
  Pl_String buffer("buffer", nullptr, out);
  Pl_DCT dct("dct", &buffer, width, height, 3, JCS_RGB);
  dct.writeString(std::string(std::size_t{3} * width * height, '\x80'));
  dct.finish();
  return out;
}

class ImageXObject : public testing::Test {
 protected:
  ImageXObject() {
    file_.setSuppressWarnings(true);
    file_.emptyPDF();
  }

  ImageData Make(const std::string& entries, const std::string& bytes) {
    QPDFObjectHandle stream = file_.newStream(bytes);
    stream.replaceDict(QPDFObjectHandle::parse(&file_, "<</Subtype /Image " + entries + ">>"));
    return ImageData::OfXObject(stream);
  }

  QPDF file_;
};

ImageData Inline(const std::string& entries, const std::string& bytes, const std::string& resources = "null") {
  return ImageData::OfInline(QPDFObjectHandle::parse("<<" + entries + ">>"), bytes, QPDFObjectHandle::parse(resources));
}

TEST_F(ImageXObject, AttributesAreThoseOfTheDictionary) {
  const PDEImageAttrs attributes =
      Make(
          "/Width 20 /Height 10 /BitsPerComponent 4 /ColorSpace /DeviceRGB /Interpolate true /Intent /Perceptual "
          "/Decode [1 0 0 0.5 0 1]",
          "")
          .Attributes();
  EXPECT_EQ(attributes.width, 20);
  EXPECT_EQ(attributes.height, 10);
  EXPECT_EQ(attributes.bitsPerComponent, 4);
  EXPECT_EQ(attributes.flags, static_cast<ASUns32>(kPDEImageExternal | kPDEImageInterpolate | kPDEImageHaveDecode));
  EXPECT_EQ(attributes.decode[0], ToFixed(1));
  EXPECT_EQ(attributes.decode[3], ToFixed(0.5));
  EXPECT_EQ(attributes.decode[6], 0);
  EXPECT_EQ(attributes.intent, Intern("Perceptual"));
}

TEST_F(ImageXObject, MissingAndDamagedEntriesGiveZero) {
  for (const char* entries :
       {"", "/Width (a) /Height [] /BitsPerComponent null /Decode 7 /Intent 3", "/Width -5 /Height -1"}) {
    const PDEImageAttrs attributes = Make(entries, "").Attributes();
    EXPECT_EQ(attributes.width, 0) << entries;
    EXPECT_EQ(attributes.height, 0) << entries;
    EXPECT_EQ(attributes.bitsPerComponent, 0) << entries;
    EXPECT_EQ(attributes.flags, static_cast<ASUns32>(kPDEImageExternal)) << entries;
    EXPECT_EQ(attributes.intent, ASAtomNull) << entries;
  }
}

TEST_F(ImageXObject, SizesSaturate) {
  EXPECT_EQ(Make("/Width 99999999999999", "").Attributes().width, 0x7FFFFFFF);
  EXPECT_EQ(Make("/Width 3.0", "").Attributes().width, 3);
}

TEST_F(ImageXObject, MasksHaveOneBit) {
  const ImageData mask = Make("/Width 9 /Height 2 /ImageMask true", "\x01\x02\x03\x04");
  EXPECT_EQ(mask.Attributes().bitsPerComponent, 1);
  EXPECT_EQ(mask.Attributes().flags, static_cast<ASUns32>(kPDEImageExternal | kPDEImageIsMask));
  EXPECT_EQ(mask.Samples(), "\x01\x02\x03\x04");
}

TEST_F(ImageXObject, SamplesAreDecodedRows) {
  const std::string entries = "/Width 3 /Height 2 /BitsPerComponent 4 /ColorSpace /DeviceGray /Filter /FlateDecode";
  EXPECT_EQ(Make(entries, Deflated("abcd")).Samples(), "abcd");
}

TEST_F(ImageXObject, WhatFollowsTheLastRowIsCut) {
  const std::string entries = "/Width 1 /Height 1 /BitsPerComponent 8 /ColorSpace /DeviceRGB";
  EXPECT_EQ(Make(entries, "\0\0\0\r\n"s).Samples(), "\0\0\0"s);
  EXPECT_EQ(Make(entries + " /Filter /FlateDecode", Deflated("abcdef")).Samples(), "abc");
}

TEST_F(ImageXObject, MissingRowsStayMissing) {
  EXPECT_EQ(Make("/Width 2 /Height 2 /BitsPerComponent 8 /ColorSpace /DeviceGray", "abc").Samples(), "abc");
}

TEST_F(ImageXObject, PredictorsAndSeveralFiltersAreUndone) {
  const std::string entries =
      "/Width 2 /Height 2 /BitsPerComponent 8 /ColorSpace /DeviceGray /Filter [/ASCIIHexDecode /FlateDecode] "
      "/DecodeParms [null <</Predictor 15 /Columns 2>>]";
  const std::string deflated = Deflated("\0ab\2\1\1"s);
  std::string hex;
  for (const char c : deflated) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    hex += {kDigits[static_cast<unsigned char>(c) >> 4], kDigits[c & 15]};
  }
  EXPECT_EQ(Make(entries, hex + ">").Samples(), "abbc");
}

TEST_F(ImageXObject, JpegsAreDecoded) {
  const ImageData image = Make("/Width 4 /Height 3 /ColorSpace /DeviceRGB /Filter /DCTDecode", Jpeg(4, 3));
  EXPECT_EQ(image.Attributes().bitsPerComponent, 8);
  EXPECT_EQ(image.Samples().size(), 36u);
}

TEST_F(ImageXObject, JpegsHaveTheSizeThatTheySay) {
  EXPECT_EQ(Make("/Width 1 /Height 1 /ColorSpace /DeviceRGB /Filter /DCTDecode", Jpeg(4, 3)).Samples().size(), 36u);
}

TEST_F(ImageXObject, FiltersThatCannotBeUndoneKeepTheirBytes) {
  EXPECT_EQ(Make("/Width 1 /Height 1 /Filter /JPXDecode", "jpx bytes").Samples(), "jpx bytes");
  EXPECT_EQ(Make("/Width 1 /Height 1 /Filter [/FlateDecode /JPXDecode]", Deflated("jpx bytes")).Samples(), "jpx bytes");
  EXPECT_EQ(Make("/Width 1 /Height 1 /ImageMask true /Filter [/FlateDecode /CCITTFaxDecode] /DecodeParms [null <</K -1>>]",
                 Deflated("fax bytes"))
                .Samples(),
            "fax bytes");
  EXPECT_EQ(Make("/Width 1 /Height 1 /ImageMask true /Filter /NoSuchDecode", "some bytes").Samples(), "some bytes");
}

TEST_F(ImageXObject, BrokenDataGiveWhatCameBefore) {
  const std::string whole = Deflated(std::string(100000, 'a'));
  const std::string entries = "/Width 1000 /Height 100 /BitsPerComponent 8 /ColorSpace /DeviceGray /Filter /FlateDecode";
  EXPECT_EQ(Make(entries, whole).Samples().size(), 100000u);
  EXPECT_LT(Make(entries, whole.substr(0, whole.size() / 2)).Samples().size(), 100000u);
  EXPECT_EQ(Make(entries, "this is not deflated").Samples(), "");
}

TEST_F(ImageXObject, SmallStreamsOfManyBytesEndWithTheImage) {
  const std::string bomb = Deflated(std::string(50 << 20, '\0'));
  EXPECT_EQ(
      Make("/Width 1 /Height 1 /BitsPerComponent 8 /ColorSpace /DeviceGray /Filter /FlateDecode", bomb).Samples().size(),
      1u);
}

TEST_F(ImageXObject, SampleBytesNeedAllEntriesAndASaneSize) {
  EXPECT_EQ(Make("/Width 3 /Height 2 /BitsPerComponent 1 /ColorSpace /DeviceCMYK", "").SampleBytes(), 4u);
  EXPECT_FALSE(Make("/Width 3 /Height 2 /ColorSpace /DeviceRGB", "").SampleBytes());
  EXPECT_FALSE(Make("/Width 3 /Height 2 /BitsPerComponent 8", "").SampleBytes());
  EXPECT_FALSE(Make("/Width 3 /Height 2 /BitsPerComponent 99 /ColorSpace /DeviceRGB", "").SampleBytes());
  EXPECT_FALSE(Make("/Width 2147483647 /Height 2147483647 /BitsPerComponent 16 /ColorSpace /DeviceCMYK", "").SampleBytes());
}

TEST_F(ImageXObject, ComponentsFollowTheColorSpace) {
  auto components = [this](const std::string& space) { return Make("/ColorSpace " + space, "").Components().value_or(0); };
  EXPECT_EQ(components("/DeviceGray"), 1);
  EXPECT_EQ(components("/DeviceCMYK"), 4);
  EXPECT_EQ(components("[/CalRGB <<>>]"), 3);
  EXPECT_EQ(components("[/Lab <<>>]"), 3);
  EXPECT_EQ(components("[/Indexed /DeviceRGB 1 <000000FFFFFF>]"), 1);
  EXPECT_EQ(components("[/Separation /Spot /DeviceCMYK <<>>]"), 1);
  EXPECT_EQ(components("[/DeviceN [/A /B /C] /DeviceCMYK <<>>]"), 3);
  EXPECT_EQ(components("[/DeviceN []]"), 0);
  EXPECT_EQ(components("[/ICCBased 7]"), 0);
  EXPECT_EQ(components("/Pattern"), 0);
  EXPECT_EQ(components("[]"), 0);
  EXPECT_EQ(components("42"), 0);
}

TEST_F(ImageXObject, IccProfilesTellTheirComponents) {
  QPDFObjectHandle profile = file_.newStream("profile");
  profile.getDict().replaceKey("/N", QPDFObjectHandle::newInteger(4));
  EXPECT_EQ(Make("/ColorSpace [/ICCBased " + profile.unparse() + "]", "").Components(), 4);
}

TEST_F(ImageXObject, WhatIsNoStreamIsAnEmptyImage) {
  const ImageData image = ImageData::OfXObject(QPDFObjectHandle::newNull());
  EXPECT_EQ(image.Attributes().width, 0);
  EXPECT_EQ(image.Samples(), "");
}

TEST(InlineImage, KeysAndValuesMayBeAbbreviated) {
  const ImageData image = Inline("/W 2 /H 1 /BPC 8 /CS /RGB /I true /D [0 1 0 1 0 1]", "abcdef");
  const PDEImageAttrs attributes = image.Attributes();
  EXPECT_EQ(attributes.width, 2);
  EXPECT_EQ(attributes.height, 1);
  EXPECT_EQ(attributes.bitsPerComponent, 8);
  EXPECT_EQ(attributes.flags, static_cast<ASUns32>(kPDEImageInterpolate | kPDEImageHaveDecode));
  EXPECT_EQ(image.Components(), 3);
  EXPECT_EQ(image.Samples(), "abcdef");
}

TEST(InlineImage, FullKeysGoBeforeAbbreviations) {
  EXPECT_EQ(Inline("/W 2 /Width 3", "").Attributes().width, 3);
  EXPECT_EQ(Inline("/Width 3 /W 2", "").Attributes().width, 3);
}

TEST(InlineImage, MasksAreMasks) {
  const ImageData image = Inline("/W 8 /H 1 /IM true", "x");
  EXPECT_EQ(image.Attributes().flags, static_cast<ASUns32>(kPDEImageIsMask));
  EXPECT_EQ(image.Samples(), "x");
}

TEST(InlineImage, FiltersMayBeAbbreviated) {
  EXPECT_EQ(Inline("/W 3 /H 1 /BPC 8 /CS /G /F /AHx", "616263>").Samples(), "abc");
  EXPECT_EQ(Inline("/W 3 /H 1 /BPC 8 /CS /G /F [/AHx /RL]", "02616263 80>").Samples(), "abc");
  EXPECT_EQ(Inline("/W 3 /H 1 /BPC 8 /CS /G /F /Fl", Deflated("abc")).Samples(), "abc");
  EXPECT_EQ(Inline("/W 4 /H 3 /CS /RGB /F /DCT", Jpeg(4, 3)).Samples().size(), 36u);
  EXPECT_EQ(Inline("/W 8 /H 1 /IM true /F /CCF /DP <</K -1>>", "fax").Samples(), "fax");
  EXPECT_EQ(Inline("/W 2 /H 1 /BPC 8 /CS /G /F /Fl /DP <</Predictor 12 /Columns 2>>", Deflated("\2ab"s)).Samples(), "ab");
}

TEST(InlineImage, ColorSpacesMayBeResources) {
  const std::string resources = "<</ColorSpace <</Cs1 [/CalRGB <<>>] /G [/CalRGB <<>>]>>>>";
  EXPECT_EQ(Inline("/CS /Cs1", "", resources).Components(), 3);
  EXPECT_EQ(Inline("/CS /G", "", resources).Components(), 3);
  EXPECT_EQ(Inline("/CS /Cs2", "", resources).Components(), std::nullopt);
  EXPECT_EQ(Inline("/CS [/I /RGB 1 <000000FFFFFF>]", "", resources).Components(), 1);
}

TEST(InlineImage, DamagedDictionariesGiveSomething) {
  for (const char* dictionary : {"null", "[]", "<</W [] /CS [] /F [[]] /DP 3>>", "<</F [/Fl null]>>"}) {
    const ImageData image = ImageData::OfInline(QPDFObjectHandle::parse(dictionary), "x", QPDFObjectHandle::newNull());
    EXPECT_EQ(image.Attributes().width, 0) << dictionary;
    image.Samples();
  }
}

}  // namespace
}  // namespace tgx::host
