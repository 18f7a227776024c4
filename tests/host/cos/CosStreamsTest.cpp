#include <string>

#include <gtest/gtest.h>
#include <qpdf/Pl_Flate.hh>
#include <qpdf/Pl_String.hh>
#include <qpdf/QPDFWriter.hh>

#include "tests/host/HostDocument.h"
#include "tests/support/TestDocument.h"

namespace tgx::host {
namespace {

const CosTable& Cos() { return *Tables()->cos; }

std::string Deflated(const std::string& data) {
  std::string out;
  Pl_String sink("out", nullptr, out);
  Pl_Flate deflate("deflate", &sink, Pl_Flate::a_deflate);
  deflate.writeString(data);
  deflate.finish();
  return out;
}

/// The rest of an open stream, which is closed.
std::string ReadAll(ASStm stream) {
  std::string data;
  char buffer[7];
  while (const ASInt32 count = Tables()->acroSupport->ASStmRead(buffer, 1, sizeof buffer, stream)) {
    data.append(buffer, static_cast<std::size_t>(count));
  }
  Tables()->acroSupport->ASStmClose(stream);
  return data;
}

std::string Data(CosObj stream, ASInt32 mode) { return ReadAll(Cos().CosStreamOpenStm(stream, mode)); }

/// A document whose object 2 is a stream with these entries besides "Length".
HostDocument WithStream(const std::string& entries, const std::string& data) {
  return HostDocument::FromObjects("<< /Type /Catalog /S 2 0 R >> endobj\n2 0 obj << /Length " +
                                   std::to_string(data.size()) + " " + entries + " >> stream\n" + data + "\nendstream");
}

/// A stream to read from, with these bytes.
ASStm Source(const std::string& bytes) {
  HostDocument document = WithStream("", bytes);
  return Cos().CosStreamOpenStm(document.Object(2), cosOpenRaw);
}

const std::string kPlain = "plain text of a stream, some of it twice: plain text of a stream";

TEST(CosStreamOpenStm, GivesTheStoredBytesWithTheirFilters) {
  const std::string stored = Deflated(kPlain);
  HostDocument document = WithStream("/Filter /FlateDecode", stored);
  EXPECT_EQ(Data(document.Object(2), cosOpenRaw), stored);
  EXPECT_EQ(Data(document.Object(2), cosOpenUnfiltered), stored);
}

TEST(CosStreamOpenStm, GivesTheDecodedData) {
  HostDocument document = WithStream("/Filter /FlateDecode", Deflated(kPlain));
  EXPECT_EQ(Data(document.Object(2), cosOpenFiltered), kPlain);
}

TEST(CosStreamOpenStm, OutlivesTheDocument) {
  HostDocument document = WithStream("", kPlain);
  const ASStm stream = Cos().CosStreamOpenStm(document.Object(2), cosOpenRaw);
  document.Close();
  EXPECT_EQ(ReadAll(stream), kPlain);
}

TEST(CosStreamOpenStm, RaisesForAFilterThatCannotBeUndone) {
  HostDocument document = WithStream("/Filter /JPXDecode", "no picture");
  EXPECT_EQ(RaisedCode([&] { Cos().CosStreamOpenStm(document.Object(2), cosOpenFiltered); }), kASNotSupported);
  EXPECT_EQ(Data(document.Object(2), cosOpenRaw), "no picture");
}

TEST(CosStreamOpenStm, RaisesForDamagedData) {
  HostDocument document = WithStream("/Filter /FlateDecode", "this is not deflated");
  EXPECT_EQ(RaisedCode([&] { Cos().CosStreamOpenStm(document.Object(2), cosOpenFiltered); }), kASDamagedDocument);
  EXPECT_EQ(RaisedText([&] { Cos().CosStreamOpenStm(document.Object(2), cosOpenFiltered); }),
            "object 2 0: the data of the stream are damaged");
}

TEST(CosStreamOpenStm, RaisesForAnUnknownModeAndForOtherTypes) {
  HostDocument document = WithStream("", kPlain);
  EXPECT_EQ(RaisedCode([&] { Cos().CosStreamOpenStm(document.Object(2), 3); }), kASBadParameter);
  EXPECT_EQ(RaisedCode([&] { Cos().CosStreamOpenStm(document.Root(), cosOpenRaw); }), kASWrongType);
  EXPECT_EQ(RaisedCode([&] { Cos().CosStreamOpenStm(Cos().CosNewNull(), cosOpenRaw); }), kASWrongType);
}

TEST(CosStreamLength, CountsTheStoredBytes) {
  const std::string stored = Deflated(kPlain);
  HostDocument document = WithStream("/Filter /FlateDecode", stored);
  EXPECT_EQ(Cos().CosStreamLength(document.Object(2)), static_cast<ASInt32>(stored.size()));
}

TEST(CosStreamLength, CountsWhatIsThereWhenLengthIsWrong) {
  HostDocument document =
      HostDocument::FromObjects("<< /Type /Catalog >> endobj\n2 0 obj << /Length 99999 >> stream\n12345endstream");
  EXPECT_EQ(Cos().CosStreamLength(document.Object(2)), 5);
}

TEST(CosStreamLength, AndTheBytesAreDecrypted) {
  test::TestDocument file;
  file.AddPage();
  file.Stream("secret", "<< >>", kPlain);
  file.SetCatalog("S", "$secret");
  HostDocument document = HostDocument::FromBytes(file.Write([](QPDFWriter& writer) {
    writer.setCompressStreams(false);
    writer.setR6EncryptionParameters("", "owner", true, true, true, true, true, true, qpdf_r3p_full, true);
  }));
  const CosObj stream = Cos().CosDictGetKeyString(document.Root(), "S");
  EXPECT_EQ(Cos().CosStreamLength(stream), static_cast<ASInt32>(kPlain.size()));
  EXPECT_EQ(Data(stream, cosOpenRaw), kPlain);
}

TEST(CosStreamLength, RaisesForOtherTypes) {
  HostDocument document;
  EXPECT_EQ(RaisedCode([&] { Cos().CosStreamLength(document.Root()); }), kASWrongType);
}

TEST(CosStreamDict, IsTheSameDictionaryEachTime) {
  HostDocument document = WithStream("/Subtype /Form", kPlain);
  const CosObj dict = Cos().CosStreamDict(document.Object(2));
  EXPECT_TRUE(dict == Cos().CosStreamDict(document.Object(2)));
  EXPECT_EQ(Cos().CosObjGetType(dict), CosDict);
  EXPECT_EQ(RaisedCode([&] { Cos().CosStreamDict(Cos().CosNewNull()); }), kASWrongType);
}

TEST(CosDict, OperationsOnAStreamWorkOnItsDictionary) {
  HostDocument document = WithStream("/Subtype /Form", kPlain);
  const CosObj stream = document.Object(2);
  EXPECT_EQ(Cos().CosDictKnownKeyString(stream, "Subtype"), 1);
  Cos().CosDictRemoveKeyString(stream, "Subtype");
  Cos().CosDictPutKeyString(stream, "Mark", document.Integer(1));
  const CosObj dict = Cos().CosStreamDict(stream);
  EXPECT_EQ(Cos().CosDictKnownKeyString(dict, "Subtype"), 0);
  EXPECT_TRUE(Cos().CosDictGetKeyString(dict, "Mark") == Cos().CosDictGetKeyString(stream, "Mark"));
}

TEST(CosNewStream, StoresTheBytesAndTheAttributes) {
  const std::string stored = Deflated(kPlain);
  HostDocument document;
  const CosObj attributes = document.Dict();
  Cos().CosDictPutKeyString(attributes, "Filter", document.Name("FlateDecode"));
  Cos().CosDictPutKeyString(attributes, "Length", document.Integer(12345));
  const ASStm source = Source(stored);
  const CosObj stream = Cos().CosNewStream(document.Doc(), 1, source, 0, 0, attributes, Cos().CosNewNull(), -1);
  Tables()->acroSupport->ASStmClose(source);
  EXPECT_EQ(Data(stream, cosOpenRaw), stored);
  EXPECT_EQ(Data(stream, cosOpenFiltered), kPlain);
  EXPECT_EQ(Cos().CosIntegerValue(Cos().CosDictGetKeyString(stream, "Length")), static_cast<ASInt32>(stored.size()));
}

TEST(CosNewStream, IsAlwaysIndirect) {
  HostDocument document;
  const ASStm source = Source("data");
  const CosObj stream = Cos().CosNewStream(document.Doc(), 0, source, 0, 0, Cos().CosNewNull(), Cos().CosNewNull(), -1);
  Tables()->acroSupport->ASStmClose(source);
  EXPECT_EQ(Cos().CosObjIsIndirect(stream), 1);
  EXPECT_EQ(Cos().CosObjGetType(stream), CosStream);
}

TEST(CosNewStream, LeavesTheAttributesToTheirOwner) {
  HostDocument document = WithStream("/Subtype /Form", "four");
  const ASStm source = Source("longer data");
  const CosObj attributes = Cos().CosStreamDict(document.Object(2));
  const CosObj stream = Cos().CosNewStream(document.Doc(), 1, source, 0, 0, attributes, Cos().CosNewNull(), -1);
  Tables()->acroSupport->ASStmClose(source);
  EXPECT_EQ(Cos().CosDictKnownKeyString(stream, "Subtype"), 1);
  EXPECT_EQ(Cos().CosIntegerValue(Cos().CosDictGetKeyString(attributes, "Length")), 4);
}

TEST(CosNewStream, TakesAPartOfTheSourceFromItsPresentPosition) {
  HostDocument document;
  const ASStm source = Source("0123456789");
  char skipped[2];
  Tables()->acroSupport->ASStmRead(skipped, 1, 2, source);
  const CosObj null = Cos().CosNewNull();
  EXPECT_EQ(Data(Cos().CosNewStream(document.Doc(), 1, source, 1, 0, null, null, 4), cosOpenRaw), "3456");
  EXPECT_EQ(ReadAll(source), "789");
}

TEST(CosNewStream, RaisesForWhatTheSourceDoesNotHold) {
  HostDocument document;
  const ASStm source = Source("0123456789");
  const CosObj null = Cos().CosNewNull();
  const auto code = [&](ASInt32 start, ASInt32 length) {
    return RaisedCode([&] { Cos().CosNewStream(document.Doc(), 1, source, start, 0, null, null, length); });
  };
  EXPECT_EQ(code(-1, -1), kASBadParameter);
  EXPECT_EQ(code(11, -1), kASBadParameter);
  EXPECT_EQ(code(5, 6), kASBadParameter);
  EXPECT_EQ(code(0, -2), kASBadParameter);
  EXPECT_EQ(ReadAll(source), "0123456789") << "nothing was taken";
}

TEST(CosNewStream, RaisesForEncodingAndForBadHandles) {
  HostDocument document;
  HostDocument other;
  const ASStm source = Source("0123456789");
  const CosObj null = Cos().CosNewNull();
  const auto code = [&](ASStm from, ASBool encode, CosObj attributes) {
    return RaisedCode([&] { Cos().CosNewStream(document.Doc(), 1, from, 0, encode, attributes, null, -1); });
  };
  EXPECT_EQ(code(source, 1, null), kASNotSupported);
  EXPECT_EQ(code(source, 0, other.Dict()), kASBadParameter);
  EXPECT_EQ(code(source, 0, document.Array()), kASWrongType);
  EXPECT_EQ(code(nullptr, 0, null), kASBadParameter);
  Tables()->acroSupport->ASStmClose(source);
  EXPECT_EQ(code(source, 0, null), kASBadParameter);
}

TEST(CosNewStream, ComesBackFromASavedDocument) {
  HostDocument document;
  const ASStm source = Source(kPlain);
  const CosObj null = Cos().CosNewNull();
  Cos().CosDictPutKeyString(document.Root(), "S", Cos().CosNewStream(document.Doc(), 1, source, 0, 0, null, null, -1));
  Tables()->acroSupport->ASStmClose(source);
  HostDocument again = document.Reopened();
  EXPECT_EQ(Data(Cos().CosDictGetKeyString(again.Root(), "S"), cosOpenFiltered), kPlain);
}

}  // namespace
}  // namespace tgx::host
