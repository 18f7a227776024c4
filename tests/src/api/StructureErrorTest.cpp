#include "src/api/StructureError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/api/EntryPoint.h"
#include "tests/support/Hosts.h"

namespace tgx {
namespace {

TEST(StructureError, HasThreeLines) {
  EXPECT_EQ(StructureErrorText("No document structure object found", "common/StructureUtils", 42),
            "Line number: 42\nSource file: common/StructureUtils\nError message: No document structure object found\n");
}

TEST(StructureError, ReportingItHasNoVisibleEffect) {
  test::RecordingHost host;
  const test::HostSession session(host.Tables());
  EXPECT_EQ(RunEntryPoint([] {
              ReportStructureError("No RoleMap structure object found", "fixes/RoleMapFix", 1);
              return TGX_OK;
            }),
            TGX_OK);
  EXPECT_STREQ(LastErrorText(), "");
  EXPECT_THAT(host.Names(), testing::ElementsAre("ASPushExceptionFrame", "ASPopExceptionFrame"));
}

}  // namespace
}  // namespace tgx
