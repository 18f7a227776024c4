// Every operation meets a host failure at each of its calls.

#include <cstdio>
#include <fstream>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "src/api/Dispatch.h"
#include "src/common/CPdfStructureParser.h"
#include "tests/src/api/SweptOperations.h"

namespace tgx {
namespace {

using test::OpenDocument;
using test::Outcome;
using test::SweptOperation;
using test::SweptOperations;

class HostFailureSweep : public testing::TestWithParam<SweptOperation> {
 protected:
  HostFailureSweep() {
    if (GetParam().file != nullptr) std::ofstream(Path(), std::ios::binary) << GetParam().file();
  }
  ~HostFailureSweep() override { std::remove(Path().c_str()); }

  static Outcome Run(OpenDocument& document) {
    CPdfStructureParser::LinkDepth() = 0;  // a failing call leaves it as it was
    const SweptOperation& operation = GetParam();
    if (operation.action < 0) return document.Fixups(operation.fixes);
    return document.Action(operation.action, operation.file == nullptr ? "" : Path());
  }

 private:
  static std::string Path() { return testing::TempDir() + "/HostFailureSweep." + GetParam().name; }
};

TEST_P(HostFailureSweep, EveryFailureEndsWithItsTextAndASoundDocument) {
  test::SweepHostFailures(GetParam().document(), Run, GetParam().options);
}

INSTANTIATE_TEST_SUITE_P(Operations, HostFailureSweep, testing::ValuesIn(SweptOperations()),
                         [](const auto& swept) { return std::string(swept.param.name); });

TEST(HostFailureSweeps, CoverEveryAction) {
  std::set<std::int32_t> swept;
  for (const SweptOperation& operation : SweptOperations()) swept.insert(operation.action);
  for (const ActionRow& row : Actions()) EXPECT_EQ(swept.count(row.number), 1U) << "action " << row.number;
}

TEST(HostFailureSweeps, CoverEveryFix) {
  std::uint32_t swept = 0;
  for (const SweptOperation& operation : SweptOperations()) swept |= operation.fixes;
  for (const FixRow& row : Fixes()) EXPECT_NE(swept & row.bit, 0U) << "fix " << row.bit;
}

}  // namespace
}  // namespace tgx
