#include "host/pdmodel/Save.h"

#include <regex>
#include <set>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFWriter.hh>

#include "host/core/Atoms.h"
#include "host/pdmodel/Document.h"
#include "tests/host/pdmodel/FileTest.h"
#include "tests/support/Paths.h"
#include "tests/support/TestDocument.h"

namespace tgx::host {
namespace {

const PDModelTable& Model() { return *TGXHost_Tables()->pdModel; }
const CosTable& Cos() { return *TGXHost_Tables()->cos; }

const char* const kOrdinaryFiles[] = {
    "samples/handbook.pdf",
    "samples/annual-report-filled-form.pdf",
    "corpus/pdfcpu-Hybrid-PDF.pdf",
    "corpus/pdfplumber-word365_structure.pdf",
    "corpus/typst-getreide.pdf",
    "corpus/verapdf-corpus-7.2-t27-pass-a.pdf",
    "corpus/xmlgraphics-fop-complete.pdf",
};

std::string Data(const std::string& name) { return test::DataPath(name); }

std::unique_ptr<QPDF> ReadWithQpdf(const std::string& path, const char* password = nullptr) {
  auto pdf = std::make_unique<QPDF>();
  pdf->setSuppressWarnings(true);
  pdf->processFile(path.c_str(), password);
  return pdf;
}

/// The document in qpdf's plain form: objects in the order of their first mention, streams decoded.
std::string Plain(const std::string& path) {
  const auto pdf = ReadWithQpdf(path);
  QPDFWriter writer(*pdf);
  writer.setOutputMemory();
  writer.setQDFMode(true);
  writer.setStaticID(true);
  writer.setSuppressOriginalObjectIDs(true);
  writer.write();
  const auto buffer = writer.getBufferSharedPointer();
  return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
}

/// The stored bytes of all streams but those that hold objects.
std::multiset<std::string> StoredStreams(const std::string& path) {
  std::multiset<std::string> streams;
  const auto pdf = ReadWithQpdf(path);
  for (QPDFObjectHandle& object : pdf->getAllObjects()) {
    if (!object.isStream()) continue;
    if (object.getDict().isDictionaryOfType("/ObjStm") || object.getDict().isDictionaryOfType("/XRef")) continue;
    const auto buffer = object.getRawStreamData();
    streams.emplace(reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize());
  }
  return streams;
}

std::string RunAndRead(const std::string& command, const std::string& output) {
  static_cast<void>(std::system((command + " >'" + output + "' 2>&1").c_str()));
  std::ostringstream text;
  text << std::ifstream(output).rdbuf();
  std::filesystem::remove(output);
  return text.str();
}

class Save : public FileTest {
 protected:
  int SaveTo(PDDoc doc, const std::string& path) { return TGXHost_SaveFile(doc, path.c_str(), nullptr); }

  std::string Saved(const std::string& source, const TGXHostSaveOptions* options = nullptr, const char* password = nullptr) {
    const TGXHostOpenOptions open = {sizeof(TGXHostOpenOptions), 0, password};
    const Opened doc(source, &open);
    const std::string path = Path("out.pdf");
    EXPECT_EQ(TGXHost_SaveFile(doc, path.c_str(), options), 0) << TGXHost_LastError();
    return path;
  }

  std::string Qpdf(const std::string& arguments, const std::string& output) {
    const std::string command = "qpdf --allow-weak-crypto " + arguments + " '" + Path(output) + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return Path(output);
  }

  static std::string Small() { return Corpus("pdf.js-issue8702.pdf"); }

