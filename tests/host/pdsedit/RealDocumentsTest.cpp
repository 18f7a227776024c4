#include <gtest/gtest.h>

#include "tests/host/pdsedit/StructureFixture.h"
#include "tests/support/DataFiles.h"

namespace tgx::host::structure {
namespace {

/// Documents of many producers, opened with an element put at the end of the top and taken out again, so that the host
/// looks through the whole structure when it saves.
class RealDocuments : public testing::TestWithParam<test::DataFile> {};

TEST_P(RealDocuments, KeepTheirTreeAndHaveATrueParentTree) {
  const std::string bytes = test::ReadBytes(GetParam().path);
  StructureDocument document(bytes);
  const PDSTreeRoot root = document.Root();
  ASSERT_FALSE(IsNullObject(root)) << "a document without a structure tree shows nothing here";
  const PDSElement element = document.NewElement("Span");
  Write().PDSElementInsertKid(root, element, kPDSAfterLast);
  Write().PDSElementRemoveKid(root, element);
  const std::string saved = document.Save();
  EXPECT_EQ(test::TreeText(saved), test::TreeText(bytes));
  test::ReadBack file(saved);
  EXPECT_EQ(test::ParentTreeProblems(file.Pdf()), std::vector<std::string>());
}

INSTANTIATE_TEST_SUITE_P(All, RealDocuments, testing::ValuesIn(test::DataFiles()),
                         [](const auto& file) { return test::TestName(file.param); });

}  // namespace
}  // namespace tgx::host::structure
