#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestDocument.h"
#include "tests/tool/RunTool.h"
#include "tool/Files.h"
#include "tool/Messages.h"

namespace tgx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// Runs both commands on an input that cannot be handled: each time one line that begins with the file's name, status 1, and
/// nothing written.
class BadInput : public testing::Test {
 protected:
  void ExpectRefused(const std::string& name, const testing::Matcher<const std::string&>& reason,
                     const std::vector<std::string>& options = {}) {
    std::vector<std::string> run = {"run", name, "-o", "out.pdf", "reserved"};
    std::vector<std::string> tree = {"tree", name};
    for (std::vector<std::string>* command : {&run, &tree}) {
      command->insert(command->end(), options.begin(), options.end());
      const ProcessResult result = Tool(*command).In(folder_.Path()).Run();
      EXPECT_EQ(result.status, 1) << command->front();
      EXPECT_EQ(result.out, "") << command->front();
      const std::string start = "tgx: " + name + ": ";
      ASSERT_THAT(result.err, StartsWith(start)) << command->front();
      EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
      EXPECT_THAT(result.err.substr(start.size()), reason) << command->front();
    }
    EXPECT_FALSE(Exists(folder_ / "out.pdf"));
  }

  TempFolder folder_;
};

std::string TinyDocument(const std::function<void(QPDFWriter&)>& configure = {}) {
  TestDocument document;
  document.Tree({Element("Document")({Element("P").Text(document.AddPage(), "Words")})});
  return document.Write(configure);
}

TEST_F(BadInput, NoSuchFile) { ExpectRefused("none.pdf", "no such file\n"); }

TEST_F(BadInput, Folder) { ExpectRefused(".", "is a folder\n"); }

TEST_F(BadInput, EmptyFile) {
  folder_.Write("empty.pdf", "");
  ExpectRefused("empty.pdf", "the file is empty\n");
}

TEST_F(BadInput, PipeIsRefusedAndNotWaitedFor) {
  ASSERT_EQ(mkfifo((folder_ / "pipe.pdf").c_str(), 0600), 0);
  ExpectRefused("pipe.pdf", "is not a regular file\n");
}

TEST_F(BadInput, TextFile) {
  folder_.Write("letter.pdf", "Dear reader,\nthis is no PDF file.\n");
  ExpectRefused("letter.pdf", HasSubstr("not a PDF file"));
}

TEST_F(BadInput, TruncatedBeforeItsPages) {
  folder_.Write("cut.pdf", TinyDocument().substr(0, 20));
  ExpectRefused("cut.pdf", HasSubstr("damaged"));
}

TEST_F(BadInput, MissingPassword) {
  folder_.Write("locked.pdf", TinyDocument([](QPDFWriter& writer) {
                  writer.setR6EncryptionParameters("open", "own", true, true, true, true, true, true, qpdf_r3p_full, true);
                }));
  ExpectRefused("locked.pdf", "needs a password; see --password and --password-file\n");
}

TEST_F(BadInput, WrongPassword) {
  folder_.Write("locked.pdf", TinyDocument([](QPDFWriter& writer) {
                  writer.setR6EncryptionParameters("open", "own", true, true, true, true, true, true, qpdf_r3p_full, true);
                }));
  ExpectRefused("locked.pdf", "the password is wrong\n", {"--password", "shut"});
}

TEST_F(BadInput, FileNameWithALineBreakStaysOnOneLine) {
  const ProcessResult result = Tool({"tree", "a\nb.pdf"}).Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, Message("a\\x0Ab.pdf: no such file"));
}

TEST_F(BadInput, FileNameOfAnyBytesIsNamedOnceAndEscaped) {
  for (const std::string name : {"t\x01\xFF.pdf", "caf\xC3\xA9.pdf", "c1\xC2\x9B.pdf", "rtl\xE2\x80\xAE.pdf"}) {
    folder_.Write(name, "no PDF file");
    const ProcessResult result = Tool({"tree", name}).In(folder_.Path()).Run();
    EXPECT_EQ(result.err.find(".pdf"), result.err.rfind(".pdf")) << result.err;
    EXPECT_EQ(result.err.find_first_of("\x01\xFF\x9B"), std::string::npos) << result.err;
  }
}

TEST_F(BadInput, LongPathIsNamedOnce) {
  std::string path = ".";
  for (int i = 0; i < 200; ++i) path += "/.";
  folder_.Write("letter.pdf", "no PDF file");
  const ProcessResult result = Tool({"tree", path + "/letter.pdf"}).In(folder_.Path()).Run();
  EXPECT_THAT(result.err, StartsWith("tgx: " + path + "/letter.pdf: not a PDF"));
}

TEST_F(BadInput, DashIsNoName) { ExpectRefused("-", "standard input cannot be used; write ./- for a file of that name\n"); }

TEST_F(BadInput, DashIsNoNameOfTheOutput) {
  folder_.Write("in.pdf", TinyDocument());
  const ProcessResult result = Tool({"run", "in.pdf", "-o", "-", "reserved"}).In(folder_.Path()).Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, Message("-: standard output cannot be used; write ./- for a file of that name"));
  EXPECT_FALSE(Exists(folder_ / "-"));
}

TEST_F(BadInput, EmptyNameOfTheInput) {
  const ProcessResult result = Tool({"tree", ""}).Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, Message("INPUT: the name of the file is empty; see tgx tree --help"));
}

TEST_F(BadInput, FolderThatMayNotBeWrittenIsFoundOutBeforeTheWork) {
  const TempFolder closed;
  ASSERT_EQ(chmod(closed.Path().c_str(), 0555), 0);
  const uid_t user = geteuid();
  if (user == 0) {  // nothing is closed to the superuser
    ASSERT_EQ(seteuid(65534), 0);
  }
  std::string told;
  try {
    tool::RequireWritable("in.pdf", closed / "out.pdf", false);
  } catch (const tool::Failure& failure) {
    told = failure.what();
  }
  ASSERT_EQ(seteuid(user), 0);
  EXPECT_EQ(told, closed / "out.pdf" + ": nothing can be written to the folder " + closed.Path() + ": permission denied");
}

TEST_F(BadInput, EmptyNameOfTheOutput) {
  folder_.Write("in.pdf", TinyDocument());
  const ProcessResult result = Tool({"run", "in.pdf", "-o", "", "reserved"}).In(folder_.Path()).Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, Message("-o: the name of the output is empty"));
}

TEST_F(BadInput, TargetInAFolderWhereNothingCanBeMade) {
  folder_.Write("in.pdf", TinyDocument());
  const ProcessResult result = Tool({"run", "in.pdf", "-o", "/proc/out.pdf", "reserved"}).In(folder_.Path()).Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, StartsWith("tgx: /proc/out.pdf: "));
  EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
  EXPECT_EQ(result.out, "reserved: done\nnothing was written\n");
}

TEST_F(BadInput, NoRoomForTheOutputLeavesTheTargetAndNoOtherFile) {
  folder_.Write("in.pdf", TinyDocument());
  folder_.Write("out.pdf", "precious");
  const ProcessResult result =
      Tool({"run", "in.pdf", "-o", "out.pdf", "--force", "reserved"}).In(folder_.Path()).LargestFile(512).Run();
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, StartsWith("tgx: out.pdf: "));
  EXPECT_THAT(folder_.Names(), ElementsAre("in.pdf", "out.pdf"));
  EXPECT_EQ(ReadFile(folder_ / "out.pdf"), "precious");
}

}  // namespace
}  // namespace tgx::test
