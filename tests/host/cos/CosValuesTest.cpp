#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <qpdf/QPDFWriter.hh>

#include "host/core/Atoms.h"
#include "tests/host/HostDocument.h"
#include "tests/support/TestDocument.h"

namespace tgx::host {
namespace {

const CosTable& Cos() { return *Tables()->cos; }

constexpr ASInt32 kMost = std::numeric_limits<ASInt32>::max();
constexpr ASInt32 kLeast = std::numeric_limits<ASInt32>::min();

/// A document with this PDF text under "V" in the catalog, and the object behind it.
struct WithValue {
  explicit WithValue(const std::string& text)
      : document(HostDocument::FromObjects("<< /Type /Catalog /V " + text + " >>")),
        value(Cos().CosDictGetKeyString(document.Root(), "V")) {}
  HostDocument document;
  CosObj value;
};

TEST(CosIntegerValue, IsSaturated) {
  const WithValue plain("-17");
  const WithValue large("2147483648");
  const WithValue small("-9223372036854775808");
  EXPECT_EQ(Cos().CosIntegerValue(plain.value), -17);
  EXPECT_EQ(Cos().CosIntegerValue(large.value), kMost);
  EXPECT_EQ(Cos().CosIntegerValue(small.value), kLeast);
}

TEST(CosBooleanValue, IsZeroOrOne) {
  const WithValue yes("true");
  const WithValue no("false");
  EXPECT_EQ(Cos().CosBooleanValue(yes.value), 1);
  EXPECT_EQ(Cos().CosBooleanValue(no.value), 0);
}

TEST(CosFixedValue, IsThatOfARealOrAnInteger) {
  const WithValue real("-1.5");
  const WithValue integer("3");
  EXPECT_EQ(Cos().CosFixedValue(real.value), -0x18000);
  EXPECT_EQ(Cos().CosFixedValue(integer.value), 0x30000);
}

TEST(CosFixedValue, IsSaturated) {
  const WithValue large("32768.5");
  const WithValue small("-99999999999.0");
  const WithValue integer("32768");
  EXPECT_EQ(Cos().CosFixedValue(large.value), kMost);
  EXPECT_EQ(Cos().CosFixedValue(small.value), kLeast);
  EXPECT_EQ(Cos().CosFixedValue(integer.value), kMost);
}

TEST(CosValues, RaiseForEveryOtherTypeAndForNull) {
  const WithValue all("[true 1 1.5 (text) /Name [] << >>]");
  const auto item = [&](ASInt32 index) { return index < 0 ? Cos().CosNewNull() : Cos().CosArrayGet(all.value, index); };
  for (ASInt32 index = -1; index < 7; ++index) {
    SCOPED_TRACE(index);
    const CosObj object = item(index);
    const auto expected = [&](bool fits) { return fits ? -1 : ASErrorCode{kASWrongType}; };
    EXPECT_EQ(RaisedCode([&] { Cos().CosBooleanValue(object); }), expected(index == 0));
    EXPECT_EQ(RaisedCode([&] { Cos().CosIntegerValue(object); }), expected(index == 1));
    EXPECT_EQ(RaisedCode([&] { Cos().CosFixedValue(object); }), expected(index == 1 || index == 2));
    EXPECT_EQ(RaisedCode([&] { Cos().CosStringValue(object, nullptr); }), expected(index == 3));
    EXPECT_EQ(RaisedCode([&] { Cos().CosCopyStringValue(object, nullptr); }), ASErrorCode{index == 3 ? -1 : kASWrongType});
    EXPECT_EQ(RaisedCode([&] { Cos().CosNameValue(object); }), expected(index == 4));
  }
}

TEST(CosNameValue, IsTheAtomOfTheNameWithoutItsSlash) {
  const WithValue name("/A#20B");
  EXPECT_EQ(Cos().CosNameValue(name.value), Intern("A B"));
}

TEST(CosStringValue, GivesTheBytesAndTwoZeroesBehind) {
  const WithValue string("<00FF0041>");
  ASTArraySize count = -1;
  const char* const bytes = Cos().CosStringValue(string.value, &count);
  ASSERT_EQ(count, 4);
  EXPECT_EQ(std::string(bytes, 6), std::string("\0\xFF\0A\0\0", 6));
}

TEST(CosStringValue, OfOneObjectOutlivesCallsOnOthers) {
  HostDocument document;
  const CosObj first = document.String("first");
  const CosObj second = document.String("second");
  const char* const bytes = Cos().CosStringValue(first, nullptr);
  Cos().CosStringValue(second, nullptr);
  EXPECT_STREQ(bytes, "first");
}

TEST(CosStringValue, IsDecrypted) {
  test::TestDocument file;
  file.AddPage();
  file.SetCatalog("V", "(secret)");
  const std::string bytes = file.Write([](QPDFWriter& writer) {
    writer.setR6EncryptionParameters("", "owner", true, true, true, true, true, true, qpdf_r3p_full, true);
  });
  ASSERT_EQ(bytes.find("secret"), std::string::npos);
  HostDocument document = HostDocument::FromBytes(bytes);
  EXPECT_STREQ(Cos().CosStringValue(Cos().CosDictGetKeyString(document.Root(), "V"), nullptr), "secret");
}

TEST(CosCopyStringValue, GivesTheBytesAndTwoZeroesToTheCaller) {
  char* copy = nullptr;
  ASTArraySize count = -1;
  {
    const WithValue string("(abc)");
    copy = Cos().CosCopyStringValue(string.value, &count);
  }
  ASSERT_EQ(count, 3) << "the copy outlives the document";
  EXPECT_EQ(std::string(copy, 5), std::string("abc\0\0", 5));
  Tables()->acroSupport->ASfree(copy);
}

}  // namespace
}  // namespace tgx::host
