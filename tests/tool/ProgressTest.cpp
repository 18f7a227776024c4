// What a long run shows of itself. A run is made long by the log of fix 0x200 being a pipe: the step waits until somebody
// reads it.
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestDocument.h"
#include "tests/tool/RunTool.h"

namespace tgx::test {
namespace {

using testing::IsEmpty;
using testing::MatchesRegex;

constexpr int kLongestWait = 200'000;  // milliseconds; the sanitizers slow everything down
constexpr const char* kWiped = "\r\033[K";

/// A terminal that passes all bytes as they are.
class Terminal {
 public:
  Terminal() {
    if (openpty(&reader_, &writer_, nullptr, nullptr, nullptr) != 0) throw std::runtime_error("no terminal");
    termios modes = {};
    tcgetattr(writer_, &modes);
    cfmakeraw(&modes);
    tcsetattr(writer_, TCSANOW, &modes);
    for (const int end : {reader_, writer_}) fcntl(end, F_SETFD, FD_CLOEXEC);
  }
  ~Terminal() {
    close(reader_);
    if (writer_ >= 0) close(writer_);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  int Writer() const { return writer_; }

  /// Waits until the text has been shown so many times; gives all that was shown since the terminal was made.
  const std::string& ReadUntil(const std::string& text, int times) {
    for (std::size_t from = 0; times > 0; --times) {
      std::size_t place;
      while ((place = shown_.find(text, from)) == std::string::npos) {
        if (!ReadSome()) throw std::runtime_error("not shown: " + text + "; but: " + shown_);
      }
      from = place + text.size();
    }
    return shown_;
  }

  /// All that is shown until the programs that have the terminal end.
  const std::string& ReadAll() {
    close(writer_);
    writer_ = -1;
    while (ReadSome()) {
    }
    return shown_;
  }

 private:
  bool ReadSome() {
    pollfd ready = {reader_, POLLIN, 0};
    char bytes[4096];
    if (poll(&ready, 1, kLongestWait) <= 0) return false;
    const ssize_t count = read(reader_, bytes, sizeof bytes);
    if (count <= 0) return false;
    shown_.append(bytes, static_cast<std::size_t>(count));
    return true;
  }

  int reader_ = -1, writer_ = -1;
  std::string shown_;
};

/// A run of role-map that stays in its step until it is let go.
class HeldRun {
 public:
  HeldRun(std::vector<std::string> options, int err) {
    TestDocument document;
    document.Tree({Element("Document")({Element("P").Text(document.AddPage(), "Words")})});
    folder_.Write("in.pdf", document.Write());
    if (mkfifo(Log().c_str(), 0600) != 0) throw std::runtime_error("no pipe");
    options.insert(options.begin(), {TGX_TOOL, "run", folder_ / "in.pdf", "-o", folder_ / "out.pdf", "role-map"});
    process_ = fork();
    if (process_ < 0) throw std::runtime_error("no process");
    if (process_ == 0) Become(options, err);
  }
  ~HeldRun() {
    if (process_ > 0) {
      kill(process_, SIGKILL);
      waitpid(process_, nullptr, 0);
    }
  }
  HeldRun(const HeldRun&) = delete;
  HeldRun& operator=(const HeldRun&) = delete;

  /// Lets it go and gives its exit status.
  int Finish() {
    const int log = open(Log().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    int status = -1;
    waitpid(process_, &status, 0);
    close(log);
    process_ = -1;
    return status;
  }

 private:
  std::string Log() const { return folder_ / "tgxlib_tag93.log"; }

  [[noreturn]] void Become(const std::vector<std::string>& command, int err) const {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setenv("TMP", folder_.Path().c_str(), 1);
    dup2(open((folder_ / "report").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600), STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    std::vector<char*> arguments;
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(127);
  }

  TempFolder folder_;
  pid_t process_ = -1;
};

/// Waits until another run has been shown on a terminal twice. By then those that were started before it would have been
/// too.
void WaitForAnotherRunToBeShown() {
  Terminal terminal;
  HeldRun run({}, terminal.Writer());
  terminal.ReadUntil("tgx: step 1 of 1, role-map", 2);
  EXPECT_EQ(run.Finish(), 0);
}

TEST(Progress, TellsOnATerminalWhatARunIsAtAndWipesItAway) {
  Terminal terminal;
  HeldRun run({}, terminal.Writer());
  const std::string shown = terminal.ReadUntil(" s", 2);  // " step" has the first one
  EXPECT_THAT(shown, MatchesRegex("\r.\\[Ktgx: step 1 of 1, role-map, [0-9]+ s.*"));
  EXPECT_EQ(run.Finish(), 0);
  const std::string all = terminal.ReadAll();
  EXPECT_EQ(all.substr(all.rfind('\r')), kWiped);
}

TEST(Progress, IsNotForWhatIsNoTerminal) {
  const TempFolder folder;
  const std::string err = folder.Write("err", "");
  HeldRun run({}, open(err.c_str(), O_WRONLY | O_CLOEXEC));
  WaitForAnotherRunToBeShown();
  EXPECT_EQ(run.Finish(), 0);
  EXPECT_THAT(ReadFile(err), IsEmpty());
}

TEST(Progress, IsNotShownWithQuiet) {
  Terminal terminal;
  HeldRun run({"--quiet"}, terminal.Writer());
  WaitForAnotherRunToBeShown();
  EXPECT_EQ(run.Finish(), 0);
  EXPECT_THAT(terminal.ReadAll(), IsEmpty());
}

}  // namespace
}  // namespace tgx::test
