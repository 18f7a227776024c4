#include "host/core/Tables.h"

#include <cstring>

#include <gtest/gtest.h>

namespace tgx::host {
namespace {

template <typename Table>
void ExpectFilled(const Table* table) {
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->size, sizeof(Table));
  EXPECT_EQ(table->version, static_cast<ASUns32>(kHostTablesVersion));
  const char* slots = reinterpret_cast<const char*>(table) + 2 * sizeof(ASUns32);
  for (std::size_t offset = 0; offset + 2 * sizeof(ASUns32) < sizeof(Table); offset += sizeof(void*)) {
    const void* function = nullptr;
    std::memcpy(&function, slots + offset, sizeof function);
    EXPECT_NE(function, nullptr) << "slot at offset " << offset;
  }
}

TEST(Tables, EveryTableStartsWithItsSizeAndHasNoEmptySlot) {
  const HostTables* tables = Tables();
  EXPECT_EQ(tables->size, sizeof(HostTables));
  ExpectFilled(tables->core);
  ExpectFilled(tables->acroSupport);
  ExpectFilled(tables->cos);
  ExpectFilled(tables->pdModel);
  ExpectFilled(tables->pdfEditRead);
  ExpectFilled(tables->pdfEditWrite);
  ExpectFilled(tables->pagePDEContent);
  ExpectFilled(tables->pdsEditRead);
  ExpectFilled(tables->pdsEditWrite);
  ExpectFilled(tables->text);
}

TEST(Tables, AreTheSameOnEveryCall) { EXPECT_EQ(Tables(), Tables()); }

}  // namespace
}  // namespace tgx::host
