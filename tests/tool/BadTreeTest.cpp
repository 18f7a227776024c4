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

/// Elements that share an object by the name of "shared", under a key.
std::vector<Element> Sharing(int count, const std::string& key) {
  std::vector<Element> elements;
  for (int i = 0; i < count; ++i) elements.push_back(Element("P").Set(key, "$shared"));
  return elements;
}

TEST_F(BadTree, LongTextThatManyElementsShare) {
  TestDocument document;
  document.AddPage();
  document.Object("shared", "(" + std::string(1 << 20, 'x') + ")");
  document.Tree(Sharing(400, "ActualText"));
  ExpectTreeRefused(document.Write(), HasSubstr("more than 256 MiB of texts"));
}

TEST_F(BadTree, AttributesThatManyElementsShare) {
  TestDocument document;
  document.AddPage();
  std::string numbers;
  for (int i = 0; i < 9000; ++i) numbers += "1 ";
  document.Object("shared", "<</O/Layout/BBox[" + numbers + "]>>");
  document.Tree(Sharing(1500, "A"));
  ExpectTreeRefused(document.Write(), HasSubstr("more than 10,000,000 attribute values"));
}

TEST_F(BadTree, ChainOfRolesIsFollowedOnce) {
  TestDocument document;
  document.AddPage();
  constexpr int kTypes = 20000;
  std::vector<std::pair<std::string, std::string>> roles;
  std::vector<Element> elements;
  for (int i = 0; i < kTypes; ++i) {
    roles.emplace_back("T" + std::to_string(i), i + 1 < kTypes ? "T" + std::to_string(i + 1) : "P");
    elements.emplace_back("T" + std::to_string(i));
  }
  document.RoleMap(roles).Tree(elements);
  folder_.Write("in.pdf", document.Write());
  const ProcessResult result = Tool({"tree", "in.pdf"}).In(folder_.Path()).Run();
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, StartsWith("T0 (P)\nT1 (P)\n"));
}

TEST_F(BadTree, RolesInACircleEndAtTheTypeWhereItCloses) {
  TestDocument document;
  document.AddPage();
  document.RoleMap({{"Way", "A"}, {"A", "B"}, {"B", "A"}});
  document.Tree({Element("Way"), Element("B"), Element("A")});
  folder_.Write("in.pdf", document.Write());
  EXPECT_EQ(Tool({"tree", "in.pdf"}).In(folder_.Path()).Run().out, "Way (A)\nB\nA\n");
}

}  // namespace
}  // namespace tgx::test