  static TGXHostSaveOptions With(bool linearize, bool deterministic, bool decrypt) {
    return {sizeof(TGXHostSaveOptions), linearize ? 1 : 0, deterministic ? 1 : 0, decrypt ? 1 : 0};
  }
};

TEST_F(Save, KeepsAnUnchangedDocument) {
  for (const char* name : kOrdinaryFiles) {
    const std::string out = Saved(Data(name));
    EXPECT_EQ(Plain(out), Plain(Data(name))) << name;
  }
}

TEST_F(Save, KeepsStreamsByteForByte) {
  for (const char* name : kOrdinaryFiles) {
    const std::multiset<std::string> before = StoredStreams(Data(name));
    for (const std::string& stream : StoredStreams(Saved(Data(name)))) {
      EXPECT_TRUE(before.contains(stream)) << name << ": " << stream.size() << " bytes";
    }
  }
}

TEST_F(Save, KeepsCompressedMetadataByteForByte) {
  const auto pdf = ReadWithQpdf(Sample("handbook.pdf"));
  auto metadata = QPDFObjectHandle::newStream(pdf.get(), "not really deflated");
  metadata.getDict().replaceKey("/Type", QPDFObjectHandle::newName("/Metadata"));
  metadata.getDict().replaceKey("/Filter", QPDFObjectHandle::newName("/ASCIIHexDecode"));
  metadata.replaceStreamData("3C783E>", QPDFObjectHandle::newName("/ASCIIHexDecode"), QPDFObjectHandle::newNull());
  pdf->getRoot().replaceKey("/Metadata", metadata);
  const std::string in = Path("in.pdf");  // the writer keeps the pointer
  QPDFWriter writer(*pdf, in.c_str());
  writer.setStreamDataMode(qpdf_s_preserve);
  metadata.setFilterOnWrite(false);
  writer.write();
  const auto saved = ReadWithQpdf(Saved(Path("in.pdf")));
  QPDFObjectHandle again = saved->getRoot().getKey("/Metadata");
  EXPECT_EQ(again.getDict().getKey("/Filter").unparse(), "/ASCIIHexDecode");
  const auto buffer = again.getRawStreamData();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()), "3C783E>");
}

TEST_F(Save, WritesWhatOtherProgramsAccept) {
  for (const char* name : kOrdinaryFiles) EXPECT_EQ(QpdfCheck(Saved(Data(name))), "") << name;
}

TEST_F(Save, KeepsObjectStreams) {
  const std::string packed = Qpdf("--object-streams=generate '" + Sample("handbook.pdf") + "'", "packed.pdf");
  const std::string plain = Qpdf("--object-streams=disable '" + Sample("handbook.pdf") + "'", "plain.pdf");
  EXPECT_NE(Read(Saved(packed)).find("/ObjStm"), std::string::npos);
  EXPECT_EQ(Read(Saved(plain)).find("/ObjStm"), std::string::npos);
}

TEST_F(Save, KeepsTheVersion) {
  for (const char* version : {"1.3", "1.7", "2.0"}) {
    const std::string in = Qpdf(std::string("--force-version=") + version + " '" + Sample("handbook.pdf") + "'", "in.pdf");
    EXPECT_EQ(Read(Saved(in)).substr(0, 8), std::string("%PDF-") + version) << version;
  }
}

TEST_F(Save, Linearizes) {
  const TGXHostSaveOptions linearize = With(true, false, false);
  const std::string out = Saved(Sample("handbook.pdf"), &linearize);
  EXPECT_EQ(RunAndRead("qpdf --check-linearization '" + out + "'", Path("report")), out + ": no linearization errors\n");
  EXPECT_EQ(Plain(out).size(), Plain(Sample("handbook.pdf")).size());
}

TEST_F(Save, LinearizesAgainAfterAnEdit) {
  const Opened doc(Sample("handbook.pdf"));
  const TGXHostSaveOptions linearize = With(true, false, false);
  ASSERT_EQ(TGXHost_SaveFile(doc, Path("first.pdf").c_str(), &linearize), 0) << TGXHost_LastError();
  const ASFixedRect rect = {};
  Model().PDPageAddNewAnnot(Model().PDDocAcquirePage(doc, 1), kPDAnnotAfterLast, Intern("Square"), &rect);
  ASSERT_EQ(TGXHost_SaveFile(doc, Path("second.pdf").c_str(), &linearize), 0) << TGXHost_LastError();
  EXPECT_EQ(QpdfCheck(Path("first.pdf")), "");
  EXPECT_EQ(QpdfCheck(Path("second.pdf")), "");
  EXPECT_NE(Plain(Path("second.pdf")).find("/Square"), std::string::npos);
}

