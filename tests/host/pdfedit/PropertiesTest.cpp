#include "host/pdfedit/model/Properties.h"

#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>

#include "tests/host/pdfedit/ContentFixture.h"

namespace tgx::host {
namespace {

class PropertiesText : public testing::TestWithParam<const char*> {};

/// Most dictionaries are not given to qpdf; what comes of them must be what qpdf makes of them.
TEST_P(PropertiesText, IsReadAsQpdfReadsIt) {
  ContentDocument document("q Q");
  const auto properties = ParseProperties(*document.Host(), GetParam());
  QPDF pdf;
  pdf.emptyPDF();
  pdf.setSuppressWarnings(true);
  ASSERT_TRUE(properties);
  EXPECT_EQ(QPDFObjectHandle(*properties).unparse(), QPDFObjectHandle::parse(&pdf, GetParam(), "").unparse());
}

INSTANTIATE_TEST_SUITE_P(Dictionaries, PropertiesText,
                         testing::Values("<<>>", "<</MCID 4>>", "<< /MCID -7 /Lang (de-DE) >>", "<</MCID +3/A 007>>",
                                         "<</Type/Pagination/Attached[/Top]/BBox[0 0 1 1.5]>>", "<</A<</B(c)>>/C(a(b)c)>>",
                                         "<</ActualText<FEFF2022>/E(\\101\\n)>>", "<</A(one\rtwo)/B(one\ntwo)>>",
                                         "<</N 1.50/M 123456789012345678>>", "<</A true/B null/C 1>>",
                                         "<</A/B#20C/D#20E 1>>", "<</MCID 1/MCID 2>>", "<</A(>>)/B(%)>>",
                                         "<</A % no\n 5>>"));

TEST(Properties, ThatCannotBeUnderstoodAreNone) {
  ContentDocument document("q Q");
  for (const char* text : {"<</A(>>", "<</A((b)>>", "<</A 1", "/Name", "5", "<</A>>x"}) {
    EXPECT_FALSE(ParseProperties(*document.Host(), text)) << text;
  }
}

TEST(Properties, MayHoldContainersWhereABracketStands) {
  EXPECT_FALSE(MayHoldContainers("<</MCID 1/Lang(de)>>"));
  EXPECT_TRUE(MayHoldContainers("<</A[1]>>"));
  EXPECT_TRUE(MayHoldContainers("<</A<</B 1>>>>"));
}

}  // namespace
}  // namespace tgx::host
