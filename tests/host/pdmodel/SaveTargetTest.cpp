// What saving does to files and folders.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/host/pdmodel/FileTest.h"

namespace tgx::host {
namespace {

class SaveTarget : public FileTest {
 protected:
  static int SaveTo(PDDoc doc, const std::string& path) { return TGXHost_SaveFile(doc, path.c_str(), nullptr); }

  std::string Saved() {
    const Opened doc(Sample("handbook.pdf"));
    EXPECT_EQ(SaveTo(doc, Path("out.pdf")), 0) << TGXHost_LastError();
    return Path("out.pdf");
  }

  /// What a failed saving must leave: the target as it was, and nothing else.
  void ExpectUntouched(const std::string& path, const std::string& bytes, const std::string& listing) {
    EXPECT_EQ(Read(path), bytes);
    EXPECT_EQ(Listing(), listing);
  }

  mode_t Mode(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
  }
};

TEST_F(SaveTarget, GivesANewFileTheUsualMode) {
  const mode_t mask = ::umask(027);
  const std::string out = Saved();
  ::umask(mask);
  EXPECT_EQ(Mode(out), 0640U);
}

TEST_F(SaveTarget, KeepsTheModeOfAFileThatItReplaces) {
  const std::string path = Put("out.pdf", "old");
  for (const mode_t mode : {0600U, 0640U, 0666U}) {
    ASSERT_EQ(::chmod(path.c_str(), mode), 0);
    EXPECT_EQ(Mode(Saved()), mode);
  }
}

TEST_F(SaveTarget, ReplacesTheFileThatALinkLeadsTo) {
  std::filesystem::create_directory(Path("folder"));
  Put("folder/real.pdf", "old");
  ASSERT_EQ(::symlink("folder/real.pdf", Path("middle.pdf").c_str()), 0);
  ASSERT_EQ(::symlink(Path("middle.pdf").c_str(), Path("link.pdf").c_str()), 0);
  const Opened doc(Sample("handbook.pdf"));
  ASSERT_EQ(SaveTo(doc, Path("link.pdf")), 0) << TGXHost_LastError();
  EXPECT_TRUE(std::filesystem::is_symlink(Path("link.pdf")));
  EXPECT_TRUE(std::filesystem::is_symlink(Path("middle.pdf")));
  EXPECT_EQ(QpdfCheck(Path("folder/real.pdf")), "");
}

TEST_F(SaveTarget, MakesTheFileThatADanglingLinkLeadsTo) {
  ASSERT_EQ(::symlink("real.pdf", Path("link.pdf").c_str()), 0);
  const Opened doc(Sample("handbook.pdf"));
  ASSERT_EQ(SaveTo(doc, Path("link.pdf")), 0) << TGXHost_LastError();
  EXPECT_TRUE(std::filesystem::is_symlink(Path("link.pdf")));
  EXPECT_EQ(QpdfCheck(Path("real.pdf")), "");
}

TEST_F(SaveTarget, RefusesLinksInACircle) {
  ASSERT_EQ(::symlink("b.pdf", Path("a.pdf").c_str()), 0);
  ASSERT_EQ(::symlink("a.pdf", Path("b.pdf").c_str()), 0);
  const Opened doc(Sample("handbook.pdf"));
  EXPECT_EQ(SaveTo(doc, Path("a.pdf")), kASFileError);
  EXPECT_EQ(TGXHost_LastError(), Path("a.pdf") + ": cannot be written: Too many levels of symbolic links");
}

TEST_F(SaveTarget, RefusesAFolderAndWhatIsNoRegularFile) {
  std::filesystem::create_directory(Path("folder"));
  ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
  const Opened doc(Sample("handbook.pdf"));
  EXPECT_EQ(SaveTo(doc, Path("folder")), kASFileError);
  EXPECT_EQ(TGXHost_LastError(), Path("folder") + ": cannot be written: it is a folder");
  EXPECT_EQ(SaveTo(doc, Path("pipe")), kASFileError);
  EXPECT_EQ(TGXHost_LastError(), Path("pipe") + ": cannot be written: it is not a regular file");
  EXPECT_EQ(SaveTo(doc, "/dev/full"), kASFileError);
  EXPECT_EQ(SaveTo(doc, Path("new.pdf/")), kASFileError);
  EXPECT_EQ(SaveTo(doc, ""), kASFileError);
}

TEST_F(SaveTarget, RefusesAFolderThatIsNotThere) {
  const Opened doc(Sample("handbook.pdf"));
  EXPECT_EQ(SaveTo(doc, Path("nowhere/out.pdf")), kASFileError);
  EXPECT_EQ(TGXHost_LastError(), Path("nowhere/out.pdf") + ": cannot be written: No such file or directory");
}

TEST_F(SaveTarget, LeavesTheTargetWhenTheFolderMayNotBeWrittenTo) {
  const Opened doc(Sample("handbook.pdf"));
  const std::string path = Put("out.pdf", "old");
  ASSERT_EQ(::chmod(path.c_str(), 0666), 0);
  ASSERT_EQ(::chmod(folder_.c_str(), 0555), 0);
  {
    const OrdinaryUser user;
    EXPECT_EQ(SaveTo(doc, path), kASFileError);
    EXPECT_EQ(TGXHost_LastError(), path + ": cannot be written: Permission denied");
  }
  ASSERT_EQ(::chmod(folder_.c_str(), 0755), 0);
  ExpectUntouched(path, "old", "out.pdf\n");
}

TEST_F(SaveTarget, LeavesAWriteProtectedTarget) {
  const Opened doc(Sample("handbook.pdf"));
  const std::string path = Put("out.pdf", "old");
  ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
  ASSERT_EQ(::chmod(folder_.c_str(), 0777), 0);
  {
    const OrdinaryUser user;
    EXPECT_EQ(SaveTo(doc, path), kASFileError);
  }
  ExpectUntouched(path, "old", "out.pdf\n");
}

TEST_F(SaveTarget, LeavesTheTargetWhenAFileMayNotGrow) {
  const Opened doc(Sample("handbook.pdf"));
  const std::string path = Put("out.pdf", "old");
  rlimit before = {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small = {10000, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  const int code = SaveTo(doc, path);  // without care the signal of the limit would end the program
  const std::string text = TGXHost_LastError();
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
  EXPECT_EQ(code, kASFileError);
  EXPECT_EQ(text, path + ": cannot be written: File too large");
  ExpectUntouched(path, "old", "out.pdf\n");
  EXPECT_EQ(SaveTo(doc, path), 0) << TGXHost_LastError();
}

TEST_F(SaveTarget, RefusesAClosedDocument) {
  const PDDoc doc = TGXHost_OpenFile(Sample("handbook.pdf").c_str(), nullptr);
  TGXHost_Close(doc);
  EXPECT_EQ(SaveTo(doc, Path("out.pdf")), kASBadParameter);
  EXPECT_EQ(SaveTo(nullptr, Path("out.pdf")), kASBadParameter);
  EXPECT_EQ(Listing(), "");
}

TEST_F(SaveTarget, RefusesADocumentWhoseFileWasCutMeanwhile) {
  const std::string path = Put("in.pdf", Read(Sample("handbook.pdf")));
  const Opened doc(path);
  ASSERT_EQ(::truncate(path.c_str(), 40000), 0);
  EXPECT_EQ(SaveTo(doc, Path("out.pdf")), kASFileError);
  EXPECT_EQ(TGXHost_LastError(), path + ": cannot be read: it was cut while it was open");
  EXPECT_EQ(Listing(), "in.pdf\n");
}

}  // namespace
}  // namespace tgx::host
