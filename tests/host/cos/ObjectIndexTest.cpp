#include "host/cos/ObjectIndex.h"

#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>

#include <vector>

namespace tgx::host {
namespace {

class ObjectIndexTest : public testing::Test {
 protected:
  ObjectIndexTest() { pdf.emptyPDF(); }
  /// A new indirect object, which the test keeps alive.
  QPDFObjectHandle Indirect() { return pdf.makeIndirectObject(QPDFObjectHandle::newDictionary()); }

  QPDF pdf;
  ObjectIndex index;
};

TEST_F(ObjectIndexTest, FindsDirectAndIndirectObjects) {
  std::vector<QPDFObjectHandle> objects;
  for (ASUns32 i = 0; i < 200; ++i) {
    objects.push_back(i % 2 == 0 ? Indirect() : QPDFObjectHandle::newInteger(7));
    EXPECT_EQ(index.Find(objects.back()), ObjectIndex::kNone);
    index.Enter(objects.back(), 1000 + i);
  }
  for (ASUns32 i = 0; i < 200; ++i) EXPECT_EQ(index.Find(objects[i]), 1000 + i);
}

TEST_F(ObjectIndexTest, KnowsAnObjectThatWasDirectWhenItWasEntered) {
  const QPDFObjectHandle object = QPDFObjectHandle::newDictionary();
  index.Enter(object, 5);
  EXPECT_EQ(index.Find(pdf.makeIndirectObject(object)), 5U);
}

TEST_F(ObjectIndexTest, KeepsObjectsOfOneNumberApart) {
  QPDF other;
  other.emptyPDF();
  const QPDFObjectHandle ours = pdf.getObjectByID(1, 0);
  const QPDFObjectHandle theirs = other.getObjectByID(1, 0);
  index.Enter(ours, 1);
  EXPECT_EQ(index.Find(theirs), ObjectIndex::kNone);
  index.Enter(theirs, 2);
  EXPECT_EQ(index.Find(ours), 1U);
  EXPECT_EQ(index.Find(theirs), 2U);
}

TEST_F(ObjectIndexTest, TakesNoMemoryForEveryNumberBelowALargeOne) {
  // 16 bytes for each number would be 32 GB.
  const QPDFObjectHandle far = pdf.getObjectByID(2'000'000'000, 0);
  index.Enter(far, 3);
  EXPECT_EQ(index.Find(far), 3U);
}

TEST_F(ObjectIndexTest, ForgetsWhatIsRemoved) {
  const QPDFObjectHandle direct = QPDFObjectHandle::newInteger(7);
  const QPDFObjectHandle indirect = Indirect();
  for (const QPDFObjectHandle& object : {direct, indirect}) {
    index.Enter(object, 4);
    index.Remove(object);
    EXPECT_EQ(index.Find(object), ObjectIndex::kNone);
    index.Enter(object, 6);
    EXPECT_EQ(index.Find(object), 6U);
  }
}

}  // namespace
}  // namespace tgx::host
