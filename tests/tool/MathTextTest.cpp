#include "tool/MathText.h"

#include <gtest/gtest.h>

namespace tgx::tool {
namespace {

std::string LineOf(const std::string& inside) { return LineOfMathML("<math>" + inside + "</math>"); }

TEST(MathText, WritesFractionsAndPowersWithParenthesesWhereTheyAreNeeded) {
  EXPECT_EQ(LineOf("<mi>M</mi><mo>=</mo><mfrac><mrow><mi>q</mi><msup><mi>l</mi><mn>2</mn></msup></mrow><mn>8</mn></mfrac>"),
            "M = (ql^2)/8");
  EXPECT_EQ(LineOf("<mfrac><mrow><mi>h</mi></mrow><mn>600</mn></mfrac>"), "h/600");
}

TEST(MathText, WritesIndicesRootsAndLimits) {
  EXPECT_EQ(LineOf("<msubsup><mi>x</mi><mi>i</mi><mn>2</mn></msubsup>"), "x_i^2");
  EXPECT_EQ(LineOf("<msqrt><mn>2</mn><mi>x</mi></msqrt>"), "\u221A(2x)");
  EXPECT_EQ(LineOf("<mroot><mi>x</mi><mn>3</mn></mroot>"), "\u221A[3]x");
  EXPECT_EQ(
      LineOf("<munderover><mo>\u2211</mo><mrow><mi>i</mi><mo>=</mo><mn>1</mn></mrow><mi>n</mi></munderover><mi>a</mi>"),
      "\u2211_(i = 1)^na");
}

TEST(MathText, PartsNamesOfSeveralLettersFromWhatFollows) {
  EXPECT_EQ(LineOf("<mi>sin</mi><mo>\u2061</mo><mi>x</mi>"), "sin x");
}

TEST(MathText, WritesTablesAndFences) {
  EXPECT_EQ(LineOf("<mtable><mtr><mtd><mn>1</mn></mtd><mtd><mn>2</mn></mtd></mtr>"
                   "<mtr><mtd><mn>3</mn></mtd><mtd><mn>4</mn></mtd></mtr></mtable>"),
            "[1, 2; 3, 4]");
  EXPECT_EQ(LineOf("<mfenced open=\"[\" close=\")\"><mi>a</mi><mi>b</mi></mfenced>"), "[a, b)");
}

TEST(MathText, LeavesOutWhatIsNotShown) {
  EXPECT_EQ(LineOf("<semantics><mi>x</mi><annotation>y</annotation></semantics><mphantom><mi>z</mi></mphantom>"), "x");
}

TEST(MathText, TakesTheAlternateTextOfTheFormulaItself) {
  EXPECT_EQ(LineOfMathML("<m:math xmlns:m=\"x\" alttext=\" half  of x \"><m:mi>x</m:mi></m:math>"), "half of x");
}

TEST(MathText, IsEmptyForWhatIsNoMathML) {
  EXPECT_EQ(LineOfMathML(""), "");
  EXPECT_EQ(LineOfMathML("x = 1"), "");
  EXPECT_EQ(LineOfMathML("<mi>x</mi>"), "");
  EXPECT_EQ(LineOfMathML("<math><mi>x</math>"), "");
}

TEST(MathText, SurvivesMissingPartsAndDeepNesting) {
  EXPECT_EQ(LineOf("<mfrac><mi>a</mi></mfrac>"), "a/");
  std::string deep;
  for (int i = 0; i < 5000; ++i) deep += "<mrow>";
  EXPECT_EQ(LineOfMathML("<math>" + deep), "");
}

}  // namespace
}  // namespace tgx::tool