TEST_F(Save, LinearizesALongChainOfObjects) {
  // qpdf follows it by recursion, and the stack of a thread would not do.
  auto pdf = std::make_unique<QPDF>();
  pdf->processFile(Sample("handbook.pdf").c_str());
  QPDFObjectHandle next = QPDFObjectHandle::newInteger(7);
  for (int i = 0; i < 60000; ++i) {
    auto link = QPDFObjectHandle::newDictionary();
    link.replaceKey("/Next", next);
    next = pdf->makeIndirectObject(link);
  }
  pdf->getRoot().replaceKey("/Chain", next);
  const std::string in = Path("chain.pdf");  // the writer keeps the pointer
  QPDFWriter writer(*pdf, in.c_str());
  writer.write();
  const TGXHostSaveOptions linearize = With(true, false, false);
  EXPECT_GT(Read(Saved(Path("chain.pdf"), &linearize)).size(), 0U);
}

TEST_F(Save, GivesTheSameBytesWhenDeterministic) {
  const TGXHostSaveOptions deterministic = With(false, true, false);
  const std::string first = Read(Saved(Sample("handbook.pdf"), &deterministic));
  EXPECT_EQ(Read(Saved(Sample("handbook.pdf"), &deterministic)), first);
  const TGXHostSaveOptions linearized = With(true, true, false);
  const std::string second = Read(Saved(Sample("handbook.pdf"), &linearized));
  EXPECT_EQ(Read(Saved(Sample("handbook.pdf"), &linearized)), second);
}

TEST_F(Save, GivesAnotherIdEachTimeWhenNotDeterministic) {
  const auto id = [](const std::string& path) { return ReadWithQpdf(path)->getTrailer().getKey("/ID").unparse(); };
  const Opened doc(Sample("handbook.pdf"));
  ASSERT_EQ(SaveTo(doc, Path("a.pdf")), 0);
  EXPECT_NE(id(Path("a.pdf")), id(Sample("handbook.pdf")));
}

TEST_F(Save, GivesANewIdToAFileWhoseOwnIsNoString) {
  test::TestDocument source;
  source.AddPage();
  std::string bytes = source.Write();
  const std::size_t trailer = bytes.rfind("/ID [<");
  ASSERT_NE(trailer, std::string::npos);
  const std::size_t first = bytes.find('<', trailer);
  bytes.replace(first, bytes.find('>', first) + 1 - first, "null");
  const Opened doc(Put("in.pdf", bytes));
  ASSERT_EQ(SaveTo(doc, Path("out.pdf")), 0) << TGXHost_LastError();
  EXPECT_TRUE(ReadWithQpdf(Path("out.pdf"))->getTrailer().getKey("/ID").getArrayItem(0).isString());
}

TEST_F(Save, RefusesADeterministicEncryptedFile) {
  const std::string encrypted = Qpdf("--encrypt '' owner 256 -- '" + Sample("handbook.pdf") + "'", "in.pdf");
  const Opened doc(encrypted);
  const TGXHostSaveOptions deterministic = With(false, true, false);
  EXPECT_EQ(TGXHost_SaveFile(doc, Path("out.pdf").c_str(), &deterministic), kASNotSupported);
  EXPECT_EQ(TGXHost_LastError(),
            encrypted + ": an encrypted file cannot be written deterministically; its encryption would have to go");
  EXPECT_EQ(Listing(), "in.pdf\n");
  const TGXHostSaveOptions decrypted = With(false, true, true);
  EXPECT_EQ(TGXHost_SaveFile(doc, Path("out.pdf").c_str(), &decrypted), 0) << TGXHost_LastError();
}

