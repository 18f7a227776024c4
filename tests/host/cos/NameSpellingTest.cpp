#include "host/cos/NameSpelling.h"

#include <functional>
#include <string>

#include <gtest/gtest.h>
#include <qpdf/QPDFWriter.hh>

#include "host/core/Atoms.h"
#include "tests/host/HostDocument.h"
#include "tests/support/TestDocument.h"

namespace tgx::host {
namespace {

const CosTable& Cos() { return *Tables()->cos; }

// A number sign and two digits: read and written by qpdf alone it would become "aA".
constexpr const char* kName = "a#41";

/// A file with the name as a key and a value, directly in the catalog, deeper in it, in a stream, and as an indirect object.
std::string FileWithNames(const std::function<void(QPDFWriter&)>& configure = {}) {
  HostDocument document = HostDocument::FromObjects(
      "<< /Type /Catalog /D << /a#2341 [/a#2341 << /X /a#2341 >>] >> /N 2 0 R /S 3 0 R >> endobj\n"
      "2 0 obj /a#2341 endobj\n"
      "3 0 obj << /Length 4 /X /a#2341 >> stream\ndata\nendstream");
  document->Names().Settle();
  return test::WriteToString(document->Pdf(), configure);
}

std::string NameOf(CosObj name) { return AtomText(Cos().CosNameValue(name)); }

void ExpectNames(HostDocument& document) {
  const CosObj root = document.Root();
  const CosObj array = Cos().CosDictGetKeyString(Cos().CosDictGetKeyString(root, "D"), kName);
  ASSERT_EQ(Cos().CosObjGetType(array), CosArray);
  EXPECT_EQ(NameOf(Cos().CosArrayGet(array, 0)), kName);
  EXPECT_EQ(NameOf(Cos().CosDictGetKeyString(Cos().CosArrayGet(array, 1), "X")), kName);
  EXPECT_EQ(NameOf(Cos().CosDictGetKeyString(root, "N")), kName);
  EXPECT_EQ(NameOf(Cos().CosDictGetKeyString(Cos().CosDictGetKeyString(root, "S"), "X")), kName);
}

void ExpectNamesAfterSavingUntouched(const std::string& file) {
  HostDocument document = HostDocument::FromBytes(file);
  HostDocument saved = document.Reopened();
  ExpectNames(saved);
}

TEST(NameSpelling, KeepsTheNamesOfAFileThatNobodyTouched) { ExpectNamesAfterSavingUntouched(FileWithNames()); }

TEST(NameSpelling, KeepsTheNamesInObjectStreams) {
  const std::string file = FileWithNames([](QPDFWriter& writer) { writer.setObjectStreamMode(qpdf_o_generate); });
  ExpectNamesAfterSavingUntouched(file);
}

TEST(NameSpelling, KeepsTheNamesInAnEncryptedFile) {
  const std::string file = FileWithNames([](QPDFWriter& writer) {
    writer.setObjectStreamMode(qpdf_o_generate);
    writer.setR6EncryptionParameters("", "owner", true, true, true, true, true, true, qpdf_r3p_full, true);
  });
  ExpectNamesAfterSavingUntouched(file);
}

TEST(NameSpelling, FindsANameWhereverItStandsInAFile) {
  // The file is searched in pieces of 262144 bytes; the three bytes that are searched for may lie across two of them.
  const std::string before = "%PDF-1.7\n1 0 obj\n<< /Type /Catalog /Pages << /Type /Pages /Kids [] /Count 0 >>\n";
  for (std::size_t split = 0; split < 5; ++split) {
    const std::size_t sign = (1U << 18) - split;  // where "#23" begins
    std::string file = before + "%" + std::string(sign - before.size() - 7, ' ') + "\n/K /a#2341 >>\nendobj\n";
    ASSERT_EQ(file.find("#23"), sign);
    file += "trailer << /Root 1 0 R /Size 2 >>\nstartxref\n0\n%%EOF\n";
    HostDocument saved = HostDocument::FromBytes(file).Reopened();
    EXPECT_EQ(NameOf(Cos().CosDictGetKeyString(saved.Root(), "K")), kName) << "split " << split;
  }
}

/// A file of many objects in several object streams, the last of which cannot be decoded.
std::string FileWithDamagedObjectStream() {
  HostDocument document;
  const CosObj kept = document.Array();
  Cos().CosDictPutKeyString(document.Root(), "Kept", kept);
  for (int i = 0; i < 300; ++i) {
    const CosObj item = Cos().CosNewString(document.Doc(), 1, "item", 4);
    Cos().CosArrayInsert(kept, i, item);
  }
  std::string file =
      test::WriteToString(document->Pdf(), [](QPDFWriter& writer) { writer.setObjectStreamMode(qpdf_o_generate); });
  const std::size_t data = file.find("stream\n", file.rfind("/Type /ObjStm")) + 7;
  return file.replace(data, 10, 10, 'x');
}

TEST(NameSpelling, DoesNotStandInTheWayOfSavingADamagedFile) {
  HostDocument document = HostDocument::FromBytes(FileWithDamagedObjectStream());
  const CosObj kept = Cos().CosDictGetKeyString(document.Root(), "Kept");
  ASSERT_EQ(Cos().CosObjGetType(Cos().CosArrayGet(kept, 0)), CosString);
  ASSERT_EQ(Cos().CosObjGetType(Cos().CosArrayGet(kept, 299)), CosNull) << "the stream is damaged";
  HostDocument saved = document.Reopened();
  EXPECT_EQ(Cos().CosArrayLength(Cos().CosDictGetKeyString(saved.Root(), "Kept")), 300);
}

TEST(NameSpelling, LeavesTheHandlesOfNamesAlone) {
  HostDocument document = HostDocument::FromBytes(FileWithNames());
  const auto item = [&] {
    return Cos().CosArrayGet(Cos().CosDictGetKeyString(Cos().CosDictGetKeyString(document.Root(), "D"), kName), 0);
  };
  const CosObj direct = item();
  const CosObj indirect = Cos().CosDictGetKeyString(document.Root(), "N");
  document.Written();
  EXPECT_TRUE(item() == direct);
  EXPECT_EQ(NameOf(direct), kName);
  EXPECT_TRUE(Cos().CosDictGetKeyString(document.Root(), "N") == indirect);
  EXPECT_EQ(NameOf(indirect), kName);
}

TEST(NameSpelling, LetsADocumentBeSavedTwice) {
  HostDocument document = HostDocument::FromBytes(FileWithNames());
  const std::string first = document.Written();
  HostDocument again = HostDocument::FromBytes(document.Written());
  ExpectNames(again);
  EXPECT_EQ(first.size(), document.Written().size());
}

TEST(NameSpelling, KeepsTheFirstOfTwoSpellingsOfOneKey) {
  HostDocument document = HostDocument::FromObjects("<< /Type /Catalog /D << /c#zz 1 /c#23zz 2 >> >>");
  const CosObj before = Cos().CosDictGetKeyString(Cos().CosDictGetKeyString(document.Root(), "D"), "c#zz");
  const ASInt32 value = Cos().CosIntegerValue(before);
  HostDocument saved = document.Reopened();
  const CosObj after = Cos().CosDictGetKeyString(Cos().CosDictGetKeyString(saved.Root(), "D"), "c#zz");
  EXPECT_EQ(Cos().CosIntegerValue(after), value);
}

TEST(NameSpelling, SettlesAnObjectThatDoesNotComeFromTheFile) {
  HostDocument document;
  QPDFObjectHandle parsed = QPDFObjectHandle::parse("<< /a#2341 [ /b#23 ] >>");
  document->Names().Settle(parsed);
  EXPECT_EQ(parsed.unparse(), "<< /a#2341 [ /b#23 ] >>");
}

}  // namespace
}  // namespace tgx::host
