#include "host/pdfedit/reading/Syntax.h"

#include <gtest/gtest.h>

#include "host/pdfedit/writing/Syntax.h"

namespace tgx::host {
namespace {

std::string Tokens(std::string_view bytes) {
  std::string text;
  for (Token token = NextToken(bytes, 0); token.kind != Token::Kind::kEnd; token = NextToken(bytes, token.end)) {
    constexpr std::string_view kKinds = "-NnshadKx";
    text += (text.empty() ? "" : " ") + std::string(1, kKinds[static_cast<std::size_t>(token.kind)]) + ':' +
            std::string(token.In(bytes));
  }
  return text;
}

std::string String(std::string_view token) {
  std::string bytes;
  AppendStringValue(token, bytes);
  return bytes;
}

TEST(ContentTokens, AreToldApart) {
  EXPECT_EQ(Tokens("12 -.5 /Nm (a(b)c) <4142> [1 (x)] <</K 1>> Tj"),
            "N:12 N:-.5 n:/Nm s:(a(b)c) h:<4142> a:[1 (x)] d:<</K 1>> K:Tj");
}

TEST(ContentTokens, NeedNoSpaceBetweenThem) { EXPECT_EQ(Tokens("/F1 12Tf(a)Tj"), "n:/F1 N:12 K:Tf s:(a) K:Tj"); }

TEST(ContentTokens, EndANumberAtItsSecondDot) { EXPECT_EQ(Tokens("1.2.3"), "N:1.2 N:.3"); }

TEST(ContentTokens, TakeCommentsAsSpace) { EXPECT_EQ(Tokens("1%(]\n2"), "N:1 N:2"); }

TEST(ContentTokens, KeepAnEscapedParenthesisInTheString) { EXPECT_EQ(Tokens(R"((a\)b) 1)"), R"(s:(a\)b) N:1)"); }

TEST(ContentTokens, EndAnOpenStringWithTheContent) { EXPECT_EQ(Tokens("(abc Tj"), "s:(abc Tj"); }

TEST(ContentTokens, EndAnOpenHexStringWithTheContent) { EXPECT_EQ(Tokens("<41 Tj"), "h:<41 Tj"); }

TEST(ContentTokens, EndAnOpenArrayAtTheNextOperator) { EXPECT_EQ(Tokens("[(a) 10 TJ ET"), "a:[(a) 10 K:TJ K:ET"); }

TEST(ContentTokens, EndAnOpenDictionaryAtTheNextOperator) { EXPECT_EQ(Tokens("<</MCID 0 BDC"), "d:<</MCID 0 K:BDC"); }

TEST(ContentTokens, KeepConstantsInsideArrays) { EXPECT_EQ(Tokens("[true null]"), "a:[true null]"); }

TEST(ContentTokens, GiveStrayBracketsOneByOne) { EXPECT_EQ(Tokens("] } >> )"), "x:] x:} x:>> x:)"); }

TEST(ContentTokens, SurviveDeepNesting) {
  const std::string deep(100000, '[');
  EXPECT_EQ(NextToken(deep, 0).end, deep.size());
}

struct NumberCase {
  const char* token;
  double value;
};

TEST(ContentNumbers, AreReadAsViewersReadThem) {
  for (const auto& [token, value] : {NumberCase{"0", 0},
                                     {"+.5", 0.5},
                                     {"-.5", -0.5},
                                     {"--5", -5},
                                     {"5.3-2", 5.32},
                                     {".", 0},
                                     {"-", 0},
                                     {"12.", 12},
                                     {"00012", 12},
                                     {"0.000001", 0.000001},
                                     {"1.25", 1.25}}) {
    EXPECT_DOUBLE_EQ(NumberValue(token), value) << token;
  }
}

TEST(ContentNumbers, MayBeLongerThanAnyIntegerHolds) {
  EXPECT_DOUBLE_EQ(NumberValue("123456789012345678901234567890"), 123456789012345678901234567890.0);
  EXPECT_DOUBLE_EQ(NumberValue("0.12345678901234567890123"), 0.12345678901234567890123);
}

TEST(ContentNames, ResolveTheirEscapes) {
  EXPECT_EQ(NameValue("/A#20B"), "A B");
  EXPECT_EQ(NameValue("/A#2"), "A#2");
  EXPECT_EQ(NameValue("/A#zz"), "A#zz");
  EXPECT_EQ(NameValue("/"), "");
}

TEST(ContentStrings, ResolveEscapes) {
  EXPECT_EQ(String(R"((\n\r\t\b\f\(\)\\\x))"), "\n\r\t\b\f()\\x");
  EXPECT_EQ(String(R"((\101\1012\7\400))"), std::string("AA2\7\0", 5));
  EXPECT_EQ(String("(a\\\nb\\\r\nc)"), "abc");
}

TEST(ContentStrings, TurnEachLineEndIntoANewline) { EXPECT_EQ(String("(a\r\nb\rc\nd)"), "a\nb\nc\nd"); }

TEST(ContentStrings, KeepBalancedParentheses) { EXPECT_EQ(String("(a(b)c)"), "a(b)c"); }

TEST(ContentStrings, PadAnOddHexDigitWithZero) { EXPECT_EQ(String("<414>"), "A@"); }

TEST(ContentStrings, SkipWhatIsNoHexDigit) { EXPECT_EQ(String("<4 1\nx42>"), "AB"); }

TEST(WrittenNumbers, HaveNoExponentAndNoIdleZeros) {
  EXPECT_EQ(FormatNumber(0), "0");
  EXPECT_EQ(FormatNumber(-0.0), "0");
  EXPECT_EQ(FormatNumber(12), "12");
  EXPECT_EQ(FormatNumber(-0.5), "-0.5");
  EXPECT_EQ(FormatNumber(0.1 + 0.2), "0.3");
  EXPECT_EQ(FormatNumber(1e-7), "0.0000001");
  EXPECT_EQ(FormatNumber(1e-12), "0");
  EXPECT_EQ(FormatNumber(1e20), "1000000000000000");
}

TEST(WrittenNames, AreEscaped) { EXPECT_EQ(FormatName("a b#/\xC3"), "/a#20b#23#2F#C3"); }

}  // namespace
}  // namespace tgx::host
