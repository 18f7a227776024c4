#include <tgx/embedded_host.h>

#include "tests/host/pdmodel/FileTest.h"

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

TEST_F(EmbeddedHost, NamesFileAndReasonWhenThereIsNoSuchFile) {
  const std::string path = Path("missing.pdf");
  EXPECT_EQ(TGXHost_OpenFile(path.c_str(), nullptr), nullptr);
  EXPECT_EQ(TGXHost_LastErrorCode(), kASFileError);
  EXPECT_EQ(TGXHost_LastError(), path + ": cannot be opened: No such file or directory");
}

}  // namespace
}  // namespace tgx::host