TEST_F(Save, KeepsEncryptionPasswordsAndPermissions) {
  for (const char* how :
       {"user owner 40 --print=n", "user owner 128 --print=low --modify=none", "user owner 128 --use-aes=y",
        "user owner 128 --cleartext-metadata --use-aes=y", "user owner 256 --extract=n",
        "user owner 256 --cleartext-metadata", "user owner 256 --force-R5 --annotate=n"}) {
    const std::string in = Qpdf(std::string("--encrypt ") + how + " -- '" + Small() + "'", "in.pdf");
    for (const char* password : {"user", "owner"}) {
      const std::string out = Saved(in, nullptr, password);
      EXPECT_THROW(ReadWithQpdf(out), QPDFExc) << how;
      for (const char* again : {"user", "owner"}) {
        const std::string show = std::string("qpdf --show-encryption --password=") + again + " ";
        EXPECT_EQ(RunAndRead(show + "'" + out + "'", Path("report")), RunAndRead(show + "'" + in + "'", Path("report")))
            << how;
        EXPECT_EQ(RunAndRead(std::string("qpdf --check --password=") + again + " '" + out + "' | tail -2", Path("report")),
                  "No syntax or stream encoding errors found; the file may still contain\nerrors that qpdf cannot detect\n")
            << how;
      }
    }
  }
}

TEST_F(Save, KeepsEncryptionOfAKeyWhoseLengthTheFileDoesNotTell) {
  const std::string in = Qpdf("--encrypt user owner 128 --use-aes=y -- '" + Small() + "'", "in.pdf");
  std::string bytes = Read(in);
  const std::string length = "/Length 128";
  ASSERT_NE(bytes.find(length), std::string::npos);
  bytes.replace(bytes.find(length), length.size(), length.size(), ' ');
  const std::string out = Saved(Put("in.pdf", bytes), nullptr, "user");
  EXPECT_EQ(ReadWithQpdf(out, "user")->getAllPages().size(), ReadWithQpdf(Small())->getAllPages().size());
  EXPECT_EQ(RunAndRead("qpdf --check --password=user '" + out + "' | grep -c 'No syntax'", Path("report")), "1\n");
}

TEST_F(Save, RefusesToKeepTheEncryptionOfAPart) {
  const std::string in =
      Qpdf("--object-streams=disable --encrypt user owner 128 --use-aes=y -- '" + Small() + "'", "in.pdf");
  const std::string bytes = std::regex_replace(Read(in), std::regex("/StmF /StdCF"), "/StmF /Identity");
  const TGXHostOpenOptions open = {sizeof(TGXHostOpenOptions), 0, "user"};
  const Opened doc(Put("part.pdf", bytes), &open);
  EXPECT_EQ(SaveTo(doc, Path("out.pdf")), kASNotSupported);
  EXPECT_EQ(TGXHost_LastError(),
            Path("part.pdf") + ": only a part of the document is encrypted, which can be taken away but not kept");
  const TGXHostSaveOptions decrypt = With(false, false, true);
  EXPECT_EQ(TGXHost_SaveFile(doc, Path("out.pdf").c_str(), &decrypt), 0) << TGXHost_LastError();
}

TEST_F(Save, EncryptsWhatIsNew) {
  const std::string in = Qpdf("--encrypt '' owner 256 -- '" + Sample("handbook.pdf") + "'", "in.pdf");
  const Opened doc(in);
  const CosObj title = Cos().CosNewString(Model().PDDocGetCosDoc(doc), 0, "a secret title", 14);
  Cos().CosDictPutKeyString(Model().PDPageGetCosObj(Model().PDDocAcquirePage(doc, 0)), "Secret", title);
  ASSERT_EQ(SaveTo(doc, Path("out.pdf")), 0) << TGXHost_LastError();
  EXPECT_EQ(Read(Path("out.pdf")).find("a secret title"), std::string::npos);
  const auto again = ReadWithQpdf(Path("out.pdf"));
  QPDFObjectHandle page = again->getAllPages().at(0);
  EXPECT_EQ(page.getKey("/Secret").getStringValue(), "a secret title");
}

