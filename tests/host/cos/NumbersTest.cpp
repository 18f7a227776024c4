#include "host/cos/Numbers.h"

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>

#include <gtest/gtest.h>

#include "host/core/Fixed.h"

namespace tgx::host {
namespace {

double Number(const char* text) { return NumberOf(QPDFObjectHandle::newReal(std::string(text))); }

TEST(NumberOf, ReadsEveryWayToWriteAReal) {
  EXPECT_EQ(Number("1.5"), 1.5);
  EXPECT_EQ(Number("-1.5"), -1.5);
  EXPECT_EQ(Number("+1.5"), 1.5);
  EXPECT_EQ(Number("4."), 4.0);
  EXPECT_EQ(Number(".25"), 0.25);
  EXPECT_EQ(Number("-.25"), -0.25);
  EXPECT_EQ(Number("000.10"), 0.1);
  EXPECT_EQ(NumberOf(QPDFObjectHandle::newInteger(-7)), -7.0);
}

TEST(NumberOf, StaysFiniteForAnyNumberOfDigits) {
  EXPECT_EQ(Number((std::string(400, '9') + ".0").c_str()), std::numeric_limits<double>::max());
  EXPECT_EQ(Number(("-" + std::string(400, '9') + ".0").c_str()), std::numeric_limits<double>::lowest());
  EXPECT_EQ(Number(("0." + std::string(400, '0') + "1").c_str()), 0.0);
}

TEST(NumberOf, GivesZeroForAnythingElse) { EXPECT_EQ(NumberOf(QPDFObjectHandle::newName("/A")), 0.0); }

TEST(NumberOf, DoesNotMindTheLocale) {
  // Whichever of these the machine has writes a decimal comma; with none of them the test says nothing.
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"}) {
    if (std::setlocale(LC_NUMERIC, name) != nullptr) break;
  }
  EXPECT_EQ(Number("1.5"), 1.5);
  EXPECT_EQ(RealText(1.5F), "1.5");
  EXPECT_EQ(RealText(ASFixed{0x18000}), "1.5");
  std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(RealText, OfAFixedIsTheShortestThatConvertsBack) {
  EXPECT_EQ(RealText(ASFixed{0}), "0.0");
  EXPECT_EQ(RealText(ASFixed{0x10000}), "1.0");
  EXPECT_EQ(RealText(ASFixed{0x8000}), "0.5");
  EXPECT_EQ(RealText(ASFixed{-0x8000}), "-0.5");
  EXPECT_EQ(RealText(ToFixed(0.1)), "0.1");
  EXPECT_EQ(RealText(ToFixed(12.34)), "12.34");
  EXPECT_EQ(RealText(ASFixed{1}), "0.00002");
  EXPECT_EQ(RealText(std::numeric_limits<ASFixed>::max()), "32768.0") << "it is saturated";
  EXPECT_EQ(RealText(std::numeric_limits<ASFixed>::min()), "-32768.0");
}

TEST(RealText, OfEveryFractionConvertsBack) {
  for (const ASFixed whole : {0, -1, 1234, -32768, 32767}) {
    for (ASFixed fraction = 0; fraction < 0x10000; ++fraction) {
      const auto value = static_cast<ASFixed>(static_cast<ASUns32>(whole) * 0x10000U + static_cast<ASUns32>(fraction));
      ASSERT_EQ(ToFixed(Number(RealText(value).c_str())), value) << RealText(value);
    }
  }
}

TEST(RealText, OfAFloatIsTheShortestThatGivesItBack) {
  EXPECT_EQ(RealText(0.3F), "0.3");
  EXPECT_EQ(RealText(1.0F), "1.0");
  EXPECT_EQ(RealText(65536.0F), "65536.0");
  EXPECT_EQ(RealText(-0.1F), "-0.1");
  EXPECT_EQ(RealText(1.0F / 3.0F), "0.33333334");
}

TEST(RealText, OfAFloatNeverHasAnExponent) {
  for (const float value :
       {1e-10F, 1.5e20F, 3.4e38F, std::numeric_limits<float>::min(), std::numeric_limits<float>::denorm_min(),
        std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest()}) {
    const std::string text = RealText(value);
    EXPECT_EQ(text.find_first_of("eE"), std::string::npos) << text;
    EXPECT_EQ(std::strtof(text.c_str(), nullptr), value) << text;
  }
}

}  // namespace
}  // namespace tgx::host
