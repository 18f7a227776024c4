#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestDocument.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// Damaged trees: the file opens, its tree does not.
class BadTree : public testing::Test {
 protected:
  void ExpectTreeRefused(const std::string& document, const testing::Matcher<const std::string&>& reason) {
    folder_.Write("in.pdf", document);
    const ProcessResult result = Tool({"tree", "in.pdf"}).In(folder_.Path()).Run();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, testing::AllOf(StartsWith("tgx: in.pdf: "), reason));
    EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
  }

  TempFolder folder_;
};

TEST_F(BadTree, ElementThatIsItsOwnAncestor) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("Document")({Element("Sect").Named("loop").RawKid("$loop")})});
  ExpectTreeRefused(document.Write(), HasSubstr("ancestor"));
}

TEST_F(BadTree, StepThatFailsOnItGivesItsResultAndNothingIsWritten) {
  TestDocument document;
  document.AddPage();
  document.Tree({Element("Document")({Element("Sect").Named("loop").RawKid("$loop")})});
  folder_.Write("in.pdf", document.Write());
  const ProcessResult result = Tool({"run", "in.pdf", "-o", "out.pdf", "remove-empty-tags"}).In(folder_.Path()).Run();
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, StartsWith("tgx: in.pdf: step remove-empty-tags failed with 2: "));
  EXPECT_THAT(result.err, HasSubstr("ancestor"));
  EXPECT_THAT(folder_.Names(), testing::ElementsAre("in.pdf"));
}

TEST_F(BadTree, TenThousandLevels) {
  TestDocument document;
  document.AddPage();
  Element top("Document");
  Element element = top;
  for (int i = 0; i < 10000; ++i) element = element.AddNew("Sect");
  document.Tree({top});
  ExpectTreeRefused(document.Write(), HasSubstr("512 levels"));
}

TEST_F(BadTree, DoublesAtEveryLevelWhoseWaysCannotBeCounted) {
  TestDocument document;
  document.AddPage();
  Element top("Document");
  Element element = top;
  for (int i = 0; i < 60; ++i) {
    const std::string name = "n" + std::to_string(i);
    Element kid = element.AddNew("Sect");
    kid.Named(name);
    element.RawKid("$" + name);
    element = kid;
  }
  document.Tree({top});
  ExpectTreeRefused(document.Write(), HasSubstr("in so many places"));
}

}  // namespace
}  // namespace tgx::test