TEST_F(Save, TakesEncryptionAwayWhenAsked) {
  for (const char* how : {"'' owner 40", "'' owner 128 --use-aes=y", "'' owner 256"}) {
    const std::string in = Qpdf(std::string("--encrypt ") + how + " -- '" + Sample("handbook.pdf") + "'", "in.pdf");
    const TGXHostSaveOptions decrypt = With(false, false, true);
    const std::string out = Saved(in, &decrypt);
    EXPECT_FALSE(ReadWithQpdf(out)->isEncrypted()) << how;
    EXPECT_EQ(StoredStreams(out), StoredStreams(Saved(Sample("handbook.pdf")))) << how;
  }
}

TEST_F(Save, LinearizesAnEncryptedFileAgainAndAgain) {
  for (const char* how : {"'' owner 40", "'' owner 128 --use-aes=y", "'' owner 256"}) {
    const std::string in = Qpdf(std::string("--encrypt ") + how + " -- '" + Small() + "'", "in.pdf");
    const TGXHostSaveOptions linearize = With(true, false, false);
    const Opened doc(in);
    for (int i = 0; i < 2; ++i) {
      const std::string out = Path("out.pdf");
      ASSERT_EQ(TGXHost_SaveFile(doc, out.c_str(), &linearize), 0) << TGXHost_LastError();
      EXPECT_EQ(QpdfCheck(out), "") << how;
      EXPECT_EQ(RunAndRead("qpdf --show-encryption --password=owner '" + out + "'", Path("report")),
                RunAndRead("qpdf --show-encryption --password=owner '" + in + "'", Path("report")));
    }
  }
}

TEST_F(Save, CanBeRepeatedWithEditsBetween) {
  const Opened doc(Sample("handbook.pdf"));
  const PDPage page = Model().PDDocAcquirePage(doc, 0);
  const ASFixedRect rect = {};
  std::vector<int> counts;
  for (int i = 0; i < 3; ++i) {
    ASSERT_EQ(SaveTo(doc, Path("out.pdf")), 0) << TGXHost_LastError();
    const Opened again(Path("out.pdf"));
    counts.push_back(Model().PDPageGetNumAnnots(Model().PDDocAcquirePage(again, 0)));
    Model().PDPageAddNewAnnot(page, kPDAnnotAfterLast, Intern("Square"), &rect);
  }
  EXPECT_EQ(counts[1], counts[0] + 1);
  EXPECT_EQ(counts[2], counts[0] + 2);
}

TEST_F(Save, GivesTheSameBytesToMemory) {
  const Opened doc(Sample("handbook.pdf"));
  const TGXHostSaveOptions deterministic = With(false, true, false);
  ASSERT_EQ(TGXHost_SaveFile(doc, Path("out.pdf").c_str(), &deterministic), 0);
  void* data = nullptr;
  size_t size = 0;
  ASSERT_EQ(TGXHost_SaveMemory(doc, &deterministic, &data, &size), 0);
  EXPECT_EQ(std::string(static_cast<const char*>(data), size), Read(Path("out.pdf")));
  TGXHost_FreeMemory(data);
}

TEST_F(Save, MayReplaceTheFileThatItReads) {
  const std::string path = Put("same.pdf", Read(Sample("handbook.pdf")));
  const Opened doc(path);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(SaveTo(doc, path), 0) << TGXHost_LastError();
  EXPECT_EQ(Plain(path), Plain(Sample("handbook.pdf")));
  EXPECT_EQ(Listing(), "same.pdf\n");
}

}  // namespace
}  // namespace tgx::host
