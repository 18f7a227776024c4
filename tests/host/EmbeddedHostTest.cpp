#include <tgx/embedded_host.h>

#include <algorithm>
#include <regex>

#include "tests/host/pdmodel/FileTest.h"
#include "tests/support/Paths.h"
#include "tests/support/TestDocument.h"

namespace tgx::host {
namespace {

using EmbeddedHost = FileTest;

TEST_F(EmbeddedHost, OpensAndSavesAFile) {
  const Opened doc(Sample("handbook.pdf"));
  EXPECT_EQ(TGXHost_SaveFile(doc, Path("out.pdf").c_str(), nullptr), 0) << TGXHost_LastError();
  EXPECT_EQ(QpdfCheck(Path("out.pdf")), "");
  const Opened again(Path("out.pdf"));
  const PDModelTable* model = TGXHost_Tables()->pdModel;
  EXPECT_EQ(model->PDDocGetNumPages(again), model->PDDocGetNumPages(doc));
}

TEST_F(EmbeddedHost, SavesToMemoryAndOpensFromIt) {
  const Opened doc(Sample("handbook.pdf"));
  void* data = nullptr;
  size_t size = 0;
  ASSERT_EQ(TGXHost_SaveMemory(doc, nullptr, &data, &size), 0) << TGXHost_LastError();
  const PDDoc again = TGXHost_OpenMemory(data, size, "copy", nullptr);
  TGXHost_FreeMemory(data);
  ASSERT_NE(again, nullptr) << TGXHost_LastError();
  const PDModelTable* model = TGXHost_Tables()->pdModel;
  EXPECT_EQ(model->PDDocGetNumPages(again), model->PDDocGetNumPages(doc));
  TGXHost_Close(again);
}

TEST_F(EmbeddedHost, CountsEditsAndNotWhatIsOnlyRead) {
  const Opened doc(Sample("handbook.pdf"));
  const HostTables* tables = TGXHost_Tables();
  const PDPage page = tables->pdModel->PDDocAcquirePage(doc, 0);
  const PDEContent content = tables->pagePDEContent->PDPageAcquirePDEContent(page, nullptr);
  EXPECT_GT(tables->pdfEditRead->PDEContentGetNumElems(content), 0);
  tables->pagePDEContent->PDPageSetPDEContent(page, nullptr);
  EXPECT_EQ(TGXHost_EditCount(doc), 0U);
  tables->pdfEditWrite->PDEContentRemoveElem(content, 0);
  tables->pagePDEContent->PDPageSetPDEContent(page, nullptr);
  const std::size_t edits = TGXHost_EditCount(doc);
  EXPECT_GT(edits, 0U);
  tables->pagePDEContent->PDPageSetPDEContent(page, nullptr);
  EXPECT_EQ(TGXHost_EditCount(doc), edits);
  EXPECT_EQ(TGXHost_EditCount(nullptr), 0U);
}

TEST_F(EmbeddedHost, NamesFileAndReasonWhenThereIsNoSuchFile) {
  const std::string path = Path("missing.pdf");
  EXPECT_EQ(TGXHost_OpenFile(path.c_str(), nullptr), nullptr);
  EXPECT_EQ(TGXHost_LastErrorCode(), kASFileError);
  EXPECT_EQ(TGXHost_LastError(), path + ": cannot be opened: No such file or directory");
}

TEST_F(EmbeddedHost, ForgetsAFailureAfterASuccess) {
  EXPECT_EQ(TGXHost_OpenFile(Path("missing.pdf").c_str(), nullptr), nullptr);
  const Opened doc(Sample("handbook.pdf"));
  EXPECT_EQ(TGXHost_LastErrorCode(), kASNoError);
  EXPECT_STREQ(TGXHost_LastError(), "");
}

TEST_F(EmbeddedHost, RefusesNullAndRecordsOfAnotherSize) {
  const TGXHostOpenOptions open = {sizeof(TGXHostOpenOptions) + 8, 0, nullptr};
  const TGXHostSaveOptions save = {0, 0, 0, 0};
  void* data = this;
  size_t size = 7;
  EXPECT_EQ(TGXHost_OpenFile(nullptr, nullptr), nullptr);
  EXPECT_EQ(TGXHost_LastErrorCode(), kASBadParameter);
  EXPECT_EQ(TGXHost_OpenMemory(nullptr, 5, "x", nullptr), nullptr);
  EXPECT_EQ(TGXHost_LastErrorCode(), kASBadParameter);
  EXPECT_EQ(TGXHost_OpenFile(Sample("handbook.pdf").c_str(), &open), nullptr);
  EXPECT_EQ(TGXHost_LastErrorCode(), kASBadParameter);
  const Opened doc(Sample("handbook.pdf"));
  EXPECT_EQ(TGXHost_SaveFile(doc, Path("out.pdf").c_str(), &save), kASBadParameter);
  EXPECT_EQ(TGXHost_SaveFile(doc, nullptr, nullptr), kASBadParameter);
  EXPECT_EQ(TGXHost_SaveMemory(doc, nullptr, nullptr, &size), kASBadParameter);
  EXPECT_EQ(TGXHost_SaveMemory(doc, nullptr, &data, nullptr), kASBadParameter);
  EXPECT_EQ(TGXHost_SaveMemory(nullptr, nullptr, &data, &size), kASBadParameter);
  EXPECT_EQ(data, this);
  EXPECT_EQ(size, 7U);
  EXPECT_EQ(Listing(), "");
}

TEST_F(EmbeddedHost, RefusesAnEmptyDocumentInMemory) {
  EXPECT_EQ(TGXHost_OpenMemory(nullptr, 0, "nothing.pdf", nullptr), nullptr);
  EXPECT_STREQ(TGXHost_LastError(), "nothing.pdf: not a PDF file: it is empty");
  EXPECT_EQ(TGXHost_OpenMemory("x", 1, nullptr, nullptr), nullptr);
  EXPECT_STREQ(TGXHost_LastError(), "document in memory: not a PDF file");
}

TEST_F(EmbeddedHost, CopiesTheMemoryThatItOpens) {
  std::string bytes = Read(Sample("handbook.pdf"));
  const PDDoc doc = TGXHost_OpenMemory(bytes.data(), bytes.size(), "copy", nullptr);
  std::fill(bytes.begin(), bytes.end(), 'x');
  EXPECT_EQ(TGXHost_SaveFile(doc, Path("out.pdf").c_str(), nullptr), 0) << TGXHost_LastError();
  TGXHost_Close(doc);
  EXPECT_EQ(QpdfCheck(Path("out.pdf")), "");
}

TEST_F(EmbeddedHost, IgnoresTheClosingOfNullAndDeadDocuments) {
  const PDDoc doc = TGXHost_OpenFile(Sample("handbook.pdf").c_str(), nullptr);
  TGXHost_Close(doc);
  TGXHost_Close(doc);
  TGXHost_Close(nullptr);
  EXPECT_EQ(TGXHost_LastErrorCode(), kASNoError);
  EXPECT_EQ(TGXHost_WarningCount(doc), 0U);
  EXPECT_EQ(TGXHost_LastErrorCode(), kASBadParameter);
}

/// A document with one object that nobody can read, and nothing else wrong with it; `damage` is as long as the mark.
constexpr std::string_view kMark = "(a value that is lost ...)";

std::string WithLostObject(std::string_view damage) {
  test::TestDocument document;
  document.AddPage();
  document.Object("lost", "<</N " + std::string(kMark) + ">>").SetCatalog("Lost", "$lost");
  std::string bytes = document.Write();
  bytes.replace(bytes.find(kMark), kMark.size(), damage);
  return bytes;
}

TEST_F(EmbeddedHost, TellsOfAnObjectThatIsLostInSaving) {
  for (const TGXHostSaveOptions& options :
       {TGXHostSaveOptions{sizeof(TGXHostSaveOptions), 0, 0, 0}, TGXHostSaveOptions{sizeof(TGXHostSaveOptions), 1, 0, 0}}) {
    const Opened doc(Put("lost.pdf", WithLostObject("99999999999999999999999999")));
    EXPECT_EQ(TGXHost_WarningCount(doc), 0U);
    ASSERT_EQ(TGXHost_SaveFile(doc, Path("out.pdf").c_str(), &options), 0) << TGXHost_LastError();
    ASSERT_GE(TGXHost_WarningCount(doc), 1U);
    EXPECT_EQ(std::string(TGXHost_Warning(doc, 0)).find(Path("lost.pdf") + ": object "), 0U) << TGXHost_Warning(doc, 0);
  }
}

TEST_F(EmbeddedHost, TellsOfAnObjectThatIsSpelledWrong) {
  const Opened doc(Put("lost.pdf", WithLostObject(") >>                      ")));
  ASSERT_EQ(TGXHost_SaveFile(doc, Path("out.pdf").c_str(), nullptr), 0) << TGXHost_LastError();
  EXPECT_GE(TGXHost_WarningCount(doc), 1U);
}

TEST_F(EmbeddedHost, TellsOfARevisionThatIsCutShort) {
  test::TestDocument document;
  document.AddPage();
  const Opened doc(Put("cut.pdf", document.Write() + "5 0 obj\n<< /Type /Pages /Cou"));
  ASSERT_EQ(TGXHost_WarningCount(doc), 1U);
  EXPECT_EQ(TGXHost_Warning(doc, 0), Path("cut.pdf") + ": cut short: the changes of its last revision are left out");
}

TEST_F(EmbeddedHost, DoesNotMindOtherBytesBehindTheEnd) {
  test::TestDocument document;
  document.AddPage();
  const Opened doc(Put("mail.pdf", document.Write() + "\n--boundary--\n"));
  EXPECT_EQ(TGXHost_WarningCount(doc), 0U);
}

TEST_F(EmbeddedHost, TellsOfPagesThatAreNone) {
  test::TestDocument document;
  document.AddPage();
  document.Patch([](QPDF& pdf) { pdf.getRoot().getKey("/Pages").getKey("/Kids").appendItem(QPDFObjectHandle::newNull()); });
  const Opened doc(Put("null.pdf", document.Write()));
  ASSERT_EQ(TGXHost_WarningCount(doc), 1U);
  EXPECT_EQ(TGXHost_Warning(doc, 0), Path("null.pdf") + " (page tree): items left out that are no pages: 1");
}

TEST_F(EmbeddedHost, KeepsAThousandWarningsInTheirPlaces) {
  test::TestDocument document;
  document.AddPage();
  for (int i = 0; i < 1500; ++i) document.Object("o" + std::to_string(i), "[(" + std::to_string(10'000 + i) + ")]");
  std::string list;
  for (int i = 0; i < 1500; ++i) list += "$o" + std::to_string(i) + " ";
  document.SetCatalog("List", "[" + list + "]");
  std::string bytes = document.Write();
  for (int i = 0; i < 1500; ++i) bytes.replace(bytes.find("(" + std::to_string(10'000 + i) + ")"), 7, ")      ");
  const Opened doc(Put("lost.pdf", bytes));
  ASSERT_EQ(TGXHost_SaveFile(doc, Path("out.pdf").c_str(), nullptr), 0) << TGXHost_LastError();
  ASSERT_EQ(TGXHost_WarningCount(doc), 1001U);
  const char* const last = TGXHost_Warning(doc, 1000);
  EXPECT_EQ(last, Path("lost.pdf") + ": there are more warnings than are listed");
  EXPECT_EQ(TGXHost_Warning(doc, 1000), last);
}

TEST_F(EmbeddedHost, CutsFramesThatWereLeftBehind) {
  const size_t depth = TGXHost_FrameDepth();
  TGXHost_Tables()->core->ASPushExceptionFrame(nullptr, [] {});
  TGXHost_Tables()->core->ASPushExceptionFrame(nullptr, [] {});
  EXPECT_EQ(TGXHost_FrameDepth(), depth + 2);
  TGXHost_CutFrames(depth);
  EXPECT_EQ(TGXHost_FrameDepth(), depth);
}

TEST_F(EmbeddedHost, KeepsSeveralDocumentsApart) {
  const Opened one(Sample("handbook.pdf"));
  const Opened other(Sample("travel-guide.pdf"));
  const PDModelTable* model = TGXHost_Tables()->pdModel;
  EXPECT_NE(model->PDDocAcquirePage(one, 0), model->PDDocAcquirePage(other, 0));
  EXPECT_EQ(model->PDPageGetDoc(model->PDDocAcquirePage(other, 0)), static_cast<PDDoc>(other));
}

TEST_F(EmbeddedHost, IsCalledInFullByTheProgramInC) {
  const std::string program = Read(test::SourcePath("tests/c_interface/interface.c"));
  const std::regex function("EXPORT [^;(]*?(TGX\\w+)\\(");
  for (const char* header : {"include/tgx/embedded_host.h", "include/tgx/tgx.h"}) {
    const std::string text = Read(test::SourcePath(header));
    int count = 0;
    for (std::sregex_iterator match(text.begin(), text.end(), function), end; match != end; ++match, ++count) {
      EXPECT_NE(program.find((*match)[1].str() + "("), std::string::npos) << (*match)[1];
    }
    EXPECT_GE(count, 4) << header;
  }
}

}  // namespace
}  // namespace tgx::host
