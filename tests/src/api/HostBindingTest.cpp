#include "src/api/HostBinding.h"

#include <gtest/gtest.h>

namespace tgx {
namespace {

const HostTables kFirst = {};
const HostTables kSecond = {};

TEST(Init, KeepsTheIdentityAndTheTablesOfTheLatestCall) {
  const auto extension = reinterpret_cast<ASExtension>(0x1234);
  const TGXInitParams first = {nullptr, [] { return &kFirst; }};
  const TGXInitParams second = {extension, [] { return &kSecond; }};
  EXPECT_EQ(TGX_init(&first), 0);
  EXPECT_EQ(GetHostTables(), &kFirst);
  EXPECT_EQ(TGX_init(&second), 0);
  EXPECT_EQ(GetHostTables(), &kSecond);
  EXPECT_EQ(ExtensionId(), extension);
}

}  // namespace
}  // namespace tgx
