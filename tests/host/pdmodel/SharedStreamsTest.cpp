#include "host/pdmodel/SharedStreams.h"

#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/HostDocument.h"
#include "tests/support/TestDocument.h"

namespace tgx::host {
namespace {

const CosTable& Cos() { return *Tables()->cos; }

/// A document in whose catalog a client puts streams of its own.
class SharedStreamsTest : public testing::Test {
 protected:
  /// A new stream with these bytes.
  CosObj Stream(const std::string& bytes, CosObj attributes = Cos().CosNewNull()) {
    HostDocument origin = HostDocument::FromObjects("<< /Type /Catalog >> endobj\n2 0 obj << /Length " +
                                                    std::to_string(bytes.size()) + " >> stream\n" + bytes + "\nendstream");
    const ASStm source = Cos().CosStreamOpenStm(origin.Object(2), cosOpenRaw);
    const CosObj stream = Cos().CosNewStream(document_.Doc(), 1, source, 0, 0, attributes, Cos().CosNewNull(), -1);
    Tables()->acroSupport->ASStmClose(source);
    return stream;
  }

  CosObj Attributes(const char* key, CosObj value) {
    const CosObj attributes = document_.Dict();
    Cos().CosDictPutKeyString(attributes, key, value);
    return attributes;
  }

  void Put(const char* key, CosObj value) { Cos().CosDictPutKeyString(document_.Root(), key, value); }
  CosObj At(const char* key) { return Cos().CosDictGetKeyString(document_.Root(), key); }

  /// How many streams the saved document has.
  int StreamsWritten() {
    HostDocument written = document_.Reopened();
    int streams = 0;
    for (QPDFObjectHandle& object : written->Pdf().getAllObjects()) streams += object.isStream() ? 1 : 0;
    return streams;
  }

  HostDocument document_;
};

TEST_F(SharedStreamsTest, WritesEqualStreamsOnce) {
  for (const char* key : {"A", "B", "C"}) Put(key, Stream("a font program"));
  EXPECT_EQ(StreamsWritten(), 1);
  HostDocument written = document_.Reopened();
  QPDFObjectHandle root = written->Pdf().getRoot();
  EXPECT_EQ(root.getKey("/A").getObjGen(), root.getKey("/C").getObjGen());
}

TEST_F(SharedStreamsTest, KeepsThemApartUntilThen) {
  const CosObj first = Stream("a font program");
  const CosObj second = Stream("a font program");
  Put("A", first);
  Put("B", second);
  document_.Written();
  EXPECT_TRUE(At("A") == first);
  EXPECT_TRUE(At("B") == second);
  Cos().CosDictPutKeyString(second, "Mark", document_.Integer(1));
  EXPECT_EQ(StreamsWritten(), 2) << "an edit between two savings makes them differ";
}

TEST_F(SharedStreamsTest, KeepsStreamsWithOtherData) {
  Put("A", Stream("one"));
  Put("B", Stream("two"));
  EXPECT_EQ(StreamsWritten(), 2);
}

TEST_F(SharedStreamsTest, KeepsStreamsWithOtherEntries) {
  Put("A", Stream("data", Attributes("Length1", document_.Integer(4))));
  Put("B", Stream("data", Attributes("Length1", document_.Integer(5))));
  Put("C", Stream("data"));
  EXPECT_EQ(StreamsWritten(), 3);
}

TEST_F(SharedStreamsTest, KeepsEachFormXObject) {
  Put("A", Stream("0 0 9 9 re f", Attributes("Subtype", document_.Name("Form"))));
  Put("B", Stream("0 0 9 9 re f", Attributes("Subtype", document_.Name("Form"))));
  EXPECT_EQ(StreamsWritten(), 2);
}

TEST_F(SharedStreamsTest, FindsStreamsInArrays) {
  const CosObj array = document_.Array();
  Cos().CosArrayPut(array, 0, document_.Integer(1));
  Cos().CosArrayInsert(array, 99, Stream("data"));
  Cos().CosArrayPut(array, 5, Stream("data"));
  Put("A", array);
  EXPECT_EQ(StreamsWritten(), 1);
}

TEST_F(SharedStreamsTest, LeavesAnItemThatHasMovedWhereItIs) {
  const CosObj array = document_.Array();
  Cos().CosArrayInsert(array, 0, Stream("data"));
  Cos().CosArrayInsert(array, 1, Stream("data"));
  Cos().CosArrayInsert(array, 0, document_.Integer(7));
  Put("A", array);
  HostDocument written = document_.Reopened();
  QPDFObjectHandle items = written->Pdf().getRoot().getKey("/A");
  EXPECT_EQ(items.getArrayItem(0).unparse(), "7");
  EXPECT_TRUE(items.getArrayItem(1).isStream());
  EXPECT_TRUE(items.getArrayItem(2).isStream());
}

TEST_F(SharedStreamsTest, FindsStreamsWhoseEntriesAreEqualStreams) {
  for (const char* key : {"A", "B"}) Put(key, Stream("an image", Attributes("SMask", Stream("its mask"))));
  EXPECT_EQ(StreamsWritten(), 2);
}

TEST_F(SharedStreamsTest, LeavesWhatWasPutOverAStream) {
  Put("A", Stream("data"));
  Put("B", Stream("data"));
  Put("B", document_.Integer(3));
  HostDocument written = document_.Reopened();
  EXPECT_EQ(written->Pdf().getRoot().getKey("/B").unparse(), "3");
}

TEST_F(SharedStreamsTest, WritesTheSameBytesEachTime) {
  for (const char* key : {"A", "B"}) Put(key, Stream("a font program"));
  const std::string once = document_.Written();
  EXPECT_EQ(document_.Written(), once);
}

TEST(SharedStreams, TakesTheStreamThatTheFileHas) {
  HostDocument document = HostDocument::FromObjects(
      "<< /Type /Catalog /Own 2 0 R >> endobj\n2 0 obj << /Length 4 /Length1 4 >> stream\ndata\nendstream");
  const ASStm source = Cos().CosStreamOpenStm(document.Object(2), cosOpenRaw);
  const CosObj stream =
      Cos().CosNewStream(document.Doc(), 1, source, 0, 0, Cos().CosStreamDict(document.Object(2)), Cos().CosNewNull(), -1);
  Tables()->acroSupport->ASStmClose(source);
  Cos().CosDictPutKeyString(document.Root(), "New", stream);
  HostDocument written = document.Reopened();
  QPDFObjectHandle root = written->Pdf().getRoot();
  EXPECT_EQ(root.getKey("/New").getObjGen(), root.getKey("/Own").getObjGen());
}

TEST(SharedStreams, LeavesEqualStreamsOfTheFileApart) {
  HostDocument document = HostDocument::FromObjects(
      "<< /Type /Catalog /A 2 0 R /B 3 0 R >> endobj\n2 0 obj << /Length 4 >> stream\ndata\nendstream endobj\n"
      "3 0 obj << /Length 4 >> stream\ndata\nendstream");
  HostDocument written = document.Reopened();
  QPDFObjectHandle root = written->Pdf().getRoot();
  EXPECT_NE(root.getKey("/A").getObjGen(), root.getKey("/B").getObjGen());
}

}  // namespace
}  // namespace tgx::host
