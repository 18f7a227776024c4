// A disk without room for the output. It takes a file system of its own, which not everybody may mount.
#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include <gtest/gtest.h>

#include "tests/support/DataFiles.h"
#include "tests/support/Paths.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

/// A file system in memory, of 64 KB, in a folder for as long as it lives. It is mounted where only this process and those
/// that it starts see it, so that nothing of it outlives them.
class SmallDisk {
 public:
  explicit SmallDisk(std::string folder) : folder_(std::move(folder)) {
    isMounted_ = ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                 ::mount("tmpfs", folder_.c_str(), "tmpfs", 0, "size=64k") == 0;
    if (!isMounted_) reason_ = std::strerror(errno);
  }
  ~SmallDisk() {
    if (isMounted_) ::umount2(folder_.c_str(), MNT_DETACH);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  bool IsMounted() const { return isMounted_; }
  const std::string& Reason() const { return reason_; }
  unsigned long FreeBlocks() const {
    struct statvfs status {};
    return ::statvfs(folder_.c_str(), &status) == 0 ? status.f_bfree : 0;
  }

 private:
  std::string folder_;
  bool isMounted_ = false;
  std::string reason_;
};

/// The document has more than 200 KB.
std::string LargeDocument() { return DataPath("samples/handbook.pdf"); }

class FullDisk : public testing::Test {
 protected:
  void SetUp() override {
    if (!disk_.IsMounted()) GTEST_SKIP() << "no file system can be mounted here: " << disk_.Reason();
  }

  TempFolder folder_;
  SmallDisk disk_{folder_.Path()};
};

TEST_F(FullDisk, IsToldInOneLine) {
  const std::string output = folder_ / "out.pdf";
  const ProcessResult result = RunTool({"run", LargeDocument(), "-o", output, "remove-empty-tags"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, Message(output + ": cannot be written: No space left on device"));
}

TEST_F(FullDisk, LeavesNothingBehind) {
  const unsigned long before = disk_.FreeBlocks();
  RunTool({"run", LargeDocument(), "-o", folder_ / "out.pdf", "remove-empty-tags"});
  EXPECT_TRUE(folder_.Names().empty());
  EXPECT_EQ(disk_.FreeBlocks(), before);
}

TEST_F(FullDisk, LeavesTheFormerOutput) {
  const std::string output = folder_.Write("out.pdf", "former");
  EXPECT_EQ(RunTool({"run", "--force", LargeDocument(), "-o", output, "remove-empty-tags"}).status, 1);
  EXPECT_EQ(ReadFile(output), "former");
  EXPECT_EQ(folder_.Names(), std::vector<std::string>{"out.pdf"});
}

TEST_F(FullDisk, LeavesAnInputThatWasToBeReplaced) {
  const std::string bytes = ReadBytes(DataPath("corpus/pdfbox-PDFBOX-4531-bidi-ligature-2.pdf"));  // 39 KB
  const std::string document = folder_.Write("document.pdf", bytes);
  EXPECT_EQ(RunTool({"run", "--force", document, "-o", document, "remove-empty-tags"}).status, 1);
  EXPECT_TRUE(ReadFile(document) == bytes);
  EXPECT_EQ(folder_.Names(), std::vector<std::string>{"document.pdf"});
}

}  // namespace
}  // namespace tgx::test
